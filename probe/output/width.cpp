#include "probe/output/width.h"

#include <unistr.h>
#include <unitypes.h>
#include <uniwidth.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace soapwrapper::probe
{
namespace
{

// Of the encodings, those of East Asia alone make a difference.
constexpr char kEncoding[] = "UTF-8";

const std::uint8_t* bytes_of(std::string_view text)
{
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

bool is_ascii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string blanks(const std::string& text, std::size_t columns)
{
    const std::size_t width = display_width(text);
    return std::string(columns > width ? columns - width : 0, ' ');
}

} // namespace

std::size_t display_width(std::string_view text)
{
    if (is_ascii(text)) return text.size(); // most are, and a list may be long
    return static_cast<std::size_t>(std::max(0, u8_width(bytes_of(text), text.size(), kEncoding)));
}

std::string cut_to_width(std::string_view text, std::size_t columns)
{
    std::size_t end = 0;
    std::size_t width = 0;
    while (end < text.size()) {
        const std::string_view rest = text.substr(end);
        ucs4_t character = 0;
        const int length = u8_mbtouc(&character, bytes_of(rest), rest.size());
        width += static_cast<std::size_t>(std::max(0, uc_width(character, kEncoding)));
        if (width > columns || length <= 0) break;
        end += static_cast<std::size_t>(length);
    }
    return std::string(text.substr(0, end));
}

std::string pad_behind(std::string text, std::size_t columns)
{
    text += blanks(text, columns);
    return text;
}

std::string pad_ahead(const std::string& text, std::size_t columns)
{
    return blanks(text, columns) + text;
}

} // namespace soapwrapper::probe
