// A volume's return to one of the snapshots.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_ROLLBACK_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_ROLLBACK_H

#include "simulator/scenario/records.h"
#include "simulator/storage/holdings.h"
#include "simulator/storage/long_operations.h"
#include "simulator/storage/model.h"
#include "simulator/storage/storage.h"

#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

struct Rollback {
    LsuPosition source; // of the snapshot
    std::string snapshot;
    std::size_t server = 0; // of the volume that goes back
    Volume volume;
    std::vector<std::string> given_up; // snapshots that the client is ready to lose
};

// The snapshots that would be lost, without those that are given up.
std::vector<Cursor::Entry> snapshots_in_the_way(Storage& storage, const Rollback& rollback);

// Ready to be started, or the fault that tells why not.
LongOperation rollback_operation(Model& model, const Rollback& rollback);

} // namespace soapwrapper::simulator

#endif
