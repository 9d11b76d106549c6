#include "simulator/contract/contract.h"

#include "simulator/front/http.h"

#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

// As the template has it.
constexpr std::string_view kTemplateAddress = "http://localhost:8080/test/services/PSVWS";

} // namespace

std::string wsdl_at(std::string_view url)
{
    std::string wsdl(wsdl_template());
    const std::size_t place = wsdl.find(kTemplateAddress);
    if (place != std::string::npos) wsdl.replace(place, kTemplateAddress.size(), url);
    return wsdl;
}

std::string_view text_of(std::string_view /*operation*/)
{
    return {};
}

Answer serve_wsdl(const Request& request)
{
    Answer answer;
    answer.content_type = "text/xml; charset=utf-8";
    answer.body = wsdl_at(std::string(request.is_tls ? "https" : "http") + "://localhost:8085");
    return answer;
}

Answer serve_schema(const Request& /*request*/)
{
    Answer answer;
    answer.content_type = "text/xml; charset=utf-8";
    answer.body = schema_text();
    return answer;
}

std::vector<Route> contract_routes()
{
    return {{"GET", "/ns1.xsd", serve_schema}};
}

} // namespace soapwrapper::simulator
