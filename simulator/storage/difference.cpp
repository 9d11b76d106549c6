#include "simulator/storage/difference.h"

#include "simulator/scenario/change_list.h"
#include "simulator/scenario/content.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/operation_settings.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/text.h"
#include "simulator/storage/holdings.h"
#include "simulator/storage/long_operations.h"
#include "simulator/storage/model.h"
#include "simulator/storage/start_requests.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

struct Comparison {
    LsuPosition position; // of the snapshot
    std::string name;
    Content was;
    std::vector<Content> is; // of each LSU that holds one of the volumes
};

// A request names the server alone: its first snapshot of the name is meant.
LsuPosition position_of_snapshot(const Storage& storage, std::size_t server, const std::string& name)
{
    const std::vector<Lsu>& lsus = storage.server(server).lsus;
    for (std::size_t i = 0; i < lsus.size(); ++i) {
        for (const auto& entry : lsus[i].snapshots) {
            if (entry.second.name == name) return {server, i};
        }
    }
    throw Fault(kUnknownSnapshot, "the server has no snapshot called \"" + printable(name) + "\"");
}

// An LSU's volumes hold the same, so each LSU is looked at once.
std::vector<LsuPosition> positions_of(const Storage& storage, std::size_t server,
                                      const std::vector<Volume>& volumes)
{
    std::vector<LsuPosition> positions;
    for (const Volume& volume : volumes) {
        const LsuPosition position = position_of(storage, server, volume);
        if (std::find(positions.begin(), positions.end(), position) == positions.end()) {
            positions.push_back(position);
        }
    }
    return positions;
}

Comparison comparison_of(Storage& storage, const DifferenceStart& start)
{
    const std::size_t own = storage.session(start.session).server;
    Comparison comparison;
    comparison.position = position_of_snapshot(storage, own, start.snapshot);
    const Snapshot& snapshot = find_snapshot(lsu_at(storage, comparison.position), start.snapshot)->second;
    comparison.name = snapshot.name;
    comparison.was = snapshot.content;
    const std::size_t target =
        start.target_session.empty() ? own : storage.session(start.target_session).server;
    const std::vector<LsuPosition> present =
        start.volumes.empty() ? std::vector<LsuPosition>{position_of(storage, own, snapshot.volume)}
                              : positions_of(storage, target, start.volumes);
    for (const LsuPosition& position : present) {
        comparison.is.push_back(lsu_at(storage, position).properties.content);
    }
    return comparison;
}

std::vector<DifferingObject> differences_of(const Comparison& comparison)
{
    std::vector<DifferingObject> differences;
    const auto was = comparison.was.files();
    for (const Content& present : comparison.is) {
        for (const FileChange& change : changes_between(*was, *present.files())) {
            differences.push_back({escaped_path(change.path), static_cast<int>(change.record.type),
                                   static_cast<int>(change.kind)});
        }
    }
    return differences;
}

} // namespace

LongOperation difference_operation(Model& model, const DifferenceStart& start)
{
    const Comparison comparison = comparison_of(*model.use(), start);
    OperationResult result;
    result.differences = differences_of(comparison);
    LongOperation operation;
    operation.kind = OperationKind::kDiff;
    operation.server = comparison.position.server;
    operation.found = result.differences.size();
    operation.effect = [position = comparison.position, name = comparison.name,
                        result = std::move(result)](Storage& storage) {
        find_snapshot(lsu_at(storage, position), name);
        return result;
    };
    return operation;
}

} // namespace soapwrapper::simulator
