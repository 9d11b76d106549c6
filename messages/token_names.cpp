#include "messages/token_names.h"

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>

namespace soapwrapper::messages
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

std::string TokenNames::blotted(std::string_view text, bool is_cut)
{
    std::string result;
    std::size_t copied = 0;
    const auto put = [&](std::string_view word, std::string_view stand_in) {
        const auto begin = static_cast<std::size_t>(word.data() - text.data());
        result.append(text.substr(copied, begin - copied)).append(stand_in);
        copied = begin + word.size();
    };
    for (std::size_t at = 0, end = 0; at < text.size(); at = end + 1) {
        bool is_token = true;
        for (end = at; end < text.size() && is_of_word(text[end]); ++end) {
            is_token = is_token && is_digit(text[end]);
        }
        const std::string_view word = text.substr(at, end - at);
        if (!is_token || word.empty()) continue;
        if (word.size() == kTokenDigits) {
            put(word, name_of(word));
        } else if (is_cut && end == text.size()) {
            put(word, "***");
        }
    }
    return result.append(text.substr(copied));
}

} // namespace soapwrapper::messages
