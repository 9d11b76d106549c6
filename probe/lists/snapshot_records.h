// Snapshots: how the command line names one, and how they are shown.
#ifndef SOAPWRAPPER_PROBE_LISTS_SNAPSHOT_RECORDS_H
#define SOAPWRAPPER_PROBE_LISTS_SNAPSHOT_RECORDS_H

#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"

#include <string>

namespace soapwrapper::probe
{

class ListHandle;
class Output;
struct ListOptions;
struct Probe;

struct SnapshotArguments : LsuArguments {
    std::string snapshot;
};

void add_snapshot_arguments(const Command& command, SnapshotArguments& arguments);

// The definition with a name, the rest empty.
sts_snap_def_v11_t snapshot_named(const std::string& name);

// Reads a list of snapshots to its end and shows it. What else it ends with is thrown, behind what was read.
void show_snapshot_list(const Probe& probe, const ListOptions& options, const ListHandle& list);

void show_snapshot_information(Output& output, const sts_snap_info_v11_t& info);

} // namespace soapwrapper::probe

#endif
