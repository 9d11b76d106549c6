// The SOAP side: one request's body in, one HTTP response out.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_SERVICE_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_SERVICE_H

#include "simulator/front/request_log.h"
#include "simulator/front/worker_pool.h"
#include "simulator/service/interference.h"
#include "simulator/storage/model.h"

#include <string>

namespace soapwrapper::simulator
{

// What all requests share.
struct Backend {
    Model& model;
    Interference& interference;
    RequestLog& log;
};

// Never throws; any thread may call.
std::string serve_request(const Backend& backend, const Request& request);

} // namespace soapwrapper::simulator

#endif
