#include "service/contract/xml_tags.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper
{
namespace
{

// Behind the end of the tag that begins at `start`. An attribute's value may hold a '>'.
std::size_t end_of_tag(std::string_view xml, std::size_t start)
{
    char quote = '\0';
    for (std::size_t i = start; i < xml.size(); ++i) {
        const char c = xml[i];
        if (quote != '\0') {
            if (c == quote) quote = '\0';
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '>') {
            return i + 1;
        }
    }
    throw std::runtime_error("a tag has no end");
}

// `text` is the whole tag.
void read_name(XmlTag& tag)
{
    std::string_view inside = tag.text.substr(1, tag.text.size() - 2);
    if (inside.empty() || inside.front() == '?' || inside.front() == '!') return;
    tag.kind = XmlTag::Kind::kOpen;
    if (inside.front() == '/') {
        tag.kind = XmlTag::Kind::kClose;
        inside.remove_prefix(1);
    } else if (inside.back() == '/') {
        tag.kind = XmlTag::Kind::kEmpty;
        inside.remove_suffix(1);
    }
    tag.name = inside.substr(0, inside.find_first_of(" \t\r\n"));
    const std::size_t colon = tag.name.find(':');
    if (colon == std::string_view::npos) return;
    tag.prefix = tag.name.substr(0, colon + 1);
    tag.name.remove_prefix(colon + 1);
}

} // namespace

std::string XmlTag::attribute(std::string_view attribute_name) const
{
    const std::string start = " " + std::string(attribute_name) + "=\"";
    const std::size_t found = text.find(start);
    if (found == std::string_view::npos) return {};
    const std::size_t value = found + start.size();
    return std::string(text.substr(value, text.find('"', value) - value));
}

std::string without_comments(std::string_view xml)
{
    std::string result;
    for (;;) {
        const std::size_t comment = xml.find("<!--");
        result += xml.substr(0, comment);
        if (comment == std::string_view::npos) return result;
        const std::size_t end = xml.find("-->", comment);
        if (end == std::string_view::npos) throw std::runtime_error("a comment has no end");
        xml.remove_prefix(end + 3);
    }
}

std::vector<XmlTag> tags_of(std::string_view xml)
{
    std::vector<XmlTag> tags;
    std::size_t position = 0;
    for (;;) {
        const std::size_t start = xml.find('<', position);
        XmlTag tag;
        tag.before = xml.substr(position, start - position);
        if (start == std::string_view::npos) {
            tags.push_back(tag);
            return tags;
        }
        position = end_of_tag(xml, start);
        tag.text = xml.substr(start, position - start);
        read_name(tag);
        tags.push_back(tag);
    }
}

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
        } else {
            result += c;
        }
    }
    return result;
}

} // namespace soapwrapper
