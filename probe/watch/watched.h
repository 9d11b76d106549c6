// One thing that is watched, and what all of them have in common.
#ifndef SOAPWRAPPER_PROBE_WATCH_WATCHED_H
#define SOAPWRAPPER_PROBE_WATCH_WATCHED_H

#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

// Where a row is shown.
enum class Form { kTerminal, kLine };

struct WatchedColumns {
    std::vector<std::string> headings;
    std::vector<std::size_t> numbers; // the columns that hold them
};

class Watched
{
  public:
    using Clock = std::chrono::steady_clock;

    virtual ~Watched() = default;
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;

    // Asks the service how it stands. What is told as a part of that is taken note of; what leaves nothing to
    // watch is thrown.
    void renew(Clock::time_point now);

    // There is nothing more to ask.
    virtual bool ended() const { return false; }

    // Ended, and not well.
    virtual std::optional<Problem> failure() const { return std::nullopt; }

    // The service wants to be left alone for so long.
    virtual std::chrono::milliseconds least_pause() const { return std::chrono::milliseconds(0); }

    // The cells of its row. `step` grows with each drawing.
    virtual std::vector<std::string> cells(const Output& output, Form form, std::size_t step) const = 0;

    // The same for the JSON document.
    virtual Value value() const = 0;

  protected:
    Watched() = default;

    // Throws what the service answers instead.
    virtual void ask() = 0;

    // True: the watching goes on all the same, and the problem is shown until it has passed.
    virtual bool survives(const Problem& problem) = 0;

    // The service couldn't be asked, this time.
    static bool is_passing(const Problem& problem);

    // The problem of the last question, as people read it; empty: there was none.
    std::string trouble() const;
    void tell_trouble(Value& value) const;

    // Bytes that grow with time.
    struct Progress {
        std::int64_t first = 0;
        std::int64_t last = 0;
        Clock::time_point begun;
        Clock::time_point renewed;
        std::optional<std::int64_t> rate; // bytes per second between the last two answers

        std::int64_t change() const;
    };
    void take_bytes(std::int64_t bytes);
    bool was_answered() const { return progress_.has_value(); }
    Progress progress() const { return progress_.value_or(Progress()); }
    // With its sign.
    static std::string change_text(const Output& output, std::int64_t change);
    static std::string rate_text(const Output& output, const std::optional<std::int64_t>& rate);

  private:
    Clock::time_point now_;
    std::optional<Progress> progress_;
    std::optional<Problem> trouble_;
};

// The difference, as far as a number can tell it.
std::int64_t difference(std::int64_t larger, std::int64_t smaller);

} // namespace soapwrapper::probe

#endif
