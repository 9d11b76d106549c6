#include "service/endpoint.h"

#include <strings.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "soapwrapperH.h"

namespace soapwrapper
{
namespace
{

bool begins_with(const char* url, std::string_view scheme)
{
    return strncasecmp(url, scheme.data(), scheme.size()) == 0;
}

bool is_blank_or_control(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code <= ' ' || code == 0x7f;
}

} // namespace

bool is_https(const char* url)
{
    return begins_with(url, "https:");
}

bool is_service_url(soap* context, const char* url)
{
    if (!begins_with(url, "http://") && !begins_with(url, "https://")) return false;
    if (std::any_of(url, url + std::strlen(url), is_blank_or_control)) return false;
    soap_set_endpoint(context, url);
    return context->host[0] != '\0';
}

} // namespace soapwrapper
