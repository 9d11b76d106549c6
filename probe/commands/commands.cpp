#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"

namespace soapwrapper::probe
{
namespace
{

Command add_group(const Command& program, const char* name, const char* description)
{
    const Command group = program.add_subcommand(name, description);
    group.require_subcommand();
    return group;
}

} // namespace

void add_commands(const Command& program, Run& run)
{
    add_check_command(program, run);
    add_discover_command(program, run);
    add_server_command(program, run);
    add_lsus_command(program, run);
    add_lsu_command(program, run);
    add_replication_command(program, run);
    add_images_command(program, run);
    const Command image = add_group(program, "image", "Show or delete an image");
    add_image_show_command(image, run);
    add_image_delete_command(image, run);
    add_snapshots_command(program, run);
    const Command snapshot = add_group(program, "snapshot", "Make, show, use or delete a snapshot");
    add_snapshot_show_command(snapshot, run);
    add_snapshot_delete_command(snapshot, run);
    add_snapshot_create_command(snapshot, run);
    add_snapshot_copy_command(snapshot, run);
    add_snapshot_prepare_command(snapshot, run);
    add_snapshot_postprocess_command(snapshot, run);
    add_snapshot_validate_command(snapshot, run);
    add_snapshot_import_command(snapshot, run);
    add_snapshot_rollback_command(snapshot, run);
    add_snapshot_diff_command(snapshot, run);
    const Command topology = add_group(program, "topology", "Make what a topology says");
    add_topology_provision_command(topology, run);
    const Command operation = add_group(program, "operation", "Follow or cancel a long operation");
    add_operation_wait_command(operation, run);
    add_operation_status_command(operation, run);
    add_operation_cancel_command(operation, run);
    const Command rollback = add_group(program, "rollback", "Look at a rollback ahead");
    add_rollback_check_command(rollback, run);
    const Command exports = add_group(program, "export", "Make snapshots and volumes reachable from hosts");
    add_export_create_command(exports, run);
    add_export_add_command(exports, run);
    add_export_delete_command(exports, run);
    add_changes_command(program, run);
    add_claim_command(program, run);
    add_ioctl_command(program, run);
    add_events_command(program, run);
    const Command watching =
        add_group(program, "watch", "Show how LSUs or long operations stand, again and again");
    add_watch_lsu_command(watching, run);
    add_watch_operation_command(watching, run);
}

} // namespace soapwrapper::probe
