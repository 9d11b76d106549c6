#include "probe/output/nearest.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

// A longer text is no slip of the finger, and the comparison would take long.
constexpr std::size_t kLongestTyped = 64;

bool begins_with(const std::string& text, const std::string& beginning)
{
    return beginning.size() > 1 && text.compare(0, beginning.size(), beginning) == 0;
}

} // namespace

std::size_t changes_between(const std::string& one, const std::string& other)
{
    std::vector<std::size_t> before;
    std::vector<std::size_t> last;
    std::vector<std::size_t> row(other.size() + 1);
    for (std::size_t j = 0; j <= other.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= one.size(); ++i) {
        before = std::exchange(last, row);
        row[0] = i;
        for (std::size_t j = 1; j <= other.size(); ++j) {
            const std::size_t change = one[i - 1] == other[j - 1] ? 0 : 1;
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + change});
            const bool swapped = i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1];
            if (swapped) row[j] = std::min(row[j], before[j - 2] + 1);
        }
    }
    return row.back();
}

std::vector<std::string> nearest(const std::string& typed, const std::vector<std::string>& known)
{
    std::vector<std::string> found;
    if (typed.size() > kLongestTyped) return found;
    std::size_t least = std::max<std::size_t>(1, typed.size() / 3);
    for (const std::string& word : known) {
        const std::size_t away = begins_with(word, typed) ? 1 : changes_between(typed, word);
        if (away > least) continue;
        if (away < least) found.clear();
        least = away;
        found.push_back(word);
    }
    return found;
}

} // namespace soapwrapper::probe
