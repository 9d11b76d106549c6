#include "probe/operations/operation_run.h"

#include "plugin/host/async_records.h"
#include "plugin/host/handles.h"
#include "plugin/host/status.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/library/interruption.h"
#include "probe/library/probe.h"
#include "probe/operations/operation.h"
#include "probe/operations/operation_answer.h"
#include "probe/output/problem.h"
#include "probe/output/progress_line.h"
#include "probe/output/readable.h"
#include "probe/output/records.h"
#include "probe/output/status_text.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace soapwrapper::probe
{
namespace
{

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

std::unique_ptr<Operation> start_with_id(const Probe& probe, const OperationStart& start)
{
    OperationWithId::check(probe);
    stsp_async_t* handle = nullptr;
    if (const auto problem = problem_of(probe, start.with_id(&handle))) throw Problem(*problem);
    return std::make_unique<OperationWithId>(probe, handle);
}

std::unique_ptr<Operation> start_with_name(const Probe& probe, stsp_server_t* server, const std::string& name,
                                           const OperationStart& start)
{
    OperationWithName::check(probe);
    auto operation = std::make_unique<OperationWithName>(probe, server, name);
    if (const auto problem = problem_of(probe, start.with_name(operation->name()))) throw Problem(*problem);
    return operation;
}

std::unique_ptr<Operation> start_operation(const Probe& probe, stsp_server_t* server,
                                           const OperationOptions& options, const OperationStart& start)
{
    if (probe.interruption.requested()) {
        throw probe.interruption.problem("the operation was not started");
    }
    try {
        return options.name ? start_with_name(probe, server, *options.name, start)
                            : start_with_id(probe, start);
    } catch (const Problem& problem) {
        if (problem.status() || problem.name() == "no handle") throw;
        throw with_more_detail(problem, "the operation may have been started");
    }
}

// Names the operation, so that the user can look again: it may well go on.
Problem unanswered(const Problem& problem, const Operation& operation)
{
    return with_more_detail(problem, operation.title() + " was not followed to its end");
}

void require_good_end(const OperationAnswer& answer, const Operation& operation)
{
    if (answer.status() == STS_EOK) return;
    const StatusText text = status_text(answer.status());
    throw Problem(ExitCode::kOperation, text.name, answer.status(), text.meaning,
                  operation.title() + " has failed");
}

// The progress of one operation, renewed every second.
class Progress
{
  public:
    Progress(const Probe& probe, const Operation& operation) : probe_(probe), title_(operation.title()) {}

    ~Progress() { probe_.line.clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // True: there was an interruption.
    bool pause(const OperationAnswer& answer)
    {
        const Clock::time_point end = Clock::now() + answer.interval();
        for (;;) {
            show(answer);
            const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
            const milliseconds slice = probe_.line.visible() ? std::min(left, milliseconds(1000)) : left;
            if (probe_.interruption.pause(std::max(slice, milliseconds(0)))) return true;
            if (Clock::now() >= end) return false;
        }
    }

  private:
    void show(const OperationAnswer& answer)
    {
        const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begin_);
        probe_.line.show(title_ + ": running, " +
                         amount_of_bytes(answer.bytes(), probe_.output.exact_sizes()) + ", " +
                         readable_time(elapsed));
    }

    const Probe& probe_;
    const std::string title_;
    const Clock::time_point begin_ = Clock::now();
};

// Nothing: there was an interruption.
std::unique_ptr<OperationAnswer> last_answer(const Probe& probe, const Operation& operation)
{
    Progress progress(probe, operation);
    while (!probe.interruption.requested()) {
        auto answer = std::make_unique<OperationAnswer>(probe, operation);
        if (!answer->is_running()) return answer;
        if (progress.pause(*answer)) break;
    }
    return nullptr;
}

} // namespace

void add_operation_options(const Command& command, OperationOptions& options)
{
    add_operation_name_option(command, options.name,
                              "Name for the operation to go under; without it the service makes up an id");
    command.add_flag("--no-wait", options.no_wait,
                     "Only start the operation and print its id or name, for the command operation");
}

Option add_operation_name_option(const Command& command, std::optional<std::string>& name,
                                 const std::string& description)
{
    const Option option = command.add_option("--name", name, description).type_name("OPNAME");
    limit_length(option, STS_ASYNC_NAME_SIZE);
    return option;
}

void run_operation(const Probe& probe, stsp_server_t* server, const OperationOptions& options,
                   const OperationStart& start)
{
    if (options.no_wait) {
        Properties started;
        start_operation(probe, server, options, start)->tell(started);
        started.show(probe.output);
        return;
    }
    follow_operation(probe, *start_operation(probe, server, options, start));
}

void follow_operation(const Probe& probe, const Operation& operation)
{
    operation.tell(probe.output.document());
    std::unique_ptr<OperationAnswer> answer;
    try {
        answer = last_answer(probe, operation);
    } catch (const Problem& problem) {
        if (!probe.interruption.requested()) throw unanswered(problem, operation);
    }
    if (!answer) throw Problem(operation.abandon());
    const bool interrupted = probe.interruption.requested();
    require_good_end(*answer, operation);
    answer->show(operation, probe.output);
    if (interrupted) throw probe.interruption.problem(operation.title() + " had ended already");
}

} // namespace soapwrapper::probe
