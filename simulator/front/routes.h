// Which route a request takes.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_ROUTES_H
#define SOAPWRAPPER_SIMULATOR_FRONT_ROUTES_H

#include "simulator/front/http.h"

#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// For whom the routes are that exist on a connection.
struct Visitors {
    bool hosts = true;
    bool people = false;
};
Visitors visitors_of(Serves serves, bool have_reached_loopback);

// The route, or the answer if there is none.
struct Choice {
    const Route* route = nullptr;
    Answer refused;
};
Choice choose_route(const std::vector<Route>& routes, const Visitors& visitors, const std::string& method,
                    const std::string& path);

} // namespace soapwrapper::simulator

#endif
