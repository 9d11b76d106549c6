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

namespace soapwrapper::probe
{
namespace
{

struct CopyOptions : SnapshotArguments, TargetOptions, ImagesetOptions {
    OperationOptions operation;
};

void copy_snapshot(const Probe& probe, const CopyOptions& options)
{
    const TargetLsus targets(options, options.name);
    const sts_snap_def_v11_t snap = snapshot_named(options.snapshot);
    const sts_imageset_t imageset = imageset_of(options);
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    run_operation(probe, login.handle(), options.operation,
                  {[&](stsp_async_t** async) {
                       return call(probe, slot::stspi_async_copy_snap_byname, &lsu, &snap, targets.data(),
                                   targets.count(), async, imageset, options.pending);
                   },
                   [&](const sts_opname_t& name) {
                       return call(probe, slot::stspi_named_async_copy_snap_byname, &lsu, &snap,
                                   targets.data(), targets.count(), name, imageset, options.pending);
                   }});
    login.close();
}

} // namespace

void add_snapshot_copy_command(const Command& group, Run& run)
{
    const Command command = group.add_subcommand("copy", "Copy a snapshot to other LSUs");
    auto options = std::make_shared<CopyOptions>();
    add_snapshot_arguments(command, *options);
    add_target_options(command, *options);
    add_imageset_options(command, *options);
    add_operation_options(command, options->operation);
    set_footer(command, "snapshot copy Network_storage:filer1.example.com vol1 nightly.0 --target "
                        "Network_storage:filer2.example.com/vol1_copy");
    command.callback(chosen(run, options, copy_snapshot));
}

} // namespace soapwrapper::probe
