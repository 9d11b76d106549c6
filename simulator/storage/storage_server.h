// What one server holds at the moment, as plain records.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_STORAGE_SERVER_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_STORAGE_SERVER_H

#include "simulator/scenario/records.h"
#include "simulator/scenario/scenario.h"
#include "simulator/storage/event_log.h"
#include "simulator/storage/listing_account.h"

#include <cstddef>
#include <cstdint>
#include <map>
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
