// What one server holds at the moment, as plain records.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_STORAGE_SERVER_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_STORAGE_SERVER_H

#include "simulator/scenario/records.h"
#include "simulator/scenario/scenario.h"
#include "simulator/storage/event_log.h"
#include "simulator/storage/export_account.h"
#include "simulator/storage/listing_account.h"
#include "simulator/storage/serial.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

struct Lsu {
    LsuProperties properties;
    std::map<Serial, Image> images;
    std::map<Serial, Snapshot> snapshots;

    // What is made takes room; what was deleted takes none any more.
    void occupy(std::int64_t size);
    void release(std::int64_t size);
};

struct Claim {
    Volume volume;
    std::string session;
};

struct StorageServer {
    ServerScenario scenario;
    std::vector<Lsu> lsus; // none is ever taken away: an index stays good
    ExportAccount exports;
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

// The part of a server's name behind its colon.
std::string host_of(const std::string& server_name);

} // namespace soapwrapper::simulator

#endif
