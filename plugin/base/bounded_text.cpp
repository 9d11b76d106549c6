#include "plugin/base/bounded_text.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>

namespace soapwrapper
{
namespace
{

bool g_texts_are_utf8 = false;

// Of a character that begins with this byte; 1 for what begins none.
std::size_t length_of_character(unsigned char first)
{
    if (first >= 0xF0U) return 4;
    if (first >= 0xE0U) return 3;
    return first >= 0xC0U ? 2 : 1;
}

} // namespace

void keep_characters_whole(bool on)
{
    g_texts_are_utf8 = on;
}

std::size_t whole_characters(const char* text, std::size_t length)
{
    constexpr std::size_t kLongestRest = 3; // of a character that lacks its last byte
    if (!g_texts_are_utf8) return length;
    for (std::size_t back = 1; back <= length && back <= kLongestRest; ++back) {
        const auto byte = static_cast<unsigned char>(text[length - back]);
        const bool continues = (byte & 0xC0U) == 0x80U;
        if (!continues) return length_of_character(byte) > back ? length - back : length;
    }
    return length;
}

void V_snprintf(char* destination, std::size_t size, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const int wanted = std::vsnprintf(destination, size, format, arguments);
    va_end(arguments);
    if (size == 0) return;
    if (wanted < 0) *destination = '\0';
    if (wanted >= 0 && static_cast<std::size_t>(wanted) >= size) {
        destination[whole_characters(destination, size - 1)] = '\0';
    }
}

} // namespace soapwrapper
