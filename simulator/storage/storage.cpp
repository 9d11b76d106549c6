#include "simulator/storage/storage.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/text.h"
#include "simulator/storage/announcements.h"
#include "simulator/storage/event_log.h"
#include "simulator/storage/event_records.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage_server.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

// A host's record has no room for more. Names are kept for as long as what they open.
constexpr std::size_t kLongestHost = 511;

// The next entry of which `find` knows the object still.
template <class Find>
auto& next_of(Cursor& cursor, Find find)
{
    while (cursor.next < cursor.entries.size()) {
        if (auto* found = find(cursor.entries[cursor.next++])) return *found;
    }
    throw Fault(kEndOfList, "the list has no more entries");
}

template <class Objects>
auto* find_by_serial(Objects& objects, Serial serial)
{
    const auto entry = objects.find(serial);
    return entry == objects.end() ? nullptr : &entry->second;
}

} // namespace

Storage::Storage(const Scenario& scenario) : change_list_settings(scenario.change_lists), time_(scenario.time)
{
    for (const ServerScenario& described : scenario.servers) {
        StorageServer& server = servers_.emplace_back();
        server.scenario = described;
        for (LsuScenario& from : server.scenario.lsus) {
            Lsu& lsu = server.lsus.emplace_back();
            lsu.properties = std::move(from.properties);
            for (Image& image : from.images) lsu.images.emplace(next_serial(), std::move(image));
            for (Snapshot& snapshot : from.snapshots) {
                lsu.snapshots.emplace(next_serial(), std::move(snapshot));
            }
        }
        server.scenario.lsus.clear();
        announce_start(server);
    }
}

std::size_t Storage::server_index(const std::string& name) const
{
    const std::size_t colon = name.find(':');
    if (colon != std::string::npos && colon + 1 < name.size() && name.size() - colon <= kLongestHost + 1) {
        for (std::size_t i = 0; i < servers_.size(); ++i) {
            if (name.compare(0, colon, servers_[i].scenario.prefix) == 0) return i;
        }
    }
    throw Fault(kUnknownServer, "no server is called \"" + printable(name) + "\"");
}

std::string Storage::open_session(const std::string& name)
{
    const std::size_t index = server_index(name);
    StorageServer& server = servers_[index];
    if (server.open_sessions >= server.scenario.max_sessions) {
        throw Fault(kTooManySessions, "the server has no room for another session");
    }
    std::string token = sessions_.add({index, name});
    ++server.open_sessions;
    announce_session_opened(server);
    return token;
}

const Session& Storage::session(const std::string& token) const
{
    const Session* found = sessions_.find(token);
    if (!found) throw Fault(kBadHandle, "the server handle was never issued or is closed");
    return *found;
}

void Storage::close_session(const std::string& token)
{
    StorageServer& server = servers_[session(token).server];
    --server.open_sessions;
    announce_session_closed(server);
    const auto is_of_it = [&token](const auto& opened) { return opened.session == token; };
    server.claims.erase(std::remove_if(server.claims.begin(), server.claims.end(), is_of_it),
                        server.claims.end());
    lsu_lists.close_if(is_of_it);
    image_lists.close_if(is_of_it);
    snapshot_lists.close_if(is_of_it);
    images.close_if(is_of_it);
    change_lists.close_if(is_of_it);
    server.listings.end(token);
    sessions_.erase(token);
}

std::size_t Storage::lsu_index(std::size_t server, const std::string& name) const
{
    const std::vector<Lsu>& lsus = servers_[server].lsus;
    const auto found =
        std::find_if(lsus.begin(), lsus.end(), [&](const Lsu& lsu) { return lsu.properties.name == name; });
    if (found == lsus.end()) {
        throw Fault(kUnknownLsu, "the server has no LSU called \"" + printable(name) + "\"");
    }
    return static_cast<std::size_t>(found - lsus.begin());
}

Place Storage::place(const std::string& session_token, const std::string& lsu_name)
{
    const Session& from = session(session_token);
    const std::size_t index = lsu_index(from.server, lsu_name);
    StorageServer& server = servers_[from.server];
    return {session_token, from.name, server, from.server, index, server.lsus[index]};
}

const std::string& Storage::next_lsu(const std::string& token)
{
    Cursor& cursor = lsu_lists.at(token);
    StorageServer& holder = servers_[cursor.server];
    return next_of(cursor, [&](const Cursor::Entry& entry) { return &holder.lsus[entry.lsu].properties; })
        .name;
}

const Image& Storage::next_image(const std::string& token)
{
    Cursor& cursor = image_lists.at(token);
    StorageServer& holder = servers_[cursor.server];
    return next_of(cursor, [&](const Cursor::Entry& entry) {
        return find_by_serial(holder.lsus[entry.lsu].images, entry.serial);
    });
}

const Snapshot& Storage::next_snapshot(const std::string& token)
{
    Cursor& cursor = snapshot_lists.at(token);
    StorageServer& holder = servers_[cursor.server];
    return next_of(cursor, [&](const Cursor::Entry& entry) {
        return find_by_serial(holder.lsus[entry.lsu].snapshots, entry.serial);
    });
}

const Event& Storage::next_event(const std::string& token)
{
    EventChannel& channel = event_channels.at(token);
    const Event* event = servers_[channel.server].events.first_from(channel.next);
    if (!event) throw Fault(kEndOfList, "the channel has no event at present");
    channel.next = std::int64_t{event->seqno} + 1;
    return *event;
}

} // namespace soapwrapper::simulator
