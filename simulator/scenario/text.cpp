#include "simulator/scenario/text.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

std::string printable(std::string_view text)
{
    constexpr std::size_t kLongest = 200;
    std::string shown(text.substr(0, kLongest));
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    if (text.size() > kLongest) shown += "...";
    return shown;
}

} // namespace soapwrapper::simulator
