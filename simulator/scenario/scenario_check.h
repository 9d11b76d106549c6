// Looks a scenario over without simulating it.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_CHECK_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_CHECK_H

#include "simulator/scenario/findings.h"
#include "simulator/scenario/scenario_finding.h"

#include <filesystem>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{

// All that is wrong with the JSON text of a scenario, errors first; nothing if it is good. Trees are looked
// for from the folder. The number of findings is bounded: the last one then tells how many there are besides.
std::vector<ScenarioFinding> check_scenario(std::string_view json, const std::filesystem::path& folder);

// The same, with all of them counted.
Findings findings_in_scenario(std::string_view json, const std::filesystem::path& folder);

} // namespace soapwrapper::simulator

#endif
