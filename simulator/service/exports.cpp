#include "simulator/service/exports.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/service/call.h"
#include "simulator/service/wire.h"
#include "simulator/storage/announcements.h"
#include "simulator/storage/export_account.h"
#include "simulator/storage/model.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

// The hosts that are named; a client fills up its list with empty names.
std::vector<std::string> hosts_of(const ns1__HostSpecification* wire)
{
    const ns1__HostSpecification& host = required(wire, "host");
    std::vector<std::string> names;
    if (!host.hostname) return names;
    std::copy_if(host.hostname->item.begin(), host.hostname->item.end(), std::back_inserter(names),
                 [](const std::string& name) { return !name.empty(); });
    return names;
}

// How hosts reach the source: by a name that no other export has.
Volume exported_volume(const Volume& source, const std::string& filer, const std::string& name)
{
    switch (source.kind) {
    case VolumeKind::kNfs:
        return {source.kind, {filer, "/export/" + name, source.texts[2]}};
    case VolumeKind::kCifs:
        return {source.kind, {filer, name + "$", source.texts[2]}};
    case VolumeKind::kScsi:
        return {source.kind, {source.texts[0], name, ""}};
    case VolumeKind::kDevice:
        return {source.kind, {"/dev/export/" + name, "", ""}};
    case VolumeKind::kNdmp:
        return {source.kind, {filer, "/export/" + name, ""}};
    }
    throw Fault(kBadValue, "the volume is of no known kind");
}

const Export& add_export(Storage& storage, const Place& place, const Volume& source,
                         const std::string& source_name, Serial snapshot, std::vector<std::string> hosts)
{
    const std::string name = source_name + "." + std::to_string(storage.next_serial());
    const Volume volume = exported_volume(source, host_of(place.server_name), name);
    const Export& made = place.server.exports.add({place.lsu_index, snapshot, volume, std::move(hosts)});
    announce_export(place.server, made, storage.date());
    return made;
}

} // namespace

void handle(Call& call, const _ns1__createExport& request, _ns1__createExportResponse& response)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    const auto snapshot = find_snapshot(place.lsu, request.snapName);
    const Volume exported = add_export(*storage, place, snapshot->second.volume, request.snapName,
                                       snapshot->first, hosts_of(request.host))
                                .volume;
    response.exportedVolume = wire_volume(call, exported);
}

void handle(Call& call, const _ns1__addExport& request, _ns1__addExportResponse& response)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    const Volume source = volume_of(request.sourceVolSpec, "sourceVolSpec");
    std::vector<std::string> hosts = hosts_of(request.host);
    if (Export* exported = place.server.exports.find(source)) {
        place.server.exports.add_hosts(*exported, hosts);
        response.exportedVolume = wire_volume(call, exported->volume);
        return;
    }
    if (!knows_volume(place.lsu, source)) throw Fault(kUnknownVolume, "the LSU knows no such volume");
    response.exportedVolume =
        wire_volume(call, add_export(*storage, place, source, "volume", 0, std::move(hosts)).volume);
}

void handle(Call& call, const _ns1__deleteExport& request, _ns1__deleteExportResponse&)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    const std::vector<std::string> hosts = hosts_of(request.host);
    const Volume volume = volume_of(request.exportedVolume, "exportedVolume");
    ExportAccount& exports = place.server.exports;
    Export* exported = exports.find(volume);
    if (!exported || exported->lsu != place.lsu_index) {
        throw Fault(kUnknownExport, "the volume isn't an export of the LSU");
    }
    exports.remove_hosts(*exported, hosts);
    if (!hosts.empty() && !exported->hosts.empty()) return;
    announce_export_ended(place.server, *exported, storage->date());
    exports.erase(*exported);
}

void handle(Call& call, const _ns1__claimVolume& request, _ns1__claimVolumeResponse&)
{
    const Model::Use storage = call.model().use();
    const std::string& token = token_of(request.serverHandle);
    StorageServer& server = storage->server(storage->session(token).server);
    const Volume volume = volume_of(request.volume, "volume");
    if (!knows_volume(server, volume) && !server.exports.find(volume)) {
        throw Fault(kUnknownVolume, "the server knows no such volume");
    }
    for (const Claim& claim : server.claims) {
        if (!means(volume, claim.volume) && !means(claim.volume, volume)) continue;
        if (claim.session != token) throw Fault(kInUse, "another session claims the volume");
        return;
    }
    server.claims.push_back({volume, token});
}

} // namespace soapwrapper::simulator
