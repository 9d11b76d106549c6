#include "simulator/front/xml_escaped.h"

#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

std::string xml_escaped(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        if (c == '&') {
            result += "&amp;";
        } else if (c == '<') {
            result += "&lt;";
        } else if (c == '>') {
            result += "&gt;";
        } else if (c == '"') {
            result += "&quot;";
        } else {
            result += c;
        }
    }
    return result;
}

} // namespace soapwrapper::simulator
