// A body of which the client gets one piece after the other, or only a part.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_PARTED_BODY_H
#define SOAPWRAPPER_SIMULATOR_FRONT_PARTED_BODY_H

#include "simulator/front/limits.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

class PartedBody
{
  public:
    // Half of it, at once.
    static PartedBody cut(std::string text);
    // All of it, the first piece at the begin, the last one after that time.
    static PartedBody dribbled(std::string text, std::chrono::milliseconds time, Clock::time_point begin);

    // What the head tells.
    std::size_t size() const { return text_.size(); }
    // Nothing from that position on is sent.
    bool ends_at(std::size_t position) const { return position >= end_; }
    // Ahead of the end: what may be sent from that position on, or nothing as long as its piece has to wait.
    std::string_view due(std::size_t position, Clock::time_point now) const;
    // When there is something.
    Clock::time_point due_time(std::size_t position) const;

  private:
    PartedBody(std::string text, std::size_t end, std::size_t pieces, std::chrono::milliseconds time,
               Clock::time_point begin);
    std::size_t piece_at(std::size_t position) const;

    std::string text_;
    std::size_t end_;
    std::size_t pieces_;
    std::chrono::milliseconds time_;
    Clock::time_point begin_;
};

} // namespace soapwrapper::simulator

#endif
