// Texts of the host's fixed fields.
#ifndef SOAPWRAPPER_CONVERSION_FIELD_TEXT_H
#define SOAPWRAPPER_CONVERSION_FIELD_TEXT_H

#include "plugin/base/bounded_text.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace soapwrapper
{

// What stands in a field, up to its terminator; a field that lacks one ends with its array.
template <std::size_t Size>
std::string_view text_of(const char (&field)[Size])
{
    return {field, strnlen(field, Size)};
}

template <std::size_t Size>
void set_text(char (&field)[Size], const std::string& text)
{
    V_strlcpy(field, text.c_str(), Size);
}

// The same from an element that may be nil: then the field stays as it is.
template <std::size_t Size>
void set_text(char (&field)[Size], const std::string* text)
{
    if (text) set_text(field, *text);
}

} // namespace soapwrapper

#endif
