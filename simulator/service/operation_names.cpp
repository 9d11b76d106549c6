#include "simulator/service/operation_names.h"

#include "simulator/service/service_operations.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

std::vector<std::string_view> sorted_names()
{
    std::vector<std::string_view> names = {
#define SOAPWRAPPER_NAME(name, answered) #name,
        SOAPWRAPPER_SIMULATED_OPERATIONS(SOAPWRAPPER_NAME)
#undef SOAPWRAPPER_NAME
    };
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

const std::vector<std::string_view>& operation_names()
{
    static const std::vector<std::string_view> names = sorted_names();
    return names;
}

bool is_operation(std::string_view name)
{
    return std::binary_search(operation_names().begin(), operation_names().end(), name);
}

} // namespace soapwrapper::simulator
