#include "plugin/host/async_records.h"
#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/arguments/confirmation.h"
#include "probe/arguments/volume_argument.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/snapshot_records.h"
#include "probe/login/server_login.h"
#include "probe/operations/operation_arguments.h"
#include "probe/operations/operation_run.h"
#include "probe/output/text.h"

#include <cstdint>
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
    std::int32_t flag = 0;
    OperationOptions operation;
    bool yes = false;
};

void roll_back(const Probe& probe, const RollbackOptions& options)
{
    confirm("Roll volume " + volume_text(options.volume) + " back to snapshot " +
                clean_line(options.snapshot) + "?",
            "nothing was rolled back", options.yes);
    const RollbackRows over(options.over);
    const sts_snap_def_v11_t snap = snapshot_named(options.snapshot);
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    run_operation(probe, login.handle(), options.operation,
                  {[&](stsp_async_t** async) {
                       return call(probe, slot::stspi_async_rollback_snap, &lsu, &snap, login.target(),
                                   &options.volume, over.data(), over.count(), options.flag, async);
                   },
                   [&](const sts_opname_t& name) {
                       return call(probe, slot::stspi_named_async_rollback_snap, &lsu, &snap, login.target(),
                                   &options.volume, over.data(), over.count(), options.flag, name);
                   }});
    login.close();
}

} // namespace

void add_snapshot_rollback_command(const Command& group, Run& run)
{
    const Command command = group.add_subcommand("rollback", "Move a volume back to a snapshot");
    auto options = std::make_shared<RollbackOptions>();
    add_snapshot_arguments(command, *options);
    add_volume_option(command, options->volume, "Volume to roll back").required();
    add_target_server_option(command, options->login);
    add_over_option(command, options->over);
    command.add_option("--flag", options->flag, "Flag of the rollback, which the service reads as it likes")
        .type_name("N")
        .capture_default_str();
    add_operation_options(command, options->operation);
    add_yes_option(command, options->yes, "Roll back");
    set_footer(command, "snapshot rollback Network_storage:filer1.example.com vol1 nightly.1 --volume "
                        "nfs:filer1:/vol/vol1 --over nightly.0");
    command.callback(chosen(run, options, roll_back));
}

} // namespace soapwrapper::probe
