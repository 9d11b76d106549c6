#include "simulator/storage/events_view.h"

#include "simulator/storage/event_records.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"
#include "simulator/storage/storage_view.h"

#include <algorithm>
#include <cstddef>
#include <tuple>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

struct Found {
    const StorageServer* server;
    const Event* event;
};

// No more of one server's than are wanted of all.
void find_newest(const StorageServer& server, const EventsWanted& wanted, std::vector<Found>& found)
{
    std::size_t left = wanted.most;
    const auto& events = server.events.all();
    for (auto each = events.rbegin(); each != events.rend() && left != 0; ++each) {
        if (each->first <= wanted.after) return;
        if (wanted.kind && each->second.kind() != *wanted.kind) continue;
        found.push_back({&server, &each->second});
        --left;
    }
}

} // namespace

std::vector<EventView> newest_events(const Storage& storage, const EventsWanted& wanted)
{
    std::vector<Found> found;
    if (wanted.server) {
        find_newest(storage.server(server_of_prefix(storage, *wanted.server)), wanted, found);
    } else {
        for (const StorageServer& server : storage.servers()) find_newest(server, wanted, found);
    }
    std::sort(found.begin(), found.end(), [](const Found& one, const Found& other) {
        return std::tie(one.event->recorded, one.event->seqno) >
               std::tie(other.event->recorded, other.event->seqno);
    });
    if (found.size() > wanted.most) found.resize(wanted.most);
    std::vector<EventView> views;
    views.reserve(found.size());
    for (const Found& each : found) views.push_back({each.server->scenario.prefix, *each.event});
    return views;
}

} // namespace soapwrapper::simulator
