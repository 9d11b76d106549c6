#include "probe/watch/watch.h"
#include "plugin/host/async_records.h"
#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/login/server_login.h"
#include "probe/operations/operation.h"
#include "probe/output/problem.h"
#include "probe/output/text.h"
#include "probe/watch/watched_lsu.h"
#include "probe/watch/watched_operation.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

struct WatchLsuOptions : ServerArguments {
    std::vector<std::string> lsus;
    WatchOptions watch;
};

struct WatchOperationOptions : ServerArguments {
    std::vector<std::string> ids;
    std::vector<std::string> names;
    WatchOptions watch;
};

void watch_lsus(const Probe& probe, const WatchLsuOptions& options)
{
    ServerLogin login(probe, options.name, options.login);
    WatchedThings watched = {clean_line(options.name), "lsus", WatchedLsu::kColumns, {}};
    for (const std::string& name : options.lsus) {
        stsp_lsu_v7_t lsu = {};
        lsu.server = login.handle();
        put(lsu.name, name);
        watched.things.push_back(std::make_unique<WatchedLsu>(probe, lsu));
    }
    watch(probe, options.watch, watched);
    login.close();
}

void watch_operations(const Probe& probe, const WatchOperationOptions& options)
{
    if (options.ids.empty() && options.names.empty())
        throw usage_problem("an operation is needed: its ID or --name");
    ServerLogin login(probe, options.name, options.login);
    WatchedThings watched = {clean_line(options.name), "operations", WatchedOperation::kColumns, {}};
    const auto add = [&](std::unique_ptr<Operation> operation, const std::string& name) {
        watched.things.push_back(
            std::make_unique<WatchedOperation>(probe, std::move(operation), clean_line(name)));
    };
    for (const std::string& id : options.ids)
        add(std::make_unique<OperationWithId>(probe, login.handle(), id), id);
    for (const std::string& name : options.names) {
        add(std::make_unique<OperationWithName>(probe, login.handle(), name), name);
    }
    watch(probe, options.watch, watched);
    login.close();
}

} // namespace

void add_watch_lsu_command(const Command& group, Run& run)
{
    const Command command = group.add_subcommand("lsu", "Show how full LSUs are, again and again");
    auto options = std::make_shared<WatchLsuOptions>();
    add_server_arguments(command, *options);
    const Option lsus =
        command.add_option("LSU", options->lsus, "Name of a logical storage unit; several are possible");
    lsus.required().type_name("");
    limit_length(lsus, STS_LSU_NAME_SIZE);
    add_watch_options(command, options->watch);
    set_footer(command, "watch lsu Network_storage:filer1.example.com vol1 vol2 --interval 5");
    command.callback(chosen(run, options, watch_lsus, JsonForm::kLines));
}

void add_watch_operation_command(const Command& group, Run& run)
{
    const Command command =
        group.add_subcommand("operation", "Show how long operations stand, until they have ended");
    auto options = std::make_shared<WatchOperationOptions>();
    add_server_arguments(command, *options);
    command.add_option("ID", options->ids, "Id of an operation; several are possible").type_name("");
    const Option names =
        command.add_option("--name", options->names, "Name of an operation, if it has one; may be repeated");
    names.type_name("OPNAME").one_at_a_time();
    limit_length(names, STS_ASYNC_NAME_SIZE);
    add_watch_options(command, options->watch);
    set_footer(command, "watch operation Network_storage:filer1.example.com --name nightly");
    command.callback(chosen(run, options, watch_operations, JsonForm::kLines));
}

} // namespace soapwrapper::probe
