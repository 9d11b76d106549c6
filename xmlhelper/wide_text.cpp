#include "xmlhelper/wide_text.h"

#include "xmlhelper/xml_status.h"

#include <cstdint>
#include <cstring>
#include <string>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

template <class Unit>
Unit unit_at(const std::string& bytes, std::size_t position)
{
    Unit unit;
    std::memcpy(&unit, bytes.data() + position, sizeof unit);
    return unit;
}

std::wstring wide_from_utf32(const std::string& bytes)
{
    std::wstring wide;
    for (std::size_t i = 0; i + sizeof(wchar_t) <= bytes.size(); i += sizeof(wchar_t)) {
        wide += unit_at<wchar_t>(bytes, i);
    }
    return wide;
}

std::wstring wide_from_utf16(const std::string& bytes)
{
    std::wstring wide;
    for (std::size_t i = 0; i + sizeof(char16_t) <= bytes.size(); i += sizeof(char16_t)) {
        const std::uint32_t unit = unit_at<char16_t>(bytes, i);
        const bool is_low = (unit & 0xFC00U) == 0xDC00U;
        if (is_low && !wide.empty() && (static_cast<std::uint32_t>(wide.back()) & 0xFFFFFC00U) == 0xD800U) {
            const std::uint32_t high = static_cast<std::uint32_t>(wide.back()) & 0x3FFU;
            wide.back() = static_cast<wchar_t>(0x10000U + (high << 10U) + (unit & 0x3FFU));
        } else {
            wide += static_cast<wchar_t>(unit);
        }
    }
    return wide;
}

// The writer makes no UTF-8 that isn't.
std::wstring wide_from_utf8(const std::string& bytes)
{
    std::wstring wide;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (value < 0x80U) {
            wide += static_cast<wchar_t>(value);
        } else if (value >= 0xF0U) {
            wide += static_cast<wchar_t>(value & 0x07U);
        } else if (value >= 0xE0U) {
            wide += static_cast<wchar_t>(value & 0x0FU);
        } else if (value >= 0xC0U) {
            wide += static_cast<wchar_t>(value & 0x1FU);
        } else if (!wide.empty()) {
            wide.back() =
                static_cast<wchar_t>((static_cast<std::uint32_t>(wide.back()) << 6U) | (value & 0x3FU));
        }
    }
    return wide;
}

} // namespace

std::wstring widened(const std::string& bytes, THSupportedXmlEncoding encoding)
{
    switch (encoding) {
    case XML_ENCODING_UTF32:
        return wide_from_utf32(bytes);
    case XML_ENCODING_UTF16:
        return wide_from_utf16(bytes);
    default:
        return wide_from_utf8(bytes);
    }
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
