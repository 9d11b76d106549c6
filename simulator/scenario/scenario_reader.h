// Reads scenarios. What is wrong with one is thrown as a ScenarioError, a line each.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_READER_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_READER_H

#include "simulator/scenario/findings.h"
#include "simulator/scenario/scenario.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

// From JSON. Trees are taken as they are named.
Scenario parse_scenario(std::string_view json);

// The same from a file, which each line of the error then names. Trees are seen from its place. `text`, if it
// is given, becomes the JSON in it.
Scenario load_scenario(const std::string& path, std::string* text = nullptr);

// A tree is told from where the file stands, so that the two can be moved together.
void look_for_trees_in(Scenario& scenario, const std::filesystem::path& folder);

// Tells all that is wrong instead, and gives what could be read.
Scenario read_scenario(std::string_view json, Findings& findings);

} // namespace soapwrapper::simulator

#endif
