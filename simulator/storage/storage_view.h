// The storage as people are shown it: copies, so that nobody has to hold the storage while they are put into
// words. No token is among them.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_STORAGE_VIEW_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_STORAGE_VIEW_H

#include "simulator/scenario/content.h"
#include "simulator/scenario/records.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

struct SessionView {
    Serial number = 0;
    std::string name;
};

struct ImageView {
    Image image;
    bool is_open = false;
};

struct ShownSnapshot {
    Snapshot snapshot;
    bool is_exported = false;
};

struct LsuView {
    LsuProperties properties;
    std::vector<ImageView> images; // the oldest first, and so are the snapshots
    std::vector<ShownSnapshot> snapshots;
};

struct ExportView {
    std::string lsu;
    std::optional<std::string> snapshot;
    Volume volume;
    std::vector<std::string> hosts; // the first ones
    std::size_t host_count = 0;     // of all
};

struct ClaimView {
    Volume volume;
    Serial session = 0;
};

// Something that a client keeps open.
struct OpenView {
    const char* kind = "";
    Serial number = 0;
    std::optional<Serial> session;
    std::optional<std::size_t> entries;
    std::optional<std::size_t> read;
};

struct ServerView {
    std::string prefix;
    std::vector<std::string> types;
    std::vector<int> capabilities;
    int max_sessions = 0;
    // What clients can have very many of is shown up to a number: the newest, and how many there are of all.
    std::vector<SessionView> sessions;
    std::size_t session_count = 0;
    std::vector<LsuView> lsus;
    std::vector<ExportView> exports;
    std::vector<ClaimView> claims;
    std::vector<OpenView> open;
    std::size_t open_count = 0;
};

struct StorageView {
    // Of sessions, and of each kind of what is open; of an export's hosts.
    static constexpr std::size_t kMostShown = 1000;
    static constexpr std::size_t kMostHosts = 100;

    std::int64_t date = 0;
    std::vector<ServerView> servers;
};

StorageView view_of(const Storage& storage);

// What two snapshots of an LSU hold; without the name of the earlier one, nothing. To be read once nobody has
// to wait for it.
struct SnapshotPair {
    Content base;
    Content later;
};

// The fault tells what there isn't.
SnapshotPair snapshots_of(const Storage& storage, const std::string& server, const std::string& lsu,
                          const std::optional<std::string>& base, const std::string& later);

// The server of the prefix, or the fault that there is none.
std::size_t server_of_prefix(const Storage& storage, const std::string& prefix);

} // namespace soapwrapper::simulator

#endif
