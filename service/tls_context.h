#ifndef SOAPWRAPPER_SERVICE_TLS_CONTEXT_H
#define SOAPWRAPPER_SERVICE_TLS_CONTEXT_H

struct soap;

namespace soapwrapper
{

// The SOAP runtime's hook for making a TLS context: hands out the one that all calls share. Made by the
// runtime, each call would read the machine's whole bundle of certificate authorities, for certificates that
// nobody checks. Returns a SOAP error number.
int share_tls_context(soap* context);

} // namespace soapwrapper

#endif
