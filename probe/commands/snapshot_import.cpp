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

struct ImportOptions : SourceArguments, ImagesetOptions {
};

void import_snapshot(const Probe& probe, const ImportOptions& options)
{
    const sts_snap_def_v11_t snap = snapshot_named(options.snapshot);
    const sts_imageset_t imageset = imageset_of(options);
    ServerLogin login(probe, options.name, options.login);
    run_operation(probe, login.handle(), options.operation,
                  {[&](stsp_async_t** async) {
                       return call(probe, slot::stspi_async_import_snap_byname, login.handle(),
                                   &options.volume, &snap, imageset, options.pending, async);
                   },
                   [&](const sts_opname_t& name) {
                       return call(probe, slot::stspi_named_async_import_snap_byname, login.handle(),
                                   &options.volume, &snap, imageset, options.pending, name);
                   }});
    login.close();
}

} // namespace

void add_snapshot_import_command(const Command& group, Run& run)
{
    const Command command =
        group.add_subcommand("import", "Make a snapshot known that the storage has already");
    auto options = std::make_shared<ImportOptions>();
    add_source_arguments(command, *options);
    add_imageset_options(command, *options);
    set_footer(command,
               "snapshot import Network_storage:filer1.example.com nightly.0 --volume nfs:filer1:/vol/vol1");
    command.callback(chosen(run, options, import_snapshot));
}

} // namespace soapwrapper::probe
