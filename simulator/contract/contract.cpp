#include "simulator/contract/contract.h"

#include "simulator/front/embedded_file.h"
#include "simulator/front/http.h"
#include "simulator/front/number_in.h"
#include "simulator/front/xml_escaped.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

std::vector<EmbeddedFile> contract_files();

namespace
{

std::string_view bytes_of(std::string_view name)
{
    for (const EmbeddedFile& file : contract_files()) {
        if (file.name == name) return file.bytes;
    }
    return {};
}

constexpr std::size_t kLongestHostName = 253;

constexpr std::string_view kInNumbers = "0123456789abcdefABCDEF:.";
constexpr std::string_view kInNames = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ-._";

// XML has no way to tell most of them.
std::string without_control_characters(std::string_view text)
{
    std::string result(text);
    std::replace_if(
        result.begin(), result.end(), [](unsigned char c) { return c < ' '; }, ' ');
    return result;
}

bool has_only(std::string_view text, std::string_view characters)
{
    return !text.empty() && text.find_first_not_of(characters) == std::string_view::npos;
}

bool is_port(std::string_view text)
{
    return number_in<std::uint16_t>(text).value_or(0) != 0;
}

// "HOST" or "HOST:PORT", an IPv6 number in brackets. Whether there is such a host isn't asked.
bool is_host(std::string_view text)
{
    const bool has_brackets = text.substr(0, 1) == "[";
    const std::size_t end = has_brackets ? text.find(']') : text.find(':');
    if (has_brackets && end == std::string_view::npos) return false;
    const std::string_view host = has_brackets ? text.substr(1, end - 1) : text.substr(0, end);
    if (!has_only(host, has_brackets ? kInNumbers : kInNames) || host.size() > kLongestHostName) return false;
    const std::string_view rest = text.substr(std::min(text.size(), has_brackets ? end + 1 : end));
    return rest.empty() || (rest.front() == ':' && is_port(rest.substr(1)));
}

Answer document(std::string body)
{
    Answer answer;
    answer.content_type = "text/xml; charset=utf-8";
    answer.body = std::move(body);
    return answer;
}

} // namespace

std::string_view wsdl_template()
{
    return bytes_of("PSVWSSoapBinding.wsdl");
}

std::string_view schema_text()
{
    return bytes_of("ns1.xsd");
}

std::string wsdl_at(std::string_view url)
{
    constexpr std::string_view kLocation = "address location=\"";
    std::string wsdl(wsdl_template());
    const std::size_t place = wsdl.rfind(kLocation) + kLocation.size();
    return wsdl.replace(place, wsdl.find('"', place) - place, xml_escaped(without_control_characters(url)));
}

std::string_view text_of(std::string_view operation)
{
    std::string_view lines = bytes_of("operations.txt"); // each a name, a tab and a text
    while (!lines.empty()) {
        const std::string_view line = lines.substr(0, lines.find('\n'));
        const std::size_t tab = line.find('\t');
        if (line.substr(0, tab) == operation) return line.substr(tab + 1);
        lines.remove_prefix(std::min(lines.size(), line.size() + 1));
    }
    return {};
}

Answer serve_wsdl(const Request& request)
{
    const std::string* named = field_of(request, "Host");
    const std::string& host = named && is_host(*named) ? *named : request.server;
    return document(wsdl_at((request.is_tls ? "https://" : "http://") + host));
}

Answer serve_schema(const Request& /*request*/)
{
    return document(std::string(schema_text()));
}

std::vector<Route> contract_routes()
{
    return {{"GET", "/ns1.xsd", serve_schema, Audience::kAll}};
}

} // namespace soapwrapper::simulator
