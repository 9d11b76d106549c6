#include "simulator/front/http.h"

#include <microhttpd.h>
#include <strings.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{

namespace
{

const std::string* first_of(const Fields& fields, std::string_view name)
{
    const auto found = std::find_if(fields.begin(), fields.end(), [name](const auto& field) {
        return field.first.size() == name.size() &&
               strncasecmp(field.first.data(), name.data(), name.size()) == 0;
    });
    return found == fields.end() ? nullptr : &found->second;
}

} // namespace

const std::string* field_of(const Request& request, std::string_view name)
{
    return first_of(request.fields, name);
}

const std::string* query_of(const Request& request, std::string_view name)
{
    return first_of(request.query, name);
}

Answer refusal(int status)
{
    const std::string reason = MHD_get_reason_phrase_for(static_cast<unsigned>(status));
    return {status, "text/plain", std::to_string(status) + " " + reason + "\n", {}, nullptr};
}

Choice choose_route(const std::vector<Route>& routes, const std::string& method, const std::string& path)
{
    const bool is_known =
        std::any_of(routes.begin(), routes.end(), [&path](const Route& route) { return route.path == path; });
    std::string allowed;
    for (const Route& route : routes) {
        if (route.path != (is_known ? path : std::string())) continue;
        if (route.method == method) return {&route, {}};
        allowed.append(allowed.empty() ? "" : ", ").append(route.method);
    }
    if (allowed.empty()) return {nullptr, refusal(MHD_HTTP_NOT_FOUND)};
    Choice choice{nullptr, refusal(MHD_HTTP_METHOD_NOT_ALLOWED)};
    choice.refused.fields.emplace_back(MHD_HTTP_HEADER_ALLOW, allowed);
    return choice;
}

} // namespace soapwrapper::simulator
