// Numbers and texts in queries and paths.
#ifndef SOAPWRAPPER_SIMULATOR_API_PARAMETERS_H
#define SOAPWRAPPER_SIMULATOR_API_PARAMETERS_H

#include "simulator/front/http.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace soapwrapper::simulator
{

// They throw an ApiError that names the parameter. One that is empty counts as one that isn't there.
std::optional<std::string> text_parameter(const Request& request, const char* name);
std::string required_parameter(const Request& request, const char* name);
std::uint64_t number_parameter(const Request& request, const char* name, std::uint64_t otherwise);
// No more than `most`, whatever is asked for.
std::size_t limit_parameter(const Request& request, std::size_t otherwise, std::size_t most);

} // namespace soapwrapper::simulator

#endif
