#include "probe/watch/bar.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace soapwrapper::probe
{
namespace
{

constexpr std::size_t kWidth = 10;
constexpr char kMark[] = "<=>";

// The numbers are a service's: any may come.
std::size_t share(std::int64_t part, std::int64_t whole, std::size_t of)
{
    const double exact = static_cast<double>(part) / static_cast<double>(whole) * static_cast<double>(of);
    return static_cast<std::size_t>(std::clamp(exact, 0.0, static_cast<double>(of)));
}

std::string filled(std::size_t count)
{
    return "[" + std::string(count, '#') + std::string(kWidth - count, '.') + "]";
}

} // namespace

std::string percentage(std::int64_t part, std::int64_t whole)
{
    return whole <= 0 ? "" : std::to_string(share(part, whole, 100)) + "%";
}

std::string bar(std::int64_t part, std::int64_t whole)
{
    if (whole <= 0) return {};
    const std::string percent = percentage(part, whole);
    return filled(share(part, whole, kWidth)) + std::string(5 - percent.size(), ' ') + percent;
}

std::string moving_mark(std::size_t step)
{
    constexpr std::size_t kPlaces = kWidth - (sizeof kMark - 1);
    const std::size_t place = step % (2 * kPlaces);
    std::string text = filled(0);
    return text.replace(1 + std::min(place, 2 * kPlaces - place), sizeof kMark - 1, kMark);
}

std::string full_bar()
{
    return filled(kWidth);
}

} // namespace soapwrapper::probe
