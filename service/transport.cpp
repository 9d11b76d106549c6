#include "service/transport.h"

#include "service/deadline.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <openssl/types.h>
#include <poll.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>

#include "soapwrapperH.h"

namespace soapwrapper
{
namespace
{

constexpr char kConnectFailed[] = "connect failed in tcp_connect()";

struct FreeAddresses {
    void operator()(addrinfo* addresses) const { freeaddrinfo(addresses); }
};
using Addresses = std::unique_ptr<addrinfo, FreeAddresses>;

int fail_by_error(soap* context, int error, const char* where)
{
    context->errnum = error;
    return fail(context, soap_strdup(context, std::strerror(error)), where); // the text is the thread's own
}

Addresses resolve(soap* context, const char* host, int port)
{
    addrinfo hints = {};
    hints.ai_family = PF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    int error = 0;
    do {
        error = getaddrinfo(host, std::to_string(port).c_str(), &hints, &found);
    } while (error == EAI_SYSTEM && errno == EINTR);
    if (error != 0) {
        fail(context, gai_strerror(error), "getaddrinfo failed in tcp_connect()");
        return nullptr;
    }
    return Addresses(found);
}

// 0, or the error for which the connection failed. One that a signal has interrupted, or that isn't to block,
// goes on by itself and is waited for.
int connect_within(int socket, const addrinfo& address, int seconds)
{
    if (connect(socket, address.ai_addr, address.ai_addrlen) == 0) return 0;
    if (errno != EINTR && errno != EINPROGRESS) return errno;
    if (!Deadline(seconds).wait_for(socket, POLLOUT)) return ETIMEDOUT;
    int error = 0;
    socklen_t size = sizeof error;
    return getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

// A connected socket, or the context's error.
int connect_to(soap* context, const addrinfo& address)
{
    const int made = socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC, address.ai_protocol);
    if (made < 0) return fail_by_error(context, errno, "socket failed in tcp_connect()");
    const int on = 1;
    setsockopt(made, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    const int seconds = context->connect_timeout;
    if (seconds > 0) set_blocking(made, false);
    const int error = connect_within(made, address, seconds);
    if (error == 0) {
        if (seconds > 0) set_blocking(made, true);
        return made;
    }
    close(made);
    if (seconds > 0 && error == ETIMEDOUT) return fail(context, "Timeout", kConnectFailed);
    return fail_by_error(context, error, kConnectFailed);
}

// For each bit of progress in a transfer. One that times out leaves no system's error behind.
bool wait_within_limit(const soap* context, short events, int limit)
{
    if (Deadline(limit).wait_for(context->socket, events)) return true;
    // The peer that has been waited for isn't waited for again when the connection is closed.
    if (context->ssl) SSL_set_quiet_shutdown(context->ssl, 1);
    errno = 0;
    return false;
}

// What a transfer over TLS comes to: above 0, or 0 and below at its end. A signal makes it want again.
template <class Transfer>
int repeat_encrypted(const soap* context, int limit, Transfer transfer)
{
    for (;;) {
        const int result = transfer();
        short events = 0;
        if (result > 0 || !wants_again(context->ssl, result, events)) return result;
        if (!wait_within_limit(context, events, limit)) return 0;
    }
}

// The same for a plain one, which is given the flags that keep it within its limit.
template <class Transfer>
ssize_t repeat_plain(const soap* context, short events, int limit, Transfer transfer)
{
    const int flags = context->socket_flags | (limit > 0 ? MSG_DONTWAIT : 0);
    for (;;) {
        const ssize_t result = transfer(flags);
        if (result >= 0) return result;
        const bool must_wait = limit > 0 && errno == EAGAIN;
        if (must_wait && !wait_within_limit(context, events, limit)) return result;
        if (!must_wait && errno != EINTR) return result;
    }
}

ssize_t send_some(soap* context, const char* bytes, std::size_t count)
{
    const int limit = context->send_timeout;
    if (context->ssl) {
        return repeat_encrypted(context, limit,
                                [&] { return SSL_write(context->ssl, bytes, static_cast<int>(count)); });
    }
    return repeat_plain(context, POLLOUT, limit,
                        [&](int flags) { return send(context->socket, bytes, count, flags); });
}

// Sends all; false if the connection has ended before.
bool send_all(soap* context, const char* bytes, std::size_t count)
{
    while (count > 0) {
        const ssize_t sent = soap_valid_socket(context->socket) ? send_some(context, bytes, count) : 0;
        if (sent <= 0) return false;
        bytes += sent;
        count -= static_cast<std::size_t>(sent);
    }
    return true;
}

} // namespace

void set_blocking(int socket, bool blocking)
{
    const int flags = fcntl(socket, F_GETFL);
    fcntl(socket, F_SETFL, blocking ? flags & ~O_NONBLOCK : flags | O_NONBLOCK);
}

int fail(soap* context, const char* reason, const char* where)
{
    soap_set_receiver_error(context, reason, where, SOAP_TCP_ERROR);
    return SOAP_INVALID_SOCKET;
}

bool wants_again(SSL* tls, int result, short& events)
{
    const int error = SSL_get_error(tls, result);
    events = error == SSL_ERROR_WANT_READ ? POLLIN : POLLOUT;
    return error == SSL_ERROR_WANT_READ || error == SSL_ERROR_WANT_WRITE;
}

int open_connection(soap* context, const char* host, int port)
{
    context->errnum = 0;
    const Addresses addresses = resolve(context, host, port);
    int made = SOAP_INVALID_SOCKET;
    for (const addrinfo* address = addresses.get(); address && made < 0; address = address->ai_next) {
        made = connect_to(context, *address);
    }
    if (made < 0) return SOAP_INVALID_SOCKET;
    // What an address that was tried before left behind.
    context->error = SOAP_OK;
    context->fault = nullptr;
    context->imode &= ~SOAP_ENC_SSL;
    context->omode &= ~SOAP_ENC_SSL;
    return context->socket = made;
}

int send_bytes(soap* context, const char* bytes, std::size_t count)
{
    context->errnum = 0;
    const bool sent = send_all(context, bytes, count);
    if (!sent) context->errnum = errno;
    // The runtime sends from its own buffer, and has no further use for what stood there.
    if (bytes == context->buf) explicit_bzero(context->buf, count);
    return sent ? SOAP_OK : SOAP_EOF;
}

std::size_t receive_bytes(soap* context, char* bytes, std::size_t count)
{
    context->errnum = 0;
    if (!soap_valid_socket(context->socket)) return 0;
    const int limit = context->recv_timeout;
    if (context->ssl) {
        const int received = repeat_encrypted(
            context, limit, [&] { return SSL_read(context->ssl, bytes, static_cast<int>(count)); });
        return received > 0 ? static_cast<std::size_t>(received) : 0;
    }
    const ssize_t received = repeat_plain(
        context, POLLIN, limit, [&](int flags) { return recv(context->socket, bytes, count, flags); });
    if (received < 0) context->errnum = errno;
    return received > 0 ? static_cast<std::size_t>(received) : 0;
}

} // namespace soapwrapper
