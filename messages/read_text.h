#ifndef SOAPWRAPPER_MESSAGES_READ_TEXT_H
#define SOAPWRAPPER_MESSAGES_READ_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::messages
{

// A part of a text: [begin, end).
struct Part {
    std::size_t begin = 0;
    std::size_t end = 0;
};

// A text as a reader of XML takes it, and which part of the original each of its bytes comes from.
struct ReadText {
    std::string bytes;
    std::vector<Part> origins;
};

// References become their characters, in UTF-8; comments, instructions and the marks around sections are left
// out.
ReadText read_text(std::string_view xml);
ReadText without_blanks(const ReadText& text);

// The text, with a stand-in for each of these parts. They may overlap.
std::string with_parts_blotted(std::string_view text, std::vector<Part> parts, std::string_view stand_in);

} // namespace soapwrapper::messages

#endif
