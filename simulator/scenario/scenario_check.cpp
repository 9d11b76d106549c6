#include "simulator/scenario/scenario_check.h"

#include "simulator/scenario/findings.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scenario_finding.h"
#include "simulator/scenario/scenario_reader.h"
#include "simulator/scenario/scenario_warnings.h"

#include <filesystem>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{

Findings findings_in_scenario(std::string_view json, const std::filesystem::path& folder)
{
    Findings findings;
    Scenario scenario = read_scenario(json, findings);
    look_for_trees_in(scenario, folder);
    warn_of_what_is_hardly_meant(scenario, findings);
    return findings;
}

std::vector<ScenarioFinding> check_scenario(std::string_view json, const std::filesystem::path& folder)
{
    return findings_in_scenario(json, folder).first();
}

} // namespace soapwrapper::simulator
