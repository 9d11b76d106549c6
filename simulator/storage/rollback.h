// A volume's return to one of the snapshots.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_ROLLBACK_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_ROLLBACK_H

#include "simulator/scenario/records.h"
#include "simulator/service/wire.h"
#include "simulator/storage/holdings.h"
#include "simulator/storage/model.h"
#include "simulator/storage/operations.h"
#include "simulator/storage/storage.h"

#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

struct Rollback {
    LsuPosition source; // of the snapshot
    std::string snapshot;
    std::size_t server = 0; // of the volume that goes back
    Volume volume;
    std::vector<std::string> given_up; // snapshots that the client is ready to lose
};

// What a request means. All that are about a rollback have the same elements for it.
template <class Request>
Rollback rollback_of(Storage& storage, const Request& request)
{
    const Place place = place_of(storage, request.lsu);
    Rollback rollback;
    rollback.source = {place.server_index, place.lsu_index};
    rollback.snapshot = find_snapshot(place.lsu, required(request.snapDef, "snapDef").snapName)->second.name;
    rollback.server = target_server_of(storage, place.server_index, request.targetServerHandle);
    rollback.volume = volume_of(request.targetVolSpec, "targetVolSpec");
    position_of(storage, rollback.server, rollback.volume);
    rollback.given_up = items_of(request.rollbackList, request.numRollbacks, "rollbackList");
    return rollback;
}

// The snapshots that would be lost, without those that are given up.
std::vector<Cursor::Entry> snapshots_in_the_way(Storage& storage, const Rollback& rollback);

// Ready to be started, or the fault that tells why not.
Operation rollback_operation(Model& model, const Rollback& rollback);

} // namespace soapwrapper::simulator

#endif
