#include "probe/lists/snapshot_records.h"

#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/arguments/volume_argument.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/list_reader.h"
#include "probe/output/records.h"
#include "probe/output/text.h"

#include <string>

namespace soapwrapper::probe
{

void add_snapshot_arguments(const Command& command, SnapshotArguments& arguments)
{
    add_lsu_arguments(command, arguments);
    add_text_argument(command, "SNAP", arguments.snapshot, STS_SNAP_NAME_SIZE, "Name of the snapshot");
}

sts_snap_def_v11_t snapshot_named(const std::string& name)
{
    sts_snap_def_v11_t snap = {};
    put(snap.snapName, name);
    return snap;
}

void show_snapshot_list(const Probe& probe, const ListOptions& options, const ListHandle& list)
{
    stsp_list_t* const handle = list.get();
    sts_snap_def_v11_t snap;
    EntryList snapshots("snapshots", {{"SNAPSHOT", "name"},
                                      {"TYPE", "type", Look::kNumber},
                                      {"FLAGS", "flags", Look::kNumber},
                                      {"SAVE AS", "save_as", Look::kNumber}});
    const ListEnd end = read_list(
        probe, options, EntryRoom(snap), [&] { return call(probe, slot::stspi_list_snap, handle, &snap); },
        [&] {
            snapshots.add({clean_field(snap.snapName), snap.snapType, snap.snapFlags, snap.snapSaveas});
        });
    finish_list(probe, snapshots, end);
}

void show_snapshot_information(Output& output, const sts_snap_info_v11_t& info)
{
    Properties properties;
    properties.add("Snapshot", "name", clean_field(info.snapDef.snapName));
    properties.add("Type", "type", info.snapDef.snapType);
    properties.add("Flags", "flags", info.snapDef.snapFlags);
    properties.add("Save as", "save_as", info.snapDef.snapSaveas);
    properties.add("Server", "server", clean_field(info.snapServer));
    properties.add("LSU", "lsu", clean_field(info.snapLsu));
    properties.add("Volume", "volume", volume_text(info.snapVolSpec));
    properties.add("Status", "status", info.snapStatus);
    properties.add_size("Size", "size", info.snapSize);
    properties.show(output);
}

} // namespace soapwrapper::probe
