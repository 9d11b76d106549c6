// What is told when a long operation is started, in plain records.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_START_REQUESTS_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_START_REQUESTS_H

#include "simulator/scenario/records.h"
#include "simulator/storage/holdings.h"
#include "simulator/storage/storage.h"

#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// An LSU as a client names it. Without a server it is on the same one.
struct NamedLsu {
    std::string server;
    std::string lsu;
};

// About a volume and a snapshot of it that is to be.
struct VolumeStart {
    std::string session;
    Volume volume;
    Snapshot definition; // its name, type, flags, saveas and isid
    std::vector<NamedLsu> targets;
    std::string topology;
};

// About a snapshot that there is.
struct SnapshotStart {
    std::string session;
    std::string lsu;
    std::string snapshot;
    std::vector<NamedLsu> targets;
};

struct DifferenceStart {
    std::string session;
    std::string snapshot;
    std::string target_session; // empty: the same one
    std::vector<Volume> volumes;
};

// An LSU that a request names, found.
struct Target {
    LsuPosition position;
    std::string server_name; // as the client says it
    std::string lsu_name;
};

// A text that the storage keeps, or the fault that it is too long.
const std::string& bounded(const std::string& text, std::size_t longest, const char* element);

// Where the targets are; each LSU may be named once.
std::vector<Target> find_targets(const Storage& storage, const Session& session,
                                 const std::vector<NamedLsu>& targets);
Target target_at(const Storage& storage, const Session& session, LsuPosition position);

} // namespace soapwrapper::simulator

#endif
