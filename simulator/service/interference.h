// Troubles on demand: which are set, and which a request meets.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_INTERFERENCE_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_INTERFERENCE_H

#include "simulator/service/trouble.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// One that is set. It is gone as soon as it has been met as often as its count says.
struct SetTrouble {
    std::uint64_t number = 0; // never given twice
    Trouble trouble;
    std::optional<unsigned> left; // without one, for good
    std::uint64_t hits = 0;
};

// What a request met.
struct Met {
    bool was_delayed = false;
    std::optional<Trouble> trouble; // never a delay
};

// Any thread may call.
class Interference
{
  public:
    static constexpr std::size_t kMostTroubles = 1000;

    // Several troubles for one operation come one after the other, in their order.
    explicit Interference(std::vector<Trouble> troubles = {});
    Interference(const Interference&) = delete;
    Interference& operator=(const Interference&) = delete;

    std::vector<SetTrouble> list() const; // in their order
    // Behind all others. Returns its number; throws a std::length_error if there are too many.
    std::uint64_t add(Trouble trouble);
    // False if there is none of that number. What waits because of it goes on at once.
    bool remove(std::uint64_t number);
    void clear();
    // Sets those again that were given at the start, and no others.
    void reset();

    // Waits out the operation's first delay, if it has one, and takes its first other trouble, if there is
    // one.
    Met meet(const std::string& operation);

    // Ends every wait, now and to come.
    void stop();

  private:
    struct Wait {
        std::uint64_t number;
        bool is_over = false;
    };

    std::uint64_t append(Trouble trouble);
    void end_waits();
    bool wait(std::unique_lock<std::mutex>& lock, const std::string& operation);
    std::list<SetTrouble>::iterator first(const std::string& operation, bool is_delay);
    void hit(std::list<SetTrouble>::iterator trouble);

    const std::vector<Trouble> at_start_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    bool stopping_ = false;
    std::uint64_t last_number_ = 0;
    std::list<SetTrouble> troubles_;
    std::list<Wait> waits_;
    std::mt19937_64 random_{std::random_device()()};
};

// How long this delay is this time.
std::chrono::milliseconds drawn_delay(const Trouble& delay, std::mt19937_64& random);

} // namespace soapwrapper::simulator

#endif
