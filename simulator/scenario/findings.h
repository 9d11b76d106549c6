#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_FINDINGS_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_FINDINGS_H

#include "simulator/scenario/scenario_finding.h"

#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

constexpr std::size_t kMostFindings = 1000;

// Collects what is wrong with a scenario, in the order in which it is found. All are counted; the first ones
// of each kind are kept, so that a file that is wrong throughout takes no memory.
class Findings
{
  public:
    void add_error(std::string place, std::string text);
    void add_warning(std::string place, std::string text);

    std::size_t errors() const { return errors_; }
    std::size_t warnings() const { return warnings_; }

    // The first ones, errors ahead of warnings, and a last one that tells how many there are besides.
    std::vector<ScenarioFinding> first() const;

    // The same of the errors alone.
    std::vector<ScenarioFinding> first_errors(std::size_t most) const;

  private:
    std::size_t errors_ = 0;
    std::size_t warnings_ = 0;
    std::vector<ScenarioFinding> kept_errors_;
    std::vector<ScenarioFinding> kept_warnings_;
};

// "PLACE: TEXT".
std::string to_string(const ScenarioFinding& finding);

} // namespace soapwrapper::simulator

#endif
