#ifndef SOAPWRAPPER_SIMULATOR_TRAFFIC_REPORT_H
#define SOAPWRAPPER_SIMULATOR_TRAFFIC_REPORT_H

#include "simulator/traffic/exchange.h"

#include <nlohmann/json_fwd.hpp>

#include <memory>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{

// The exchanges as an HTTP archive, which browsers and other tools open. Texts are the clients' bytes: dump
// it with an error handler.
nlohmann::json report_of(const std::vector<std::shared_ptr<const Exchange>>& exchanges,
                         std::string_view release);

} // namespace soapwrapper::simulator

#endif
