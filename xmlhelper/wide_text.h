// A written document as wide characters.
#ifndef SOAPWRAPPER_XMLHELPER_WIDE_TEXT_H
#define SOAPWRAPPER_XMLHELPER_WIDE_TEXT_H

#include "xmlhelper/xml_status.h"

#include <string>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// `bytes` is well-formed text in the encoding.
std::wstring widened(const std::string& bytes, THSupportedXmlEncoding encoding);

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
