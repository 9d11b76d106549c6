// What the simulated storage looks like at the start.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_H

#include "simulator/scenario/operation_settings.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/simulated_time.h"

#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// Images and snapshots stand in the order in which they were made.
struct LsuScenario {
    LsuProperties properties;
    std::vector<Image> images;
    std::vector<Snapshot> snapshots;
};

// One server. It answers to its prefix with any host behind it, because a host names the machine as it
// reaches it: "Network_NTAP:127.0.0.1" and "Network_NTAP:filer" are the same storage.
struct ServerScenario {
    std::string prefix; // up to the colon
    std::vector<std::string> types;
    std::vector<int> capabilities;
    int flags = 0;
    int max_sessions = 1024;
    std::vector<LsuScenario> lsus;
};

// How the service behaves when changes are listed. Intervals are seconds.
struct ChangeListSettings {
    int batch = 1000;       // entries in an answer
    int busy = 0;           // busy answers ahead of a list's first batch
    int retry_interval = 0; // that comes with these
    int pace = 0;           // that comes with a batch, as long as the list isn't at its end
    int start_busy = 0;     // starts that are refused ahead of one that succeeds, on each volume
};

struct Scenario {
    ChangeListSettings change_lists;
    TimeKind time = TimeKind::kClock;
    OperationSettings operations;
    std::vector<ServerScenario> servers;
};

} // namespace soapwrapper::simulator

#endif
