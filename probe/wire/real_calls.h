// The system's own functions, behind the ones of the same names that this program has.
#ifndef SOAPWRAPPER_PROBE_WIRE_REAL_CALLS_H
#define SOAPWRAPPER_PROBE_WIRE_REAL_CALLS_H

#include <netdb.h>
#include <openssl/types.h>
#include <sys/socket.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdio>

namespace soapwrapper::probe::wire
{

struct RealCalls {
    int (*getaddrinfo)(const char* host, const char* port, const addrinfo* hints, addrinfo** found);
    int (*connect)(int socket, const sockaddr* address, socklen_t size);
    int (*getsockopt)(int socket, int level, int option, void* value, socklen_t* size);
    ssize_t (*send)(int socket, const void* bytes, std::size_t count, int flags);
    ssize_t (*recv)(int socket, void* bytes, std::size_t count, int flags);
    int (*close)(int descriptor);
    std::FILE* (*fopen)(const char* path, const char* mode);
    unsigned int (*sleep)(unsigned int seconds);
};

// Those of the TLS library, which is there in a program that calls it.
struct RealTlsCalls {
    int (*connect)(SSL* tls);
    int (*write)(SSL* tls, const void* bytes, int count);
    int (*read)(SSL* tls, void* bytes, int count);
};

const RealCalls& real_calls();
const RealTlsCalls& real_tls_calls();

} // namespace soapwrapper::probe::wire

#endif
