#ifndef SOAPWRAPPER_SERVICE_TLS_CONNECTION_H
#define SOAPWRAPPER_SERVICE_TLS_CONNECTION_H

#include <cstdint>

struct soap;

namespace soapwrapper
{

// As open_connection, with TLS on the new socket: SOAP_INVALID_SOCKET and the context's error if that fails.
// A session that the server gave out before is resumed if the server will have it; `full_handshake` is when
// the handshake was that the connection goes back to. The peer's certificate is checked only where the
// channel's settings say so.
int open_tls_connection(soap* context, const char* host, int port, std::int64_t& full_handshake);

// For a connection that carried its call to the end: keeps the session that the server left for the next one.
void keep_tls_session(soap* context, std::int64_t full_handshake);

} // namespace soapwrapper

#endif
