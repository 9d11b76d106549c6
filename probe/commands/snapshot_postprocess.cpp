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
#include "probe/operations/operation_run.h"

#include <memory>

namespace soapwrapper::probe
{
namespace
{

struct PostprocessOptions : SnapshotArguments {
    OperationOptions operation;
};

void postprocess_snapshot(const Probe& probe, const PostprocessOptions& options)
{
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    const char* const snapshot = options.snapshot.c_str();
    run_operation(probe, login.handle(), options.operation,
                  {[&](stsp_async_t** async) {
                       return call(probe, slot::stspi_async_postprocess_snap_byname, &lsu, snapshot, async);
                   },
                   [&](const sts_opname_t& name) {
                       return call(probe, slot::stspi_named_async_postprocess_snap_byname, &lsu, snapshot,
                                   name);
                   }});
    login.close();
}

} // namespace

void add_snapshot_postprocess_command(const Command& group, Run& run)
{
    const Command command =
        group.add_subcommand("postprocess", "Have the service do what follows the making of a snapshot");
    auto options = std::make_shared<PostprocessOptions>();
    add_snapshot_arguments(command, *options);
    add_operation_options(command, options->operation);
    set_footer(command, "snapshot postprocess Network_storage:filer1.example.com vol1 nightly.0");
    command.callback(chosen(run, options, postprocess_snapshot));
}

} // namespace soapwrapper::probe
