// What volumes and snapshots hold, in a scenario's words.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_CONTENT_READER_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_CONTENT_READER_H

#include "simulator/scenario/content.h"
#include "simulator/scenario/json_members.h"

namespace soapwrapper::simulator
{

// The member "tree" or the member "files" of an LSU or a snapshot. With neither, it holds nothing.
void read_content(JsonMembers& members, Content& content);

} // namespace soapwrapper::simulator

#endif
