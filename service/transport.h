// The connection under a call, in place of the SOAP runtime's own: its sockets are closed on exec, a signal
// handler that runs meanwhile doesn't spoil the call, and nothing but its own socket is ever read or written.
#ifndef SOAPWRAPPER_SERVICE_TRANSPORT_H
#define SOAPWRAPPER_SERVICE_TRANSPORT_H

#include <openssl/types.h>

#include <cstddef>

struct soap;

namespace soapwrapper
{

// A socket that is connected to the host, or SOAP_INVALID_SOCKET and the context's error. Addresses are tried
// in order, each for the context's connect_timeout in seconds (0: for as long as it takes).
int open_connection(soap* context, const char* host, int port);

// Sends all bytes and wipes them from the context's buffer, because a request may hold a credential. SOAP_OK
// or SOAP_EOF. The peer may be silent for the context's send_timeout in seconds (0: for as long as it likes).
int send_bytes(soap* context, const char* bytes, std::size_t count);

// What has come, at most `count` bytes; 0 at the end or at a failure. The peer may be silent for the
// context's recv_timeout.
std::size_t receive_bytes(soap* context, char* bytes, std::size_t count);

// For a connection that goes on from there.

void set_blocking(int socket, bool blocking);

// SOAP_INVALID_SOCKET, with the context's error. The texts are those that the runtime's own connection tells.
int fail(soap* context, const char* reason, const char* where);

// Whether the operation that gave `result` is to be tried again once the socket is ready for these events.
bool wants_again(SSL* tls, int result, short& events);

} // namespace soapwrapper

#endif
