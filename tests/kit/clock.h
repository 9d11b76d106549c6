// The C library's sleep and time, as this test program defines them in its own place: a library that is
// loaded by path is bound to these. Nothing here waits.
#ifndef SOAPWRAPPER_TESTS_KIT_CLOCK_H
#define SOAPWRAPPER_TESTS_KIT_CLOCK_H

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace kit
{

// For as long as the object lives, a sleep ends at once and is kept. A sleep with no such object about is a
// mistake of the test and ends the program. One at a time.
class Clock
{
  public:
    Clock();
    ~Clock();
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;

    // What was asked for, in seconds, in order.
    std::vector<unsigned int> sleeps() const;

    // Stops the time at this number of seconds. From then on only a sleep moves it, by its length.
    void set_time(std::int64_t seconds);

    // The next sleep is interrupted by a signal with this many seconds left.
    void interrupt(unsigned int seconds_left);

    // Called in each sleep, on the sleeping thread, with its length.
    void on_sleep(std::function<void(unsigned int)> action);

    // What the C library's functions come to.
    unsigned int sleep(unsigned int seconds);
    std::optional<std::int64_t> time() const;

  private:
    mutable std::mutex mutex_;
    std::vector<unsigned int> sleeps_;
    std::optional<std::int64_t> time_;
    unsigned int interrupted_with_ = 0;
    std::function<void(unsigned int)> action_;
};

} // namespace kit

#endif
