// What the API's paths answer. What can't be done is thrown as an ApiError, a Fault or a ScenarioError.
#ifndef SOAPWRAPPER_SIMULATOR_API_ENDPOINTS_H
#define SOAPWRAPPER_SIMULATOR_API_ENDPOINTS_H

#include "simulator/api/api_context.h"
#include "simulator/front/http.h"

#include <cstdint>

namespace soapwrapper::simulator
{

// A request that has come to its path; `number` is the one in it.
struct ApiCall {
    const Api& api;
    const Request& request;
    std::uint64_t number = 0;
};

Answer show_state(const ApiCall& call);
Answer list_operations(const ApiCall& call);
Answer list_events(const ApiCall& call);
Answer list_requests(const ApiCall& call);
Answer show_request(const ApiCall& call);
Answer send_report(const ApiCall& call);
Answer list_faults(const ApiCall& call);
Answer list_differences(const ApiCall& call);
Answer show_contract(const ApiCall& call);
Answer show_scenario(const ApiCall& call);
Answer watch_changes(const ApiCall& call);

Answer cancel_operation(const ApiCall& call);
Answer forget_requests(const ApiCall& call);
Answer add_fault(const ApiCall& call);
Answer remove_fault(const ApiCall& call);
Answer remove_faults(const ApiCall& call);
Answer reset(const ApiCall& call);
Answer load_scenario(const ApiCall& call);

} // namespace soapwrapper::simulator

#endif
