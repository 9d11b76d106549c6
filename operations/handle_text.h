// Texts that a handle owns. One for which there was no memory is null.
#ifndef SOAPWRAPPER_OPERATIONS_HANDLE_TEXT_H
#define SOAPWRAPPER_OPERATIONS_HANDLE_TEXT_H

#include "plugin/base/bounded_text.h"

#include <cstddef>
#include <cstdlib>
#include <string>

namespace soapwrapper
{

// A copy in a malloc block of `size` bytes, cut to fit.
inline char* allocate_text(const char* text, std::size_t size)
{
    auto* copy = static_cast<char*>(std::malloc(size));
    if (copy) V_strlcpy(copy, text, size);
    return copy;
}

// The same in a block that is exactly large enough.
inline char* allocate_text(const std::string& text)
{
    return allocate_text(text.c_str(), text.size() + 1);
}

// For a text that is logged or copied.
inline const char* text_or_empty(const char* text)
{
    return text ? text : "";
}

} // namespace soapwrapper

#endif
