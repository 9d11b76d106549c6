#include "messages/markup.h"

#include <cstddef>
#include <string_view>

namespace soapwrapper::messages
{
namespace
{

constexpr std::size_t kNowhere = std::string_view::npos;

std::size_t behind(std::string_view xml, std::string_view what, std::size_t at)
{
    const std::size_t found = xml.find(what, at);
    return found == kNowhere ? kNowhere : found + what.size();
}

bool has_at(std::string_view xml, std::size_t at, std::string_view what)
{
    return xml.substr(at, what.size()) == what;
}

std::size_t skip_blanks(std::string_view text, std::size_t at)
{
    while (at < text.size() && is_blank(text[at])) ++at;
    return at;
}

std::size_t skip_name(std::string_view text, std::size_t at)
{
    constexpr std::string_view kEnds = "=/<>\"'";
    while (at < text.size() && !is_blank(text[at]) && kEnds.find(text[at]) == kNowhere) ++at;
    return at;
}

// The first `>` that isn't in a quoted value.
std::size_t end_of_start_tag(std::string_view xml, std::size_t at)
{
    while (at < xml.size()) {
        const char c = xml[at++];
        if (c == '>') return at;
        if (c == '"' || c == '\'') at = behind(xml, {&c, 1}, at);
    }
    return kNowhere;
}

// From what is behind the `<` and its blanks on.
std::size_t end_of_other(std::string_view xml, std::size_t at)
{
    if (has_at(xml, at, "!--")) return behind(xml, "-->", at + 3);
    if (has_at(xml, at, "![")) return behind(xml, "]]>", at);
    if (has_at(xml, at, "?")) return behind(xml, "?>", at + 1);
    return behind(xml, ">", at);
}

} // namespace

TagBegin tag_begin_at(std::string_view xml, std::size_t at)
{
    TagBegin begin;
    std::size_t name = skip_blanks(xml, at + 1);
    if (has_at(xml, name, "!") || has_at(xml, name, "?")) {
        begin.name_end = name;
        return begin;
    }
    const bool is_end = has_at(xml, name, "/");
    begin.kind = is_end ? TagKind::kEnd : TagKind::kStart;
    if (is_end) name = skip_blanks(xml, name + 1);
    begin.name_end = skip_name(xml, name);
    begin.name = xml.substr(name, begin.name_end - name);
    return begin;
}

Tag tag_at(std::string_view xml, std::size_t at)
{
    const TagBegin begin = tag_begin_at(xml, at);
    Tag tag;
    tag.kind = begin.kind;
    tag.name = begin.name;
    if (tag.kind == TagKind::kOther) {
        tag.end = end_of_other(xml, begin.name_end);
        return tag;
    }
    const bool is_end = tag.kind == TagKind::kEnd;
    tag.end = is_end ? behind(xml, ">", begin.name_end) : end_of_start_tag(xml, begin.name_end);
    if (tag.end == kNowhere) return tag;
    tag.attributes = without_blanks_around(xml.substr(begin.name_end, tag.end - 1 - begin.name_end));
    if (!is_end && !tag.attributes.empty() && tag.attributes.back() == '/') {
        tag.is_closed = true;
        tag.attributes = without_blanks_around(tag.attributes.substr(0, tag.attributes.size() - 1));
    }
    return tag;
}

std::string_view without_prefix(std::string_view name)
{
    const std::size_t colon = name.rfind(':');
    return colon == kNowhere ? name : name.substr(colon + 1);
}

std::string_view without_blanks_around(std::string_view text)
{
    text.remove_prefix(skip_blanks(text, 0));
    while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
    return text;
}

bool are_sound(std::string_view attributes)
{
    std::size_t at = 0;
    while (at < attributes.size()) {
        const std::size_t name = skip_blanks(attributes, at);
        const std::size_t name_end = skip_name(attributes, name);
        const std::size_t equals = skip_blanks(attributes, name_end);
        if (name_end == name || !has_at(attributes, equals, "=")) return false;
        const std::size_t quote = skip_blanks(attributes, equals + 1);
        if (!has_at(attributes, quote, "\"") && !has_at(attributes, quote, "'")) return false;
        const std::size_t end = attributes.find(attributes[quote], quote + 1);
        if (end == kNowhere || attributes.substr(quote, end - quote).find('<') != kNowhere) return false;
        at = end + 1;
    }
    return true;
}

} // namespace soapwrapper::messages
