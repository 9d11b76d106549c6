#include "messages/read_text.h"

#include "messages/markup.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace soapwrapper::messages
{
namespace
{

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr std::string_view kSection = "<![CDATA[";

// Empty if it is no character.
std::string utf8(std::uint32_t code)
{
    const auto byte = [](std::uint32_t bits) { return static_cast<char>(bits); };
    const auto more = [&](int shift) { return byte(0x80U | (code >> shift & 0x3FU)); };
    if (code < 0x80) return {byte(code)};
    if (code < 0x800) return {byte(0xC0U | code >> 6), more(0)};
    if (code < 0x10000) return {byte(0xE0U | code >> 12), more(6), more(0)};
    if (code < 0x110000) return {byte(0xF0U | code >> 18), more(12), more(6), more(0)};
    return {};
}

// What is between the "&" and the ";".
std::string character_of(std::string_view name)
{
    constexpr std::pair<std::string_view, const char*> kNames[] = {
        {"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}};
    for (const auto& each : kNames) {
        if (each.first == name) return each.second;
    }
    if (name.empty() || name[0] != '#') return {};
    const bool is_hex = name.size() > 1 && (name[1] == 'x' || name[1] == 'X');
    const std::string_view digits = name.substr(is_hex ? 2 : 1);
    std::uint32_t code = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), code, is_hex ? 16 : 10);
    const bool is_whole = !digits.empty() && error == std::errc() && end == digits.data() + digits.size();
    return is_whole ? utf8(code) : std::string();
}

class Reader
{
  public:
    explicit Reader(std::string_view xml) : xml_(xml) {}

    ReadText read()
    {
        text_.bytes.reserve(xml_.size());
        text_.origins.reserve(xml_.size());
        while (at_ < xml_.size()) {
            if (xml_[at_] == '&') {
                read_reference();
            } else if (xml_[at_] == '<' && begins_other()) {
                skip_other();
            } else if (is_in_section_ && xml_.substr(at_, 3) == "]]>") {
                is_in_section_ = false;
                at_ += 3;
            } else {
                take(std::string_view(&xml_[at_], 1), at_ + 1);
            }
        }
        return std::move(text_);
    }

  private:
    bool begins_other() const
    {
        const bool is_end = at_ + 1 == xml_.size(); // where the text may be cut
        return is_end || xml_[at_ + 1] == '!' || xml_[at_ + 1] == '?';
    }

    void take(std::string_view bytes, std::size_t end)
    {
        for (const char byte : bytes) {
            text_.bytes += byte;
            text_.origins.push_back({at_, end});
        }
        at_ = end;
    }

    void read_reference()
    {
        constexpr std::size_t kLongest = 64; // with leading zeros
        const std::string_view rest = xml_.substr(at_ + 1, kLongest);
        const std::size_t length = std::min(rest.find(';'), rest.find_first_of("&< \t\r\n"));
        const bool is_reference = length != kNowhere && rest[length] == ';';
        const std::string character = is_reference ? character_of(rest.substr(0, length)) : std::string();
        if (!character.empty()) {
            take(character, at_ + length + 2);
        } else if (length == kNowhere && at_ + 1 + rest.size() == xml_.size()) {
            at_ = xml_.size(); // the beginning of one, at which the text was cut
        } else {
            take("&", at_ + 1);
        }
    }

    // What is in a section is text. Only of a whole one is it sure where it ends.
    void skip_other()
    {
        if (xml_.substr(at_, kSection.size()) == kSection) {
            is_in_section_ = true;
            at_ += kSection.size();
            return;
        }
        at_ = std::min(tag_at(xml_, at_).end, xml_.size());
    }

    std::string_view xml_;
    std::size_t at_ = 0;
    bool is_in_section_ = false;
    ReadText text_;
};

} // namespace

ReadText read_text(std::string_view xml)
{
    return Reader(xml).read();
}

ReadText without_blanks(const ReadText& text)
{
    ReadText result;
    for (std::size_t i = 0; i < text.bytes.size(); ++i) {
        if (is_blank(text.bytes[i])) continue;
        result.bytes += text.bytes[i];
        result.origins.push_back(text.origins[i]);
    }
    return result;
}

std::string with_parts_blotted(std::string_view text, std::vector<Part> parts, std::string_view stand_in)
{
    std::sort(parts.begin(), parts.end(), [](const Part& a, const Part& b) { return a.begin < b.begin; });
    std::string result;
    std::size_t at = 0;
    for (const Part& part : parts) {
        if (part.end <= at) continue;
        if (part.begin >= at) {
            result += text.substr(at, part.begin - at);
            result += stand_in;
        }
        at = part.end;
    }
    return result += text.substr(at);
}

} // namespace soapwrapper::messages
