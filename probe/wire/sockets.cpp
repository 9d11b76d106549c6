#include "probe/wire/sockets.h"

#include "probe/wire/real_calls.h"
#include "probe/wire/tap.h"

#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace soapwrapper::probe::wire
{
namespace
{

// "filer1:8086 (192.0.2.7)"; the address alone if it is all that there is.
std::string place_of(const Connection& connection)
{
    const std::string& address = connection.address;
    const std::size_t colon = address.rfind(':');
    const std::string bare = address.substr(0, colon);
    if (connection.host.empty() || connection.host == bare || colon == std::string::npos) return address;
    return connection.host + address.substr(colon) + " (" + bare + ")";
}

} // namespace

Sockets& Sockets::instance()
{
    static auto* const sockets = new Sockets;
    return *sockets;
}

Sockets::Sockets() : cut_event_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

bool Sockets::begin_lookup(const std::string& place)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (is_cut_) return false;
    lookup_ = place;
    return true;
}

void Sockets::end_lookup()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    lookup_.clear();
}

std::uint64_t Sockets::next_number()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return ++last_;
}

std::optional<int> Sockets::connect(int socket, const sockaddr* address, socklen_t size,
                                    Connection connection)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (is_cut_) return std::nullopt;
    connection.number = ++last_;
    Tapped& tapped = tapped_[socket];
    tapped.connection = std::move(connection);
    tapped.is_under_way = true;
    return real_calls().connect(socket, address, size);
}

std::optional<Tapped> Sockets::settle(int socket)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = tapped_.find(socket);
    if (found == tapped_.end() || !std::exchange(found->second.is_under_way, false)) return std::nullopt;
    return found->second;
}

std::optional<Connection> Sockets::find(int socket)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = tapped_.find(socket);
    if (found == tapped_.end()) return std::nullopt;
    return found->second.connection;
}

void Sockets::set_tls(int socket, const std::string& tls)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = tapped_.find(socket);
    if (found == tapped_.end()) return;
    found->second.connection.is_tls = true;
    found->second.connection.tls = tls;
}

int Sockets::close(int descriptor, std::optional<Tapped>& was)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = tapped_.find(descriptor);
    if (found != tapped_.end()) {
        was = std::move(found->second);
        tapped_.erase(found);
    }
    return real_calls().close(descriptor);
}

void Sockets::cut()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!is_cut_.exchange(true)) eventfd_write(cut_event_, 1);
    shut_down();
}

void Sockets::end_connections()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    ended_ = last_;
    shut_down();
}

void Sockets::shut_down() const
{
    for (const auto& each : tapped_) shutdown(each.first, SHUT_RDWR);
}

void Sockets::allow()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    eventfd_t count = 0;
    if (is_cut_.exchange(false)) eventfd_read(cut_event_, &count);
}

std::string Sockets::where()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!lookup_.empty()) return lookup_;
    const auto newest = std::max_element(tapped_.begin(), tapped_.end(), [](const auto& a, const auto& b) {
        return a.second.connection.number < b.second.connection.number;
    });
    return newest == tapped_.end() ? std::string() : place_of(newest->second.connection);
}

} // namespace soapwrapper::probe::wire
