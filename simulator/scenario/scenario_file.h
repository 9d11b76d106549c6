#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_FILE_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_FILE_H

#include <string>

namespace soapwrapper::simulator
{

// What the file holds. Throws the ScenarioError that it can't be read, is empty or is too long; it doesn't
// name the file.
std::string read_scenario_file(const std::string& path);

// The same from a descriptor, which stays open.
std::string read_scenario_from(int descriptor);

} // namespace soapwrapper::simulator

#endif
