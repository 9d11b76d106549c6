// How time passes, how long operations take and how change lists are answered, in a scenario's words.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_SETTINGS_READER_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_SETTINGS_READER_H

#include "simulator/scenario/json_members.h"
#include "simulator/scenario/scenario.h"

namespace soapwrapper::simulator
{

// The document's members "time" and "operations".
void read_operations(JsonMembers& members, Scenario& scenario);

// The document's member "changeLists".
void read_change_lists(JsonMembers& members, Scenario& scenario);

} // namespace soapwrapper::simulator

#endif
