// What is served to whom.
#ifndef SOAPWRAPPER_SIMULATOR_ROUTES_H
#define SOAPWRAPPER_SIMULATOR_ROUTES_H

#include "simulator/api/admission.h"
#include "simulator/api/api_context.h"
#include "simulator/front/http.h"
#include "simulator/front/request_log.h"
#include "simulator/replay/replay.h"
#include "simulator/service/service.h"

#include <vector>

namespace soapwrapper::simulator
{

// `backend` and `api` must outlive the routes, and so must `replay` and `log`.
std::vector<Route> routes_of(const Backend& backend, const Api& api, const Admission& admission);

// Of a service that is replayed, and of nothing else.
std::vector<Route> replay_routes(Replay& replay, RequestLog& log);

} // namespace soapwrapper::simulator

#endif
