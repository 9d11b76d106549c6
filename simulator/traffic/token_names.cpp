#include "simulator/traffic/token_names.h"

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{
namespace
{

constexpr std::size_t kTokenDigits = 32;

bool is_digit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

bool is_of_word(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

} // namespace

std::string TokenNames::name_of(std::string_view token)
{
    if (token.size() > kLongestToken) return "[token]";
    const std::lock_guard<std::mutex> lock(mutex_);
    auto found = numbers_.find(token);
    if (found == numbers_.end()) {
        if (in_order_.size() >= kMostTokens) {
            numbers_.erase(in_order_.front());
            in_order_.pop_front();
        }
        in_order_.emplace_back(token);
        found = numbers_.emplace(token, ++last_).first;
    }
    return "[token " + std::to_string(found->second) + "]";
}

std::string TokenNames::blotted(std::string_view text)
{
    std::string result;
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t end = at;
        bool is_token = true;
        while (end < text.size() && is_of_word(text[end])) is_token = is_digit(text[end++]) && is_token;
        const std::string_view word = text.substr(at, end - at);
        if (is_token && word.size() == kTokenDigits) {
            result += name_of(word);
        } else {
            result += word;
        }
        at = end;
        while (at < text.size() && !is_of_word(text[at])) result += text[at++];
    }
    return result;
}

} // namespace soapwrapper::simulator
