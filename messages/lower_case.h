#ifndef SOAPWRAPPER_MESSAGES_LOWER_CASE_H
#define SOAPWRAPPER_MESSAGES_LOWER_CASE_H

#include <string>
#include <string_view>

namespace soapwrapper::messages
{

// Of ASCII, whatever the locale is.
inline std::string lower_case(std::string_view text)
{
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return result;
}

} // namespace soapwrapper::messages

#endif
