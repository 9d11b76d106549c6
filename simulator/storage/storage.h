// The storage as it is at the moment, who is logged in to it and which lists are open. Not guarded: the model
// holds a lock.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_STORAGE_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_STORAGE_H

#include "simulator/scenario/records.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/simulated_time.h"
#include "simulator/storage/event_log.h"
#include "simulator/storage/event_records.h"
#include "simulator/storage/listing_account.h"
#include "simulator/storage/operations.h"
#include "simulator/storage/token_table.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// Never given twice, and larger for what was made later.
using Serial = std::uint64_t;

struct Lsu {
    LsuProperties properties;
    std::map<Serial, Image> images;
    std::map<Serial, Snapshot> snapshots;

    // What is made takes room; what was deleted takes none any more.
    void occupy(std::int64_t size);
    void release(std::int64_t size);
};

// A snapshot or a volume made reachable for hosts; without names, for any.
struct Export {
    std::size_t lsu = 0;
    Serial snapshot = 0; // 0: it is no snapshot's
    Volume volume;       // as the hosts reach it
    std::vector<std::string> hosts;
};

struct Claim {
    Volume volume;
    std::string session;
};

struct StorageServer {
    ServerScenario scenario;
    std::vector<Lsu> lsus; // none is ever taken away: an index stays good
    std::vector<Export> exports;
    std::vector<Claim> claims;
    ListingAccount listings;
    int open_sessions = 0;
    EventLog events;
};

struct Session {
    std::size_t server = 0;
    std::string name; // as the client gave it
};

// An LSU with the way to it.
struct Place {
    const std::string& session;
    const std::string& server_name;
    StorageServer& server;
    std::size_t server_index;
    std::size_t lsu_index;
    Lsu& lsu;
};

// A list while it is read. What is deleted in the meantime is passed over; what is new doesn't appear.
struct Cursor {
    struct Entry {
        std::size_t lsu = 0;
        Serial serial = 0;
    };
    std::string session;
    std::size_t server = 0;
    std::vector<Entry> entries;
    std::size_t next = 0;
};

struct OpenImage {
    std::string session;
    std::size_t server = 0;
    Cursor::Entry image;
};

class ChangeListing;

// Shared with whoever reads it at the moment, as that takes longer than the storage can be kept from others.
struct OpenChangeList {
    std::string session;
    std::shared_ptr<ChangeListing> listing;
};

// What a client keeps open of one kind, by token. It ends with the session, if it belongs to one.
template <class Value>
class OpenTable
{
  public:
    explicit OpenTable(const char* what) : what_(what) {}

    std::string open(Value value)
    {
        require_room(values_.size());
        return values_.add(std::move(value));
    }
    Value& at(const std::string& token)
    {
        Value* value = values_.find(token);
        if (!value) refuse(what_);
        return *value;
    }
    void close(const std::string& token)
    {
        at(token);
        values_.erase(token);
    }
    template <class Predicate>
    void close_if(Predicate predicate)
    {
        values_.erase_if(predicate);
    }
    template <class Predicate>
    bool any(Predicate predicate) const
    {
        return values_.any(predicate);
    }

  private:
    static void require_room(std::size_t used);
    [[noreturn]] static void refuse(const char* what);

    const char* what_;
    TokenTable<Value> values_;
};

class Storage
{
  public:
    explicit Storage(const Scenario& scenario);

    std::size_t server_index(const std::string& name) const;
    const StorageServer& server(std::size_t index) const { return servers_[index]; }
    StorageServer& server(std::size_t index) { return servers_[index]; }

    std::string open_session(const std::string& name);
    const Session& session(const std::string& token) const;
    // With all that was opened under it.
    void close_session(const std::string& token);

    std::size_t lsu_index(std::size_t server, const std::string& name) const;
    Place place(const std::string& session_token, const std::string& lsu_name);

    // The next entry that is still there; at the end of the list, the fault that tells so.
    const std::string& next_lsu(const std::string& token);
    const Image& next_image(const std::string& token);
    const Snapshot& next_snapshot(const std::string& token);

    OpenTable<Cursor> lsu_lists{"LSU list"};
    OpenTable<Cursor> image_lists{"image list"};
    OpenTable<Cursor> snapshot_lists{"snapshot list"};
    OpenTable<OpenImage> images{"image"};
    Operations operations;
    OpenTable<OpenChangeList> change_lists{"change list"};

    const ChangeListSettings change_list_settings;
    OpenTable<EventChannel> event_channels{"event channel"};

    // The channel's next event, after which it stands then. Without one, the fault that tells so.
    const Event& next_event(const std::string& token);

    Serial next_serial() { return ++last_serial_; }

    // The time in the storage, which passes as the scenario has it.
    Instant now() const { return time_.now(); }
    std::int64_t date() const { return time_.date(); }
    void request_arrived() { time_.request_arrived(); }

  private:
    SimulatedTime time_;
    std::vector<StorageServer> servers_;
    TokenTable<Session> sessions_;
    Serial last_serial_ = 0;
};

// A snapshot of the LSU, or the fault that there is none.
std::map<Serial, Snapshot>::iterator find_snapshot(Lsu& lsu, const std::string& name);

// Whether an LSU of the server holds the volume, or has a snapshot of it.
bool knows_volume(const Lsu& lsu, const Volume& volume);
bool knows_volume(const StorageServer& server, const Volume& volume);

// The export that a host reaches by the volume, or none.
Export* find_export(StorageServer& server, const Volume& volume);

// The part of a server's name behind its colon.
std::string host_of(const std::string& server_name);

} // namespace soapwrapper::simulator

#endif
