// JSON that somebody sends.
#ifndef SOAPWRAPPER_SIMULATOR_API_JSON_BODY_H
#define SOAPWRAPPER_SIMULATOR_API_JSON_BODY_H

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <string_view>

namespace soapwrapper::simulator
{

// Those who read JSON call themselves for what is nested, so that deep nesting would end their stack. Nothing
// that is read here needs more than a dozen levels.
constexpr std::size_t kDeepestJson = 64;

// Throws the ApiError that the text is nested more deeply. It need be no JSON.
void require_shallow(std::string_view text);

// Throws the ApiError that tells what is wrong with it, and where.
nlohmann::json parse_body(std::string_view text);

} // namespace soapwrapper::simulator

#endif
