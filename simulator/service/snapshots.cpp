#include "simulator/service/snapshots.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/service/call.h"
#include "simulator/service/start_wire.h"
#include "simulator/service/wire.h"
#include "simulator/storage/holdings.h"
#include "simulator/storage/model.h"
#include "simulator/storage/rollback.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

ns1__SnapDefinition* wire_definition(const Call& call, const Snapshot& snapshot)
{
    ns1__SnapDefinition* definition = call.make(soap_new_ns1__SnapDefinition);
    definition->snapName = snapshot.name;
    definition->snapType = snapshot.type;
    definition->snapFlags = snapshot.flags;
    definition->snapSaveas = snapshot.saveas;
    definition->isid = wire_supplier_id(call, snapshot.isid);
    return definition;
}

// The server's snapshots of the volume, in the order of its LSUs.
Cursor snapshots_of(Storage& storage, const std::string& session, std::size_t server, const Volume& volume)
{
    Cursor cursor{session, server, {}, 0};
    const std::vector<Lsu>& lsus = storage.server(server).lsus;
    for (std::size_t i = 0; i < lsus.size(); ++i) {
        for (const auto& [serial, snapshot] : lsus[i].snapshots) {
            if (means(volume, snapshot.volume)) cursor.entries.push_back({i, serial});
        }
    }
    return cursor;
}

void require_known(const StorageServer& server, const Volume& volume)
{
    if (!knows_volume(server, volume)) throw Fault(kUnknownVolume, "the server knows no such volume");
}

ns1__SnapListHandle* open_list(const Call& call, Storage& storage, Cursor cursor)
{
    return wire_handle(call, soap_new_ns1__SnapListHandle, storage.snapshot_lists.open(std::move(cursor)));
}

} // namespace

ns1__SnapInformation* wire_snapshot(const Call& call, const Snapshot& snapshot,
                                    const std::string& server_name, const std::string& lsu_name)
{
    ns1__SnapInformation* info = call.make(soap_new_ns1__SnapInformation);
    info->snapDef = wire_definition(call, snapshot);
    info->snapServer = server_name;
    info->snapLsu = lsu_name;
    info->snapVolSpec = wire_volume(call, snapshot.volume);
    info->snapStatus = snapshot.status;
    info->snapSize = snapshot.size;
    return info;
}

void handle(Call& call, const _ns1__openSnapList& request, _ns1__openSnapListResponse& response)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    Cursor cursor{place.session, place.server_index, {}, 0};
    for (const auto& entry : place.lsu.snapshots) cursor.entries.push_back({place.lsu_index, entry.first});
    response.snapListHandle = open_list(call, *storage, std::move(cursor));
}

void handle(Call& call, const _ns1__openSnapListByVolume& request, _ns1__openSnapListResponse& response)
{
    const Model::Use storage = call.model().use();
    const std::string& token = token_of(request.serverHandle);
    const std::size_t server = storage->session(token).server;
    const Volume volume = volume_of(request.volSpec, "volSpec");
    require_known(storage->server(server), volume);
    response.snapListHandle = open_list(call, *storage, snapshots_of(*storage, token, server, volume));
}

void handle(Call& call, const _ns1__listSnap& request, _ns1__listSnapResponse& response)
{
    const Model::Use storage = call.model().use();
    response.snapDef =
        wire_definition(call, storage->next_snapshot(token_of(request.snapListHandle, "snapListHandle")));
}

void handle(Call& call, const _ns1__closeSnapList& request, _ns1__closeSnapListResponse&)
{
    const Model::Use storage = call.model().use();
    storage->snapshot_lists.close(token_of(request.snapListHandle, "snapListHandle"));
}

void handle(Call& call, const _ns1__getSnapPropByName& request, _ns1__getSnapPropByNameResponse& response)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    const Snapshot& snapshot =
        find_snapshot(place.lsu, required(request.snapDef, "snapDef").snapName)->second;
    response.snapInfo = wire_snapshot(call, snapshot, place.server_name, place.lsu.properties.name);
}

void handle(Call& call, const _ns1__deleteSnap& request, _ns1__deleteSnapResponse&)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    const auto snapshot = find_snapshot(place.lsu, required(request.snapDef, "snapDef").snapName);
    if (place.server.exports.holds(snapshot->first)) throw Fault(kInUse, "the snapshot is exported");
    delete_snapshot(*storage, {place.server_index, place.lsu_index}, snapshot->first);
}

void handle(Call& call, const _ns1__validateRollback& request, _ns1__validateRollbackResponse& response)
{
    const Model::Use storage = call.model().use();
    const Rollback rollback = rollback_of(*storage, request);
    Cursor cursor{token_of(request.lsu->serverHandle), rollback.server, {}, 0};
    cursor.entries = snapshots_in_the_way(*storage, rollback);
    response.snapListHandle = open_list(call, *storage, std::move(cursor));
}

} // namespace soapwrapper::simulator
