// What is served to whom.
#ifndef SOAPWRAPPER_SIMULATOR_ROUTES_H
#define SOAPWRAPPER_SIMULATOR_ROUTES_H

#include "simulator/api/admission.h"
#include "simulator/api/api_context.h"
#include "simulator/front/http.h"
#include "simulator/service/service.h"

#include <vector>

namespace soapwrapper::simulator
{

// `backend` and `api` must outlive the routes.
std::vector<Route> routes_of(const Backend& backend, const Api& api, const Admission& admission);

} // namespace soapwrapper::simulator

#endif
