#include "simulator/storage/snapshot_operations.h"

#include "simulator/scenario/content.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/operation_settings.h"
#include "simulator/scenario/records.h"
#include "simulator/storage/holdings.h"
#include "simulator/storage/long_operations.h"
#include "simulator/storage/model.h"
#include "simulator/storage/start_requests.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

void require_place_at(Storage& storage, const std::vector<Target>& targets, const std::string& name)
{
    for (const Target& target : targets) require_place_for(lsu_at(storage, target.position), name);
}

// Makes the snapshot at all targets or at none. Away from its own LSU it is one of that LSU's volume, if that
// has any.
OperationResult add_snapshots(Storage& storage, LsuPosition own, const std::vector<Target>& targets,
                              const Snapshot& snapshot)
{
    require_place_at(storage, targets, snapshot.name);
    for (const Target& target : targets) {
        Snapshot added = snapshot;
        const std::vector<Volume>& volumes = lsu_at(storage, target.position).properties.volumes;
        if (!(target.position == own) && !volumes.empty()) added.volume = volumes.front();
        add_snapshot(storage, target.position, std::move(added));
    }
    OperationResult result;
    result.snapshot_name = snapshot.name;
    result.server_name = targets.front().server_name;
    result.lsu_name = targets.front().lsu_name;
    return result;
}

// A volume's snapshot that is to be, and where.
struct Making {
    LsuPosition source;
    std::vector<Target> targets;
    Snapshot snapshot;
};

// Without targets it lies with its volume.
Making making_of(Storage& storage, const VolumeStart& start)
{
    const Session& session = storage.session(start.session);
    Making making;
    making.source = position_of(storage, session.server, start.volume);
    making.targets = find_targets(storage, session, start.targets);
    if (making.targets.empty()) making.targets = {target_at(storage, session, making.source)};
    const Lsu& lsu = lsu_at(storage, making.source);
    making.snapshot = start.definition;
    making.snapshot.volume = held_volume(lsu, start.volume);
    making.snapshot.content = lsu.properties.content;
    require_place_at(storage, making.targets, making.snapshot.name);
    return making;
}

// Shows what the volume holds as the operation begins. Read without anybody having to wait for it.
Making captured_making(Model& model, const VolumeStart& start)
{
    Making making = making_of(*model.use(), start);
    making.snapshot.content = making.snapshot.content.captured();
    making.snapshot.size = size_of(*making.snapshot.content.files());
    return making;
}

LongOperation operation_that_makes(OperationKind kind, const Making& making)
{
    LongOperation operation;
    operation.kind = kind;
    operation.server = making.source.server;
    operation.effect = [making](Storage& storage) {
        return add_snapshots(storage, making.source, making.targets, making.snapshot);
    };
    return operation;
}

} // namespace

LongOperation create_operation(Model& model, const VolumeStart& start)
{
    const Making making = captured_making(model, start);
    LongOperation operation = operation_that_makes(OperationKind::kCreate, making);
    operation.bytes = making.snapshot.size;
    return operation;
}

// The storage has the snapshot already: it only becomes known.
LongOperation import_operation(Model& model, const VolumeStart& start)
{
    return operation_that_makes(OperationKind::kImport, captured_making(model, start));
}

LongOperation prepare_operation(Model& model, const VolumeStart& start)
{
    const Making making = making_of(*model.use(), start);
    LongOperation operation;
    operation.kind = OperationKind::kPrepare;
    operation.server = making.source.server;
    operation.effect = [making](Storage& storage) {
        require_place_at(storage, making.targets, making.snapshot.name);
        return OperationResult();
    };
    return operation;
}

LongOperation copy_operation(Model& model, const SnapshotStart& start)
{
    LongOperation operation;
    operation.kind = OperationKind::kCopy;
    LsuPosition source;
    std::vector<Target> targets;
    Snapshot snapshot;
    {
        const Model::Use storage = model.use();
        const Place place = storage->place(start.session, start.lsu);
        source = {place.server_index, place.lsu_index};
        snapshot = find_snapshot(place.lsu, start.snapshot)->second;
        targets = find_targets(*storage, storage->session(start.session), start.targets);
        if (targets.empty()) throw Fault(kBadValue, "a copy needs a target");
        require_place_at(*storage, targets, snapshot.name);
    }
    snapshot.content = snapshot.content.captured();
    operation.server = source.server;
    operation.bytes = snapshot.size;
    operation.effect = [source, targets, snapshot](Storage& storage) {
        find_snapshot(lsu_at(storage, source), snapshot.name);
        return add_snapshots(storage, source, targets, snapshot);
    };
    return operation;
}

LongOperation post_process_operation(Model& model, const SnapshotStart& start)
{
    const Model::Use storage = model.use();
    const Place place = storage->place(start.session, start.lsu);
    const std::string name = find_snapshot(place.lsu, start.snapshot)->second.name;
    const LsuPosition position{place.server_index, place.lsu_index};
    LongOperation operation;
    operation.kind = OperationKind::kPostProcess;
    operation.server = position.server;
    operation.effect = [position, name](Storage& storage_then) {
        find_snapshot(lsu_at(storage_then, position), name)->second.status = kPostProcessed;
        return OperationResult();
    };
    return operation;
}

} // namespace soapwrapper::simulator
