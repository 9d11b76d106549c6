#include "plugin/host/async_records.h"
#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/snapshot_records.h"
#include "probe/login/server_login.h"
#include "probe/operations/operation_arguments.h"
#include "probe/operations/operation_run.h"

#include <memory>
#include <string>

namespace soapwrapper::probe
{
namespace
{

struct ValidateOptions : SourceArguments, TargetOptions {
    std::string topology;
};

void validate_snapshot(const Probe& probe, const ValidateOptions& options)
{
    const TargetLsus targets(options, options.name);
    const sts_snap_def_v11_t snap = snapshot_named(options.snapshot);
    ServerLogin login(probe, options.name, options.login);
    run_operation(
        probe, login.handle(), options.operation,
        {[&](stsp_async_t** async) {
             return call(probe, slot::stspi_async_validate_snap_byname, login.handle(), &options.volume,
                         &snap, targets.data(), targets.count(), options.topology.c_str(), async);
         },
         [&](const sts_opname_t& name) {
             return call(probe, slot::stspi_named_async_validate_snap_byname, login.handle(), &options.volume,
                         &snap, targets.data(), targets.count(), options.topology.c_str(), name);
         }});
    login.close();
}

} // namespace

void add_snapshot_validate_command(const Command& group, Run& run)
{
    const Command command =
        group.add_subcommand("validate", "Ask whether a snapshot of a volume could be made, and how");
    auto options = std::make_shared<ValidateOptions>();
    add_source_arguments(command, *options);
    add_target_options(command, *options);
    command.add_option("--topology", options->topology, "Topology that there is to be").type_name("TEXT");
    set_footer(command, "snapshot validate Network_storage:filer1.example.com nightly.0 --volume "
                        "nfs:filer1:/vol/vol1 --target vol1");
    command.callback(chosen(run, options, validate_snapshot));
}

} // namespace soapwrapper::probe
