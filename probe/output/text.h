// Text that others wrote, made fit for a terminal, a script and JSON.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_TEXT_H
#define SOAPWRAPPER_PROBE_OUTPUT_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::probe
{

// One line of valid UTF-8: white space becomes a blank; every other control character, every character that
// turns the direction of writing and every byte that isn't UTF-8 becomes U+FFFD.
std::string clean_line(std::string_view text);

// The lines of `text`, each cleaned, without empty ones at the end. An overlong text loses its middle: its
// last line tells how the story ended.
std::vector<std::string> clean_lines(std::string_view text);

// All lines of `text`, each cleaned, however long and many they are.
std::vector<std::string> clean_all_lines(std::string_view text);

// One line, from an array of a record that may lack its terminator.
template <std::size_t Size>
std::string clean_field(const char (&field)[Size])
{
    const std::string_view text(field, Size);
    return clean_line(text.substr(0, text.find('\0')));
}

} // namespace soapwrapper::probe

#endif
