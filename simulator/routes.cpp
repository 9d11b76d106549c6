#include "simulator/routes.h"

#include "simulator/api/admission.h"
#include "simulator/api/api.h"
#include "simulator/api/api_context.h"
#include "simulator/contract/contract.h"
#include "simulator/front/http.h"
#include "simulator/front/request_log.h"
#include "simulator/page/page.h"
#include "simulator/replay/replay.h"
#include "simulator/service/service.h"

#include <exception>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr int kHttpMethodNotAllowed = 405;
constexpr int kHttpInternalServerError = 500;

// GET / is the contract's where the query asks for the WSDL.
Handler wsdl_or(Handler otherwise)
{
    return [otherwise = std::move(otherwise)](const Request& request) {
        return query_of(request, "wsdl") ? serve_wsdl(request) : otherwise(request);
    };
}

// Where there is no page, hosts are answered as at any other path.
Handler nothing_to_get(RequestLog& log)
{
    return [&log](const Request& request) {
        log.line(request.is_tls, request.client, "-", "refused with HTTP status 405");
        Answer answer = refusal(kHttpMethodNotAllowed);
        answer.fields.emplace_back("Allow", "POST");
        return answer;
    };
}

} // namespace

std::vector<Route> routes_of(const Backend& backend, const Api& api, const Admission& admission)
{
    const Handler soap = [&backend](const Request& request) { return serve_request(backend, request); };
    const Handler json = [&api](const Request& request) { return serve_api(api, request); };
    std::vector<Route> routes = {{"POST", "", soap, Audience::kHosts},
                                 {"POST", "/", soap, Audience::kHosts},
                                 {"", "/api/*", admission.guarded(json), Audience::kPeople}};
    for (Route& route : page_routes()) {
        route.handler = admission.guarded(std::move(route.handler));
        if (route.path == "/") route.handler = wsdl_or(std::move(route.handler));
        routes.push_back(std::move(route));
    }
    routes.push_back({"GET", "/", wsdl_or(nothing_to_get(backend.log)), Audience::kHosts});
    for (Route& route : contract_routes()) routes.push_back(std::move(route));
    return routes;
}

std::vector<Route> replay_routes(Replay& replay, RequestLog& log)
{
    const Handler answer = [&replay, &log](const Request& request) {
        try {
            Replay::Replayed replayed = replay.answer(request);
            log.line(request.is_tls, request.client, replayed.operation, replayed.outcome);
            return std::move(replayed.answer);
        } catch (const std::exception&) {
            return refusal(kHttpInternalServerError);
        }
    };
    return {{"POST", "", answer, Audience::kHosts}, {"POST", "/", answer, Audience::kHosts}};
}

} // namespace soapwrapper::simulator
