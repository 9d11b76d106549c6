#include "probe/check/connection.h"

#include "probe/wire/tap.h"

#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <utility>

namespace soapwrapper::probe
{
namespace
{

using std::chrono::milliseconds;
using std::chrono::steady_clock;

struct FreeAddresses {
    void operator()(addrinfo* addresses) const { freeaddrinfo(addresses); }
};
using Addresses = std::unique_ptr<addrinfo, FreeAddresses>;

struct Resolved {
    Addresses addresses;
    std::string failure;
};

Resolved resolve(const std::string& host, int port)
{
    addrinfo hints = {};
    hints.ai_family = PF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int error = getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found);
    if (error == EAI_SYSTEM) return {nullptr, std::strerror(errno)};
    if (error != 0) return {nullptr, gai_strerror(error)};
    return {Addresses(found), {}};
}

// The system's resolver can't be given a limit: a thread that is late is left behind.
Resolved resolve_within(const std::string& host, int port, TimeLimit limit)
{
    std::packaged_task<Resolved()> task([host, port] {
        const wire::Untapped untapped; // of this thread
        return resolve(host, port);
    });
    std::future<Resolved> result = task.get_future();
    std::thread(std::move(task)).detach();
    if (result.wait_until(limit) == std::future_status::ready) return result.get();
    return {nullptr, "the name server does not answer"};
}

std::string text_of(const addrinfo& address)
{
    char host[NI_MAXHOST] = "";
    char port[NI_MAXSERV] = "";
    getnameinfo(address.ai_addr, address.ai_addrlen, host, sizeof host, port, sizeof port,
                NI_NUMERICHOST | NI_NUMERICSERV);
    const std::string text = address.ai_family == AF_INET6 ? '[' + std::string(host) + ']' : host;
    return text + ':' + port;
}

// 0, or why there is no connection.
int connect_within(const Socket& socket, const addrinfo& address, TimeLimit limit)
{
    if (!socket) return errno;
    if (connect(socket.get(), address.ai_addr, address.ai_addrlen) == 0) return 0;
    if (errno != EINPROGRESS) return errno;
    if (!socket.wait_for(POLLOUT, limit)) return ETIMEDOUT;
    int error = 0;
    socklen_t size = sizeof error;
    return getsockopt(socket.get(), SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

} // namespace

Socket::~Socket()
{
    if (descriptor_ >= 0) close(descriptor_);
}

Socket& Socket::operator=(Socket&& other) noexcept
{
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

bool Socket::wait_for(short events, TimeLimit limit) const
{
    pollfd watched = {descriptor_, events, 0};
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(limit - steady_clock::now());
        const int result = poll(&watched, 1, static_cast<int>(std::max(left, milliseconds(0)).count()));
        if (result > 0) return true;
        if (result == 0 || errno != EINTR) return false;
    }
}

Connecting connect_to(const std::string& host, int port, TimeLimit limit)
{
    Connecting connecting;
    const Resolved resolved = resolve_within(host, port, limit);
    if (!resolved.addresses) {
        connecting.failures.push_back("the name " + host + " cannot be resolved: " + resolved.failure);
        return connecting;
    }
    for (const addrinfo* address = resolved.addresses.get(); address; address = address->ai_next) {
        const steady_clock::time_point begun = steady_clock::now();
        Socket socket(::socket(address->ai_family, address->ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK,
                               address->ai_protocol));
        const int error = connect_within(socket, *address, limit);
        connecting.address = text_of(*address);
        connecting.took = std::chrono::duration_cast<std::chrono::microseconds>(steady_clock::now() - begun);
        if (error == 0) {
            connecting.socket = std::move(socket);
            return connecting;
        }
        connecting.failures.push_back(connecting.address + ": " + std::strerror(error));
    }
    return connecting;
}

} // namespace soapwrapper::probe
