#include "simulator/api/state_json.h"

#include "simulator/api/record_json.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/operation_settings.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/simulated_time.h"
#include "simulator/storage/operations_view.h"
#include "simulator/storage/storage_view.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <cstddef>
#include <vector>

namespace soapwrapper::simulator
{

using nlohmann::json;

namespace
{

// An array of what `describe` makes of each.
template <class Items, class Describe>
json array_of(const Items& items, Describe describe)
{
    json array = json::array();
    for (const auto& item : items) array.push_back(describe(item));
    return array;
}

json partner_json(const ReplicationPartner& partner)
{
    return {{"server", partner.server}, {"lsu", partner.lsu}};
}

json shown_image(const ImageView& view)
{
    json image = image_json(view.image);
    image["isOpen"] = view.is_open;
    return image;
}

json shown_snapshot(const ShownSnapshot& shown)
{
    json snapshot = snapshot_json(shown.snapshot);
    snapshot["isExported"] = shown.is_exported;
    return snapshot;
}

json lsu_json(const LsuView& lsu)
{
    const LsuProperties& properties = lsu.properties;
    return {{"name", properties.name},
            {"label", properties.label},
            {"description", properties.description},
            {"capacity", properties.capacity},
            {"used", properties.used},
            {"capacityPhys", properties.capacity_phys},
            {"usedPhys", properties.used_phys},
            {"images", array_of(lsu.images, shown_image)},
            {"snapshots", array_of(lsu.snapshots, shown_snapshot)},
            {"sources", array_of(properties.sources, partner_json)},
            {"targets", array_of(properties.targets, partner_json)},
            {"volumes", array_of(properties.volumes, volume_json)}};
}

json session_json(const SessionView& session)
{
    return {{"number", session.number}, {"name", session.name}};
}

json export_json(const ExportView& exported)
{
    return {{"lsu", exported.lsu},
            {"snapshot", value_or_null<json>(exported.snapshot)},
            {"volume", volume_json(exported.volume)},
            {"hosts", exported.hosts},
            {"hostCount", exported.host_count}};
}

json claim_json(const ClaimView& claim)
{
    return {{"volume", volume_json(claim.volume)}, {"session", claim.session}};
}

json open_json(const OpenView& open)
{
    return {{"kind", open.kind},
            {"session", value_or_null<json>(open.session)},
            {"entries", value_or_null<json>(open.entries)},
            {"read", value_or_null<json>(open.read)}};
}

json server_json(const ServerView& server)
{
    return {{"prefix", server.prefix},
            {"types", server.types},
            {"capabilities", server.capabilities},
            {"maxSessions", server.max_sessions},
            {"sessions", array_of(server.sessions, session_json)},
            {"sessionCount", server.session_count},
            {"lsus", array_of(server.lsus, lsu_json)},
            {"exports", array_of(server.exports, export_json)},
            {"claims", array_of(server.claims, claim_json)},
            {"open", array_of(server.open, open_json)},
            {"openCount", server.open_count}};
}

double seconds(Instant time)
{
    return std::chrono::duration<double>(time).count();
}

const char* state_of(const OperationView& operation)
{
    if (operation.is_running) return "running";
    if (operation.error == 0) return "done";
    return operation.error == kCancelled ? "cancelled" : "failed";
}

json operation_json(const OperationView& operation)
{
    return {{"number", operation.number},
            {"kind", kOperationKindNames[static_cast<std::size_t>(operation.kind)]},
            {"server", operation.server},
            {"name", value_or_null<json>(operation.name)},
            {"state", state_of(operation)},
            {"error", operation.is_running ? 0 : operation.error},
            {"bytes", operation.bytes},
            {"bytesMoved", operation.bytes_moved},
            {"seconds", seconds(operation.length)},
            {"elapsed", seconds(operation.elapsed)},
            {"result", operation.result}};
}

} // namespace

json servers_json(const StorageView& storage)
{
    return array_of(storage.servers, server_json);
}

json operations_json(const std::vector<OperationView>& operations)
{
    return array_of(operations, operation_json);
}

} // namespace soapwrapper::simulator
