// The long operations that make snapshots and change them. Each function returns one that is ready to be
// started, or throws the fault that tells why there is none.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_SNAPSHOT_OPERATIONS_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_SNAPSHOT_OPERATIONS_H

#include "simulator/storage/long_operations.h"
#include "simulator/storage/model.h"
#include "simulator/storage/start_requests.h"

namespace soapwrapper::simulator
{

// The status of a snapshot once it is post-processed.
constexpr int kPostProcessed = 1;

LongOperation create_operation(Model& model, const VolumeStart& start);
LongOperation prepare_operation(Model& model, const VolumeStart& start);
LongOperation import_operation(Model& model, const VolumeStart& start);
LongOperation copy_operation(Model& model, const SnapshotStart& start);
LongOperation post_process_operation(Model& model, const SnapshotStart& start);

} // namespace soapwrapper::simulator

#endif
