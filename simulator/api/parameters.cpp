#include "simulator/api/parameters.h"

#include "simulator/api/answers.h"
#include "simulator/front/http.h"
#include "simulator/front/number_in.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace soapwrapper::simulator
{

std::optional<std::string> text_parameter(const Request& request, const char* name)
{
    const std::string* value = query_of(request, name);
    if (!value || value->empty()) return std::nullopt;
    return *value;
}

std::string required_parameter(const Request& request, const char* name)
{
    const std::optional<std::string> value = text_parameter(request, name);
    if (!value) throw ApiError(kHttpBadRequest, std::string("the parameter \"") + name + "\" is missing");
    return *value;
}

std::uint64_t number_parameter(const Request& request, const char* name, std::uint64_t otherwise)
{
    const std::optional<std::string> value = text_parameter(request, name);
    if (!value) return otherwise;
    const std::optional<std::uint64_t> number = number_in<std::uint64_t>(*value);
    if (!number) throw ApiError(kHttpBadRequest, std::string("the parameter \"") + name + "\" is no number");
    return *number;
}

std::size_t limit_parameter(const Request& request, std::size_t otherwise, std::size_t most)
{
    return static_cast<std::size_t>(
        std::min<std::uint64_t>(number_parameter(request, "limit", otherwise), most));
}

} // namespace soapwrapper::simulator
