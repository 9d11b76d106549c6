#include "tests/system/soap_client.h"

#include "tests/kit/soap_text.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

ClientSocket::ClientSocket(int port, const char* host)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    if (getaddrinfo(host, std::to_string(port).c_str(), &hints, &found) != 0) {
        throw std::runtime_error("no such address");
    }
    fd_ = socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int result = connect(fd_, found->ai_addr, found->ai_addrlen);
    freeaddrinfo(found);
    if (result != 0) {
        close(fd_);
        throw std::runtime_error("can't connect");
    }
}

ClientSocket::~ClientSocket()
{
    if (fd_ >= 0) close(fd_);
}

void ClientSocket::send(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const ssize_t sent = ::send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) return; // what the service made of it is seen in its answer
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

std::string ClientSocket::receive_all() const
{
    std::string all;
    char buffer[4096];
    for (;;) {
        const ssize_t got = recv(fd_, buffer, sizeof buffer, 0);
        if (got <= 0) return all;
        all.append(buffer, static_cast<std::size_t>(got));
    }
}

bool ClientSocket::has_something_to_read() const
{
    pollfd polled{fd_, POLLIN, 0};
    return poll(&polled, 1, 0) == 1;
}

void ClientSocket::reset()
{
    const linger at_once{1, 0};
    setsockopt(fd_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    close(fd_);
    fd_ = -1;
}

TlsClient::TlsClient(int port, const Prepare& prepare, const char* host)
    : socket_(port, host), context_(SSL_CTX_new(TLS_client_method())), ssl_(SSL_new(context_.get()))
{
    SSL_set_fd(ssl_.get(), socket_.fd());
    if (prepare) prepare(ssl_.get());
    if (SSL_connect(ssl_.get()) != 1) throw std::runtime_error("no handshake");
}

void TlsClient::send(std::string_view bytes) const
{
    SSL_write(ssl_.get(), bytes.data(), static_cast<int>(bytes.size()));
}

std::string TlsClient::receive_all() const
{
    std::string all;
    char buffer[4096];
    for (;;) {
        const int got = SSL_read(ssl_.get(), buffer, sizeof buffer);
        if (got <= 0) return all;
        all.append(buffer, static_cast<std::size_t>(got));
    }
}

HttpReply parse_reply(const std::string& bytes)
{
    HttpReply reply;
    const std::size_t end = bytes.find("\r\n\r\n");
    if (end == std::string::npos || bytes.compare(0, 9, "HTTP/1.1 ") != 0) return reply;
    reply.status = std::stoi(bytes.substr(9, 3));
    reply.head = bytes.substr(0, end);
    reply.body = bytes.substr(end + 4);
    return reply;
}

std::string post_text(std::string_view body)
{
    return "POST / HTTP/1.1\r\nHost: simulator\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\nSOAPAction: \"\"\r\n\r\n" + std::string(body);
}

HttpReply ask(int port, std::string_view operation, std::string_view content, bool tls)
{
    const std::string request = post_text(kit::envelope(kit::element(operation, content)));
    std::string answer;
    if (tls) {
        const TlsClient client(port);
        client.send(request);
        answer = client.receive_all();
    } else {
        const ClientSocket client(port);
        client.send(request);
        answer = client.receive_all();
    }
    HttpReply reply = parse_reply(answer);
    reply.body = kit::body_of(reply.body);
    return reply;
}

std::string text_of(std::string_view message, std::string_view name)
{
    const std::string start = "<ns1:" + std::string(name) + ">";
    const std::size_t begin = message.find(start);
    if (begin == std::string_view::npos) return {};
    const std::size_t end = message.find("</ns1:" + std::string(name) + ">", begin);
    if (end == std::string_view::npos) return {};
    return std::string(message.substr(begin + start.size(), end - begin - start.size()));
}

long fault_code(const HttpReply& reply)
{
    const bool is_client_fault =
        reply.status == 500 && reply.body.find("<SOAP-ENV:Fault><faultcode>SOAP-ENV:Client</faultcode>") == 0;
    const std::string code = text_of(text_of(reply.body, "STSException"), "errorCode");
    return is_client_fault && !code.empty() ? std::stol(code) : -1;
}
