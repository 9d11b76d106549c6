#include "probe/check/nearest_key.h"

#include "probe/output/nearest.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr std::size_t kMostChanges = 2;
constexpr std::size_t kLongestWord = 64; // what is longer is no key

char small_letter(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

} // namespace

std::string plain_letters(std::string_view word)
{
    std::string letters;
    for (const char byte : word) {
        const char letter = small_letter(byte);
        if ((letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9')) letters += letter;
    }
    return letters;
}

std::string nearest_key(std::string_view written, const std::vector<std::string>& keys)
{
    const std::string letters = plain_letters(written);
    if (letters.size() > kLongestWord) return {};
    std::string nearest;
    std::size_t fewest = kMostChanges + 1;
    for (const std::string& key : keys) {
        const std::size_t changes = changes_between(letters, plain_letters(key));
        if (changes >= fewest) continue;
        fewest = changes;
        nearest = key;
    }
    return nearest;
}

} // namespace soapwrapper::probe
