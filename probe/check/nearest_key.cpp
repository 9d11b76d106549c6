#include "probe/check/nearest_key.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
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

// How many letters have to be put in, taken out or replaced.
std::size_t changes_between(const std::string& left, const std::string& right)
{
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < left.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < right.size(); ++j) {
            const std::size_t replaced = diagonal + (left[i] == right[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
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
