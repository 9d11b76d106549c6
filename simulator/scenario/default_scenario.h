// The storage that is simulated unless told otherwise.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_DEFAULT_SCENARIO_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_DEFAULT_SCENARIO_H

#include "simulator/scenario/scenario.h"

#include <string_view>

namespace soapwrapper::simulator
{

// As JSON, and read.
std::string_view default_scenario_text();
Scenario default_scenario();

} // namespace soapwrapper::simulator

#endif
