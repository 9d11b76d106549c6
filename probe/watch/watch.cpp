#include "probe/watch/watch.h"

#include "probe/arguments/command_line.h"
#include "probe/library/interruption.h"
#include "probe/library/probe.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/readable.h"
#include "probe/output/records.h"
#include "probe/watch/screen.h"
#include "probe/watch/watched.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

using std::chrono::milliseconds;
using Clock = Watched::Clock;

constexpr milliseconds kRedrawing{1000};

std::string take_seconds(const std::string& text, milliseconds& time)
{
    constexpr double kMost = 1e6;
    double seconds = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
    if (read.ec != std::errc() || read.ptr != end || !(seconds > 0 && seconds <= kMost))
        return "a number of seconds above 0 is needed, such as 5 or 0.5";
    time = std::chrono::ceil<milliseconds>(std::chrono::duration<double>(seconds));
    return {};
}

class Watch
{
  public:
    Watch(const Probe& probe, const WatchOptions& options, const WatchedThings& watched)
        : probe_(probe), options_(options), watched_(watched),
          screen_(STDOUT_FILENO,
                  [&probe](int descriptor) { return probe.interruption.wait_for_room(descriptor); }),
          due_(watched.things.size()),
          on_screen_(probe.output.format() == Format::kAligned && screen_.usable() && !probe.session.prints())
    {
    }

    // True: it was ended by an interruption.
    bool run()
    {
        for (std::uint32_t renewed = 1;; ++renewed) {
            renew();
            if (renewed == options_.count || all_ended()) return false;
            if (pause()) return true;
        }
    }

    bool all_ended() const
    {
        return std::all_of(watched_.things.begin(), watched_.things.end(),
                           [](const auto& each) { return each->ended(); });
    }

  private:
    void renew()
    {
        std::vector<const Watched*> asked;
        std::vector<std::size_t> renewed;
        for (std::size_t i = 0; i < due_.size(); ++i) {
            Watched& each = *watched_.things[i];
            const Clock::time_point now = Clock::now();
            if (each.ended() || now < due_[i]) continue;
            each.renew(now);
            asked.push_back(&each);
            renewed.push_back(i);
        }
        // From one moment on, so that what was asked together is due together.
        const Clock::time_point now = Clock::now();
        for (const std::size_t i : renewed) {
            due_[i] = now + std::max(options_.interval, watched_.things[i]->least_pause());
        }
        if (on_screen_) {
            draw();
        } else if (probe_.output.format() == Format::kJson) {
            print_document(asked);
        } else {
            print_lines(asked);
        }
    }

    // Until the next question is due, or an interruption: the result says that it was one.
    bool pause()
    {
        Clock::time_point next = Clock::time_point::max();
        for (std::size_t i = 0; i < due_.size(); ++i) {
            if (!watched_.things[i]->ended()) next = std::min(next, due_[i]);
        }
        for (;;) {
            const auto left = std::chrono::ceil<milliseconds>(next - Clock::now());
            const milliseconds slice = on_screen_ ? std::min(left, kRedrawing) : left;
            if (probe_.interruption.pause(std::max(slice, milliseconds(0)))) return true;
            if (Clock::now() >= next) return false;
            if (on_screen_) draw();
        }
    }

    void draw()
    {
        std::ostringstream text;
        Output output(text, Format::kAligned, "", probe_.output.exact_sizes());
        Table table(watched_.columns.headings);
        for (const std::size_t column : watched_.columns.numbers) table.align_right(column);
        for (const auto& each : watched_.things) table.add(each->cells(output, Form::kTerminal, step_));
        output.print(table);
        output.flush();
        ++step_;
        const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begun_);
        std::vector<std::string> lines = {watched_.server + "  " + readable_time(elapsed) + "  Ctrl-C ends"};
        std::istringstream whole(text.str());
        for (std::string line; std::getline(whole, line);) lines.push_back(line);
        screen_.show(lines);
    }

    void print_lines(const std::vector<const Watched*>& asked)
    {
        Table table({});
        for (const Watched* each : asked) {
            std::vector<std::string> cells = each->cells(probe_.output, Form::kLine, 0);
            cells.insert(cells.begin(), utc_time(std::time(nullptr)));
            table.add(std::move(cells));
        }
        probe_.output.print(table);
        probe_.output.deliver();
    }

    void print_document(const std::vector<const Watched*>& asked)
    {
        Value document;
        document["time"] = utc_time(std::time(nullptr));
        document["server"] = watched_.server;
        Value& list = document[watched_.key] = Value::array();
        for (const Watched* each : asked) list.push_back(each->value());
        probe_.output.print_line(document);
        probe_.output.deliver();
    }

    const Probe& probe_;
    const WatchOptions& options_;
    const WatchedThings& watched_;
    Screen screen_;
    std::vector<Clock::time_point> due_; // when each is to be asked next
    const bool on_screen_;
    const Clock::time_point begun_ = Clock::now();
    std::size_t step_ = 0;
};

// A call that was cut for an interruption is one, too.
bool run_to_interruption(Watch& watch)
{
    try {
        return watch.run();
    } catch (const Problem& problem) {
        if (problem.code() != ExitCode::kInterrupted) throw;
        return true;
    }
}

} // namespace

void add_watch_options(const Command& command, WatchOptions& options)
{
    command
        .add_text_option(
            "--interval",
            [&options](const std::string& text) { return take_seconds(text, options.interval); },
            "Seconds between two questions; a service that wants to be left alone for longer is. Default: 2")
        .type_name("SECONDS");
    command.add_option("--count", options.count, "Ask so many times and end; without it until Ctrl-C")
        .type_name("N")
        .range(1, std::numeric_limits<std::uint32_t>::max());
}

void watch(const Probe& probe, const WatchOptions& options, const WatchedThings& watched)
{
    Watch watching(probe, options, watched);
    // Nothing else than a signal ends the watching of what has no end, so that it is good.
    if (run_to_interruption(watching) && !probe.interruption.take_as_good_end())
        throw probe.interruption.problem("the watching was ended");
    for (const auto& each : watched.things) {
        if (const auto failure = each->failure()) throw Problem(*failure);
    }
}

} // namespace soapwrapper::probe
