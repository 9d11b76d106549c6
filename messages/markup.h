// Markup in bytes that needn't be well-formed. Positions behind the end are npos.
#ifndef SOAPWRAPPER_MESSAGES_MARKUP_H
#define SOAPWRAPPER_MESSAGES_MARKUP_H

#include <cstddef>
#include <string_view>

namespace soapwrapper::messages
{

// What XML takes for a blank and what lenient parsers do, too.
constexpr bool is_blank(char c)
{
    return c > '\0' && c <= ' ';
}

enum class TagKind { kStart, kEnd, kOther }; // the last: a comment, a section, an instruction

struct TagBegin {
    TagKind kind = TagKind::kOther;
    std::string_view name; // with its prefix
    std::size_t name_end = 0;
};

struct Tag {
    TagKind kind = TagKind::kOther;
    bool is_closed = false;                   // a start tag that is the element's end, too
    std::string_view name;                    // with its prefix
    std::string_view attributes;              // all between the name and the tag's end
    std::size_t end = std::string_view::npos; // behind the tag
};

// Of the tag whose `<` stands there. A look at the beginning alone costs no more than the name's length.
TagBegin tag_begin_at(std::string_view xml, std::size_t at);
Tag tag_at(std::string_view xml, std::size_t at);

std::string_view without_prefix(std::string_view name);
std::string_view without_blanks_around(std::string_view text);

// Whether they are attributes as XML has them, all of them with a value in quotes.
bool are_sound(std::string_view attributes);

} // namespace soapwrapper::messages

#endif
