#include "tests/kit/clock.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <utility>

namespace kit
{
namespace
{

std::atomic<Clock*> g_clock = nullptr;

} // namespace

Clock::Clock()
{
    if (g_clock.exchange(this)) std::abort();
}

Clock::~Clock()
{
    g_clock = nullptr;
}

std::vector<unsigned int> Clock::sleeps() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return sleeps_;
}

void Clock::set_time(std::int64_t seconds)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    time_ = seconds;
}

void Clock::interrupt(unsigned int seconds_left)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    interrupted_with_ = seconds_left;
}

void Clock::on_sleep(std::function<void(unsigned int)> action)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    action_ = std::move(action);
}

unsigned int Clock::sleep(unsigned int seconds)
{
    std::function<void(unsigned int)> action;
    unsigned int left = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        sleeps_.push_back(seconds);
        left = std::exchange(interrupted_with_, 0);
        if (time_) *time_ += seconds - left;
        action = action_;
    }
    if (action) action(seconds);
    return left;
}

std::optional<std::int64_t> Clock::time() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return time_;
}

} // namespace kit

extern "C" __attribute__((visibility("default"))) unsigned int sleep(unsigned int seconds)
{
    kit::Clock* clock = kit::g_clock;
    if (!clock) {
        std::cerr << "a sleep of " << seconds << " seconds without a clock\n";
        std::abort();
    }
    return clock->sleep(seconds);
}

extern "C" __attribute__((visibility("default"))) time_t time(time_t* destination) noexcept
{
    const kit::Clock* clock = kit::g_clock;
    timespec real{};
    clock_gettime(CLOCK_REALTIME, &real);
    const time_t now = clock ? clock->time().value_or(real.tv_sec) : real.tv_sec;
    if (destination) *destination = now;
    return now;
}
