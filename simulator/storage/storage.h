// The storage as it is at the moment, who is logged in to it and which lists are open. Not guarded: the model
// holds a lock.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_STORAGE_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_STORAGE_H

#include "simulator/scenario/records.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/simulated_time.h"
#include "simulator/storage/change_list_delivery.h"
#include "simulator/storage/event_log.h"
#include "simulator/storage/event_records.h"
#include "simulator/storage/open_table.h"
#include "simulator/storage/room_account.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage_server.h"
#include "simulator/storage/token_table.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

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

// Shared with whoever reads it at the moment, as that takes longer than the storage can be kept from others.
struct OpenChangeList {
    std::string session;
    std::shared_ptr<ChangeListDelivery> delivery;
};

class Storage
{
  public:
    explicit Storage(const Scenario& scenario);

    // By its prefix and any host.
    std::size_t server_index(const std::string& name) const;
    const std::vector<StorageServer>& servers() const { return servers_; }
    const StorageServer& server(std::size_t index) const { return servers_[index]; }
    StorageServer& server(std::size_t index) { return servers_[index]; }

    std::string open_session(const std::string& name);
    const Session& session(const std::string& token) const;
    const TokenTable<Session>& sessions() const { return sessions_; }
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
    // Entries of all open change lists together.
    static constexpr std::size_t kMostListedChanges = 1000000;
    OpenTable<OpenChangeList> change_lists{"change list"};
    RoomAccount listed_changes{kMostListedChanges, "entries of change lists"};

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

} // namespace soapwrapper::simulator

#endif
