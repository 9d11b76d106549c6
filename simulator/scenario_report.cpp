#include "simulator/scenario_report.h"

#include "simulator/options.h"
#include "simulator/scenario/findings.h"
#include "simulator/scenario/scenario_check.h"
#include "simulator/scenario/scenario_error.h"
#include "simulator/scenario/scenario_file.h"
#include "simulator/scenario/scenario_finding.h"

#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <ostream>
#include <string>

namespace soapwrapper::simulator
{
namespace
{

std::string counted(std::size_t number, const std::string& what)
{
    if (number == 0) return "no " + what + "s";
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

} // namespace

int report_on_scenario(const std::string& path, std::ostream& out)
{
    const bool is_input = path == "-";
    const std::string name = is_input ? "standard input" : path;
    Findings findings;
    try {
        const std::string text = is_input ? read_scenario_from(STDIN_FILENO) : read_scenario_file(path);
        findings = findings_in_scenario(text, std::filesystem::path(is_input ? "" : path).parent_path());
    } catch (const ScenarioError& error) {
        findings.add_error("", error.what());
    }
    for (const ScenarioFinding& finding : findings.first()) {
        out << name << (finding.is_error ? ": error: " : ": warning: ") << to_string(finding) << '\n';
    }
    out << name << ": " << counted(findings.errors(), "error") << ", "
        << counted(findings.warnings(), "warning") << '\n';
    return findings.errors() + findings.warnings() == 0 ? 0 : kExitUsage;
}

} // namespace soapwrapper::simulator
