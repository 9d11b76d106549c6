#include "probe/watch/watched.h"

#include "plugin/host/status.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace soapwrapper::probe
{
namespace
{

std::int64_t rate_of(std::int64_t change, std::chrono::duration<double> time)
{
    // A service's numbers may be of any size.
    constexpr double kMost = 9.2e18;
    return static_cast<std::int64_t>(std::clamp(static_cast<double>(change) / time.count(), -kMost, kMost));
}

} // namespace

std::int64_t difference(std::int64_t larger, std::int64_t smaller)
{
    std::int64_t result = 0;
    if (!__builtin_sub_overflow(larger, smaller, &result)) return result;
    return larger < smaller ? std::numeric_limits<std::int64_t>::min()
                            : std::numeric_limits<std::int64_t>::max();
}

std::int64_t Watched::Progress::change() const
{
    return difference(last, first);
}

void Watched::renew(Clock::time_point now)
{
    now_ = now;
    try {
        ask();
        trouble_.reset();
    } catch (const Problem& problem) {
        if (problem.code() != ExitCode::kOperation || !survives(problem)) throw;
        trouble_ = problem;
    }
}

bool Watched::is_passing(const Problem& problem)
{
    const auto status = problem.status();
    return status == STS_ESOAPERROR || status == STS_EBUSY || status == STS_ETIMEDOUT ||
           problem.name() == "timeout";
}

std::string Watched::trouble() const
{
    return trouble_ ? trouble_->name() + ": " + trouble_->meaning() : std::string();
}

void Watched::tell_trouble(Value& value) const
{
    if (!trouble_) return;
    Value& error = value["error"];
    error["name"] = trouble_->name();
    error["status"] = trouble_->status() ? Value(*trouble_->status()) : Value();
    error["meaning"] = trouble_->meaning();
}

void Watched::take_bytes(std::int64_t bytes)
{
    if (!progress_) {
        progress_ = Progress{bytes, bytes, now_, now_, std::nullopt};
        return;
    }
    Progress& progress = *progress_;
    if (now_ > progress.renewed)
        progress.rate = rate_of(difference(bytes, progress.last), now_ - progress.renewed);
    progress.last = bytes;
    progress.renewed = now_;
}

std::string Watched::change_text(const Output& output, std::int64_t change)
{
    const bool has_sign = change < 0 && change != std::numeric_limits<std::int64_t>::min();
    return has_sign ? "-" + output.size(-change) : output.size(change);
}

std::string Watched::rate_text(const Output& output, const std::optional<std::int64_t>& rate)
{
    return rate ? change_text(output, *rate) + (output.format() == Format::kSeparated ? "" : "/s")
                : std::string();
}

} // namespace soapwrapper::probe
