// How time passes and how long operations take, in a scenario's words.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_OPERATIONS_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_OPERATIONS_H

#include "simulator/scenario/json_members.h"
#include "simulator/scenario/scenario.h"

namespace soapwrapper::simulator
{

// The document's members "time" and "operations".
void read_operations(JsonMembers& members, Scenario& scenario);

} // namespace soapwrapper::simulator

#endif
