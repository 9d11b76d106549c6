#include "simulator/api/admission.h"

#include "simulator/api/answers.h"
#include "simulator/front/http.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <strings.h>
#include <sys/socket.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

std::string in_small_letters(std::string_view text)
{
    std::string small(text);
    std::transform(small.begin(), small.end(), small.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return small;
}

bool is_number(int family, const std::string& host)
{
    in6_addr room{};
    return inet_pton(family, host.c_str(), &room) == 1;
}

bool is_port(std::string_view text)
{
    return text.empty() || (text.front() == ':' && std::all_of(text.begin() + 1, text.end(),
                                                               [](char c) { return c >= '0' && c <= '9'; }));
}

bool is_changing(const Request& request)
{
    return request.method == "POST" || request.method == "PUT";
}

bool is_json(const Request& request)
{
    const std::string* type = field_of(request, "Content-Type");
    if (!type) return false;
    const std::string essence = type->substr(0, type->find_first_of("; \t"));
    return strcasecmp(essence.c_str(), "application/json") == 0;
}

// A browser tells from where a page has it ask: from a site of the same address, or a person typed it.
bool is_foreign(const Request& request)
{
    if (request.path.rfind("/api/", 0) != 0) return false;
    const std::string* site = field_of(request, "Sec-Fetch-Site");
    return site && *site != "same-origin" && *site != "none";
}

bool has_foreign_origin(const Request& request, const std::string& host)
{
    const std::string* origin = field_of(request, "Origin");
    if (!origin) return false;
    const std::string told = in_small_letters(*origin);
    const std::string own = in_small_letters(host);
    return told != "http://" + own && told != "https://" + own;
}

} // namespace

Admission::Admission(const std::vector<std::string>& hosts)
{
    hosts_.insert("localhost");
    for (const std::string& host : hosts) hosts_.insert(in_small_letters(host));
}

std::optional<Answer> Admission::refusal_for(const Request& request) const
{
    const auto is_host = [](const auto& field) { return strcasecmp(field.first.c_str(), "Host") == 0; };
    const std::string* host = field_of(request, "Host");
    if (!host || std::count_if(request.fields.begin(), request.fields.end(), is_host) != 1 ||
        !is_own_name(*host)) {
        return error_answer(kHttpForbidden, "the simulator isn't known by the host that the request names; "
                                            "--page or --advertise can name it");
    }
    if (has_foreign_origin(request, *host) || is_foreign(request)) {
        return error_answer(kHttpForbidden, "another site's page may not ask");
    }
    if (is_changing(request) && !request.body.empty() && !is_json(request)) {
        return error_answer(kHttpUnsupportedMediaType, "the body must be of the type application/json");
    }
    return std::nullopt;
}

Handler Admission::guarded(Handler handler) const
{
    return [admission = *this, handler = std::move(handler)](const Request& request) {
        std::optional<Answer> refusal = admission.refusal_for(request);
        return refusal ? std::move(*refusal) : handler(request);
    };
}

// A number can't be taken by somebody else, as a name can in whose zone it stands.
bool Admission::is_own_name(const std::string& host) const
{
    if (!host.empty() && host.front() == '[') {
        const std::size_t end = host.find(']');
        return end != std::string::npos && is_number(AF_INET6, host.substr(1, end - 1)) &&
               is_port(std::string_view(host).substr(end + 1));
    }
    const std::size_t colon = std::min(host.find(':'), host.size());
    const std::string name = in_small_letters(host.substr(0, colon));
    return is_port(std::string_view(host).substr(colon)) &&
           (is_number(AF_INET, name) || hosts_.count(name) != 0);
}

} // namespace soapwrapper::simulator
