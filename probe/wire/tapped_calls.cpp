#include "probe/wire/tapped_calls.h"

#include "probe/wire/real_calls.h"
#include "probe/wire/sockets.h"
#include "probe/wire/tap.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/types.h>
#include <openssl/x509_vfy.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/types.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::probe::wire
{
namespace
{

std::atomic<Observer*> g_observer{nullptr};
thread_local int t_untapped = 0;

// The name that this thread looked up last, and what was found.
struct Lookup {
    std::string host;
    std::vector<std::string> addresses; // as address_text() writes them
};
thread_local Lookup t_lookup;

bool is_tapped()
{
    return t_untapped == 0;
}

// Keeps errno as the system's call left it.
class KeptError
{
  public:
    KeptError() : error_(errno) {}
    ~KeptError() { errno = error_; }
    KeptError(const KeptError&) = delete;
    KeptError& operator=(const KeptError&) = delete;

    int get() const { return error_; }

  private:
    const int error_;
};

// The caller is C: want of memory, or whatever an observer throws, costs a part of what is seen and no more.
template <class Action>
void guarded(Action action) noexcept
{
    try {
        action();
    } catch (...) {
    }
}

bool is_internet(const sockaddr* address, socklen_t size)
{
    if (!address || size < sizeof(sockaddr_in)) return false;
    return address->sa_family == AF_INET || address->sa_family == AF_INET6;
}

// "192.0.2.7:8086", "[2001:db8::7]:8086"
std::string address_text(const sockaddr* address, socklen_t size)
{
    char host[NI_MAXHOST];
    char port[NI_MAXSERV];
    if (getnameinfo(address, size, host, sizeof host, port, sizeof port, NI_NUMERICHOST | NI_NUMERICSERV) !=
        0) {
        return {};
    }
    const bool is_v6 = address->sa_family == AF_INET6;
    return (is_v6 ? "[" + std::string(host) + "]" : std::string(host)) + ":" + port;
}

Connection connection_to(const sockaddr* address, socklen_t size)
{
    Connection connection;
    connection.address = address_text(address, size);
    const auto& known = t_lookup.addresses;
    if (std::find(known.begin(), known.end(), connection.address) != known.end()) {
        connection.host = t_lookup.host;
    }
    connection.begun = std::chrono::system_clock::now();
    connection.since = std::chrono::steady_clock::now();
    return connection;
}

void remember(const std::string& host, const addrinfo* found)
{
    Lookup lookup;
    lookup.host = host;
    for (; found; found = found->ai_next) {
        if (!is_internet(found->ai_addr, found->ai_addrlen)) continue;
        lookup.addresses.push_back(address_text(found->ai_addr, found->ai_addrlen));
    }
    t_lookup = std::move(lookup);
}

// Waits for a connection that goes on by itself; 0, or the error for which it failed. Unlike a call that
// blocks, this one can be ended from outside at any moment.
int wait_for_connection(int socket)
{
    pollfd watched[] = {{socket, POLLOUT, 0}, {Sockets::instance().cut_event(), POLLIN, 0}};
    while (poll(watched, 2, -1) < 0) {
    }
    if (watched[1].revents != 0) return ETIMEDOUT;
    int error = 0;
    socklen_t size = sizeof error;
    return real_calls().getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

// While one lives, a socket that blocks doesn't.
class NonBlocking
{
  public:
    explicit NonBlocking(int socket) : socket_(socket), flags_(fcntl(socket, F_GETFL))
    {
        if (blocked()) fcntl(socket_, F_SETFL, flags_ | O_NONBLOCK);
    }
    ~NonBlocking()
    {
        if (blocked()) fcntl(socket_, F_SETFL, flags_);
    }
    NonBlocking(const NonBlocking&) = delete;
    NonBlocking& operator=(const NonBlocking&) = delete;

    bool blocked() const { return flags_ >= 0 && (flags_ & O_NONBLOCK) == 0; }

  private:
    const int socket_;
    const int flags_;
};

// Tells what came of a connection, unless somebody was told before.
void tell_settled(int socket, int error)
{
    const std::optional<Tapped> settled = Sockets::instance().settle(socket);
    Observer* const observer = g_observer;
    if (settled && observer) observer->connected(settled->connection, error);
}

// The connection, if there is somebody to tell of what it transfers.
std::optional<Connection> observed(int socket)
{
    if (!g_observer) return std::nullopt;
    tell_settled(socket, 0); // nothing is transferred ahead of that
    return Sockets::instance().find(socket);
}

template <class Tell>
void tell(int socket, Tell tell_observer)
{
    const std::optional<Connection> connection = observed(socket);
    Observer* const observer = g_observer;
    if (connection && observer) tell_observer(*observer, *connection);
}

// The host of a connection that can't be made for want of its address.
void tell_not_found(const std::string& host, int result, int error)
{
    Observer* const observer = g_observer;
    if (!observer) return;
    Connection connection;
    connection.number = Sockets::instance().next_number();
    connection.host = host;
    connection.begun = std::chrono::system_clock::now();
    connection.since = std::chrono::steady_clock::now();
    observer->failed(connection,
                     host + ": " + (result == EAI_SYSTEM ? std::strerror(error) : gai_strerror(result)));
    observer->closed(connection);
}

bool may_go_on(int error)
{
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR || error == EINPROGRESS;
}

// What a plain transfer was. What travels under TLS is told of as it is before and behind that.
template <class Tell>
void tell_plain(int socket, ssize_t result, int error, Tell tell_bytes)
{
    tell(socket, [&](Observer& observer, const Connection& connection) {
        if (connection.is_tls) return;
        if (result >= 0) {
            tell_bytes(observer, connection, static_cast<std::size_t>(result));
        } else if (!may_go_on(error)) {
            observer.failed(connection, std::strerror(error));
        }
    });
}

// Why TLS ended, of which the queue of errors keeps what it has; empty: it goes on.
std::string tls_failure(const SSL* tls, int result, int error)
{
    const int kind = SSL_get_error(tls, result);
    if (kind == SSL_ERROR_WANT_READ || kind == SSL_ERROR_WANT_WRITE) return {};
    if (kind == SSL_ERROR_ZERO_RETURN) return "the peer ended TLS";
    if (kind == SSL_ERROR_SYSCALL) return error == 0 ? "the connection ended" : std::strerror(error);
    const long verified = SSL_get_verify_result(tls);
    if (verified != X509_V_OK && SSL_is_init_finished(tls) == 0) {
        return X509_verify_cert_error_string(verified);
    }
    const char* const reason = ERR_reason_error_string(ERR_peek_error());
    return reason ? reason : "TLS failed";
}

// The peer sends no more, with TLS's own farewell or without.
bool is_end_of_tls(const SSL* tls, int result, int error)
{
    switch (SSL_get_error(tls, result)) {
    case SSL_ERROR_ZERO_RETURN:
        return true;
    case SSL_ERROR_SYSCALL:
        return error == 0;
    case SSL_ERROR_SSL:
        return ERR_GET_REASON(ERR_peek_error()) == SSL_R_UNEXPECTED_EOF_WHILE_READING;
    default:
        return false;
    }
}

void tell_tls_failure(int socket, const SSL* tls, int result, int error)
{
    const std::string why = tls_failure(tls, result, error);
    if (why.empty()) return;
    tell(socket, [&](Observer& observer, const Connection& connection) { observer.failed(connection, why); });
}

} // namespace

void observe(Observer* observer)
{
    g_observer = observer;
}

void cut()
{
    Sockets::instance().cut();
}

void allow()
{
    Sockets::instance().allow();
}

bool is_cut()
{
    return Sockets::instance().is_cut();
}

std::string where()
{
    return Sockets::instance().where();
}

Untapped::Untapped()
{
    ++t_untapped;
}

Untapped::~Untapped()
{
    --t_untapped;
}

int tapped_getaddrinfo(const char* host, const char* port, const addrinfo* hints, addrinfo** found) noexcept
{
    if (!is_tapped() || !host) return real_calls().getaddrinfo(host, port, hints, found);
    bool is_allowed = true;
    guarded([&] { is_allowed = Sockets::instance().begin_lookup(host, port ? port : ""); });
    if (!is_allowed) return EAI_AGAIN;
    const int result = real_calls().getaddrinfo(host, port, hints, found);
    const KeptError kept;
    guarded([&] {
        Sockets::instance().end_lookup();
        if (result == 0) {
            remember(host, *found);
        } else {
            tell_not_found(host, result, kept.get());
        }
    });
    return result;
}

int tapped_connect(int socket, const sockaddr* address, socklen_t size) noexcept
{
    if (!is_tapped() || !is_internet(address, size)) return real_calls().connect(socket, address, size);
    int error = ENOMEM;
    guarded([&] {
        const NonBlocking non_blocking(socket);
        const std::optional<int> result =
            Sockets::instance().connect(socket, address, size, connection_to(address, size));
        error = !result ? ETIMEDOUT : *result == 0 ? 0 : errno;
        const bool waits = error == EINPROGRESS && non_blocking.blocked();
        if (waits) error = wait_for_connection(socket);
        if (error != EINPROGRESS) tell_settled(socket, error);
    });
    errno = error;
    return error == 0 ? 0 : -1;
}

int tapped_getsockopt(int socket, int level, int option, void* value, socklen_t* size) noexcept
{
    const int result = real_calls().getsockopt(socket, level, option, value, size);
    const bool tells = level == SOL_SOCKET && option == SO_ERROR && size && *size == sizeof(int);
    if (!is_tapped() || result != 0 || !tells) return result;
    const KeptError kept;
    guarded([&] {
        int error = 0;
        std::memcpy(&error, value, sizeof error);
        tell_settled(socket, error);
    });
    return result;
}

ssize_t tapped_send(int socket, const void* bytes, std::size_t count, int flags) noexcept
{
    const ssize_t result = real_calls().send(socket, bytes, count, flags);
    const KeptError kept;
    if (!is_tapped()) return result;
    guarded([&] {
        tell_plain(socket, result, kept.get(),
                   [&](Observer& observer, const Connection& connection, std::size_t sent) {
                       observer.sent(connection, {static_cast<const char*>(bytes), sent});
                   });
    });
    return result;
}

ssize_t tapped_recv(int socket, void* bytes, std::size_t count, int flags) noexcept
{
    const ssize_t result = real_calls().recv(socket, bytes, count, flags);
    const KeptError kept;
    if (!is_tapped() || (flags & MSG_PEEK) != 0) return result;
    guarded([&] {
        tell_plain(socket, result, kept.get(),
                   [&](Observer& observer, const Connection& connection, std::size_t received) {
                       observer.received(connection, {static_cast<const char*>(bytes), received});
                   });
    });
    return result;
}

int tapped_close(int descriptor) noexcept
{
    if (!is_tapped()) return real_calls().close(descriptor);
    std::optional<Tapped> was;
    const int result = Sockets::instance().close(descriptor, was);
    const KeptError kept;
    Observer* const observer = g_observer;
    if (!was || !observer) return result;
    guarded([&] {
        if (was->is_under_way) {
            observer->connected(was->connection, ETIMEDOUT);
        } else {
            observer->closed(was->connection);
        }
    });
    return result;
}

unsigned int tapped_sleep(unsigned int seconds) noexcept
{
    if (!is_tapped()) return real_calls().sleep(seconds);
    using std::chrono::milliseconds;
    using Clock = std::chrono::steady_clock;
    constexpr milliseconds kLongestWait = std::chrono::hours(1);
    const Clock::time_point end = Clock::now() + std::chrono::seconds(seconds);
    pollfd watched = {Sockets::instance().cut_event(), POLLIN, 0};
    for (auto left = end - Clock::now(); left > left.zero(); left = end - Clock::now()) {
        const auto wait = std::min(std::chrono::ceil<milliseconds>(left), kLongestWait);
        if (poll(&watched, 1, static_cast<int>(wait.count())) > 0) break;
    }
    return 0;
}

int tapped_ssl_connect(SSL* tls) noexcept
{
    const int socket = SSL_get_fd(tls);
    if (is_tapped()) guarded([&] { Sockets::instance().set_tls(socket, ""); });
    const int result = real_calls().ssl_connect(tls);
    const KeptError kept;
    if (!is_tapped()) return result;
    guarded([&] {
        if (result > 0) {
            Sockets::instance().set_tls(socket,
                                        std::string(SSL_get_version(tls)) + ", " + SSL_get_cipher_name(tls));
        } else {
            tell_tls_failure(socket, tls, result, kept.get());
        }
    });
    return result;
}

int tapped_ssl_write(SSL* tls, const void* bytes, int count) noexcept
{
    const int result = real_calls().ssl_write(tls, bytes, count);
    const KeptError kept;
    if (!is_tapped()) return result;
    guarded([&] {
        const int socket = SSL_get_fd(tls);
        if (result <= 0) return tell_tls_failure(socket, tls, result, kept.get());
        tell(socket, [&](Observer& observer, const Connection& connection) {
            observer.sent(connection, {static_cast<const char*>(bytes), static_cast<std::size_t>(result)});
        });
    });
    return result;
}

int tapped_ssl_read(SSL* tls, void* bytes, int count) noexcept
{
    const int result = real_calls().ssl_read(tls, bytes, count);
    const KeptError kept;
    if (!is_tapped()) return result;
    guarded([&] {
        const int socket = SSL_get_fd(tls);
        const bool is_end = result <= 0 && is_end_of_tls(tls, result, kept.get());
        if (result <= 0 && !is_end) return tell_tls_failure(socket, tls, result, kept.get());
        const std::size_t size = is_end ? 0 : static_cast<std::size_t>(result);
        tell(socket, [&](Observer& observer, const Connection& connection) {
            observer.received(connection, {static_cast<const char*>(bytes), size});
        });
    });
    return result;
}

} // namespace soapwrapper::probe::wire
