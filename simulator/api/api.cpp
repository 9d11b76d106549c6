#include "simulator/api/api.h"

#include "simulator/api/answers.h"
#include "simulator/api/api_context.h"
#include "simulator/api/endpoints.h"
#include "simulator/front/http.h"
#include "simulator/front/number_in.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/scenario_error.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{
namespace
{

struct Endpoint {
    std::string_view method;
    std::string_view path; // "#" in it stands for a number
    Answer (*serve)(const ApiCall&);
};

constexpr Endpoint kEndpoints[] = {{"GET", "/api/state", show_state},
                                   {"GET", "/api/operations", list_operations},
                                   {"POST", "/api/operations/#/cancel", cancel_operation},
                                   {"GET", "/api/events", list_events},
                                   {"GET", "/api/requests", list_requests},
                                   {"DELETE", "/api/requests", forget_requests},
                                   {"GET", "/api/requests/#", show_request},
                                   {"GET", "/api/report", send_report},
                                   {"GET", "/api/faults", list_faults},
                                   {"POST", "/api/faults", add_fault},
                                   {"DELETE", "/api/faults", remove_faults},
                                   {"DELETE", "/api/faults/#", remove_fault},
                                   {"GET", "/api/differences", list_differences},
                                   {"GET", "/api/contract", show_contract},
                                   {"POST", "/api/reset", reset},
                                   {"GET", "/api/scenario", show_scenario},
                                   {"POST", "/api/scenario", load_scenario},
                                   {"GET", "/api/changes", watch_changes}};

// The number in the path, 0 if it has none; nothing if it is another path.
std::optional<std::uint64_t> matched(std::string_view path, std::string_view pattern)
{
    const std::size_t place = pattern.find('#');
    if (place == std::string_view::npos)
        return path == pattern ? std::optional<std::uint64_t>(0) : std::nullopt;
    const std::string_view ahead = pattern.substr(0, place);
    const std::string_view behind = pattern.substr(place + 1);
    if (path.size() <= ahead.size() + behind.size() || path.substr(0, place) != ahead ||
        path.substr(path.size() - behind.size()) != behind) {
        return std::nullopt;
    }
    return number_in<std::uint64_t>(path.substr(place, path.size() - ahead.size() - behind.size()));
}

Answer route(const Api& api, const Request& request)
{
    std::string allowed;
    for (const Endpoint& endpoint : kEndpoints) {
        const std::optional<std::uint64_t> number = matched(request.path, endpoint.path);
        if (!number) continue;
        if (request.method == endpoint.method) return endpoint.serve({api, request, *number});
        allowed.append(allowed.empty() ? "" : ", ").append(endpoint.method);
    }
    if (allowed.empty()) return error_answer(kHttpNotFound, "the API has no such path");
    Answer refused = error_answer(kHttpMethodNotAllowed, "the path is asked for by " + allowed);
    refused.fields.emplace_back("Allow", allowed);
    return refused;
}

int status_of(const Fault& fault)
{
    switch (fault.code()) {
    case kUnknownServer:
    case kUnknownLsu:
    case kUnknownSnapshot:
    case kUnknownOperation:
        return kHttpNotFound;
    case kUnreadableTree:
        return kHttpUnavailable;
    default:
        return kHttpConflict;
    }
}

Answer route_safely(const Api& api, const Request& request)
{
    try {
        return route(api, request);
    } catch (const ApiError& error) {
        return error_answer(error.status(), error.what());
    } catch (const Fault& fault) {
        return error_answer(status_of(fault), fault.what());
    } catch (const ScenarioError& error) {
        return error_answer(kHttpBadRequest, error.what());
    } catch (const std::invalid_argument& error) {
        return error_answer(kHttpBadRequest, error.what());
    }
}

} // namespace

Answer serve_api(const Api& api, const Request& request)
{
    try {
        Answer answer = route_safely(api, request);
        if (request.method != "GET" && answer.status < kHttpBadRequest) api.changes.notify();
        return answer;
    } catch (const std::exception&) { // memory ran out
        return error_answer(kHttpUnavailable, "the simulator failed");
    }
}

} // namespace soapwrapper::simulator
