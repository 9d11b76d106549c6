#include "service/wire_text.h"

#include "plugin/base/wipe.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

#include "soapwrapperH.h"

namespace soapwrapper
{
namespace
{

using Code = std::uint32_t;

// What soap_get gives for markup, beside bytes; the runtime has no names for it outside.
constexpr soap_wchar kTag = -2;        // <
constexpr soap_wchar kEndTag = -3;     // </
constexpr soap_wchar kGreater = -4;    // >
constexpr soap_wchar kQuote = -5;      // "
constexpr soap_wchar kApostrophe = -6; // '

constexpr Code kReference = 0x80000000U; // set in a character that stood as a reference

constexpr Code kReplacement = 0xFFFD;
constexpr Code kHighestCode = 0x10FFFF;
constexpr Code kFirstHighSurrogate = 0xD800;
constexpr Code kFirstLowSurrogate = 0xDC00;
constexpr Code kBehindSurrogates = 0xE000;

Code byte_at(std::string_view text, std::size_t at)
{
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

bool continues(std::string_view text, std::size_t at)
{
    return (byte_at(text, at) & 0xC0U) == 0x80U;
}

// How many bytes a text begins with that have the form of one character, and the code that they hold; 0 where
// they have none, or a longer form than the code needs. Surrogates pass.
std::size_t sequence(std::string_view text, Code& code)
{
    constexpr Code kFirstOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
    const Code first = byte_at(text, 0);
    code = first;
    if (first < 0x80U) return 1;
    const std::size_t length = first < 0xC0U   ? 0
                               : first < 0xE0U ? 2
                               : first < 0xF0U ? 3
                               : first < 0xF8U ? 4
                                               : 0;
    if (length == 0) return 0;
    code = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!continues(text, i)) return 0;
        code = code << 6U | (byte_at(text, i) & 0x3FU);
    }
    return code >= kFirstOfLength[length] && code <= kHighestCode ? length : 0;
}

bool is_surrogate(Code code)
{
    return code >= kFirstHighSurrogate && code < kBehindSurrogates;
}

void append(std::string& text, Code code)
{
    const auto put = [&text](Code byte) { text += static_cast<char>(byte); };
    if (code < 0x80U) return put(code);
    if (code < 0x800U) {
        put(0xC0U | code >> 6U);
    } else {
        if (code < 0x10000U) {
            put(0xE0U | code >> 12U);
        } else {
            put(0xF0U | code >> 18U);
            put(0x80U | (code >> 12U & 0x3FU));
        }
        put(0x80U | (code >> 6U & 0x3FU));
    }
    put(0x80U | (code & 0x3FU));
}

// Appends what the text begins with, mended if need be, and tells how many bytes that was.
std::size_t append_next(std::string& valid, std::string_view text)
{
    Code code = 0;
    const std::size_t length = sequence(text, code);
    if (length != 0 && !is_surrogate(code)) {
        valid.append(text.substr(0, length));
        return length;
    }
    if (length != 0 && code < kFirstLowSurrogate) {
        Code low = 0;
        const std::size_t more = sequence(text.substr(length), low);
        if (low >= kFirstLowSurrogate && is_surrogate(low)) {
            append(valid, 0x10000U + ((code - kFirstHighSurrogate) << 10U) + (low - kFirstLowSurrogate));
            return length + more;
        }
    }
    append(valid, byte_at(text, 0));
    return 1;
}

bool is_valid_utf8(std::string_view text)
{
    while (!text.empty()) {
        Code code = 0;
        const std::size_t length = sequence(text, code);
        if (length == 0 || is_surrogate(code)) return false;
        text.remove_prefix(length);
    }
    return true;
}

// What stands within an element, up to its end: as the runtime reads a text, with the tags of elements
// within it as they stand, but for its bytes, which are kept as they come.
class TextReader
{
  public:
    explicit TextReader(soap* context) : context_(context) {}

    std::string read()
    {
        soap_wchar got = next();
        while (take(got)) got = next();
        soap_unget(context_, got);
        return is_valid_utf8(text_) ? std::move(text_) : to_valid_utf8(text_);
    }

  private:
    // The runtime reads no more than six digits of a reference, and what is left of it as text.
    soap_wchar next()
    {
        if (context_->ahead != 0 || context_->cdata != 0 || soap_get0(context_) != '&') {
            return soap_get(context_);
        }
        ++context_->bufidx;
        if (soap_get0(context_) == '#') {
            ++context_->bufidx;
            return static_cast<soap_wchar>(number() | kReference);
        }
        soap_unget(context_, '&');
        return soap_get(context_);
    }

    // Behind "&#", up to the semicolon or to what can't be part of it.
    Code number()
    {
        const int mark = soap_get0(context_);
        const bool is_hexadecimal = mark == 'x' || mark == 'X';
        if (is_hexadecimal) ++context_->bufidx;
        Code code = 0;
        for (;;) {
            const int byte = soap_get0(context_);
            const bool is_digit = is_hexadecimal ? std::isxdigit(byte) != 0 : byte >= '0' && byte <= '9';
            if (byte == ';') ++context_->bufidx;
            if (!is_digit) return code;
            ++context_->bufidx;
            const auto digit = static_cast<Code>(byte <= '9' ? byte - '0' : (byte & 7) + 9);
            code = std::min(code * (is_hexadecimal ? 16U : 10U) + digit, kHighestCode + 1);
        }
    }

    // False for what ends the text.
    bool take(soap_wchar got)
    {
        switch (got) {
        case static_cast<soap_wchar>(EOF):
            return false;
        case kEndTag:
            if (depth_ == 0) return false;
            --depth_;
            text_ += "</";
            return true;
        case kTag:
            ++depth_;
            text_ += '<';
            return true;
        case kGreater:
            text_ += '>';
            return true;
        case kQuote:
            text_ += '"';
            return true;
        case kApostrophe:
            text_ += '\'';
            return true;
        case '/':
            if (depth_ > 0) look_for_empty_element();
            text_ += '/';
            return true;
        default:
            take_character(got);
            return true;
        }
    }

    void look_for_empty_element()
    {
        const soap_wchar next = soap_get(context_);
        if (next == kGreater) --depth_;
        soap_unget(context_, next);
    }

    // A byte of the document, or a character that it refers to by its number or its name.
    void take_character(soap_wchar got)
    {
        const Code code = static_cast<Code>(got) & ~kReference;
        const bool is_byte = got > 0 && (context_->mode & SOAP_ENC_LATIN) == 0;
        if (is_byte) {
            text_ += static_cast<char>(code);
        } else {
            append(text_, code == 0 || code > kHighestCode ? kReplacement : code); // no text holds a NUL
        }
    }

    soap* context_;
    std::string text_;
    std::size_t depth_ = 0;
};

} // namespace

std::string to_valid_utf8(std::string_view text)
{
    std::string valid;
    valid.reserve(2 * text.size());
    while (!text.empty()) text.remove_prefix(append_next(valid, text));
    return valid;
}

} // namespace soapwrapper

char* soapwrapper_string_in(soap* context, int flag, long minimum, long maximum, const char* pattern)
{
    if ((context->mode & SOAP_C_UTFSTRING) == 0) {
        return soap_string_in(context, flag, minimum, maximum, pattern);
    }
    return soap_strdup(context, soapwrapper::TextReader(context).read().c_str());
}

int soapwrapper_string_out(soap* context, const char* text, int flag)
{
    if ((context->mode & SOAP_C_UTFSTRING) == 0 || soapwrapper::is_valid_utf8(text)) {
        return soap_string_out(context, text, flag);
    }
    std::string valid = soapwrapper::to_valid_utf8(text);
    const soapwrapper::WipeAtEnd wipe(valid); // it may be a command that holds a password
    return soap_string_out(context, valid.c_str(), flag);
}
