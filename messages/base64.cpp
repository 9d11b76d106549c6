#include "messages/base64.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace soapwrapper::messages
{
namespace
{

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kBytes = 3; // that make so many digits
constexpr std::size_t kQuartet = 4;
constexpr unsigned kBitsOfDigit = 6;
constexpr unsigned kBitsOfByte = 8;

} // namespace

std::string base64_of(std::string_view bytes)
{
    std::string text;
    text.reserve((bytes.size() + kBytes - 1) / kBytes * kQuartet);
    for (std::size_t at = 0; at < bytes.size(); at += kBytes) {
        const std::string_view group = bytes.substr(at, kBytes);
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < kBytes; ++i) {
            bits = bits << kBitsOfByte | (i < group.size() ? static_cast<unsigned char>(group[i]) : 0U);
        }
        for (std::size_t i = 0; i < kQuartet; ++i) {
            const std::size_t digit = bits >> (kQuartet - 1 - i) * kBitsOfDigit & 0x3FU;
            text += i <= group.size() ? kDigits[digit] : '=';
        }
    }
    return text;
}

std::optional<std::string> bytes_of_base64(std::string_view text)
{
    if (text.size() % kQuartet != 0) return std::nullopt;
    const std::size_t digits = std::min(text.find('='), text.size());
    std::string bytes;
    bytes.reserve(text.size() / kQuartet * kBytes);
    std::uint32_t bits = 0;
    unsigned count = 0;
    for (const char c : text.substr(0, digits)) {
        const std::size_t digit = kDigits.find(c);
        if (digit == std::string_view::npos) return std::nullopt;
        bits = (bits << kBitsOfDigit | static_cast<std::uint32_t>(digit)) & 0xFFFFFFU;
        count += kBitsOfDigit;
        if (count < kBitsOfByte) continue;
        count -= kBitsOfByte;
        bytes += static_cast<char>(bits >> count & 0xFFU);
    }
    // The padding, and the bits that no byte is made of, are as the other side writes them.
    return base64_of(bytes) == text ? std::optional(std::move(bytes)) : std::nullopt;
}

} // namespace soapwrapper::messages
