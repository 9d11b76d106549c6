// Bounded copy and format: at most size - 1 characters and always a terminator; longer text is cut silently,
// and not within a character where texts are UTF-8.
#ifndef SOAPWRAPPER_PLUGIN_BASE_BOUNDED_TEXT_H
#define SOAPWRAPPER_PLUGIN_BASE_BOUNDED_TEXT_H

#include <string.h>

#include <cstddef>
#include <cstring>

namespace soapwrapper
{

// Whether texts are UTF-8, of which no character may be cut in two. Off at first. No call may be under way.
void keep_characters_whole(bool on);

// How much of a text that a bound cut to `length` bytes may stay.
std::size_t whole_characters(const char* text, std::size_t length);

inline void V_strlncpy(char* destination, const char* source, std::size_t size)
{
    if (size == 0) return;
    std::size_t length = strnlen(source, size - 1);
    if (length == size - 1) length = whole_characters(source, length);
    std::memcpy(destination, source, length);
    destination[length] = '\0';
}

inline void V_strlcpy(char* destination, const char* source, std::size_t size)
{
    V_strlncpy(destination, source, size);
}

__attribute__((format(printf, 3, 4))) void V_snprintf(char* destination, std::size_t size, const char* format,
                                                      ...);

} // namespace soapwrapper

#endif
