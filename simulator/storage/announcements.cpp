#include "simulator/storage/announcements.h"

#include "simulator/scenario/records.h"
#include "simulator/scenario/text.h"
#include "simulator/storage/event_records.h"
#include "simulator/storage/export_account.h"
#include "simulator/storage/storage_server.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr std::size_t kMostHosts = 16;
constexpr std::size_t kLongestHost = 255;

void announce_status(StorageServer& server, LsuAction action, const Lsu& lsu)
{
    server.events.add_inline(LsuStatus{action, lsu.properties.name});
}

bool is_full(const Lsu& lsu, std::int64_t used)
{
    return used >= lsu.properties.capacity;
}

Activity about_snapshot(std::int64_t date, ActivityAction action, const Lsu& lsu, const Snapshot& snapshot,
                        const char* what)
{
    Activity activity;
    activity.action = action;
    activity.time = date;
    activity.event_set = "snapshots";
    activity.lsu = lsu.properties.name;
    activity.snapshot = snapshot;
    activity.volume = snapshot.volume;
    activity.message = "snapshot " + snapshot.name + " of LSU " + lsu.properties.name + " " + what;
    return activity;
}

// No more of an export's hosts than a host's record can hold: a client may name any number.
std::vector<std::string> told_hosts(const std::vector<std::string>& hosts)
{
    std::vector<std::string> told;
    for (const std::string& host : hosts) {
        if (told.size() == kMostHosts) break;
        told.push_back(host.size() <= kLongestHost ? host : printable(host));
    }
    return told;
}

Activity about_export(std::int64_t date, ActivityAction action, const StorageServer& server,
                      const Export& exported, const char* what)
{
    const Lsu& lsu = server.lsus[exported.lsu];
    const auto snapshot = lsu.snapshots.find(exported.snapshot);
    Activity activity;
    activity.action = action;
    activity.time = date;
    activity.event_set = "exports";
    activity.lsu = lsu.properties.name;
    std::string subject = "a volume";
    if (snapshot != lsu.snapshots.end()) {
        activity.snapshot = snapshot->second;
        subject = "snapshot " + snapshot->second.name;
    }
    activity.volume = exported.volume;
    activity.hosts = told_hosts(exported.hosts);
    activity.message = subject + " of LSU " + activity.lsu + " " + what;
    return activity;
}

} // namespace

void announce_start(StorageServer& server)
{
    server.events.add_inline(ServerStatus{ServerAction::kUp});
    server.events.add_detached(ServerInformed{});
}

void announce_session_opened(StorageServer& server)
{
    if (server.open_sessions != server.scenario.max_sessions) return;
    server.events.add_inline(ServerStatus{ServerAction::kFull});
}

void announce_session_closed(StorageServer& server)
{
    if (server.open_sessions != server.scenario.max_sessions - 1) return;
    server.events.add_inline(ServerStatus{ServerAction::kRoomAgain});
}

void announce_label(StorageServer& server, const Lsu& lsu)
{
    server.events.add_inline(LsuChanged{lsu.properties, lsu.images.size()});
    announce_status(server, LsuAction::kLabelled, lsu);
}

void announce_rollback(StorageServer& server, const Lsu& lsu)
{
    announce_status(server, LsuAction::kRolledBack, lsu);
}

void announce_growth(StorageServer& server, const Lsu& lsu, std::int64_t before)
{
    if (is_full(lsu, before) || !is_full(lsu, lsu.properties.used)) return;
    announce_status(server, LsuAction::kFull, lsu);
}

void announce_image_deleted(StorageServer& server, const Lsu& lsu, const Image& image)
{
    server.events.add_inline(ImageGone{lsu.properties.name, image});
}

void announce_image_copied(StorageServer& server, const Lsu& lsu, const Image& image,
                           const StorageServer& origin_server, const Lsu& origin_lsu, const Image& origin)
{
    server.events.add_detached(ImageReplicated{lsu.properties.name, image, origin_server.scenario.prefix,
                                               origin_lsu.properties.name, origin});
}

void announce_snapshot_created(StorageServer& server, const Lsu& lsu, const Snapshot& snapshot,
                               std::int64_t date)
{
    server.events.add_detached(about_snapshot(date, ActivityAction::kCreated, lsu, snapshot, "created"));
}

void announce_snapshot_deleted(StorageServer& server, const Lsu& lsu, const Snapshot& snapshot,
                               std::int64_t date)
{
    server.events.add_detached(about_snapshot(date, ActivityAction::kDeleted, lsu, snapshot, "deleted"));
}

void announce_export(StorageServer& server, const Export& exported, std::int64_t date)
{
    server.events.add_inline(about_export(date, ActivityAction::kExported, server, exported, "exported"));
}

void announce_export_ended(StorageServer& server, const Export& exported, std::int64_t date)
{
    server.events.add_inline(
        about_export(date, ActivityAction::kExportEnded, server, exported, "no longer exported"));
}

void announce_operation(StorageServer& server, const OperationEnded& ended)
{
    server.events.add_inline(ended);
}

} // namespace soapwrapper::simulator
