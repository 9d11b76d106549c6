// What the program's functions do that come ahead of the system's. They behave as the system's do, errno
// included, and throw nothing.
#ifndef SOAPWRAPPER_PROBE_WIRE_TAPPED_CALLS_H
#define SOAPWRAPPER_PROBE_WIRE_TAPPED_CALLS_H

#include <netdb.h>
#include <openssl/types.h>
#include <sys/socket.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdio>

namespace soapwrapper::probe::wire
{

int tapped_getaddrinfo(const char* host, const char* port, const addrinfo* hints, addrinfo** found) noexcept;
int tapped_connect(int socket, const sockaddr* address, socklen_t size) noexcept;
int tapped_getsockopt(int socket, int level, int option, void* value, socklen_t* size) noexcept;
ssize_t tapped_send(int socket, const void* bytes, std::size_t count, int flags) noexcept;
ssize_t tapped_recv(int socket, void* bytes, std::size_t count, int flags) noexcept;
int tapped_close(int descriptor) noexcept;
std::FILE* tapped_fopen(const char* path, const char* mode) noexcept;
unsigned int tapped_sleep(unsigned int seconds) noexcept;
int tapped_ssl_connect(SSL* tls) noexcept;
int tapped_ssl_write(SSL* tls, const void* bytes, int count) noexcept;
int tapped_ssl_read(SSL* tls, void* bytes, int count) noexcept;

} // namespace soapwrapper::probe::wire

#endif
