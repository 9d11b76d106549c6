#include "simulator/front/address.h"

#include "simulator/front/descriptor.h"
#include "simulator/front/number_in.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{
namespace
{

// The socket, or one without a descriptor and errno.
Descriptor try_to_listen(const addrinfo& candidate)
{
    Descriptor socket(::socket(candidate.ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!socket.valid()) return socket;
    const int on = 1;
    setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    if (candidate.ai_family == AF_INET6) {
        setsockopt(socket.get(), IPPROTO_IPV6, IPV6_V6ONLY, &on, sizeof on);
    }
    if (bind(socket.get(), candidate.ai_addr, candidate.ai_addrlen) == 0 &&
        listen(socket.get(), SOMAXCONN) == 0) {
        return socket;
    }
    const int error = errno;
    socket = Descriptor();
    errno = error;
    return socket;
}

} // namespace

std::optional<Address> parse_address(std::string_view text)
{
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos) return std::nullopt;
    std::string_view host = text.substr(0, colon);
    const std::string_view port = text.substr(colon + 1);
    if (host.size() > 2 && host.front() == '[' && host.back() == ']') {
        host = host.substr(1, host.size() - 2);
    } else if (host.find(':') != std::string_view::npos) {
        return std::nullopt;
    }
    if (host.empty() || host.find_first_of("[]/ ") != std::string_view::npos) return std::nullopt;
    const std::optional<std::uint16_t> number = number_in<std::uint16_t>(port);
    if (!number) return std::nullopt;
    return Address{std::string(host), *number};
}

std::string to_string(const Address& address)
{
    const bool bare_v6 = address.host.find(':') != std::string::npos && address.host.front() != '[';
    const std::string host = bare_v6 ? "[" + address.host + "]" : address.host;
    return host + ":" + std::to_string(address.port);
}

Descriptor listen_on(const Address& address)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    const int failure =
        getaddrinfo(address.host.c_str(), std::to_string(address.port).c_str(), &hints, &found);
    const std::string trouble = "can't listen on " + to_string(address) + ": ";
    if (failure != 0) throw std::runtime_error(trouble + gai_strerror(failure));
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(found, freeaddrinfo);

    Descriptor socket;
    for (const addrinfo* candidate = found; candidate && !socket.valid(); candidate = candidate->ai_next) {
        socket = try_to_listen(*candidate);
    }
    if (socket.valid()) return socket;
    if (errno == EADDRINUSE) {
        throw std::runtime_error(trouble +
                                 "the port is in use; name another one, or 0 to have a free one drawn");
    }
    throw std::runtime_error(trouble + std::strerror(errno));
}

bool is_loopback(const Address& address)
{
    constexpr std::uint32_t kNet = 127;
    in_addr four{};
    if (inet_pton(AF_INET, address.host.c_str(), &four) == 1) return ntohl(four.s_addr) >> 24 == kNet;
    in6_addr six{};
    if (inet_pton(AF_INET6, address.host.c_str(), &six) != 1) return false;
    return IN6_IS_ADDR_LOOPBACK(&six) || (IN6_IS_ADDR_V4MAPPED(&six) && six.s6_addr[12] == kNet);
}

Address address_of(int socket, bool peer)
{
    sockaddr_storage storage{};
    socklen_t size = sizeof storage;
    auto* raw = reinterpret_cast<sockaddr*>(&storage);
    if ((peer ? getpeername(socket, raw, &size) : getsockname(socket, raw, &size)) != 0)
        return {"unknown", 0};
    char host[NI_MAXHOST];
    char port[NI_MAXSERV];
    if (getnameinfo(raw, size, host, sizeof host, port, sizeof port, NI_NUMERICHOST | NI_NUMERICSERV) != 0) {
        return {"unknown", 0};
    }
    return {host, static_cast<std::uint16_t>(std::stoul(port))};
}

} // namespace soapwrapper::simulator
