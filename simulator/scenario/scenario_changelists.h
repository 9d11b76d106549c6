// How the service behaves when changes are listed, in a scenario's words.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_CHANGELISTS_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_CHANGELISTS_H

#include "simulator/scenario/json_members.h"
#include "simulator/scenario/scenario.h"

#include <string>

namespace soapwrapper::simulator
{

// The document's member "changeLists".
void read_json(const Json& value, const std::string& path, ChangeListSettings& settings);

} // namespace soapwrapper::simulator

#endif
