#include "tests/kit/clock.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <iostream>

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

void Clock::on_sleep(std::function<void(unsigned int)> action)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    action_ = std::move(action);
}

void Clock::sleep(unsigned int seconds)
{
    std::function<void(unsigned int)> action;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        sleeps_.push_back(seconds);
        if (time_) *time_ += seconds;
        action = action_;
    }
    if (action) action(seconds);
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
    clock->sleep(seconds);
    return 0;
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
