#include "simulator/snapshots.h"

#include "simulator/wire.h"

#include <algorithm>

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

// The server's snapshots that `fits` accepts, in the order of its LSUs.
template <class Fits>
Cursor snapshots_where(Storage& storage, const std::string& session, std::size_t server, Fits fits)
{
    Cursor cursor{session, server, {}, 0};
    const std::vector<Lsu>& lsus = storage.server(server).lsus;
    for (std::size_t i = 0; i < lsus.size(); ++i) {
        for (const auto& [serial, snapshot] : lsus[i].snapshots) {
            if (fits(serial, snapshot)) cursor.entries.push_back({i, serial});
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

// The snapshots that the client is ready to lose already.
std::vector<std::string> given_up(const _ns1__validateRollback& request)
{
    std::vector<std::string> names;
    if (request.rollbackList) names = request.rollbackList->item;
    if (request.numRollbacks < 0 || static_cast<std::size_t>(request.numRollbacks) != names.size()) {
        throw Fault(kBadValue, "numRollbacks is not the number of names in the rollbackList");
    }
    return names;
}

} // namespace

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
    Cursor cursor = snapshots_where(*storage, token, server, [&](Serial, const Snapshot& snapshot) {
        return means(volume, snapshot.volume);
    });
    response.snapListHandle = open_list(call, *storage, std::move(cursor));
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
    ns1__SnapInformation* info = call.make(soap_new_ns1__SnapInformation);
    info->snapDef = wire_definition(call, snapshot);
    info->snapServer = place.server_name;
    info->snapLsu = place.lsu.properties.name;
    info->snapVolSpec = wire_volume(call, snapshot.volume);
    info->snapStatus = snapshot.status;
    info->snapSize = snapshot.size;
    response.snapInfo = info;
}

void handle(Call& call, const _ns1__deleteSnap& request, _ns1__deleteSnapResponse&)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    const auto snapshot = find_snapshot(place.lsu, required(request.snapDef, "snapDef").snapName);
    const std::vector<Export>& exports = place.server.exports;
    if (std::any_of(exports.begin(), exports.end(),
                    [&](const Export& each) { return each.snapshot == snapshot->first; })) {
        throw Fault(kInUse, "the snapshot is exported");
    }
    place.lsu.release(snapshot->second.size);
    place.lsu.snapshots.erase(snapshot);
}

// A volume that goes back to a snapshot of its own loses what is newer. Any other volume is overwritten and
// loses all.
void handle(Call& call, const _ns1__validateRollback& request, _ns1__validateRollbackResponse& response)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    const auto source = find_snapshot(place.lsu, required(request.snapDef, "snapDef").snapName);
    // An empty token is no handle: the client means the server of the LSU.
    const std::string& target_token =
        required(required(request.targetServerHandle, "targetServerHandle").token, "token");
    const std::size_t target =
        target_token.empty() ? place.server_index : storage->session(target_token).server;
    const Volume volume = volume_of(request.targetVolSpec, "targetVolSpec");
    require_known(storage->server(target), volume);
    const std::vector<std::string> excepted = given_up(request);

    const bool is_its_own = target == place.server_index && means(volume, source->second.volume);
    const auto is_in_the_way = [&](Serial serial, const Snapshot& snapshot) {
        return means(volume, snapshot.volume) && (!is_its_own || serial > source->first) &&
               std::find(excepted.begin(), excepted.end(), snapshot.name) == excepted.end();
    };
    response.snapListHandle =
        open_list(call, *storage, snapshots_where(*storage, place.session, target, is_in_the_way));
}

} // namespace soapwrapper::simulator
