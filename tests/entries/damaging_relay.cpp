#include "tests/entries/damaging_relay.h"

#include "tests/kit/loopback.h"
#include "tests/kit/require.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

namespace
{

void send_at_once(int socket)
{
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

bool send_all(int socket, const char* bytes, std::size_t count)
{
    while (count > 0) {
        const ssize_t sent = send(socket, bytes, count, MSG_NOSIGNAL);
        if (sent <= 0) return false;
        bytes += sent;
        count -= static_cast<std::size_t>(sent);
    }
    return true;
}

} // namespace

DamagingRelay::DamagingRelay(int service_port)
    : service_port_(service_port), listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address = kit::loopback(0);
    socklen_t size = sizeof address;
    kit::require(bind(listener_, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                     listen(listener_, 8) == 0 && pipe2(wake_, O_CLOEXEC) == 0 &&
                     getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) == 0,
                 "can't listen");
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
}

DamagingRelay::~DamagingRelay()
{
    const char byte = 0;
    if (write(wake_[1], &byte, 1) != 1) std::abort();
    thread_.join();
    for (const int descriptor : {listener_, wake_[0], wake_[1]}) close(descriptor);
}

void DamagingRelay::damage_next(Damage damage, std::size_t at)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    plan_ = Plan{damage, at};
}

std::optional<DamagingRelay::Plan> DamagingRelay::take_plan()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(plan_, std::nullopt);
}

void DamagingRelay::serve()
{
    for (;;) {
        pollfd waiting[2] = {{listener_, POLLIN, 0}, {wake_[0], POLLIN, 0}};
        if (poll(waiting, 2, -1) < 0) continue;
        if (waiting[1].revents != 0) return;
        const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (client < 0) continue;
        relay(client, take_plan());
        close(client);
    }
}

void DamagingRelay::relay(int client, std::optional<Plan> plan) const
{
    const int service = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = kit::loopback(service_port_);
    bool alive = connect(service, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    send_at_once(client);
    send_at_once(service);
    std::size_t passed = 0;
    while (alive) {
        pollfd waiting[2] = {{client, POLLIN, 0}, {service, POLLIN, 0}};
        if (poll(waiting, 2, -1) < 0) continue;
        const bool from_service = waiting[1].revents != 0;
        char buffer[4096];
        const ssize_t received = recv(from_service ? service : client, buffer, sizeof buffer, 0);
        if (received <= 0) break;
        auto count = static_cast<std::size_t>(received);
        if (from_service) {
            alive = !plan || plan->at >= passed + count;
            if (!alive && plan->damage == Damage::kChange) buffer[plan->at - passed] ^= 0x20;
            if (!alive && plan->damage == Damage::kCut) count = plan->at - passed;
            passed += count;
        }
        if (!send_all(from_service ? client : service, buffer, count)) break;
    }
    // Whatever the client still sends, it is to see this end and not a reset.
    shutdown(client, SHUT_WR);
    char dropped[4096];
    while (recv(client, dropped, sizeof dropped, 0) > 0) {
    }
    close(service);
}
