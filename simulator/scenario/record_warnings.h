#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_RECORD_WARNINGS_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_RECORD_WARNINGS_H

#include "simulator/scenario/json_members.h"
#include "simulator/scenario/scenario.h"

namespace soapwrapper::simulator
{

// What doesn't fit the records in which a host gets it. The place is the server's; its LSUs are looked at
// too.
void warn_of_what_records_cut(const ServerScenario& server, const JsonPlace& place);

} // namespace soapwrapper::simulator

#endif
