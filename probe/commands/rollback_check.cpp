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
#include "probe/operations/operation_arguments.h"

#include <memory>
#include <string>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

struct RollbackOptions : SnapshotArguments {
    sts_volume_spec_v11_t volume = {};
    std::vector<std::string> over;
    ListOptions list;
};

void check_rollback(const Probe& probe, const RollbackOptions& options)
{
    const RollbackRows over(options.over);
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    const sts_snap_def_v11_t snap = snapshot_named(options.snapshot);
    ListHandle list(probe, slot::stspi_close_snap_list);
    require(probe, slot::stspi_validate_rollback, &lsu, &snap, nullptr, &options.volume, over.data(),
            over.count(), list.address());
    show_snapshot_list(probe, options.list, list);
    list.close();
    login.close();
}

} // namespace

void add_rollback_check_command(const Command& group, Run& run)
{
    const Command command =
        group.add_subcommand("check", "List the snapshots that a rollback would meet, and change nothing");
    auto options = std::make_shared<RollbackOptions>();
    add_snapshot_arguments(command, *options);
    add_volume_option(command, options->volume, "Volume to roll back").required();
    add_over_option(command, options->over);
    add_list_options(command, options->list);
    set_footer(command, "rollback check Network_storage:filer1.example.com vol1 nightly.1 --volume "
                        "nfs:filer1:/vol/vol1 --over nightly.0");
    command.callback(chosen(run, options, check_rollback));
}

} // namespace soapwrapper::probe
