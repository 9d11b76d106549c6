#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_FINDING_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_FINDING_H

#include <string>

namespace soapwrapper::simulator
{

// Something that is wrong with a scenario or, if it is no error, that its author can hardly have meant. Place
// and text are printable, whatever the scenario holds.
struct ScenarioFinding {
    bool is_error = true;
    std::string place; // such as "servers[0].lsus[2].capacity"; empty if it is about no place
    std::string text;
};

} // namespace soapwrapper::simulator

#endif
