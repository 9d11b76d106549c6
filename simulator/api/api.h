// The simulator as JSON under /api/: what it holds, what was asked of it, and what people may change.
#ifndef SOAPWRAPPER_SIMULATOR_API_API_H
#define SOAPWRAPPER_SIMULATOR_API_API_H

#include "simulator/api/api_context.h"
#include "simulator/front/http.h"

namespace soapwrapper::simulator
{

// Never throws; any thread may call.
Answer serve_api(const Api& api, const Request& request);

} // namespace soapwrapper::simulator

#endif
