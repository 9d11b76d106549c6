#ifndef SOAPWRAPPER_MESSAGES_BASE64_H
#define SOAPWRAPPER_MESSAGES_BASE64_H

#include <optional>
#include <string>
#include <string_view>

namespace soapwrapper::messages
{

// With padding, without line ends.
std::string base64_of(std::string_view bytes);
// Nothing, unless it is as base64_of() makes it.
std::optional<std::string> bytes_of_base64(std::string_view text);

} // namespace soapwrapper::messages

#endif
