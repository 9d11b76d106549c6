// Reads scenarios. What is wrong with one is thrown as a ScenarioError.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_READER_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_READER_H

#include "simulator/scenario/scenario.h"

#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

// From JSON.
Scenario parse_scenario(std::string_view json);

// The same from a file, which the error then names.
Scenario load_scenario(const std::string& path);

} // namespace soapwrapper::simulator

#endif
