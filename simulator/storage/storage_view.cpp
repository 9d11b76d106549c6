#include "simulator/storage/storage_view.h"

#include "simulator/scenario/content.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/text.h"
#include "simulator/storage/event_log.h"
#include "simulator/storage/export_account.h"
#include "simulator/storage/open_table.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"
#include "simulator/storage/token_table.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

using Serials = std::unordered_set<Serial>;

// What has a number, by server. It is put in order and cut short before anything is copied.
template <class Item>
class NewestByServer
{
  public:
    explicit NewestByServer(std::size_t servers) : items_(servers) {}

    void add(std::size_t server, Item item) { items_[server].push_back(std::move(item)); }

    std::size_t count(std::size_t server) const { return items_[server].size(); }
    // The newest, in the order of their numbers.
    const std::vector<Item>& newest(std::size_t server)
    {
        std::vector<Item>& items = items_[server];
        std::sort(items.begin(), items.end(),
                  [](const Item& one, const Item& other) { return one.number < other.number; });
        if (items.size() > StorageView::kMostShown) items.erase(items.begin(), items.end() - kMost);
        return items;
    }

  private:
    static constexpr auto kMost = static_cast<std::ptrdiff_t>(StorageView::kMostShown);

    std::vector<std::vector<Item>> items_;
};

struct ListedSession {
    Serial number = 0;
    const Session* session = nullptr;
};

void add_sessions(const Storage& storage, StorageView& view)
{
    NewestByServer<ListedSession> sessions(view.servers.size());
    storage.sessions().for_each([&](Serial number, const Session& session) {
        sessions.add(session.server, {number, &session});
    });
    for (std::size_t i = 0; i < view.servers.size(); ++i) {
        ServerView& server = view.servers[i];
        server.session_count = sessions.count(i);
        for (const ListedSession& each : sessions.newest(i)) {
            server.sessions.push_back({each.number, each.session->name});
        }
    }
}

// One kind of what is open: `describe` tells the server and what is shown.
template <class Value, class Describe>
void add_open(const OpenTable<Value>& table, StorageView& view, Describe describe)
{
    NewestByServer<OpenView> open(view.servers.size());
    table.for_each([&](Serial number, const Value& value) {
        auto [server, shown] = describe(value);
        shown.number = number;
        open.add(server, shown);
    });
    for (std::size_t i = 0; i < view.servers.size(); ++i) {
        ServerView& server = view.servers[i];
        server.open_count += open.count(i);
        const std::vector<OpenView>& newest = open.newest(i);
        server.open.insert(server.open.end(), newest.begin(), newest.end());
    }
}

using Described = std::pair<std::size_t, OpenView>; // behind its server

void add_lists(const Storage& storage, const OpenTable<Cursor>& lists, const char* kind, StorageView& view)
{
    add_open(lists, view, [&](const Cursor& cursor) {
        return Described(cursor.server, {kind, 0, storage.sessions().number_of(cursor.session),
                                         cursor.entries.size(), cursor.next});
    });
}

void add_all_open(const Storage& storage, StorageView& view)
{
    const TokenTable<Session>& sessions = storage.sessions();
    add_lists(storage, storage.lsu_lists, "LSU list", view);
    add_lists(storage, storage.image_lists, "image list", view);
    add_lists(storage, storage.snapshot_lists, "snapshot list", view);
    add_open(storage.change_lists, view, [&](const OpenChangeList& list) {
        return Described(storage.session(list.session).server,
                         {"change list", 0, sessions.number_of(list.session), list.delivery->size(),
                          list.delivery->read()});
    });
    add_open(storage.images, view, [&](const OpenImage& image) {
        return Described(image.server,
                         {"image", 0, sessions.number_of(image.session), std::nullopt, std::nullopt});
    });
    add_open(storage.event_channels, view, [](const EventChannel& channel) {
        return Described(channel.server, {"event channel", 0, std::nullopt, std::nullopt, std::nullopt});
    });
}

ExportView view_of(const StorageServer& server, const Export& exported)
{
    const Lsu& lsu = server.lsus[exported.lsu];
    ExportView view;
    view.lsu = lsu.properties.name;
    const auto snapshot = lsu.snapshots.find(exported.snapshot);
    if (snapshot != lsu.snapshots.end()) view.snapshot = snapshot->second.name;
    view.volume = exported.volume;
    view.host_count = exported.hosts.size();
    const std::size_t shown = std::min(view.host_count, StorageView::kMostHosts);
    view.hosts.assign(exported.hosts.begin(), exported.hosts.begin() + static_cast<std::ptrdiff_t>(shown));
    return view;
}

LsuView view_of(const Lsu& lsu, const Serials& open_images, const Serials& exported)
{
    LsuView view;
    view.properties = lsu.properties;
    for (const auto& [serial, image] : lsu.images) {
        view.images.push_back({image, open_images.count(serial) != 0});
    }
    for (const auto& [serial, snapshot] : lsu.snapshots) {
        view.snapshots.push_back({snapshot, exported.count(serial) != 0});
    }
    return view;
}

ServerView view_of(const Storage& storage, const StorageServer& server, const Serials& open_images)
{
    ServerView view;
    view.prefix = server.scenario.prefix;
    view.types = server.scenario.types;
    view.capabilities = server.scenario.capabilities;
    view.max_sessions = server.scenario.max_sessions;
    Serials exported;
    for (const Export& each : server.exports.all()) {
        exported.insert(each.snapshot);
        view.exports.push_back(view_of(server, each));
    }
    for (const Lsu& lsu : server.lsus) view.lsus.push_back(view_of(lsu, open_images, exported));
    for (const Claim& claim : server.claims) {
        view.claims.push_back({claim.volume, storage.sessions().number_of(claim.session)});
    }
    return view;
}

const Content& content_of(const Lsu& lsu, const std::string& name)
{
    const auto found = std::find_if(lsu.snapshots.begin(), lsu.snapshots.end(),
                                    [&](const auto& entry) { return entry.second.name == name; });
    if (found == lsu.snapshots.end()) {
        throw Fault(kUnknownSnapshot, "the LSU has no snapshot called \"" + printable(name) + "\"");
    }
    return found->second.content;
}

} // namespace

StorageView view_of(const Storage& storage)
{
    Serials open_images;
    storage.images.for_each([&](Serial, const OpenImage& open) { open_images.insert(open.image.serial); });
    StorageView view;
    view.date = storage.date();
    for (const StorageServer& server : storage.servers()) {
        view.servers.push_back(view_of(storage, server, open_images));
    }
    add_sessions(storage, view);
    add_all_open(storage, view);
    return view;
}

SnapshotPair snapshots_of(const Storage& storage, const std::string& server, const std::string& lsu,
                          const std::optional<std::string>& base, const std::string& later)
{
    const std::size_t index = server_of_prefix(storage, server);
    const Lsu& holder = storage.server(index).lsus[storage.lsu_index(index, lsu)];
    return {base ? content_of(holder, *base) : Content(), content_of(holder, later)};
}

std::size_t server_of_prefix(const Storage& storage, const std::string& prefix)
{
    const std::vector<StorageServer>& servers = storage.servers();
    const auto found = std::find_if(servers.begin(), servers.end(), [&](const StorageServer& server) {
        return server.scenario.prefix == prefix;
    });
    if (found == servers.end()) {
        throw Fault(kUnknownServer, "no server has the prefix \"" + printable(prefix) + "\"");
    }
    return static_cast<std::size_t>(found - servers.begin());
}

} // namespace soapwrapper::simulator
