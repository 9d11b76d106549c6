#include "simulator/scenario/findings.h"

#include "simulator/scenario/scenario_finding.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

void Findings::add_error(std::string place, std::string text)
{
    if (errors_++ < kMostFindings) kept_errors_.push_back({true, std::move(place), std::move(text)});
}

void Findings::add_warning(std::string place, std::string text)
{
    if (warnings_++ < kMostFindings) kept_warnings_.push_back({false, std::move(place), std::move(text)});
}

static void tell_of_more(std::vector<ScenarioFinding>& told, bool are_errors, std::size_t all)
{
    if (all > told.size())
        told.push_back({are_errors, "", "and " + std::to_string(all - told.size()) + " more"});
}

std::vector<ScenarioFinding> Findings::first() const
{
    std::vector<ScenarioFinding> told = kept_errors_;
    told.insert(told.end(), kept_warnings_.begin(), kept_warnings_.end());
    told.resize(std::min(kMostFindings, told.size()));
    tell_of_more(told, errors_ > told.size(), errors_ + warnings_);
    return told;
}

std::vector<ScenarioFinding> Findings::first_errors(std::size_t most) const
{
    std::vector<ScenarioFinding> told = kept_errors_;
    told.resize(std::min(most, told.size()));
    tell_of_more(told, true, errors_);
    return told;
}

std::string to_string(const ScenarioFinding& finding)
{
    return finding.place.empty() ? finding.text : finding.place + ": " + finding.text;
}

} // namespace soapwrapper::simulator
