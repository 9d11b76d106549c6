// What differs between a snapshot and the volumes as they are.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_DIFFERENCE_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_DIFFERENCE_H

#include "simulator/storage/long_operations.h"
#include "simulator/storage/model.h"
#include "simulator/storage/start_requests.h"

namespace soapwrapper::simulator
{

// Ready to be started, or the fault that tells why not.
LongOperation difference_operation(Model& model, const DifferenceStart& start);

} // namespace soapwrapper::simulator

#endif
