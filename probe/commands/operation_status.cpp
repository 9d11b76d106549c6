#include "plugin/host/status.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/login/server_login.h"
#include "probe/operations/operation.h"
#include "probe/operations/operation_run.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"

#include <memory>
#include <optional>
#include <string>

namespace soapwrapper::probe
{
namespace
{

struct StatusOptions : ServerArguments {
    std::optional<std::string> opname;
};

void show_status(const Probe& probe, const StatusOptions& options)
{
    ServerLogin login(probe, options.name, options.login);
    const OperationWithName operation(probe, login.handle(), *options.opname);
    const int status = call(probe, slot::stspi_named_async_status, login.handle(), operation.name());
    const auto problem = problem_of(probe, status);
    if (problem && status != STS_EBUSY) throw Problem(*problem);
    Properties properties;
    operation.tell(properties);
    properties.add("State", "state", problem ? "running" : "ended");
    properties.show(probe.output);
    login.close();
}

} // namespace

void add_operation_status_command(const Command& group, Run& run)
{
    const Command command =
        group.add_subcommand("status", "Show whether an operation with a name runs or has ended well");
    auto options = std::make_shared<StatusOptions>();
    add_server_arguments(command, *options);
    add_operation_name_option(command, options->opname, "Name of the operation").required();
    set_footer(command, "operation status Network_storage:filer1.example.com --name nightly");
    command.callback(chosen(run, options, show_status));
}

} // namespace soapwrapper::probe
