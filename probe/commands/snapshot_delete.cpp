#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/arguments/confirmation.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/snapshot_records.h"
#include "probe/login/server_login.h"
#include "probe/output/records.h"
#include "probe/output/text.h"

#include <memory>
#include <string>

namespace soapwrapper::probe
{
namespace
{

struct DeleteOptions : SnapshotArguments {
    bool yes = false;
};

void delete_snapshot(const Probe& probe, const DeleteOptions& options)
{
    const std::string name = clean_line(options.snapshot);
    confirm_deletion("snapshot " + name + " of LSU " + clean_line(options.lsu), options.yes);
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    const sts_snap_def_v11_t snap = snapshot_named(options.snapshot);
    require(probe, slot::stspi_delete_snap, &lsu, &snap);
    Properties done;
    done.add("Deleted snapshot", "deleted_snapshot", name);
    done.show(probe.output);
    login.close();
}

} // namespace

void add_snapshot_delete_command(const Command& group, Run& run)
{
    const Command command = group.add_subcommand("delete", "Delete a snapshot");
    auto options = std::make_shared<DeleteOptions>();
    add_snapshot_arguments(command, *options);
    add_yes_option(command, options->yes);
    set_footer(command, "snapshot delete Network_storage:filer1.example.com vol1 nightly.0");
    command.callback(chosen(run, options, delete_snapshot));
}

} // namespace soapwrapper::probe
