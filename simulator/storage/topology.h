// Which LSU is copied to which: as a text, and made so.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_TOPOLOGY_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_TOPOLOGY_H

#include "simulator/storage/long_operations.h"
#include "simulator/storage/model.h"
#include "simulator/storage/start_requests.h"

namespace soapwrapper::simulator
{

// Both return what is ready to be started, or throw the fault that tells why there is nothing.
LongOperation validate_operation(Model& model, const VolumeStart& start);
LongOperation provision_operation(Model& model, const VolumeStart& start);

} // namespace soapwrapper::simulator

#endif
