#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_OPERATION_NAMES_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_OPERATION_NAMES_H

#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{

// Of all operations of the service, sorted.
const std::vector<std::string_view>& operation_names();
bool is_operation(std::string_view name);

} // namespace soapwrapper::simulator

#endif
