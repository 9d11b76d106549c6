#ifndef SOAPWRAPPER_MESSAGES_TOKEN_NAMES_H
#define SOAPWRAPPER_MESSAGES_TOKEN_NAMES_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace soapwrapper::messages
{

// What is shown for tokens: the same for the same one. Any thread may call.
class TokenNames
{
  public:
    static constexpr std::size_t kMostTokens = 20000;
    static constexpr std::size_t kLongestToken = 64;

    // Such as "[token 3]". One that is too long has no name of its own; of more than kMostTokens, the oldest
    // are forgotten and get another name.
    std::string name_of(std::string_view token);
    // The text with the names of all words in it that are written like a token of the service. Of a text that
    // `is_cut`, what may be a part of one at its end is left out.
    std::string blotted(std::string_view text, bool is_cut);

  private:
    std::mutex mutex_;
    std::uint64_t last_ = 0;
    std::map<std::string, std::uint64_t, std::less<>> numbers_;
    std::deque<std::string> in_order_;
};

} // namespace soapwrapper::messages

#endif
