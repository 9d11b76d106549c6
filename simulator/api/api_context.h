// What the API shows and changes.
#ifndef SOAPWRAPPER_SIMULATOR_API_API_CONTEXT_H
#define SOAPWRAPPER_SIMULATOR_API_API_CONTEXT_H

#include "simulator/api/changes.h"
#include "simulator/api/scenarios.h"
#include "simulator/service/interference.h"
#include "simulator/storage/current_model.h"
#include "simulator/traffic/recorder.h"

#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// Nothing of it knows a credential; no token leaves it.
struct Api {
    CurrentModel& model;
    Interference& interference;
    Recorder& recorder;
    Scenarios& scenarios;
    Changes& changes;
    std::vector<std::string> urls; // of the service
};

} // namespace soapwrapper::simulator

#endif
