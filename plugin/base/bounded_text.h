// Bounded copy and format: at most size - 1 characters and always a terminator; longer text is cut silently.
#ifndef SOAPWRAPPER_PLUGIN_BASE_BOUNDED_TEXT_H
#define SOAPWRAPPER_PLUGIN_BASE_BOUNDED_TEXT_H

#include <string.h>

#include <cstddef>
#include <cstring>

namespace soapwrapper
{

inline void V_strlncpy(char* destination, const char* source, std::size_t size)
{
    if (size == 0) return;
    const std::size_t length = strnlen(source, size - 1);
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
