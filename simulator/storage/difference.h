// What differs between a snapshot and the volumes as they are.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_DIFFERENCE_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_DIFFERENCE_H

#include "simulator/storage/model.h"
#include "simulator/storage/operations.h"
#include "simulator/storage/start_requests.h"

namespace soapwrapper::simulator
{

// Ready to be started, or the fault that tells why not.
Operation difference_operation(Model& model, const DifferenceStart& start);

} // namespace soapwrapper::simulator

#endif
