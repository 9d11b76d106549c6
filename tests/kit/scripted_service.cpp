#include "tests/kit/scripted_service.h"

#include "tests/kit/loopback.h"
#include "tests/kit/stream.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace kit
{
namespace
{

constexpr unsigned char kTlsHandshake = 0x16; // the first byte of a TLS client
constexpr std::string_view kGarbage = "this is no TLS\r\n\r\n";
constexpr std::string_view kFatalAlert("\x15\x03\x03\x00\x02\x02\x28", 7); // the handshake failed

// Bound to a drawn port of the loopback address.
std::pair<int, int> bound_socket()
{
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    if (descriptor < 0 || bind(descriptor, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("can't bind a loopback port");
    }
    return {descriptor, ntohs(address.sin_port)};
}

std::size_t content_length(const std::string& head)
{
    const std::size_t at = head.find("Content-Length:");
    return at == std::string::npos ? 0 : std::strtoul(head.c_str() + at + 15, nullptr, 10);
}

bool read_head(Stream& stream, std::string& text, Request& request)
{
    std::size_t end = std::string::npos;
    while ((end = text.find("\r\n\r\n")) == std::string::npos) {
        if (!stream.read_some(text)) return false;
    }
    request.tls = stream.is_tls();
    request.tls_version = stream.tls_version();
    request.resumed = stream.is_resumed();
    request.head = text.substr(0, end + 2);
    text.erase(0, end + 4);
    return true;
}

bool read_body(Stream& stream, std::string& text, Request& request)
{
    const std::size_t length = content_length(request.head);
    while (text.size() < length) {
        if (!stream.read_some(text)) return false;
    }
    request.body = text;
    return true;
}

bool is_against_resumption(Answer::Manner manner)
{
    using Manner = Answer::Manner;
    return manner == Manner::kAlertAtResumption || manner == Manner::kGarbageAtResumption ||
           manner == Manner::kCloseAtResumption || manner == Manner::kResetAtResumption ||
           manner == Manner::kSilentAtResumption;
}

} // namespace

std::string http_message(std::string_view soap, int code, std::string_view reason)
{
    return "HTTP/1.1 " + std::to_string(code) + " " + std::string(reason) +
           "\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Length: " + std::to_string(soap.size()) +
           "\r\nConnection: close\r\n\r\n" + std::string(soap);
}

Answer answer(std::string_view soap)
{
    return {Answer::Manner::kReply, http_message(soap)};
}

Answer fault_answer(std::string_view soap)
{
    return {Answer::Manner::kReply, http_message(soap, 500, "Internal Server Error")};
}

ScriptedService::ScriptedService(Choice choice) : choice_(std::move(choice))
{
    std::tie(listener_, port_) = bound_socket();
    if (listen(listener_, 64) != 0 || pipe2(wake_, O_CLOEXEC) != 0) throw std::runtime_error("can't listen");
    thread_ = std::thread([this] { serve(); });
}

ScriptedService::~ScriptedService()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
        changed_.notify_all();
    }
    const char byte = 0;
    if (write(wake_[1], &byte, 1) != 1) std::abort();
    thread_.join();
    for (std::thread& thread : connection_threads_) thread.join();
    close(listener_);
    close(wake_[0]);
    close(wake_[1]);
}

std::string ScriptedService::url() const
{
    return "http://127.0.0.1:" + std::to_string(port_);
}
std::string ScriptedService::tls_url() const
{
    return "https://127.0.0.1:" + std::to_string(port_);
}

void ScriptedService::script(Answer answer)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    answers_.push_back(std::move(answer));
}

void ScriptedService::script(const std::vector<Answer>& answers)
{
    for (const Answer& answer : answers) script(answer);
}

std::vector<Request> ScriptedService::requests() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return requests_;
}

std::string ScriptedService::request_body(std::size_t number) const
{
    constexpr std::string_view kOpen = "<SOAP-ENV:Body>";
    const std::vector<Request> all = requests();
    if (number >= all.size()) return "";
    const std::string& text = all[number].body;
    const std::size_t begin = text.find(kOpen);
    const std::size_t end = text.rfind("</SOAP-ENV:Body>");
    if (begin == std::string::npos || end == std::string::npos) return "no SOAP body";
    return text.substr(begin + kOpen.size(), end - begin - kOpen.size());
}

std::size_t ScriptedService::connections() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return connections_;
}

void ScriptedService::wait_for_requests(std::size_t count) const
{
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return requests_.size() >= count; });
}

void ScriptedService::wait_for_connections(std::size_t count) const
{
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return connections_ >= count; });
}

void ScriptedService::set_tls_context(TlsContext context)
{
    tls_.set_context(std::move(context));
}

Handshakes ScriptedService::handshakes() const
{
    return tls_.handshakes();
}

void ScriptedService::keep_silent(std::unique_lock<std::mutex>& lock)
{
    changed_.wait(lock, [this] { return released_ || stopping_; });
}

void ScriptedService::keep_silent()
{
    std::unique_lock<std::mutex> lock(mutex_);
    keep_silent(lock);
}

void ScriptedService::release()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    released_ = true;
    changed_.notify_all();
}

void ScriptedService::forget_answers()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    answers_.clear();
}

Answer ScriptedService::next_answer()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    ++connections_;
    changed_.notify_all();
    if (answers_.empty()) return {choice_ ? Answer::Manner::kChoose : Answer::Manner::kCloseAtOnce, ""};
    Answer answer = std::move(answers_.front());
    answers_.pop_front();
    return answer;
}

void ScriptedService::serve()
{
    for (;;) {
        pollfd waiting[2] = {{listener_, POLLIN, 0}, {wake_[0], POLLIN, 0}};
        if (poll(waiting, 2, -1) < 0) continue;
        if (waiting[1].revents != 0) return;
        const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0) continue;
        connection_threads_.emplace_back(
            [this, connection, answer = next_answer()] { serve_connection(connection, answer); });
    }
}

void ScriptedService::serve_connection(int connection, const Answer& answer)
{
    // The kit's own writes over TLS may meet a closed peer; the library's are left to show what they do.
    sigset_t sigpipe;
    sigemptyset(&sigpipe);
    sigaddset(&sigpipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &sigpipe, nullptr);

    using Manner = Answer::Manner;
    Stream stream(connection);
    // A client that is dropped too early in the handshake could not tell it from a dead port.
    if (answer.manner == Manner::kCloseAtOnce) return;
    if (answer.manner == Manner::kResetAtOnce) return stream.reset();
    const bool tls = stream.first_byte() == kTlsHandshake;
    if (answer.manner == Manner::kLateHandshake) keep_silent();
    if (answer.manner == Manner::kRefuseHandshake) return stream.write_all(kGarbage);
    if (tls && !secure(stream, answer.manner)) return;
    if (answer.manner == Manner::kLateRead) keep_silent();

    Request request;
    std::string text;
    if (!read_head(stream, text, request)) return;
    if (answer.manner == Manner::kCloseMidRequest) return;
    if (!read_body(stream, text, request)) return;
    {
        std::unique_lock<std::mutex> lock(mutex_);
        requests_.push_back(request);
        changed_.notify_all();
        if (answer.manner == Manner::kHold) keep_silent(lock);
    }
    stream.write_all(answer.manner == Manner::kChoose ? choice_(request) : answer.bytes);
    if (answer.manner == Manner::kReset) return stream.reset();
    stream.end();
}

bool ScriptedService::secure(Stream& stream, Answer::Manner manner)
{
    TlsAcceptor::Outcome outcome = tls_.accept(stream.socket(), is_against_resumption(manner));
    if (outcome.tls) {
        stream.encrypt(std::move(outcome.tls));
        return true;
    }
    if (outcome.offered) refuse_resumption(stream, manner);
    return false;
}

void ScriptedService::refuse_resumption(Stream& stream, Answer::Manner manner)
{
    using Manner = Answer::Manner;
    if (manner == Manner::kAlertAtResumption) stream.write_all(kFatalAlert);
    if (manner == Manner::kGarbageAtResumption) stream.write_all(kGarbage);
    if (manner == Manner::kResetAtResumption) stream.reset();
    if (manner == Manner::kSilentAtResumption) keep_silent();
}

DeadPort::DeadPort()
{
    std::tie(socket_, port_) = bound_socket();
}

DeadPort::~DeadPort()
{
    close(socket_);
}

std::string DeadPort::url() const
{
    return "http://127.0.0.1:" + std::to_string(port_);
}

} // namespace kit
