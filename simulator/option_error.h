#ifndef SOAPWRAPPER_SIMULATOR_OPTION_ERROR_H
#define SOAPWRAPPER_SIMULATOR_OPTION_ERROR_H

#include <CLI/CLI.hpp> // IWYU pragma: keep

#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

[[noreturn]] inline void refuse(const std::string& option, std::string_view value, const std::string& why)
{
    throw CLI::ValidationError(option, "\"" + std::string(value) + "\" " + why);
}

} // namespace soapwrapper::simulator

#endif
