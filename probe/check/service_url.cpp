#include "probe/check/service_url.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

namespace soapwrapper::probe
{
namespace
{

constexpr int kHttpPort = 80;
constexpr int kHttpsPort = 443;

bool begins_with(const std::string& text, std::string_view scheme)
{
    return strncasecmp(text.c_str(), scheme.data(), scheme.size()) == 0;
}

bool is_blank_or_control(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code <= ' ' || code == 0x7f;
}

// Where the host begins: behind the scheme and a login, which ends at the first "@" wherever that stands.
std::size_t begin_of_host(const std::string& url)
{
    const std::size_t begin = url.find("//") + 2;
    const std::size_t at = url.find('@', begin);
    const bool login = at != std::string::npos && url[begin] != ':' && url[begin] != '@';
    return login ? at + 1 : begin;
}

} // namespace

ServiceUrl parse_url(const std::string& url)
{
    ServiceUrl parsed;
    parsed.https = begins_with(url, "https://");
    if (!parsed.https && !begins_with(url, "http://")) {
        parsed.fault = "it does not begin with http:// or https://";
        return parsed;
    }
    if (std::any_of(url.begin(), url.end(), is_blank_or_control)) {
        parsed.fault = "it holds a blank or a control character";
        return parsed;
    }
    std::size_t begin = begin_of_host(url);
    parsed.has_login = begin != url.find("//") + 2;
    std::size_t end = std::min(url.find_first_of("/:?", begin), url.size());
    if (begin < url.size() && url[begin] == '[') {
        ++begin;
        end = std::min(url.find(']', begin), url.size());
    }
    parsed.host = url.substr(begin, end - begin);
    if (parsed.host.empty()) parsed.fault = "it names no host";
    const std::size_t colon = end < url.size() && url[end] == ']' ? end + 1 : end;
    parsed.port = parsed.https ? kHttpsPort : kHttpPort;
    if (colon < url.size() && url[colon] == ':') {
        parsed.port = static_cast<int>(std::strtol(url.c_str() + colon + 1, nullptr, 10));
    }
    return parsed;
}

} // namespace soapwrapper::probe
