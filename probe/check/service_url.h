// A URL of a service as the library takes it apart.
#ifndef SOAPWRAPPER_PROBE_CHECK_SERVICE_URL_H
#define SOAPWRAPPER_PROBE_CHECK_SERVICE_URL_H

#include <string>

namespace soapwrapper::probe
{

struct ServiceUrl {
    std::string fault; // why the library calls it never; empty: it does
    bool https = false;
    std::string host;
    int port = 0;
    bool has_login = false; // a user's name ahead of the host

    bool is_callable() const { return fault.empty(); }
};

ServiceUrl parse_url(const std::string& url);

} // namespace soapwrapper::probe

#endif
