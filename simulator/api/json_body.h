// JSON that somebody sends.
#ifndef SOAPWRAPPER_SIMULATOR_API_JSON_BODY_H
#define SOAPWRAPPER_SIMULATOR_API_JSON_BODY_H

#include <nlohmann/json_fwd.hpp>

#include <string_view>

namespace soapwrapper::simulator
{

// Throws the ApiError that tells what is wrong with it, and where.
nlohmann::json parse_body(std::string_view text);

} // namespace soapwrapper::simulator

#endif
