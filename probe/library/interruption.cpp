#include "probe/library/interruption.h"

#include "probe/library/signals.h"
#include "probe/output/problem.h"
#include "probe/output/progress_line.h"
#include "probe/output/readable.h"
#include "probe/output/text.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace soapwrapper::probe
{
namespace
{

using std::chrono::milliseconds;
using std::chrono::seconds;
using Clock = std::chrono::steady_clock;
using Time = Clock::time_point;

constexpr int kSigintsThatEnd = 3;

// For poll(): rounded up, so that the time is over behind it.
int wait_until(Time time)
{
    if (time == Time::max()) return -1;
    const milliseconds left = std::chrono::ceil<milliseconds>(time - Clock::now());
    return static_cast<int>(
        std::clamp<std::int64_t>(left.count(), 0, milliseconds(std::chrono::hours(1)).count()));
}

// "5 seconds", "0.2 seconds".
std::string readable_seconds(milliseconds time)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.10g", static_cast<double>(time.count()) / 1000);
    return text + std::string(time == seconds(1) ? " second" : " seconds");
}

} // namespace

Interruption::Interruption(const RunLimits& limits, LibraryNetwork network, ProgressLine& line, Time begin)
    : limits_(limits), network_(std::move(network)), line_(line),
      deadline_(limits.run ? begin + *limits.run : Time::max()), wake_(required(eventfd(0, EFD_CLOEXEC))),
      ending_seen_(required(eventfd(0, EFD_CLOEXEC))), watcher_([this] { watch(); })
{
}

Interruption::~Interruption()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        stops_ = true;
    }
    wake();
    watcher_.join();
}

bool Interruption::pause(milliseconds time)
{
    std::unique_lock<std::mutex> lock(mutex_);
    look();
    const Time end = Clock::now() + time;
    if (!to_end()) changed_.wait_until(lock, std::min(end, deadline_), [this] { return to_end(); });
    look();
    return to_end();
}

Problem Interruption::problem(const std::string& meaning, std::string detail)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return problem_now(meaning, std::move(detail));
}

Problem Interruption::problem_now(const std::string& meaning, std::string detail) const
{
    const char* const name = noted_ != 0 ? "interrupted" : "deadline";
    return Problem(ExitCode::kInterrupted, name, std::nullopt, meaning, std::move(detail));
}

bool Interruption::take_as_good_end()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    good_end_ = noted_ != 0;
    return good_end_;
}

std::optional<Problem> Interruption::unanswered()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!to_end() || good_end_) return std::nullopt;
    return problem_now("the command had come to its end already", {});
}

void Interruption::set_farewell(std::function<void(const Problem&)> farewell)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    farewell_ = std::move(farewell);
    look();
    if (to_end()) end_if_nothing_is_open();
}

bool Interruption::wait_for_room(int descriptor)
{
    pollfd watched[] = {{descriptor, POLLOUT, 0}, {ending_seen_.get(), POLLIN, 0}};
    while (watched[0].revents == 0 && watched[1].revents == 0) poll(watched, 2, -1);
    if (watched[0].revents != 0) return true;
    Time end;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        end = end_of_waiting_for_room();
    }
    while (watched[0].revents == 0 && Clock::now() < end) poll(watched, 1, wait_until(end));
    return watched[0].revents != 0;
}

// Behind an interruption.
Interruption::Time Interruption::end_of_waiting_for_room() const
{
    const Time end = std::min(noted_ != 0 ? noted_at_ : Time::max(), deadline_) + limits_.grace;
    const bool closes = running_ && running_->kind == CallKind::kCleanUp;
    // A trace is written while a call runs: the half of the time stays for the closing itself.
    return closes ? std::min(end, clean_up_end_ - limits_.clean_up / 2) : end;
}

Interruption::Work::Work(Interruption& interruption) : interruption_(interruption)
{
    const std::lock_guard<std::mutex> lock(interruption_.mutex_);
    ++interruption_.works_;
}

Interruption::Work::~Work()
{
    const std::lock_guard<std::mutex> lock(interruption_.mutex_);
    --interruption_.works_;
}

Interruption::Call::Call(Interruption& interruption, CallKind kind, AfterCut after_cut)
    : interruption_(interruption)
{
    interruption.begin_call(kind, after_cut);
}

Interruption::Call::~Call()
{
    interruption_.end_call();
}

std::optional<Problem> Interruption::Call::why_cut(const std::string& detail)
{
    return interruption_.why_cut(detail);
}

void Interruption::begin_call(CallKind kind, AfterCut after_cut)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    look();
    if (kind == CallKind::kWork) {
        if (to_end()) throw Problem(problem_now("the work was not done to its end", {}));
        clean_up_end_ = Time::max();
        cut_short_ = false;
    } else if (to_end() || cut_short_) {
        bound_clean_up();
    }
    const Time now = Clock::now();
    if (is_cut_ && now < clean_up_end_) {
        network_.allow();
        is_cut_ = false;
    }
    running_ = Running{kind, now, now + limits_.unshown};
    running_->after_cut = after_cut;
    if (is_cut_) note_cut({clean_up_end_, limits_.clean_up}); // there is no time left: it fails at once
    const Time due = std::min(end_of_call().time, line_.visible() ? running_->line_due : Time::max());
    if (due >= next_look_) return;
    next_look_ = due;
    wake();
}

void Interruption::end_call()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    look(); // what came during the call isn't taken for something that comes while nothing is open
    running_.reset();
    line_.clear_waiting();
}

std::optional<Problem> Interruption::why_cut(const std::string& detail)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!running_ || !running_->cut_at) return std::nullopt;
    return cut_problem(detail);
}

Problem Interruption::cut_problem(const std::string& detail) const
{
    const std::string whom = running_->where.empty() ? "" : ": " + running_->where;
    const std::string meaning =
        "the service did not answer within " + readable_seconds(running_->cut_at->length) + whom;
    if (running_->kind == CallKind::kWork && to_end()) return problem_now(meaning, detail);
    return Problem(ExitCode::kOperation, "timeout", std::nullopt, meaning, detail);
}

Interruption::Limit Interruption::end_of_call() const
{
    Limit end;
    const auto consider = [&end](Time time, milliseconds limit) {
        if (time < end.time) end = {time, limit};
    };
    if (limits_.call) consider(running_->begun + *limits_.call, *limits_.call);
    if (running_->kind == CallKind::kCleanUp) {
        // Half of the time is for what such an entry closes itself.
        const milliseconds rest = closes_yet() ? limits_.clean_up / 2 : milliseconds(0);
        consider(clean_up_end_ - rest, limits_.clean_up - rest);
    } else {
        if (limits_.run) consider(deadline_, *limits_.run);
        if (noted_ != 0) consider(noted_at_ + limits_.grace, limits_.grace);
    }
    return end;
}

void Interruption::cut_call(const Limit& limit)
{
    running_->where = where();
    note_cut(limit);
    if (closes_yet()) {
        network_.end();
    } else {
        network_.cut();
        is_cut_ = true;
    }
}

void Interruption::note_cut(const Limit& limit)
{
    cut_short_ = true;
    running_->cut_at = limit;
    running_->given_up = Clock::now() + (closes_yet() ? limits_.clean_up : limits_.cut);
    if (closes_yet()) running_->given_up = std::min(running_->given_up, clean_up_end_);
}

void Interruption::bound_clean_up()
{
    if (clean_up_end_ == Time::max()) clean_up_end_ = Clock::now() + limits_.clean_up;
}

// True: a signal or the end of the time was seen that nobody had seen before.
bool Interruption::look()
{
    bool seen = false;
    while (const auto signal = signals_.take()) {
        take(*signal);
        seen = true;
    }
    if (!deadline_seen_ && Clock::now() >= deadline_) {
        deadline_seen_ = seen = true;
        tell_ending();
    }
    return seen;
}

void Interruption::take(int signal)
{
    if (signal == SIGINT && ++sigints_ == kSigintsThatEnd) EndingSignals::end_by(signal);
    if (noted_ != 0) return;
    noted_ = signal;
    noted_at_ = Clock::now();
    tell_ending();
}

void Interruption::tell_ending()
{
    eventfd_write(ending_seen_.get(), 1);
    if (running_ && running_->kind == CallKind::kCleanUp) bound_clean_up();
    changed_.notify_all();
}

void Interruption::wake() const
{
    eventfd_write(wake_.get(), 1);
}

void Interruption::watch()
{
    pollfd watched[] = {{signals_.descriptor(), POLLIN, 0}, {wake_.get(), POLLIN, 0}};
    Time next = deadline_;
    for (;;) {
        poll(watched, 2, wait_until(next));
        const std::lock_guard<std::mutex> lock(mutex_);
        if (stops_) return;
        eventfd_t count = 0;
        if ((watched[1].revents & POLLIN) != 0) eventfd_read(wake_.get(), &count);
        if (look()) end_if_nothing_is_open();
        next = std::min(deadline_seen_ ? Time::max() : deadline_, running_ ? act_on_call() : Time::max());
        next_look_ = next;
    }
}

// The result: when to look at the call again.
Interruption::Time Interruption::act_on_call()
{
    const Time now = Clock::now();
    Time next = running_->given_up;
    if (!running_->cut_at) {
        const Limit end = end_of_call();
        if (now >= end.time) cut_call(end);
        next = running_->cut_at ? running_->given_up : end.time;
    } else if (now >= running_->given_up) {
        give_up_call();
        next = running_->given_up;
    }
    if (!line_.visible()) return next;
    if (now >= running_->line_due) show_waiting(now);
    return std::min(next, running_->line_due);
}

// A call that was cut has not ended.
void Interruption::give_up_call()
{
    if (is_cut_) {
        end_process(cut_problem("the call could not be ended, and what is open at the service stays open"));
    }
    network_.cut();
    is_cut_ = true;
    running_->given_up = Clock::now() + limits_.cut;
}

// A name may come from a configuration or a service.
std::string Interruption::where() const
{
    return clean_line(network_.where());
}

void Interruption::show_waiting(Time now)
{
    const std::string whom = where();
    const auto time = std::chrono::floor<seconds>(now - running_->begun);
    running_->line_due = running_->begun + time + seconds(1);
    line_.show_waiting("waiting for " + (whom.empty() ? "the service" : whom) + ", " + readable_time(time) +
                       (to_end() ? ", ending" : ""));
}

// Without a farewell nobody could be told: it is just being set up, or all is said.
void Interruption::end_if_nothing_is_open() const
{
    if (works_ == 0 && !running_ && farewell_)
        end_process(problem_now("nothing was open at the service", {}));
}

void Interruption::end_process(const Problem& problem) const
{
    if (farewell_) farewell_(problem);
    _exit(static_cast<int>(problem.code()));
}

} // namespace soapwrapper::probe
