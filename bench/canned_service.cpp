#include "bench/canned_service.h"

#include "tests/kit/loopback.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace bench
{
namespace
{

constexpr std::size_t kManyTickets = 100;

int connected_socket(int port)
{
    const int descriptor = socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address = kit::loopback(port);
    if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        throw std::runtime_error("can't connect");
    }
    const int on = 1;
    setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return descriptor;
}

bool is_whole(const std::string& request)
{
    const std::size_t head = request.find("\r\n\r\n");
    if (head == std::string::npos) return false;
    const std::size_t at = request.find("Content-Length: ");
    const std::size_t length = at < head ? std::strtoul(request.c_str() + at + 16, nullptr, 10) : 0;
    return request.size() >= head + 4 + length;
}

kit::TlsContext make_context(Channel channel)
{
    if (channel == Channel::kPlain) return nullptr;
    kit::TlsContext context = kit::make_tls_server_context();
    if (channel == Channel::kTlsManyTickets) return kit::with_tickets(std::move(context), kManyTickets);
    return channel == Channel::kTls12 ? kit::up_to_tls12(std::move(context)) : std::move(context);
}

} // namespace

CannedService::CannedService(std::string reply, Channel channel, int threads)
    : CannedService([this](const std::string&) -> const std::string& { return reply_; }, channel, threads)
{
    reply_ = std::move(reply);
}

CannedService::CannedService(Choice choice, Channel channel, int threads)
    : choice_(std::move(choice)), context_(make_context(channel))
{
    listener_ = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = kit::loopback(0);
    socklen_t size = sizeof address;
    if (bind(listener_, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener_, 128) != 0 ||
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("can't listen");
    }
    port_ = ntohs(address.sin_port);
    for (int i = 0; i < threads; ++i) threads_.emplace_back([this] { serve(); });
}

CannedService::~CannedService()
{
    stopping_ = true;
    for (std::size_t i = 0; i < threads_.size(); ++i) close(connected_socket(port_));
    for (std::thread& thread : threads_) thread.join();
    close(listener_);
}

std::string CannedService::url() const
{
    return (context_ ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(port_);
}

std::string CannedService::last_request() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return last_request_;
}

void CannedService::serve()
{
    sigset_t sigpipe;
    sigemptyset(&sigpipe);
    sigaddset(&sigpipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &sigpipe, nullptr);
    while (!stopping_) {
        const int connection = accept(listener_, nullptr, nullptr);
        if (connection >= 0 && !stopping_) serve_connection(connection);
        close(connection);
    }
}

void CannedService::serve_connection(int connection)
{
    SSL* ssl = nullptr;
    if (context_) {
        ssl = SSL_new(context_.get());
        SSL_set_fd(ssl, connection);
        if (SSL_accept(ssl) != 1) return SSL_free(ssl);
    }
    std::string request;
    char buffer[16384];
    while (!is_whole(request)) {
        const auto count = ssl ? SSL_read(ssl, buffer, sizeof buffer)
                               : static_cast<int>(recv(connection, buffer, sizeof buffer, 0));
        if (count <= 0) break;
        request.append(buffer, static_cast<std::size_t>(count));
    }
    const std::string& reply = choice_(request);
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        last_request_ = std::move(request);
    }
    if (ssl) {
        SSL_write(ssl, reply.data(), static_cast<int>(reply.size()));
        SSL_shutdown(ssl);
        SSL_free(ssl);
    } else {
        const char* at = reply.data();
        for (std::size_t left = reply.size(); left > 0;) {
            const ssize_t count = send(connection, at, left, MSG_NOSIGNAL);
            if (count <= 0) break;
            at += count;
            left -= static_cast<std::size_t>(count);
        }
    }
}

std::size_t bare_exchange(int port, const std::string& request)
{
    const int descriptor = connected_socket(port);
    std::size_t total = 0;
    if (send(descriptor, request.data(), request.size(), MSG_NOSIGNAL) > 0) {
        char buffer[65536];
        ssize_t count = 0;
        while ((count = recv(descriptor, buffer, sizeof buffer, 0)) > 0)
            total += static_cast<std::size_t>(count);
    }
    close(descriptor);
    return total;
}

std::size_t bare_tls_exchange(int port, const std::string& request, SSL_CTX* context)
{
    const int descriptor = connected_socket(port);
    SSL* ssl = SSL_new(context);
    SSL_set_fd(ssl, descriptor);
    std::size_t total = 0;
    if (SSL_connect(ssl) == 1 && SSL_write(ssl, request.data(), static_cast<int>(request.size())) > 0) {
        char buffer[65536];
        int count = 0;
        while ((count = SSL_read(ssl, buffer, sizeof buffer)) > 0) total += static_cast<std::size_t>(count);
    }
    SSL_shutdown(ssl);
    SSL_free(ssl);
    close(descriptor);
    return total;
}

} // namespace bench
