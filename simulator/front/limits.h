#ifndef SOAPWRAPPER_SIMULATOR_FRONT_LIMITS_H
#define SOAPWRAPPER_SIMULATOR_FRONT_LIMITS_H

#include <chrono>
#include <cstddef>

namespace soapwrapper::simulator
{

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMaxHead = 16 * 1024;
constexpr std::size_t kMaxBody = 1024 * 1024;
constexpr std::size_t kMaxRaw = 16 * 1024; // of an answer that is sent as it is

// What clients get of the simulator's time and room.
struct Limits {
    std::chrono::milliseconds for_request{
        30000};                                  // from the first byte of the handshake to the request's last
    std::chrono::milliseconds for_answer{30000}; // to take the answer, of a stream what there is at present
    std::chrono::milliseconds for_stop{5000};    // what a stop leaves to answers that are under way
    // With one more, the client that has kept its request waiting longest is dropped.
    std::size_t connections = 256;
};

} // namespace soapwrapper::simulator

#endif
