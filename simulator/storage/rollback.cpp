#include "simulator/storage/rollback.h"

#include "simulator/scenario/content.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/operation_settings.h"
#include "simulator/scenario/records.h"
#include "simulator/storage/announcements.h"
#include "simulator/storage/holdings.h"
#include "simulator/storage/long_operations.h"
#include "simulator/storage/model.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

bool is_given_up(const Rollback& rollback, const Snapshot& snapshot)
{
    return std::find(rollback.given_up.begin(), rollback.given_up.end(), snapshot.name) !=
           rollback.given_up.end();
}

// A volume that goes back to a snapshot of its own loses what is newer. Any other volume is overwritten and
// loses all.
std::vector<Cursor::Entry> lost_snapshots(Storage& storage, const Rollback& rollback)
{
    const auto source = find_snapshot(lsu_at(storage, rollback.source), rollback.snapshot);
    const bool is_its_own =
        rollback.server == rollback.source.server && means(rollback.volume, source->second.volume);
    std::vector<Cursor::Entry> lost;
    const std::vector<Lsu>& lsus = storage.server(rollback.server).lsus;
    for (std::size_t i = 0; i < lsus.size(); ++i) {
        for (const auto& [serial, snapshot] : lsus[i].snapshots) {
            if (!means(rollback.volume, snapshot.volume)) continue;
            if (!is_its_own || serial > source->first) lost.push_back({i, serial});
        }
    }
    return lost;
}

// What a rollback may take away, or the fault that it may not.
std::vector<Cursor::Entry> require_free_way(Storage& storage, const Rollback& rollback)
{
    if (!snapshots_in_the_way(storage, rollback).empty()) {
        throw Fault(kSnapshotsInTheWay,
                    "the rollback would take away snapshots that aren't in its rollbackList");
    }
    std::vector<Cursor::Entry> lost = lost_snapshots(storage, rollback);
    const StorageServer& server = storage.server(rollback.server);
    if (std::any_of(lost.begin(), lost.end(),
                    [&](const Cursor::Entry& entry) { return server.exports.holds(entry.serial); })) {
        throw Fault(kInUse, "a snapshot that the rollback takes away is exported");
    }
    return lost;
}

} // namespace

std::vector<Cursor::Entry> snapshots_in_the_way(Storage& storage, const Rollback& rollback)
{
    std::vector<Cursor::Entry> in_the_way = lost_snapshots(storage, rollback);
    const std::vector<Lsu>& lsus = storage.server(rollback.server).lsus;
    in_the_way.erase(std::remove_if(in_the_way.begin(), in_the_way.end(),
                                    [&](const Cursor::Entry& entry) {
                                        return is_given_up(rollback,
                                                           lsus[entry.lsu].snapshots.at(entry.serial));
                                    }),
                     in_the_way.end());
    return in_the_way;
}

LongOperation rollback_operation(Model& model, const Rollback& rollback)
{
    LongOperation operation;
    operation.kind = OperationKind::kRollback;
    operation.server = rollback.source.server;
    Content content;
    {
        const Model::Use storage = model.use();
        require_free_way(*storage, rollback);
        const Snapshot& source = find_snapshot(lsu_at(*storage, rollback.source), rollback.snapshot)->second;
        operation.bytes = source.size;
        content = source.content;
    }
    content = content.captured();
    operation.effect = [rollback, content](Storage& storage) {
        const LsuPosition target = position_of(storage, rollback.server, rollback.volume);
        for (const Cursor::Entry& lost : require_free_way(storage, rollback)) {
            delete_snapshot(storage, {rollback.server, lost.lsu}, lost.serial);
        }
        Lsu& lsu = lsu_at(storage, target);
        lsu.properties.content = content;
        announce_rollback(storage.server(target.server), lsu);
        return OperationResult();
    };
    return operation;
}

} // namespace soapwrapper::simulator
