#include "simulator/routes.h"

#include "simulator/api/admission.h"
#include "simulator/api/api.h"
#include "simulator/api/api_context.h"
#include "simulator/front/http.h"
#include "simulator/page/page.h"
#include "simulator/service/service.h"

#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

std::vector<Route> routes_of(const Backend& backend, const Api& api, const Admission& admission)
{
    const Handler soap = [&backend](const Request& request) { return serve_request(backend, request); };
    const Handler json = [&api](const Request& request) { return serve_api(api, request); };
    std::vector<Route> routes = {{"POST", "", soap, Audience::kHosts},
                                 {"POST", "/", soap, Audience::kHosts},
                                 {"", "/api/*", admission.guarded(json), Audience::kPeople}};
    for (Route& route : page_routes()) {
        route.handler = admission.guarded(std::move(route.handler));
        routes.push_back(std::move(route));
    }
    return routes;
}

} // namespace soapwrapper::simulator
