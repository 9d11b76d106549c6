#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/login/server_login.h"
#include "probe/operations/operation_run.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"
#include "probe/output/text.h"

#include <memory>
#include <optional>
#include <string>

namespace soapwrapper::probe
{
namespace
{

struct CancelOptions : ServerArguments {
    std::string id;
    std::optional<std::string> opname;
};

void cancel_operation(const Probe& probe, const CancelOptions& options)
{
    if (options.opname) {
        throw usage_problem("an operation with a name can't be cancelled: the library has no entry for that");
    }
    if (options.id.empty()) throw usage_problem("the ID of an operation is needed");
    ServerLogin login(probe, options.name, options.login);
    OperationWithId(probe, login.handle(), options.id).cancel();
    Properties done;
    done.add("Cancelled operation", "cancelled_operation", clean_line(options.id));
    done.show(probe.output);
    login.close();
}

} // namespace

void add_operation_cancel_command(const Command& group, Run& run)
{
    const Command command = group.add_subcommand("cancel", "Cancel an operation that has an id");
    auto options = std::make_shared<CancelOptions>();
    add_server_arguments(command, *options);
    command.add_option("ID", options->id, "Id of the operation").type_name("");
    add_operation_name_option(command, options->opname,
                              "Refused: only an operation with an id can be cancelled");
    set_footer(command, "operation cancel Network_storage:filer1.example.com 4711");
    command.callback(chosen(run, options, cancel_operation));
}

} // namespace soapwrapper::probe
