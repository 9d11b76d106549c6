#ifndef SOAPWRAPPER_MESSAGES_INDENTED_H
#define SOAPWRAPPER_MESSAGES_INDENTED_H

#include <string>
#include <string_view>

namespace soapwrapper::messages
{

// XML with an element on each line, for people. What isn't well-formed, or is nested too deeply, comes back
// as it is.
std::string indented(std::string_view xml);

} // namespace soapwrapper::messages

#endif
