#include "simulator/zapi/stand_in.h"

#include "plugin/host/host_records.h"
#include "simulator/scenario/change_list.h"
#include "simulator/scenario/content.h"
#include "simulator/scenario/default_scenario.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scenario_reader.h"
#include "simulator/scenario/text.h"
#include "simulator/zapi/handle_table.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr char kScenarioVariable[] = "SOAPWRAPPER_SIM_SCENARIO";
constexpr char kPasswordVariable[] = "SOAPWRAPPER_SIM_ZAPI_PASSWORD";
constexpr char kUsualPassword[] = "simulator";
constexpr std::string_view kServerPrefix = "ZAPI:";

Scenario read_scenario()
{
    const char* file = std::getenv(kScenarioVariable);
    return file && *file ? load_scenario(file) : default_scenario();
}

std::string expected_password()
{
    const char* set = std::getenv(kPasswordVariable);
    return set ? set : kUsualPassword;
}

template <class Visit>
void for_each_ndmp_volume(const Scenario& scenario, Visit visit)
{
    for (const ServerScenario& server : scenario.servers) {
        for (const LsuScenario& lsu : server.lsus) {
            for (const Volume& volume : lsu.properties.volumes) {
                if (volume.kind == VolumeKind::kNdmp) visit(volume, nullptr);
            }
            for (const Snapshot& snapshot : lsu.snapshots) {
                if (snapshot.volume.kind == VolumeKind::kNdmp) visit(snapshot.volume, &snapshot);
            }
        }
    }
}

bool knows_filer(const Scenario& scenario, std::string_view filer)
{
    bool known = false;
    for_each_ndmp_volume(scenario,
                         [&](const Volume& volume, const Snapshot*) { known |= volume.texts[0] == filer; });
    return known;
}

void fill(sts_file_attr_v11_t& entry, const ListedChange& change)
{
    entry = {};
    change.name.copy(entry.name, sizeof entry.name - 1);
    const FileRecord& record = change.record;
    entry.ftype = static_cast<std::int32_t>(record.type);
    entry.changetype = static_cast<std::int32_t>(change.kind);
    entry.modtime = record.modified;
    entry.accesstime = record.accessed;
    entry.createtime = record.created;
    entry.changetime = record.changed;
    entry.size = record.size;
    entry.ownerid = record.owner;
    entry.groupid = record.group;
    entry.permissions = record.permissions;
    entry.inode = record.inode;
    entry.gnum = record.generation;
}

// Tells the log of a session what is about to leave it.
template <class Work>
auto logged(const SessionLog& log, Work work)
{
    try {
        return work();
    } catch (const std::exception& trouble) {
        log.failure(trouble.what());
        throw;
    }
}

} // namespace

std::uintptr_t next_handle_number()
{
    constexpr std::uintptr_t kStep = 16;
    static std::atomic<std::uintptr_t> last{0};
    return last += kStep;
}

sts_handle_s* StandIn::open_session(const sts_session_def_v7_t& record)
{
    const auto session = std::make_shared<Session>(record);
    logged(session->log, [&] { session->scenario = read_scenario(); });
    session->log.record("session opened");
    return sessions_.add(session);
}

sts_handle_s* StandIn::open_server(const sts_handle_s* handle, const std::string& name,
                                   const FilerLogin& login)
{
    const std::shared_ptr<Session> session = sessions_.at(handle);
    return logged(session->log, [&] {
        const std::string_view filer = std::string_view(name).substr(0, kServerPrefix.size()) == kServerPrefix
                                           ? std::string_view(name).substr(kServerPrefix.size())
                                           : std::string_view();
        if (filer.empty() || !knows_filer(session->scenario, filer)) {
            throw Fault(kUnknownServer, "there is no filer called \"" + printable(name) + "\"");
        }
        if (login.user.empty() || login.password != expected_password()) {
            throw Fault(kCredentialRefused, "the filer refuses the user or the password");
        }
        session->log.record("server opened, filer " + printable(filer));
        return servers_.add(std::make_shared<Server>(Server{session, std::string(filer)}));
    });
}

SnapshotView StandIn::find(const Server& server, const std::string& export_path)
{
    const Snapshot* found = nullptr;
    for_each_ndmp_volume(server.session->scenario, [&](const Volume& volume, const Snapshot* snapshot) {
        if (snapshot && !found && volume.texts[0] == server.filer && volume.texts[1] == export_path) {
            found = snapshot;
        }
    });
    if (!found) {
        throw Fault(kUnknownSnapshot, "the filer has no snapshot at \"" + printable(export_path) + "\"");
    }
    return view_of(*found);
}

sts_handle_s* StandIn::open_list(const sts_handle_s* handle, const std::string* base, const std::string& diff)
{
    const std::shared_ptr<Server> server = servers_.at(handle);
    const SessionLog& log = server->session->log;
    return logged(log, [&] {
        std::optional<SnapshotView> older;
        if (base) older = find(*server, *base);
        const auto list = std::make_shared<List>(server, ChangeList(older, find(*server, diff)));
        log.record("change list opened, " + std::to_string(list->list.size()) + " entries from " +
                   (base ? printable(*base) : "nothing") + " to " + printable(diff));
        return lists_.add(list);
    });
}

bool StandIn::next_entry(const sts_handle_s* handle, const std::vector<std::string>& filters,
                         sts_file_attr_v11_t& entry)
{
    const std::shared_ptr<List> list = lists_.at(handle);
    const PathFilters admitted(filters);
    const std::lock_guard<std::mutex> lock(list->mutex);
    const std::optional<ListedChange> change = list->list.next(admitted);
    if (change) fill(entry, *change);
    return change.has_value();
}

void StandIn::close_list(const sts_handle_s* handle)
{
    const std::shared_ptr<List> list = lists_.take(handle);
    if (!list) lists_.refuse();
    list->server->session->log.record("change list closed");
}

void StandIn::close(const sts_handle_s* handle)
{
    if (const std::shared_ptr<Server> server = servers_.take(handle)) {
        lists_.erase_if([&](const List& list) { return list.server == server; });
        server->session->log.record("server closed");
        return;
    }
    const std::shared_ptr<Session> session = sessions_.take(handle);
    if (!session) sessions_.refuse();
    lists_.erase_if([&](const List& list) { return list.server->session == session; });
    servers_.erase_if([&](const Server& server) { return server.session == session; });
    session->log.record("session closed");
}

bool StandIn::in_use() const
{
    return !sessions_.empty() || !servers_.empty() || !lists_.empty();
}

} // namespace soapwrapper::simulator
