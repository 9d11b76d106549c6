// The time that passes in the simulated storage.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_SIMULATED_TIME_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_SIMULATED_TIME_H

#include <chrono>
#include <cstdint>

namespace soapwrapper::simulator
{

enum class TimeKind {
    kClock,   // the machine's
    kRequests // each request comes a second after the last one, so that what happens when can be foretold
};

// Since the start.
using Instant = std::chrono::milliseconds;

// Not guarded: its owner holds a lock.
class SimulatedTime
{
  public:
    explicit SimulatedTime(TimeKind kind) : kind_(kind) {}

    void request_arrived() { ++requests_; }
    Instant now() const;

    // In seconds, for what clients read: since 1970, or since the start where each request counts one.
    std::int64_t date() const;

  private:
    TimeKind kind_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::int64_t requests_ = 0;
};

} // namespace soapwrapper::simulator

#endif
