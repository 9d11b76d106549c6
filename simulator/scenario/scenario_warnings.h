#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_WARNINGS_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_WARNINGS_H

#include "simulator/scenario/findings.h"
#include "simulator/scenario/scenario.h"

namespace soapwrapper::simulator
{

// What can be simulated as it stands and is hardly meant so. What an error left out is no reason to warn.
void warn_of_what_is_hardly_meant(const Scenario& scenario, Findings& findings);

} // namespace soapwrapper::simulator

#endif
