#ifndef SOAPWRAPPER_SIMULATOR_FRONT_XML_ESCAPED_H
#define SOAPWRAPPER_SIMULATOR_FRONT_XML_ESCAPED_H

#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

// The text as the content of an element or, between double quotes, as the value of an attribute.
std::string xml_escaped(std::string_view text);

} // namespace soapwrapper::simulator

#endif
