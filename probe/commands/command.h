// The commands, one file each. Each function adds its subcommand to the command line, or to a group of it; if
// the user names that one, parsing puts into `run` what is to be done once the library is loaded.
#ifndef SOAPWRAPPER_PROBE_COMMANDS_COMMAND_H
#define SOAPWRAPPER_PROBE_COMMANDS_COMMAND_H

#include "probe/arguments/command_line.h"
#include "probe/library/plugin_library.h"
#include "probe/library/probe.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"

#include <functional>
#include <iosfwd>
#include <memory>

namespace soapwrapper::probe
{

// One document, or one a line as they come.
enum class JsonForm { kDocument, kLines };

struct Run {
    // What a command does with the library.
    std::function<void(const Probe&)> act;
    JsonForm json =
        JsonForm::kDocument; // known ahead of the library: a failure to load it takes this form, too
    // What it does where the library can't be driven; without it that is a failure as any other.
    std::function<void(const Problem&, const LibraryPlaces&, Output&)> without_library;
};

// For a command that only prints and needs no library.
using Print = std::function<void(std::ostream&)>;

// Adds all of them.
void add_commands(const Command& program, Run& run);

void add_check_command(const Command& program, Run& run);
void add_discover_command(const Command& program, Run& run);
void add_server_command(const Command& program, Run& run);
void add_lsus_command(const Command& program, Run& run);
void add_lsu_command(const Command& program, Run& run);
void add_replication_command(const Command& program, Run& run);
void add_images_command(const Command& program, Run& run);
void add_image_show_command(const Command& group, Run& run);
void add_image_delete_command(const Command& group, Run& run);
void add_snapshots_command(const Command& program, Run& run);
void add_snapshot_show_command(const Command& group, Run& run);
void add_snapshot_delete_command(const Command& group, Run& run);
void add_snapshot_create_command(const Command& group, Run& run);
void add_snapshot_copy_command(const Command& group, Run& run);
void add_snapshot_prepare_command(const Command& group, Run& run);
void add_snapshot_postprocess_command(const Command& group, Run& run);
void add_snapshot_validate_command(const Command& group, Run& run);
void add_snapshot_import_command(const Command& group, Run& run);
void add_snapshot_rollback_command(const Command& group, Run& run);
void add_snapshot_diff_command(const Command& group, Run& run);
void add_topology_provision_command(const Command& group, Run& run);
void add_operation_wait_command(const Command& group, Run& run);
void add_operation_status_command(const Command& group, Run& run);
void add_operation_cancel_command(const Command& group, Run& run);
void add_rollback_check_command(const Command& group, Run& run);
void add_export_create_command(const Command& group, Run& run);
void add_export_add_command(const Command& group, Run& run);
void add_export_delete_command(const Command& group, Run& run);
void add_changes_command(const Command& program, Run& run);
void add_claim_command(const Command& program, Run& run);
void add_ioctl_command(const Command& program, Run& run);
void add_events_command(const Command& program, Run& run);
void add_watch_lsu_command(const Command& group, Run& run);
void add_watch_operation_command(const Command& group, Run& run);
void add_completion_command(const Command& program, Print& print);

// For a command's callback: puts `act` into `run`, with the options that parsing has filled by then.
template <class Options>
std::function<void()> chosen(Run& run, std::shared_ptr<Options> options,
                             void (*act)(const Probe&, const Options&), JsonForm json = JsonForm::kDocument)
{
    return [&run, options, act, json] {
        run.act = [options, act](const Probe& probe) { act(probe, *options); };
        run.json = json;
    };
}

} // namespace soapwrapper::probe

#endif
