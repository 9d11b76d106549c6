#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/arguments/volume_argument.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/list_reader.h"
#include "probe/lists/snapshot_records.h"
#include "probe/login/server_login.h"

#include <functional>
#include <memory>

namespace soapwrapper::probe
{
namespace
{

struct SnapshotsOptions : LsuArguments {
    sts_volume_spec_v11_t volume = {};
    bool by_volume = false;
    ListOptions list;
};

void open_list(const Probe& probe, const SnapshotsOptions& options, const ServerLogin& login,
               ListHandle& list)
{
    if (options.by_volume) {
        require(probe, slot::stspi_open_snap_list_by_volume, login.handle(), &options.volume, list.address());
    } else {
        const stsp_lsu_v7_t lsu = lsu_reference(login, options);
        require(probe, slot::stspi_open_snap_list, &lsu, list.address());
    }
}

void show_snapshots(const Probe& probe, const SnapshotsOptions& options)
{
    ServerLogin login(probe, options.name, options.login);
    ListHandle list(probe, slot::stspi_close_snap_list);
    open_list(probe, options, login, list);
    show_snapshot_list(probe, options.list, list);
    list.close();
    login.close();
}

} // namespace

void add_snapshots_command(const Command& program, Run& run)
{
    const Command command =
        program.add_subcommand("snapshots", "List the snapshots of an LSU or of a volume");
    auto options = std::make_shared<SnapshotsOptions>();
    add_server_arguments(command, *options);
    const Option lsu = add_lsu_argument(command, options->lsu);
    const Option volume =
        add_volume_option(command, options->volume, "List the snapshots of this volume instead");
    lsu.excludes(volume);
    add_list_options(command, options->list);
    set_footer(command, "snapshots Network_storage:filer1.example.com --volume nfs:filer1:/vol/vol1");
    const std::function<void()> choose = chosen(run, options, show_snapshots);
    command.callback([lsu, volume, options, choose] {
        options->by_volume = volume.given();
        if (!lsu.given() && !volume.given()) throw_missing("LSU or --volume");
        choose();
    });
}

} // namespace soapwrapper::probe
