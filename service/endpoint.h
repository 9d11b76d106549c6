#ifndef SOAPWRAPPER_SERVICE_ENDPOINT_H
#define SOAPWRAPPER_SERVICE_ENDPOINT_H

struct soap;

namespace soapwrapper
{

// Whether a call may go to this URL: it begins with http:// or https:// in any case of letters, names a host,
// and holds neither a blank nor a control character. Everything else the SOAP runtime would take for a file,
// a datagram's address, a list of addresses or a header of its own, or would write to the process's standard
// output. The host is the one that the runtime itself finds, in `context`.
bool is_service_url(soap* context, const char* url);

bool is_https(const char* url);

} // namespace soapwrapper

#endif
