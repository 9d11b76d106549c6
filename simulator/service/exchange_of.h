#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_EXCHANGE_OF_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_EXCHANGE_OF_H

#include "simulator/front/http.h"
#include "simulator/traffic/exchange.h"

#include <chrono>

namespace soapwrapper::simulator
{

// What can be told of a request when it has come.
Exchange exchange_of(const Request& request);
// And of its answer.
void add_answer(Exchange& exchange, const Answer& answer, std::chrono::steady_clock::duration time);

} // namespace soapwrapper::simulator

#endif
