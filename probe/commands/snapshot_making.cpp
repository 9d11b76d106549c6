// Making a snapshot, and preparing that: one request under two names.
#include "plugin/host/async_records.h"
#include "plugin/host/entry_points.h"
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

struct Making {
    const char* name;
    const char* description;
    Slot<decltype(stspi_async_create_snap_byname)> with_id;
    Slot<decltype(stspi_named_async_create_snap_byname)> with_name;
};

struct MakingOptions : SourceArguments, TargetOptions, ImagesetOptions {
    explicit MakingOptions(const Making& asked_for) : making(asked_for) {}

    const Making making;
};

void run_making(const Probe& probe, const MakingOptions& options)
{
    const Making& making = options.making;
    const TargetLsus targets(options, options.name);
    const sts_snap_def_v11_t snap = snapshot_named(options.snapshot);
    const sts_imageset_t imageset = imageset_of(options);
    ServerLogin login(probe, options.name, options.login);
    run_operation(probe, login.handle(), options.operation,
                  {[&](stsp_async_t** async) {
                       return call(probe, making.with_id, login.handle(), &options.volume, &snap,
                                   targets.data(), targets.count(), async, imageset, options.pending);
                   },
                   [&](const sts_opname_t& name) {
                       return call(probe, making.with_name, login.handle(), &options.volume, &snap,
                                   targets.data(), targets.count(), name, imageset, options.pending);
                   }});
    login.close();
}

void add_making_command(const Command& group, Run& run, const Making& making)
{
    const Command command = group.add_subcommand(making.name, making.description);
    auto options = std::make_shared<MakingOptions>(making);
    add_source_arguments(command, *options);
    add_target_options(command, *options);
    add_imageset_options(command, *options);
    set_footer(command, std::string("snapshot ") + making.name +
                            " Network_storage:filer1.example.com nightly.0 --volume nfs:filer1:/vol/vol1 "
                            "--target vol1");
    command.callback(chosen(run, options, run_making));
}

} // namespace

void add_snapshot_create_command(const Command& group, Run& run)
{
    add_making_command(group, run,
                       {"create", "Make a snapshot of a volume", slot::stspi_async_create_snap_byname,
                        slot::stspi_named_async_create_snap_byname});
}

void add_snapshot_prepare_command(const Command& group, Run& run)
{
    add_making_command(group, run,
                       {"prepare", "Make a snapshot of a volume possible",
                        slot::stspi_async_prepare_snap_byname, slot::stspi_named_async_prepare_snap_byname});
}

} // namespace soapwrapper::probe
