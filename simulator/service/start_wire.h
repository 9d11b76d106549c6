// What requests tell of the long operations that they start.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_START_WIRE_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_START_WIRE_H

#include "simulator/scenario/records.h"
#include "simulator/service/call.h"
#include "simulator/service/wire.h"
#include "simulator/storage/holdings.h"
#include "simulator/storage/rollback.h"
#include "simulator/storage/start_requests.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <vector>

namespace soapwrapper::simulator
{

Snapshot definition_of(const ns1__SnapDefinition* wire, const char* element);
std::vector<NamedLsu> targets_of(const ns1__ArrayOfLSUSpecification* wire, int told);

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

} // namespace soapwrapper::simulator

#endif
