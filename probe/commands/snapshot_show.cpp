#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/snapshot_records.h"
#include "probe/login/server_login.h"

#include <memory>

namespace soapwrapper::probe
{
namespace
{

void show_snapshot(const Probe& probe, const SnapshotArguments& options)
{
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    const sts_snap_def_v11_t snap = snapshot_named(options.snapshot);
    sts_snap_info_v11_t info = {};
    require(probe, slot::stspi_get_snap_prop_byname, &lsu, &snap, &info);
    show_snapshot_information(probe.output, info);
    login.close();
}

} // namespace

void add_snapshot_show_command(const Command& group, Run& run)
{
    const Command command = group.add_subcommand("show", "Show the properties of one snapshot");
    auto options = std::make_shared<SnapshotArguments>();
    add_snapshot_arguments(command, *options);
    set_footer(command, "snapshot show Network_storage:filer1.example.com vol1 nightly.0");
    command.callback(chosen(run, options, show_snapshot));
}

} // namespace soapwrapper::probe
