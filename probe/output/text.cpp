#include "probe/output/text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr char kReplacement[] = "\xEF\xBF\xBD"; // U+FFFD
constexpr std::size_t kLongestLine = 2048;      // bytes; longer than a URL or a name ever is
constexpr std::size_t kMostLines = 40;

struct Character {
    std::uint32_t code;
    std::size_t length; // in bytes; 0: not UTF-8
};

// The smallest code that a sequence of so many bytes may hold: anything below is an overlong form.
constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};

std::size_t sequence_length(unsigned char lead)
{
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 0;
}

// The character at the head of `text`, which isn't empty.
Character decode(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = sequence_length(lead);
    if (length == 1) return {lead, 1};
    if (length == 0 || text.size() < length) return {0, 0};
    std::uint32_t code = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0U) != 0x80U) return {0, 0};
        code = (code << 6U) | (byte & 0x3FU);
    }
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kSmallest[length] || surrogate || code > 0x10FFFF) return {0, 0};
    return {code, length};
}

bool is_white_space(std::uint32_t code)
{
    return (code >= '\t' && code <= '\r') || code == 0x85 || code == 0x2028 || code == 0x2029;
}

// Control characters, and those that change the direction in which a terminal shows what follows.
bool is_harmful(std::uint32_t code)
{
    return code < 0x20 || (code >= 0x7F && code <= 0x9F) || code == 0x061C || code == 0x200E ||
           code == 0x200F || (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

} // namespace

std::string clean_line(std::string_view text)
{
    std::string clean;
    clean.reserve(text.size());
    while (!text.empty()) {
        const Character character = decode(text);
        if (character.length == 0) {
            clean += kReplacement;
            text.remove_prefix(1);
            continue;
        }
        if (is_white_space(character.code)) {
            clean += ' ';
        } else if (is_harmful(character.code)) {
            clean += kReplacement;
        } else {
            clean += text.substr(0, character.length);
        }
        text.remove_prefix(character.length);
    }
    return clean;
}

std::vector<std::string> clean_lines(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        const bool cut = line.size() > kLongestLine;
        std::string clean = clean_line(line.substr(0, kLongestLine));
        if (cut) clean += " ...";
        if (lines.size() == kMostLines) {
            lines[kMostLines - 2] = "...";
            lines.back() = std::move(clean);
        } else {
            lines.push_back(std::move(clean));
        }
    }
    while (!lines.empty() && lines.back().find_first_not_of(' ') == std::string::npos) lines.pop_back();
    return lines;
}

std::vector<std::string> clean_all_lines(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(clean_line(text.substr(0, end)));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

} // namespace soapwrapper::probe
