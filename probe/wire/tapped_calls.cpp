#include "probe/wire/tapped_calls.h"

#include "probe/wire/real_calls.h"
#include "probe/wire/sockets.h"
#include "probe/wire/tap.h"
#include "probe/wire/telling.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/types.h>

#include <algorithm>
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

// The name that this thread looked up last, and what was found.
struct Lookup {
    std::string host;
    std::vector<std::string> addresses; // as address_text() writes them
};
thread_local Lookup t_lookup;

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

// A connection that begins now, though nothing else is known of it.
Connection beginning()
{
    Connection connection;
    connection.begun = std::chrono::system_clock::now();
    connection.since = std::chrono::steady_clock::now();
    return connection;
}

Connection connection_to(const sockaddr* address, socklen_t size)
{
    Connection connection = beginning();
    connection.address = address_text(address, size);
    const auto& known = t_lookup.addresses;
    if (std::find(known.begin(), known.end(), connection.address) != known.end()) {
        connection.host = t_lookup.host;
    }
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

void tell_not_found(Connection connection, int result, int error)
{
    Observer* const observer = current_observer();
    if (!observer) return;
    connection.number = Sockets::instance().next_number();
    observer->failed(connection, result == EAI_SYSTEM ? std::strerror(error) : gai_strerror(result));
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

} // namespace

int tapped_getaddrinfo(const char* host, const char* port, const addrinfo* hints, addrinfo** found) noexcept
{
    if (!is_tapped() || !host) return real_calls().getaddrinfo(host, port, hints, found);
    Connection connection;
    bool is_allowed = true;
    guarded([&] {
        connection = beginning();
        connection.host = host;
        connection.address = port ? std::string(host) + ":" + port : host;
        is_allowed = Sockets::instance().begin_lookup(connection.address);
    });
    if (!is_allowed) return EAI_AGAIN;
    const int result = real_calls().getaddrinfo(host, port, hints, found);
    const KeptError kept;
    guarded([&] {
        Sockets::instance().end_lookup();
        if (result == 0) {
            remember(host, *found);
        } else {
            tell_not_found(std::move(connection), result, kept.get());
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
    Observer* const observer = current_observer();
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

} // namespace soapwrapper::probe::wire
