#include "simulator/scenario/scenario_check.h"

#include "simulator/scenario/scenario_error.h"
#include "simulator/scenario/scenario_finding.h"
#include "simulator/scenario/scenario_reader.h"

#include <filesystem>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{

std::vector<ScenarioFinding> check_scenario(std::string_view json, const std::filesystem::path& /*folder*/)
{
    try {
        parse_scenario(json);
        return {};
    } catch (const ScenarioError& error) {
        return {{true, "", error.what()}};
    }
}

} // namespace soapwrapper::simulator
