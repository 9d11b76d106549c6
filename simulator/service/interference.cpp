#include "simulator/service/interference.h"

#include "simulator/service/trouble.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <list>
#include <mutex>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

Interference::Interference(std::vector<Trouble> troubles) : at_start_(std::move(troubles))
{
    for (const Trouble& trouble : at_start_) append(trouble);
}

std::vector<SetTrouble> Interference::list() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return {troubles_.begin(), troubles_.end()};
}

std::uint64_t Interference::add(Trouble trouble)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return append(std::move(trouble));
}

bool Interference::remove(std::uint64_t number)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    bool is_there = false;
    for (auto each = troubles_.begin(); each != troubles_.end();) {
        const bool is_meant = each->number == number;
        is_there = is_there || is_meant;
        each = is_meant ? troubles_.erase(each) : std::next(each);
    }
    // A delay that has been met often enough isn't listed any more, though somebody may still wait.
    for (Wait& wait : waits_) {
        if (wait.number == number) wait.is_over = is_there = true;
    }
    changed_.notify_all();
    return is_there;
}

void Interference::clear()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    troubles_.clear();
    end_waits();
}

void Interference::reset()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    troubles_.clear();
    end_waits();
    for (const Trouble& trouble : at_start_) append(trouble);
}

Met Interference::meet(const std::string& operation)
{
    std::unique_lock<std::mutex> lock(mutex_);
    Met met;
    met.was_delayed = wait(lock, operation);
    const auto found = first(operation, false);
    if (found != troubles_.end()) {
        met.trouble = found->trouble;
        hit(found);
    }
    return met;
}

void Interference::stop()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    stopping_ = true;
    changed_.notify_all();
}

std::uint64_t Interference::append(Trouble trouble)
{
    if (troubles_.size() >= kMostTroubles) {
        throw std::length_error("there are " + std::to_string(kMostTroubles) + " troubles already");
    }
    const std::optional<unsigned> left = trouble.count;
    troubles_.push_back({++last_number_, std::move(trouble), left, 0});
    return last_number_;
}

void Interference::end_waits()
{
    for (Wait& wait : waits_) wait.is_over = true;
    changed_.notify_all();
}

// False if the operation has no delay.
bool Interference::wait(std::unique_lock<std::mutex>& lock, const std::string& operation)
{
    const auto delay = first(operation, true);
    if (delay == troubles_.end()) return false;
    const auto time = drawn_delay(delay->trouble, random_);
    const auto own = waits_.insert(waits_.end(), {delay->number, false});
    hit(delay);
    changed_.wait_for(lock, time, [&] { return stopping_ || own->is_over; });
    waits_.erase(own);
    return true;
}

std::list<SetTrouble>::iterator Interference::first(const std::string& operation, bool is_delay)
{
    return std::find_if(troubles_.begin(), troubles_.end(), [&](const SetTrouble& each) {
        return (each.trouble.kind == TroubleKind::kDelay) == is_delay && each.trouble.operation == operation;
    });
}

void Interference::hit(std::list<SetTrouble>::iterator trouble)
{
    ++trouble->hits;
    if (trouble->left && --*trouble->left == 0) troubles_.erase(trouble);
}

std::chrono::milliseconds drawn_delay(const Trouble& delay, std::mt19937_64& random)
{
    if (delay.sigma <= 0 || delay.time.count() <= 0) return delay.time;
    const double median = static_cast<double>(delay.time.count());
    const double drawn = std::lognormal_distribution<double>(std::log(median), delay.sigma)(random);
    const double longest = static_cast<double>(kLongestTrouble.count());
    return std::chrono::milliseconds(static_cast<std::chrono::milliseconds::rep>(std::min(drawn, longest)));
}

} // namespace soapwrapper::simulator
