#include "xmlhelper/document.h"

#include "xmlhelper/exception_text.h"
#include "xmlhelper/parse_memory.h" // IWYU pragma: keep: a document owns its rings of memory
#include "xmlhelper/platform.h"
#include "xmlhelper/xml_status.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

#include <memory>
#include <stdexcept>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

const XMLCh* declaration_data(THSupportedXmlEncoding encoding)
{
    switch (encoding) {
    case XML_ENCODING_UTF16:
        return u"version=\"1.0\" encoding=\"UTF-16\"";
    case XML_ENCODING_UTF32:
        return u"version=\"1.0\" encoding=\"UTF-32\"";
    default:
        return u"version=\"1.0\" encoding=\"UTF-8\"";
    }
}

THSupportedXmlEncoding declared_encoding(const DOMDocument* document)
{
    if (!document) return XML_ENCODING_UTF8;
    const std::string declared = utf8_or_empty(document->getXmlEncoding());
    if (XMLString::compareIString(declared.c_str(), "UTF-16") == 0) return XML_ENCODING_UTF16;
    if (XMLString::compareIString(declared.c_str(), "UTF-32") == 0) return XML_ENCODING_UTF32;
    return XML_ENCODING_UTF8;
}

void report(XMLDocumentStatus* destination, XMLDocumentStatus status)
{
    if (destination) *destination = status;
}

} // namespace

DOMImplementation* dom_implementation()
{
    return DOMImplementationRegistry::getDOMImplementation(u"XML 1.0");
}

THXMLDocument::THXMLDocument(XMLDocumentStatus* status, bool is_utf16, THValidationLevel level,
                             const std::string& schema_location)
    : THXMLDocument(status, is_utf16 ? XML_ENCODING_UTF16 : XML_ENCODING_UTF8, level, schema_location)
{
}

THXMLDocument::THXMLDocument(XMLDocumentStatus* status, THSupportedXmlEncoding encoding,
                             THValidationLevel level, const std::string& schema_location)
    : encoding_(encoding), level_(level), schema_location_(schema_location)
{
    XMLDocumentStatus result = XML_DOC_OK;
    if (start(result)) result = create_empty();
    report(status, result);
}

THXMLDocument::THXMLDocument(const char* path, XMLDocumentStatus* status, THValidationLevel level,
                             const std::string& schema_location, bool path_is_utf8)
    : encoding_(XML_ENCODING_UTF8), level_(level), schema_location_(schema_location)
{
    XMLDocumentStatus result = XML_DOC_OK;
    if (start(result)) result = load(path, path_is_utf8);
    encoding_ = declared_encoding(document_);
    report(status, result);
}

THXMLDocument::~THXMLDocument()
{
    discard();
    if (platform_started_) end_platform();
}

bool THXMLDocument::start(XMLDocumentStatus& status)
{
    std::string message;
    platform_started_ = start_platform(&message);
    if (platform_started_) return true;
    error_text_ = "Error during Xerces-c Initialization.  Exception message: " + message;
    status = XML_DOC_PLATFORM_FAILED;
    return false;
}

XMLDocumentStatus THXMLDocument::create_empty()
{
    DOMImplementation* implementation = dom_implementation();
    if (!implementation) {
        error_text_ = "getDomImplementation failed";
        return XML_DOC_PLATFORM_FAILED;
    }
    document_ = implementation->createDocument();
    return addProcessingInstruction(encoding_);
}

void THXMLDocument::discard()
{
    root_ = nullptr;
    if (document_) document_->release();
    document_ = nullptr;
    memory_.reset();
}

XMLDocumentStatus THXMLDocument::addProcessingInstruction(THSupportedXmlEncoding encoding)
{
    if (!document_) throw std::domain_error("pXMLDom is null");
    const DOMProcessingInstruction* instruction =
        document_->createProcessingInstruction(u"xml", declaration_data(encoding));
    return instruction ? XML_DOC_OK : XML_DOC_PROCESSING_INSTRUCTION_FAILED;
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
