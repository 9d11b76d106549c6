#include "simulator/front/parted_body.h"

#include "simulator/front/limits.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

// Few enough bytes at a time to be seen as pieces, and pauses short enough to be no silence.
constexpr std::size_t kFewestPieces = 10;
constexpr std::chrono::milliseconds kLongestPause(100);

} // namespace

PartedBody::PartedBody(std::string text, std::size_t end, std::size_t pieces, std::chrono::milliseconds time,
                       Clock::time_point begin)
    : text_(std::move(text)), end_(end), pieces_(pieces), time_(time), begin_(begin)
{
}

PartedBody PartedBody::cut(std::string text)
{
    const std::size_t half = text.size() / 2;
    return {std::move(text), half, 1, std::chrono::milliseconds(0), Clock::time_point()};
}

PartedBody PartedBody::dribbled(std::string text, std::chrono::milliseconds time, Clock::time_point begin)
{
    const std::size_t size = text.size();
    const auto pauses = static_cast<std::size_t>(std::max<std::int64_t>(time / kLongestPause, 0));
    const std::size_t pieces = std::min(size, std::max(kFewestPieces, pauses + 1));
    return {std::move(text), size, pieces, time, begin};
}

std::string_view PartedBody::due(std::size_t position, Clock::time_point now) const
{
    if (now < due_time(position)) return {};
    const std::size_t end = std::min(end_, text_.size() * (piece_at(position) + 1) / pieces_);
    return std::string_view(text_).substr(position, end - position);
}

Clock::time_point PartedBody::due_time(std::size_t position) const
{
    if (pieces_ < 2) return begin_;
    return begin_ +
           time_ * static_cast<std::int64_t>(piece_at(position)) / static_cast<std::int64_t>(pieces_ - 1);
}

// Piece N begins at size * N / pieces, rounded down.
std::size_t PartedBody::piece_at(std::size_t position) const
{
    return ((position + 1) * pieces_ - 1) / text_.size();
}

} // namespace soapwrapper::simulator
