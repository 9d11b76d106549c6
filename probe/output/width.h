// How many columns of a terminal a text takes: not each character takes one.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_WIDTH_H
#define SOAPWRAPPER_PROBE_OUTPUT_WIDTH_H

#include <cstddef>
#include <string>
#include <string_view>

namespace soapwrapper::probe
{

// Of a cleaned text. Characters of East Asia and emoji take two columns, combining marks none, whatever the
// locale is.
std::size_t display_width(std::string_view text);

// As much of a cleaned text as fits into so many columns, with the marks that belong to its last character.
std::string cut_to_width(std::string_view text, std::size_t columns);

// A cleaned text with blanks behind it, or ahead of it, up to so many columns.
std::string pad_behind(std::string text, std::size_t columns);
std::string pad_ahead(const std::string& text, std::size_t columns);

} // namespace soapwrapper::probe

#endif
