// What all TLS connections share: one TLS context and the sessions that servers gave out.
#ifndef SOAPWRAPPER_SERVICE_TLS_CONTEXT_H
#define SOAPWRAPPER_SERVICE_TLS_CONTEXT_H

#include "service/tls_sessions.h"

struct soap;

namespace soapwrapper
{

// The SOAP runtime's hook for making a TLS context: hands out the one that all calls share. Made by the
// runtime, each call would read the machine's whole bundle of certificate authorities, of which none is used.
// Returns a SOAP error number.
int share_tls_context(soap* context);

TlsSessions& tls_sessions();

// From now on no older version than this (TLS1_VERSION and later) is spoken, and where a PEM file is named,
// peers' certificates are checked against those that it holds. False if it can't be read or holds none.
// Sessions are forgotten. No call may be under way.
bool begin_tls_anew(int oldest_version, const char* ca_file);

} // namespace soapwrapper

#endif
