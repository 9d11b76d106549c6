#include "simulator/front/routes.h"

#include "simulator/front/http.h"

#include <microhttpd.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

bool is_for(const Visitors& visitors, const Route& route)
{
    switch (route.audience) {
    case Audience::kHosts:
        return visitors.hosts;
    case Audience::kPeople:
        return visitors.people;
    case Audience::kAll:
        return true;
    }
    return false;
}

// How closely a route's path fits; 0 if it doesn't. The path itself fits best, the longest start of it next.
std::size_t fit(std::string_view route, std::string_view path)
{
    if (route.empty()) return 1;
    if (route == path) return path.size() + 3;
    if (route.size() < 2 || route.substr(route.size() - 2) != "/*") return 0;
    const std::string_view start = route.substr(0, route.size() - 1);
    return path.substr(0, start.size()) == start ? start.size() + 1 : 0;
}

// People's browsers and tools ask for heads; hosts never do, and are refused.
bool answers_heads(const Route& route)
{
    return route.method == MHD_HTTP_METHOD_GET && route.audience != Audience::kHosts;
}

bool takes(const Route& route, const std::string& method)
{
    return route.method.empty() || route.method == method ||
           (method == MHD_HTTP_METHOD_HEAD && answers_heads(route));
}

std::string methods_of(const std::vector<const Route*>& routes)
{
    std::vector<std::string> methods;
    for (const Route* route : routes) {
        methods.push_back(route->method);
        if (answers_heads(*route)) methods.emplace_back(MHD_HTTP_METHOD_HEAD);
    }
    std::string all;
    for (auto method = methods.begin(); method != methods.end(); ++method) {
        if (std::find(methods.begin(), method, *method) != method) continue;
        all.append(all.empty() ? "" : ", ").append(*method);
    }
    return all;
}

} // namespace

Visitors visitors_of(Serves serves, bool have_reached_loopback)
{
    return {serves != Serves::kPeople,
            serves == Serves::kPeople ||
                (serves == Serves::kHostsAndPeopleOnLoopback && have_reached_loopback)};
}

Choice choose_route(const std::vector<Route>& routes, const Visitors& visitors, const std::string& method,
                    const std::string& path)
{
    std::size_t best = 1;
    std::vector<const Route*> fitting;
    for (const Route& route : routes) {
        const std::size_t closeness = is_for(visitors, route) ? fit(route.path, path) : 0;
        if (closeness < best) continue;
        if (closeness > best) fitting.clear();
        best = closeness;
        fitting.push_back(&route);
    }
    if (fitting.empty()) return {nullptr, refusal(MHD_HTTP_NOT_FOUND)};
    const auto taken = std::find_if(fitting.begin(), fitting.end(),
                                    [&method](const Route* route) { return takes(*route, method); });
    if (taken != fitting.end()) return {*taken, {}};
    Choice choice{nullptr, refusal(MHD_HTTP_METHOD_NOT_ALLOWED)};
    choice.refused.fields.emplace_back(MHD_HTTP_HEADER_ALLOW, methods_of(fitting));
    return choice;
}

} // namespace soapwrapper::simulator
