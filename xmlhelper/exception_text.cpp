#include "xmlhelper/exception_text.h"

#include "xmlhelper/transcoding.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

#include <exception>
#include <stdexcept>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

std::string caught(const char* kind, int line, const std::string& message)
{
    return "Caught " + std::string(kind) + " at line: " + std::to_string(line) +
           " File: exception_text.cpp description: " + message;
}

} // namespace

std::string utf8_or_empty(const XMLCh* text)
{
    try {
        return transcodeXmlToUtf8(text);
    } catch (const std::domain_error&) {
        return EmptyString;
    }
}

std::string describe_current_exception()
{
    try {
        throw;
    } catch (const SAXException& exception) {
        return caught("SAXException", __LINE__, utf8_or_empty(exception.getMessage()));
    } catch (const XMLException& exception) {
        return caught("XMLException", __LINE__, utf8_or_empty(exception.getMessage()));
    } catch (const DOMException& exception) {
        return caught("DOMException", __LINE__, utf8_or_empty(exception.getMessage()));
    } catch (const OutOfMemoryException& exception) {
        return caught("XMLException", __LINE__, utf8_or_empty(exception.getMessage()));
    } catch (const std::exception& exception) {
        return caught("std::exception", __LINE__, exception.what());
    }
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
