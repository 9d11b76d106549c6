#include "plugin/base/bounded_text.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>

namespace soapwrapper
{

void V_snprintf(char* destination, std::size_t size, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    if (std::vsnprintf(destination, size, format, arguments) < 0 && size > 0) *destination = '\0';
    va_end(arguments);
}

} // namespace soapwrapper
