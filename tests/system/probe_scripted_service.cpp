#include "probe_scripted_service.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace
{

std::string envelope(const std::string& body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
           "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\""
           " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
           " xmlns:ns1=\"" SERVICE_NAMESPACE "\"><SOAP-ENV:Body>" +
           body + "</SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

std::string http(const std::string& status, const std::string& body)
{
    return "HTTP/1.1 " + status +
           "\r\nContent-Type: text/xml; charset=utf-8\r\nConnection: close\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string good_reply(const std::string& operation, const std::string& elements)
{
    // Both ways to open a list of snapshots have the same response.
    const std::string name =
        "ns1:" + (operation == "openSnapListByVolume" ? "openSnapList" : operation) + "Response";
    return http("200 OK", envelope("<" + name + ">" + elements + "</" + name + ">"));
}

std::string refusal(const std::string& text, const std::string& detail)
{
    return http("500 Internal Server Error",
                envelope("<SOAP-ENV:Fault><faultcode>SOAP-ENV:Client</faultcode><faultstring>" + text +
                         "</faultstring>" + detail + "</SOAP-ENV:Fault>"));
}

std::string exception_of(int error_code)
{
    return "<detail><ns1:STSException><ns1:errorCode>" + std::to_string(error_code) +
           "</ns1:errorCode></ns1:STSException></detail>";
}

std::size_t content_length(const std::string& head)
{
    const std::size_t at = head.find("Content-Length: ");
    return at == std::string::npos ? 0 : std::strtoul(head.c_str() + at + 16, nullptr, 10);
}

// The first element of the body.
std::string operation_of(const std::string& request)
{
    const std::size_t body = request.find("Body>");
    const std::size_t begin = request.find("<ns1:", body);
    if (body == std::string::npos || begin == std::string::npos) return {};
    return request.substr(begin + 5, request.find_first_of(" />", begin + 5) - begin - 5);
}

void send_all(int connection, const std::string& bytes)
{
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = send(connection, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) return;
        sent += static_cast<std::size_t>(count);
    }
}

} // namespace

ProbeScriptedService::ProbeScriptedService()
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listener_ < 0 || bind(listener_, generic, size) != 0 || listen(listener_, 16) != 0 ||
        getsockname(listener_, generic, &size) != 0 || pipe2(stop_, O_CLOEXEC) != 0) {
        throw std::runtime_error("the scripted service has no socket");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
}

ProbeScriptedService::~ProbeScriptedService()
{
    close(stop_[1]);
    thread_.join();
    close(stop_[0]);
    close(listener_);
}

std::string ProbeScriptedService::url() const
{
    return "http://127.0.0.1:" + std::to_string(port_);
}

void ProbeScriptedService::answer(const std::string& operation, const std::string& elements)
{
    answer_raw(operation, good_reply(operation, elements));
}

void ProbeScriptedService::answer_first(const std::string& operation, const std::string& elements)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    first_replies_[operation].push_back(good_reply(operation, elements));
}

void ProbeScriptedService::refuse(const std::string& operation, const std::string& text,
                                  const std::string& detail)
{
    answer_raw(operation, refusal(text, detail));
}

void ProbeScriptedService::refuse(const std::string& operation, const std::string& text, int error_code)
{
    refuse(operation, text, exception_of(error_code));
}

void ProbeScriptedService::refuse_first(const std::string& operation, const std::string& text, int error_code)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    first_replies_[operation].push_back(refusal(text, exception_of(error_code)));
}

void ProbeScriptedService::answer_raw(const std::string& operation, const std::string& http_reply)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    replies_[operation] = http_reply;
}

void ProbeScriptedService::watch(Watcher watcher)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    watcher_ = std::move(watcher);
}

std::vector<std::string> ProbeScriptedService::operations() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return operations_;
}

std::string ProbeScriptedService::request(const std::string& operation) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = requests_.find(operation);
    return found == requests_.end() ? std::string() : found->second;
}

bool ProbeScriptedService::readable(int descriptor) const
{
    pollfd watched[] = {{descriptor, POLLIN, 0}, {stop_[0], POLLIN, 0}};
    return poll(watched, 2, -1) > 0 && watched[1].revents == 0;
}

void ProbeScriptedService::serve()
{
    while (readable(listener_)) {
        const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0) continue;
        exchange(connection);
        close(connection);
    }
}

void ProbeScriptedService::exchange(int connection)
{
    std::string received;
    for (;;) {
        const std::size_t end = received.find("\r\n\r\n");
        if (end != std::string::npos &&
            received.size() >= end + 4 + content_length(received.substr(0, end))) {
            break;
        }
        char bytes[4096];
        const ssize_t count = readable(connection) ? read(connection, bytes, sizeof bytes) : 0;
        if (count <= 0) return;
        received.append(bytes, static_cast<std::size_t>(count));
    }
    const std::string operation = operation_of(received);
    std::string reply = http("404 Not Found", "");
    Watcher watcher;
    long times = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        operations_.push_back(operation);
        requests_[operation] = received;
        const auto found = replies_.find(operation);
        if (found != replies_.end()) reply = found->second;
        std::deque<std::string>& first = first_replies_[operation];
        if (!first.empty()) {
            reply = first.front();
            first.pop_front();
        }
        watcher = watcher_;
        times = std::count(operations_.begin(), operations_.end(), operation);
    }
    if (watcher) watcher(operation, times);
    send_all(connection, reply);
}
