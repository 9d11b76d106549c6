// The parser's exceptions as texts.
#ifndef SOAPWRAPPER_XMLHELPER_EXCEPTION_TEXT_H
#define SOAPWRAPPER_XMLHELPER_EXCEPTION_TEXT_H

#include <xercesc/util/XercesDefs.hpp>

#include <string>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// The text, or nothing where it can't be converted.
std::string utf8_or_empty(const XMLCh* text);

// What the exception that is being handled says, and where it was caught. One that is neither the parser's
// nor the standard library's is thrown on.
std::string describe_current_exception();

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
