#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_JSON_DOCUMENT_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_JSON_DOCUMENT_H

#include "simulator/scenario/findings.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string_view>

namespace soapwrapper::simulator
{

// The document, or the error that it isn't JSON, or is nested too deep to be a scenario. Members of which the
// parser would silently keep the last one are warned of.
std::optional<nlohmann::json> parse_json(std::string_view json, Findings& findings);

} // namespace soapwrapper::simulator

#endif
