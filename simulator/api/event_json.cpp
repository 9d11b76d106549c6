#include "simulator/api/event_json.h"

#include "simulator/api/record_json.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/storage/event_records.h"
#include "simulator/storage/events_view.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace soapwrapper::simulator
{

using nlohmann::json;

namespace
{

// In the order of EventKind.
constexpr const char* kKindNames[] = {"operation",  "lsu-info", "server-status", "lsu-status",
                                      "image-info", "activity", "server-info",   "image-replication"};

// What an event of one kind says.
struct Told {
    std::string text;
    json details = json::object();
    json time = nullptr;
};

Told told_of(const OperationEnded& ended)
{
    std::string text = "operation " + std::to_string(ended.number);
    if (ended.is_named) text += " \"" + ended.name + "\"";
    if (ended.error == 0) {
        text += " done";
    } else if (ended.error == kCancelled) {
        text += " cancelled";
    } else {
        text += " failed with " + std::to_string(ended.error);
    }
    // The name of one that has none of its own is the token that opens it.
    return {text,
            {{"operation", ended.number},
             {"name", ended.is_named ? json(ended.name) : json(nullptr)},
             {"bytes", ended.bytes_transferred},
             {"error", ended.error}}};
}

Told told_of(const LsuChanged& changed)
{
    const LsuProperties& lsu = changed.properties;
    return {"LSU " + lsu.name + " has the label \"" + lsu.label + "\"",
            {{"lsu", lsu.name},
             {"label", lsu.label},
             {"capacity", lsu.capacity},
             {"used", lsu.used},
             {"images", changed.images}}};
}

Told told_of(const ServerStatus& status)
{
    const auto told = [](const char* action, const char* text) { return Told{text, {{"action", action}}}; };
    switch (status.action) {
    case ServerAction::kUp:
        return told("up", "the server is up");
    case ServerAction::kFull:
        return told("full", "the server has no room for another session");
    case ServerAction::kRoomAgain:
        return told("room-again", "the server has room for a session again");
    }
    return {};
}

Told told_of(const LsuStatus& status)
{
    const auto told = [&](const char* action, const std::string& text) {
        return Told{text, {{"action", action}, {"lsu", status.name}}};
    };
    switch (status.action) {
    case LsuAction::kLabelled:
        return told("labelled", "LSU " + status.name + " was labelled");
    case LsuAction::kFull:
        return told("full", "LSU " + status.name + " has no room any more");
    case LsuAction::kRolledBack:
        return told("rolled-back", "a volume of LSU " + status.name + " went back to a snapshot");
    }
    return {};
}

Told told_of(const ImageGone& gone)
{
    return {"image " + gone.image.basename + " of LSU " + gone.lsu + " deleted",
            {{"lsu", gone.lsu}, {"image", image_json(gone.image)}}};
}

const char* name_of(ActivityAction action)
{
    switch (action) {
    case ActivityAction::kCreated:
        return "created";
    case ActivityAction::kDeleted:
        return "deleted";
    case ActivityAction::kExported:
        return "exported";
    case ActivityAction::kExportEnded:
        return "export-ended";
    }
    return "";
}

Told told_of(const Activity& activity)
{
    return {activity.message,
            {{"action", name_of(activity.action)},
             {"set", activity.event_set},
             {"lsu", activity.lsu},
             {"snapshot", activity.snapshot ? snapshot_json(*activity.snapshot) : json(nullptr)},
             {"volume", activity.volume ? volume_json(*activity.volume) : json(nullptr)},
             {"hosts", activity.hosts}},
            activity.time};
}

Told told_of(const ServerInformed&)
{
    return {"the server's properties can be asked for"};
}

Told told_of(const ImageReplicated& replicated)
{
    return {"image " + replicated.image.basename + " of LSU " + replicated.lsu + " copied from " +
                replicated.origin_lsu + " of " + replicated.origin_server,
            {{"lsu", replicated.lsu},
             {"image", image_json(replicated.image)},
             {"originServer", replicated.origin_server},
             {"originLsu", replicated.origin_lsu},
             {"origin", image_json(replicated.origin)}}};
}

} // namespace

json event_json(const EventView& view)
{
    const Event& event = view.event;
    Told told = std::visit([](const auto& payload) { return told_of(payload); }, event.payload);
    return {{"server", view.server},
            {"number", event.seqno},
            {"kind", name_of(event.kind())},
            {"inline", event.is_inline},
            {"time", told.time},
            {"text", told.text},
            {"details", std::move(told.details)}};
}

const char* name_of(EventKind kind)
{
    return kKindNames[static_cast<std::size_t>(kind) - 1];
}

std::optional<EventKind> event_kind_of(std::string_view name)
{
    const auto found = std::find(std::begin(kKindNames), std::end(kKindNames), name);
    if (found == std::end(kKindNames)) return std::nullopt;
    return static_cast<EventKind>(found - std::begin(kKindNames) + 1);
}

} // namespace soapwrapper::simulator
