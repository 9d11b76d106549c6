#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/login/server_login.h"
#include "probe/operations/operation.h"
#include "probe/operations/operation_run.h"
#include "probe/output/problem.h"

#include <memory>
#include <optional>
#include <string>

namespace soapwrapper::probe
{
namespace
{

struct WaitOptions : ServerArguments {
    std::string id;
    std::optional<std::string> opname;
};

std::unique_ptr<Operation> operation_meant(const Probe& probe, const ServerLogin& login,
                                           const WaitOptions& options)
{
    if (options.opname) return std::make_unique<OperationWithName>(probe, login.handle(), *options.opname);
    return std::make_unique<OperationWithId>(probe, login.handle(), options.id);
}

void wait_for_operation(const Probe& probe, const WaitOptions& options)
{
    if (options.id.empty() && !options.opname)
        throw usage_problem("an operation is needed: its ID or --name");
    ServerLogin login(probe, options.name, options.login);
    follow_operation(probe, *operation_meant(probe, login, options));
    login.close();
}

} // namespace

void add_operation_wait_command(const Command& group, Run& run)
{
    const Command command =
        group.add_subcommand("wait", "Wait for the end of an operation and show its result");
    auto options = std::make_shared<WaitOptions>();
    add_server_arguments(command, *options);
    const Option id = command.add_option("ID", options->id, "Id of the operation").type_name("");
    add_operation_name_option(command, options->opname, "Name of the operation, if it has one").excludes(id);
    set_footer(command, "operation wait Network_storage:filer1.example.com --name nightly");
    command.callback(chosen(run, options, wait_for_operation));
}

} // namespace soapwrapper::probe
