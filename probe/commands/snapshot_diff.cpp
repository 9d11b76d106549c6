#include "plugin/host/async_records.h"
#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/arguments/volume_argument.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/snapshot_records.h"
#include "probe/login/server_login.h"
#include "probe/operations/operation_run.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

struct DiffOptions : ServerArguments {
    std::string snapshot;
    std::vector<std::string> volumes;
    std::int32_t flag = 0;
    OperationOptions operation;
};

// The library sends the others empty.
std::string parse_nfs_volume(const std::string& text, sts_volume_spec_v11_t& volume)
{
    std::string wrong = parse_volume(text, volume);
    if (!wrong.empty()) return wrong;
    return volume.volumeType == STS_VOLUME_NFS ? "" : "a difference is possible with nfs volumes only";
}

void add_volumes_option(const Command& command, std::vector<std::string>& volumes)
{
    command.add_option("--volume", volumes, "Volume to compare with, of the kind nfs; may be repeated")
        .required()
        .type_name("nfs:FIRST[:SECOND[:THIRD]]")
        .one_at_a_time()
        .check([](const std::string& text) {
            sts_volume_spec_v11_t volume;
            return parse_nfs_volume(text, volume);
        });
}

void show_difference(const Probe& probe, const DiffOptions& options)
{
    std::vector<sts_volume_spec_v11_t> volumes(options.volumes.size());
    for (std::size_t i = 0; i < volumes.size(); ++i) parse_nfs_volume(options.volumes[i], volumes[i]);
    const auto count = static_cast<std::uint32_t>(volumes.size());
    const sts_snap_def_v11_t snap = snapshot_named(options.snapshot);
    ServerLogin login(probe, options.name, options.login);
    stsp_server_t* const target = login.target() ? login.target() : login.handle(); // it may not be null
    run_operation(probe, login.handle(), options.operation,
                  {[&](stsp_async_t** async) {
                       return call(probe, slot::stspi_async_get_snap_diff, login.handle(), &snap, target,
                                   volumes.data(), count, options.flag, async);
                   },
                   [&](const sts_opname_t& name) {
                       return call(probe, slot::stspi_named_async_get_snap_diff, login.handle(), &snap,
                                   target, volumes.data(), count, options.flag, name);
                   }});
    login.close();
}

} // namespace

void add_snapshot_diff_command(const Command& group, Run& run)
{
    const Command command = group.add_subcommand("diff", "Show what differs between a snapshot and volumes");
    auto options = std::make_shared<DiffOptions>();
    add_server_arguments(command, *options);
    add_text_argument(command, "SNAP", options->snapshot, STS_SNAP_NAME_SIZE, "Name of the snapshot");
    add_volumes_option(command, options->volumes);
    add_target_server_option(command, options->login);
    command
        .add_option("--flag", options->flag,
                    "Flag of the difference, which the service reads as it likes; a named operation has but "
                    "0 and 1")
        .type_name("N")
        .capture_default_str();
    add_operation_options(command, options->operation);
    set_footer(command, "snapshot diff Network_storage:filer1.example.com nightly.0 --volume "
                        "nfs:filer1:/vol/vol1");
    command.callback(chosen(run, options, show_difference));
}

} // namespace soapwrapper::probe
