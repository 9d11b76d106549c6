// The names that the loader binds the library's calls to, because the program comes ahead of all libraries.
// They are exported from the program alone: see its link options.
#include "probe/wire/tapped_calls.h"

#include <netdb.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>

namespace wire = soapwrapper::probe::wire;

#define SOAPWRAPPER_EXPORTED __attribute__((visibility("default")))

extern "C" {

SOAPWRAPPER_EXPORTED int getaddrinfo(const char* host, const char* port, const addrinfo* hints,
                                     addrinfo** found)
{
    return wire::tapped_getaddrinfo(host, port, hints, found);
}

SOAPWRAPPER_EXPORTED int connect(int socket, const sockaddr* address, socklen_t size)
{
    return wire::tapped_connect(socket, address, size);
}

SOAPWRAPPER_EXPORTED int getsockopt(int socket, int level, int option, void* value, socklen_t* size) noexcept
{
    return wire::tapped_getsockopt(socket, level, option, value, size);
}

SOAPWRAPPER_EXPORTED ssize_t send(int socket, const void* bytes, std::size_t count, int flags)
{
    return wire::tapped_send(socket, bytes, count, flags);
}

SOAPWRAPPER_EXPORTED ssize_t recv(int socket, void* bytes, std::size_t count, int flags)
{
    return wire::tapped_recv(socket, bytes, count, flags);
}

SOAPWRAPPER_EXPORTED int close(int descriptor)
{
    return wire::tapped_close(descriptor);
}

SOAPWRAPPER_EXPORTED std::FILE* fopen(const char* path, const char* mode)
{
    return wire::tapped_fopen(path, mode);
}

// What a library that asks for large files calls instead.
SOAPWRAPPER_EXPORTED std::FILE* fopen64(const char* path, const char* mode)
{
    return wire::tapped_fopen(path, mode);
}

SOAPWRAPPER_EXPORTED unsigned int sleep(unsigned int seconds)
{
    return wire::tapped_sleep(seconds);
}

SOAPWRAPPER_EXPORTED int SSL_connect(SSL* tls)
{
    return wire::tapped_ssl_connect(tls);
}

SOAPWRAPPER_EXPORTED int SSL_write(SSL* tls, const void* bytes, int count)
{
    return wire::tapped_ssl_write(tls, bytes, count);
}

SOAPWRAPPER_EXPORTED int SSL_read(SSL* tls, void* bytes, int count)
{
    return wire::tapped_ssl_read(tls, bytes, count);
}

} // extern "C"
