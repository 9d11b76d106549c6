#include "messages/wiping.h"

#include <string.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace soapwrapper::messages
{

void wipe(std::string& text)
{
    text.resize(text.capacity());
    explicit_bzero(text.data(), text.size());
    text.clear();
}

void append_wiping(std::string& text, std::string_view more)
{
    if (more.size() > text.capacity() - text.size()) {
        std::string moved;
        moved.reserve(std::max(text.size() + more.size(), 2 * text.capacity()));
        moved += text;
        wipe(text);
        text.swap(moved);
    }
    text += more;
}

} // namespace soapwrapper::messages
