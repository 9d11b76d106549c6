// The library's network, seen and cut. The program's own connect(), recv(), SSL_read() and so on come ahead
// of the system's wherever the loader binds a call, so that the library's calls pass through here and nothing
// stands between it and the service.
#ifndef SOAPWRAPPER_PROBE_WIRE_TAP_H
#define SOAPWRAPPER_PROBE_WIRE_TAP_H

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace soapwrapper::probe::wire
{

struct Connection {
    std::uint64_t number = 0; // from 1
    std::string host;         // as it was looked up; may be empty
    // With the port, such as "192.0.2.7:8086" or "[2001:db8::7]:8086"; of a host that wasn't found, its name.
    std::string address;
    bool is_tls = false;
    // Once it is known, such as "TLSv1.3, TLS_AES_256_GCM_SHA384", with ", resumed" behind it if that is so.
    std::string tls;
    std::chrono::system_clock::time_point begun;
    std::chrono::steady_clock::time_point since; // the same moment
};

// Called on the thread that uses the connection. What it throws is lost.
class Observer
{
  public:
    Observer() = default;
    virtual ~Observer() = default;
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;

    // With an error there is no connection.
    virtual void connected(const Connection& connection, int error) = 0;
    virtual void sent(const Connection& connection, std::string_view bytes) = 0;
    // Nothing: the peer sends no more.
    virtual void received(const Connection& connection, std::string_view bytes) = 0;
    // A transfer or a TLS handshake came to an end before its time. Of a connection that nobody has heard of:
    // its host wasn't found, and it is closed next.
    virtual void failed(const Connection& connection, const std::string& why) = 0;
    virtual void closed(const Connection& connection) = 0;
};

// One; null: nobody.
void observe(Observer* observer);

// Ends all connections of the library, also those that are being made. From then on new ones fail at once, as
// timed out, no name is looked up and its sleep is over at once. Any thread may call.
void cut();

// Ends what cut() began: connections can be made again.
void allow();
bool is_cut();

// Ends the connections that there are, also those that are being made; others can be made at once. Any thread
// may call.
void end_connections();
bool was_ended(const Connection& connection);

// The connection that is being made or waited on, such as "filer1:8086 (192.0.2.7)"; empty: none is. Any
// thread may call.
std::string where();

// While one lives, this thread's calls go to the system alone: they are the probe's own.
class Untapped
{
  public:
    Untapped();
    ~Untapped();
    Untapped(const Untapped&) = delete;
    Untapped& operator=(const Untapped&) = delete;
};

} // namespace soapwrapper::probe::wire

#endif
