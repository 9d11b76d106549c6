// The simulator's front, serving what a test hands to it.
#ifndef SOAPWRAPPER_TESTS_PARTS_SIMULATOR_FRONT_H
#define SOAPWRAPPER_TESTS_PARTS_SIMULATOR_FRONT_H

#include "simulator/front/address.h"
#include "simulator/front/entrance.h"
#include "simulator/front/server.h"
#include "simulator/front/tls_identity.h"
#include "tests/system/soap_client.h"

#include <gmock/gmock.h>

#include <sys/eventfd.h>
#include <sys/socket.h>

#include <chrono>
#include <future>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace simulator_front
{

using namespace soapwrapper::simulator;

// On a port of its own.
inline Listener listener(bool is_tls = false, Serves serves = Serves::kHosts, const char* host = "127.0.0.1")
{
    Listener made{listen_on({host, 0}), std::nullopt};
    if (is_tls) made.tls = make_tls_identity({"localhost"}).identity;
    made.serves = serves;
    return made;
}

// A server in a thread of its own.
class RunningServer
{
  public:
    RunningServer(const Limits& limits, std::vector<Route> routes, Listener listener)
        : stop_(eventfd(0, EFD_CLOEXEC)), port_(address_of(listener.socket.get()).port)
    {
        std::vector<Listener> listeners;
        listeners.push_back(std::move(listener));
        server_.emplace(
            std::move(listeners), std::move(routes), 2, log_, stop_.get(), [this] { told_ = true; }, limits);
        thread_ = std::thread([this] { is_all_done_ = server_->run(); });
    }
    RunningServer(const Limits& limits, std::vector<Route> routes)
        : RunningServer(limits, std::move(routes), listener())
    {
    }
    RunningServer(const Limits& limits, Handler handler)
        : RunningServer(limits, std::vector<Route>{{"POST", "", std::move(handler)}})
    {
    }
    ~RunningServer()
    {
        stop();
        EXPECT_TRUE(told_);
    }
    RunningServer(const RunningServer&) = delete;
    RunningServer& operator=(const RunningServer&) = delete;

    int port() const { return port_; }
    // What the server's run came to.
    bool stop()
    {
        eventfd_write(stop_.get(), 1);
        if (thread_.joinable()) thread_.join();
        return is_all_done_;
    }

  private:
    Descriptor stop_;
    RequestLog log_{false};
    std::uint16_t port_ = 0;
    bool told_ = false;
    bool is_all_done_ = false;
    std::optional<Server> server_;
    std::thread thread_;
};

inline const std::string kEmptyPost = "POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 0\r\n\r\n";

inline std::string get_text(const std::string& path)
{
    return "GET " + path + " HTTP/1.1\r\nHost: x\r\n\r\n";
}

inline HttpReply get(const RunningServer& server, const std::string& path)
{
    const ClientSocket client(server.port());
    client.send(get_text(path));
    return parse_reply(client.receive_all());
}

inline Answer text_answer(std::string text)
{
    return {200, "text/plain", std::move(text), {}, nullptr};
}

inline Handler says(const std::string& text)
{
    return [text](const Request&) { return text_answer(text); };
}

inline bool receive_byte(const ClientSocket& client, char& byte)
{
    return recv(client.fd(), &byte, 1, 0) == 1;
}

inline bool receive_byte(const TlsClient& client, char& byte)
{
    return SSL_read(client.ssl(), &byte, 1) == 1;
}

// As much as has come once the text has; all that came if it never does.
template <typename Client>
std::string receive_until(const Client& client, const std::string& text)
{
    std::string all;
    char byte = 0;
    while (all.find(text) == std::string::npos && receive_byte(client, byte)) all += byte;
    return all;
}

// Whether the server, told to stop while a handler is at work, is done as soon as that gives this answer.
inline bool stops_with(const Answer& answer)
{
    Limits patient;
    patient.for_stop = std::chrono::hours(1);
    std::promise<void> begun;
    std::promise<void> go_on;
    RunningServer server(patient, [&](const Request&) {
        begun.set_value();
        go_on.get_future().wait();
        return answer;
    });
    const ClientSocket client(server.port());
    const ClientSocket silent(server.port()); // sees by its own end that the stop has begun
    client.send(kEmptyPost);
    begun.get_future().wait();
    std::future<bool> stopped = std::async(std::launch::async, [&server] { return server.stop(); });
    EXPECT_THAT(silent.receive_all(), testing::IsEmpty());
    go_on.set_value();
    return stopped.get();
}

} // namespace simulator_front

#endif
