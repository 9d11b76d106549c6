#include "probe/lists/change_reader.h"

#include "plugin/host/handles.h"
#include "plugin/host/status.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/list_reader.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/readable.h"
#include "probe/output/records.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

using std::chrono::milliseconds;

constexpr int kBusyWithoutPause = 3; // as often a busy source is asked again at once
constexpr milliseconds kFirstPause{10};
constexpr milliseconds kLongestPause{1000};
constexpr milliseconds kShowAgain{200};

// Filter paths as the library wants them: each in a row of its own, and never a null array.
std::vector<char> rows_of(const std::vector<std::string>& filters)
{
    std::vector<char> rows((filters.size() + 1) * kFilterSize);
    for (std::size_t i = 0; i < filters.size(); ++i) {
        filters[i].copy(rows.data() + i * kFilterSize, kFilterSize - 1);
    }
    return rows;
}

} // namespace

ChangeReader::ChangeReader(const Probe& probe, const ReadingOptions& options, stsp_change_list_t* list)
    : probe_(probe), options_(options.list), list_(list),
      filter_count_(static_cast<std::uint32_t>(options.filters.size())),
      filter_rows_(rows_of(options.filters)), printer_(probe.output, options.escapes), line_(probe.line)
{
}

ListEnd ChangeReader::read()
{
    try {
        return read_list(
            probe_, options_, EntryRoom(*entry_), [this] { return next(); }, [this] { take(); });
    } catch (const Problem& problem) {
        return {Extent::kIncomplete, problem};
    }
}

void ChangeReader::finish(const char* route, Extent extent)
{
    line_.clear();
    const double seconds = elapsed();
    if (probe_.output.format() == Format::kJson) {
        auto& document = probe_.output.document();
        document["route"] = route;
        tell_extent(document, extent);
        document["entries"] = printer_.entries();
        document["bytes"] = printer_.bytes();
        document["seconds"] = std::round(seconds * 1000) / 1000;
    } else {
        if (!probe_.output.flush()) return; // which is told at the end
        std::cerr << state() << (extent == Extent::kIncomplete ? ", incomplete" : "") << std::endl;
    }
}

std::string ChangeReader::state() const
{
    const double seconds = elapsed();
    const double rate = seconds > 0 ? static_cast<double>(printer_.entries()) / seconds : 0;
    return std::to_string(printer_.entries()) + " entries, " +
           amount_of_bytes(printer_.bytes(), probe_.output.exact_sizes()) + ", " +
           readable_time(std::chrono::seconds(static_cast<std::int64_t>(seconds))) + ", " +
           std::to_string(static_cast<std::int64_t>(rate)) + " entries/s";
}

// A source that is busy is asked again.
int ChangeReader::next()
{
    milliseconds pause = kFirstPause;
    for (int busy = 0;; ++busy) {
        const int status =
            call(probe_, slot::stspi_list_file, list_, filter_count_, filter_rows_.data(), entry_.get());
        if (status != STS_EBUSY) return status;
        if (probe_.interruption.requested()) throw Problem(not_to_its_end(probe_));
        // The library itself waits at the next call for as long as the service asks.
        if (busy < kBusyWithoutPause || asks_for_a_pause()) continue;
        show_state();
        probe_.interruption.pause(pause);
        pause = std::min(2 * pause, kLongestPause);
    }
}

bool ChangeReader::asks_for_a_pause() const
{
    const std::string said = probe_.session.last_record("stspi_list_file: SOAP return code");
    const std::size_t equals = said.rfind("= ");
    return equals != std::string::npos && std::atoi(said.c_str() + equals + 2) > 0;
}

void ChangeReader::take()
{
    printer_.print(*entry_);
    if (Clock::now() - shown_ < kShowAgain) return;
    probe_.output.deliver();
    show_state();
}

// Not among lines of the log.
void ChangeReader::show_state()
{
    shown_ = Clock::now();
    if (line_.visible() && !probe_.session.prints()) line_.show(state());
}

} // namespace soapwrapper::probe
