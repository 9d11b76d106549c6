#include "messages/known_secret.h"

#include "messages/markup.h"
#include "messages/read_text.h"
#include "messages/wiping.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::messages
{
namespace
{

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr std::size_t kBitsOfDigit = 6;

// A text on its way, which leaves nothing behind.
struct Wiped {
    Wiped() = default;
    ~Wiped() { wipe(text); }
    Wiped(const Wiped&) = delete;
    Wiped& operator=(const Wiped&) = delete;

    std::string text;
};

// Each byte as the Latin-1 character of its number, in UTF-8: how texts travel.
void put_latin1_as_utf8(std::string& result, std::string_view bytes)
{
    result.reserve(2 * bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            result += c;
        } else {
            result += static_cast<char>(0xC0U | byte >> 6);
            result += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
}

void put_escaped(std::string& result, std::string_view text)
{
    constexpr std::size_t kLongestEscape = 6;
    result.reserve(kLongestEscape * text.size());
    for (const char c : text) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        default:
            result += c;
        }
    }
}

// The digits of Base64 that the text alone decides, if so many bytes are ahead of it.
void put_base64_behind(std::string& digits, std::size_t ahead, std::string_view text)
{
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::size_t size = ahead + text.size();
    const auto byte = [&](std::size_t at) {
        const bool is_of_text = at >= ahead && at < size;
        return is_of_text ? std::uint32_t{static_cast<unsigned char>(text[at - ahead])} : 0U;
    };
    digits.reserve(size * 8 / kBitsOfDigit);
    const std::size_t first = (ahead * 8 + kBitsOfDigit - 1) / kBitsOfDigit;
    for (std::size_t i = first; (i + 1) * kBitsOfDigit <= size * 8; ++i) {
        const std::size_t bit = i * kBitsOfDigit;
        const std::uint32_t two = byte(bit / 8) << 8 | byte(bit / 8 + 1);
        digits += kDigits[two >> (16 - kBitsOfDigit - bit % 8) & 0x3FU];
    }
}

bool is_base64(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '+' || c == '/' || c == '=';
}

void add_once(std::vector<std::string>& texts, std::string_view text)
{
    if (std::find(texts.begin(), texts.end(), text) == texts.end()) texts.emplace_back(text);
}

ReadText as_it_is(std::string_view text)
{
    ReadText result{std::string(text), {}};
    for (std::size_t i = 0; i < text.size(); ++i) result.origins.push_back({i, i + 1});
    return result;
}

// How many bytes of the text's end may be the beginning of the pattern.
std::size_t begun_at_end(std::string_view text, std::string_view pattern)
{
    std::size_t length = std::min(text.size(), pattern.size() - 1);
    while (length > 0 && text.substr(text.size() - length) != pattern.substr(0, length)) --length;
    return length;
}

// What was found, and so many bytes on both sides of it that belong to Base64: they hold bits of the secret.
void add_part(std::vector<Part>& parts, const ReadText& text, Part found, bool is_in_base64)
{
    while (is_in_base64 && found.end < text.bytes.size() && is_base64(text.bytes[found.end])) {
        ++found.end;
        if (text.bytes[found.end - 1] != '=') break;
    }
    if (is_in_base64 && found.begin > 0 && is_base64(text.bytes[found.begin - 1])) --found.begin;
    parts.push_back({text.origins[found.begin].begin, text.origins[found.end - 1].end});
}

void find_all(std::vector<Part>& parts, const ReadText& text, const std::vector<std::string>& patterns,
              bool is_base64, bool is_cut)
{
    for (const std::string& pattern : patterns) {
        for (std::size_t at = text.bytes.find(pattern); at != kNowhere;
             at = text.bytes.find(pattern, at + 1)) {
            add_part(parts, text, {at, at + pattern.size()}, is_base64);
        }
        const std::size_t begun = is_cut ? begun_at_end(text.bytes, pattern) : 0;
        if (begun > 0) add_part(parts, text, {text.bytes.size() - begun, text.bytes.size()}, is_base64);
    }
}

} // namespace

KnownSecret::KnownSecret(std::string_view secret)
{
    if (secret.size() < kShortest) return;
    Wiped as_utf8;
    put_latin1_as_utf8(as_utf8.text, secret);
    // A vector that grows leaves its texts behind, if they are short.
    texts_.reserve(4);
    base64_.reserve(6);
    for (const std::string_view text : {secret, std::string_view(as_utf8.text)}) {
        Wiped escaped;
        put_escaped(escaped.text, text);
        add_once(texts_, text);
        add_once(texts_, escaped.text);
        for (std::size_t ahead = 0; ahead < 3; ++ahead) {
            Wiped digits;
            put_base64_behind(digits.text, ahead, text);
            add_once(base64_, digits.text);
        }
    }
}

KnownSecret::~KnownSecret()
{
    for (std::vector<std::string>* texts : {&texts_, &base64_}) {
        for (std::string& text : *texts) wipe(text);
    }
}

// Whether there may be something to blot out. Most texts have nothing, and a look is cheap.
bool KnownSecret::may_be_in(std::string_view text) const
{
    const bool is_plain =
        text.find('&') == kNowhere && text.find("<!") == kNowhere && text.find("<?", 1) == kNowhere;
    if (!is_plain) return true;
    const auto holds = [](std::string_view where) {
        return [where](const std::string& pattern) { return where.find(pattern) != kNowhere; };
    };
    if (std::any_of(texts_.begin(), texts_.end(), holds(text))) return true;
    std::string packed(text.size(), '\0');
    packed.erase(std::remove_copy_if(text.begin(), text.end(), packed.begin(), is_blank), packed.end());
    return std::any_of(base64_.begin(), base64_.end(), holds(packed));
}

std::string KnownSecret::blotted(std::string_view text, bool is_cut) const
{
    if (texts_.empty() || (!is_cut && !may_be_in(text))) return std::string(text);
    std::vector<Part> parts;
    // As it stands, too: a comment is nothing to a reader of XML.
    for (const ReadText& each : {as_it_is(text), read_text(text)}) {
        find_all(parts, each, texts_, false, is_cut);
        find_all(parts, without_blanks(each), base64_, true, is_cut);
    }
    return with_parts_blotted(text, std::move(parts), "***");
}

} // namespace soapwrapper::messages
