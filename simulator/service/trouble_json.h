// Troubles as the API has them.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_TROUBLE_JSON_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_TROUBLE_JSON_H

#include "simulator/service/interference.h"
#include "simulator/service/trouble.h"

#include <nlohmann/json_fwd.hpp>

namespace soapwrapper::simulator
{

// Throws a std::invalid_argument with a text for people.
Trouble trouble_from_json(const nlohmann::json& object);
nlohmann::json to_json(const SetTrouble& set);

} // namespace soapwrapper::simulator

#endif
