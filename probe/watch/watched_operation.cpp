#include "probe/watch/watched_operation.h"

#include "plugin/host/status.h"
#include "probe/operations/operation.h"
#include "probe/operations/operation_answer.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/readable.h"
#include "probe/output/records.h"
#include "probe/output/status_text.h"
#include "probe/watch/bar.h"
#include "probe/watch/watched.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

const WatchedColumns WatchedOperation::kColumns = {
    {"OPERATION", "PROGRESS", "TRANSFERRED", "ELAPSED", "RATE", "STATE"}, {2, 3, 4}};

void WatchedOperation::ask()
{
    const OperationAnswer answer(probe_, *operation_);
    take_bytes(answer.bytes());
    least_pause_ = answer.interval();
    if (answer.is_running()) return;
    ended_at_ = Clock::now();
    state_ = State::kEnded;
    if (answer.status() == STS_EOK) return;
    const StatusText text = status_text(answer.status());
    fail(Problem(ExitCode::kOperation, text.name, answer.status(), text.meaning,
                 operation_->title() + " has failed"));
}

// Nobody can tell any more how it stands, unless the service is only out of reach.
bool WatchedOperation::survives(const Problem& problem)
{
    if (!is_passing(problem)) fail(problem);
    return true;
}

void WatchedOperation::fail(const Problem& problem)
{
    ended_at_ = Clock::now();
    state_ = State::kFailed;
    failure_ = problem;
}

std::chrono::seconds WatchedOperation::elapsed() const
{
    return std::chrono::duration_cast<std::chrono::seconds>((ended() ? ended_at_ : Clock::now()) - begun_);
}

std::string WatchedOperation::state_text() const
{
    if (failure_) {
        const std::string number = failure_->status() ? "(" + std::to_string(*failure_->status()) + ")" : "";
        return "failed, " + failure_->name() + number + ": " + failure_->meaning();
    }
    if (ended()) return "ended";
    return trouble().empty() ? "running" : trouble() + "; it is asked again";
}

std::vector<std::string> WatchedOperation::cells(const Output& output, Form form, std::size_t step) const
{
    std::vector<std::string> cells = {name_};
    if (form == Form::kTerminal) cells.push_back(ended() ? (failure_ ? "" : full_bar()) : moving_mark(step));
    cells.push_back(was_answered() ? output.size(progress().last) : "");
    cells.push_back(output.format() == Format::kSeparated ? std::to_string(elapsed().count())
                                                          : readable_time(elapsed()));
    cells.push_back(rate_text(output, progress().rate));
    cells.push_back(state_text());
    return cells;
}

Value WatchedOperation::value() const
{
    constexpr const char* kStates[] = {"running", "ended", "failed"};
    Value value;
    operation_->tell(value);
    value["state"] = kStates[static_cast<int>(state_)];
    if (was_answered()) value["bytes_transferred"] = progress().last;
    value["seconds"] = elapsed().count();
    value["rate"] = progress().rate ? Value(*progress().rate) : Value();
    if (failure_ && failure_->status()) value["status"] = *failure_->status();
    tell_trouble(value);
    return value;
}

} // namespace soapwrapper::probe
