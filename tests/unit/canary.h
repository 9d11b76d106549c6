// Records filled with a canary beforehand, so that a test sees every byte that a conversion wrote or left.
#ifndef SOAPWRAPPER_TESTS_UNIT_CANARY_H
#define SOAPWRAPPER_TESTS_UNIT_CANARY_H

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

constexpr char kCanary = 0x5a;

template <class Record>
void fill_with_canary(Record& record)
{
    std::memset(static_cast<void*>(&record), kCanary, sizeof record);
}

// What a bounded copy leaves in a field: the text, cut at one below the field's size, and a terminator. The
// bytes behind it stay.
template <std::size_t Size>
void put(char (&field)[Size], std::string_view text)
{
    text = text.substr(0, Size - 1);
    std::memcpy(field, text.data(), text.size());
    field[text.size()] = '\0';
}

// Equal in every byte, padding included.
template <class Record>
testing::AssertionResult same_bytes(const Record& actual, const Record& expected)
{
    const auto* left = reinterpret_cast<const unsigned char*>(&actual);
    const auto* right = reinterpret_cast<const unsigned char*>(&expected);
    for (std::size_t i = 0; i < sizeof(Record); ++i) {
        if (left[i] != right[i]) {
            return testing::AssertionFailure()
                   << "byte " << i << " is " << int{left[i]} << " and not " << int{right[i]};
        }
    }
    return testing::AssertionSuccess();
}

// A text of `length` different-looking characters.
inline std::string long_text(std::size_t length)
{
    std::string text;
    for (std::size_t i = 0; i < length; ++i) text += static_cast<char>('a' + i % 26);
    return text;
}

#endif
