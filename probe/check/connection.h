// A connection of the probe's own, made apart from the library and within a limit.
#ifndef SOAPWRAPPER_PROBE_CHECK_CONNECTION_H
#define SOAPWRAPPER_PROBE_CHECK_CONNECTION_H

#include <chrono>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

using TimeLimit = std::chrono::steady_clock::time_point;

class Socket
{
  public:
    explicit Socket(int descriptor = -1) : descriptor_(descriptor) {}
    ~Socket();
    Socket(Socket&& other) noexcept : descriptor_(other.descriptor_) { other.descriptor_ = -1; }
    Socket& operator=(Socket&& other) noexcept;

    explicit operator bool() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }

    // Waits for poll()'s events. False: the time is over.
    bool wait_for(short events, TimeLimit limit) const;

  private:
    int descriptor_;
};

struct Connecting {
    std::vector<std::string> failures; // of addresses that were tried in vain, or of the name
    Socket socket;                     // does not block; none: no address could be connected
    std::string address;               // that the socket is connected to
    std::chrono::microseconds took{};
};

// Tries each address of the host in turn, as the library does.
Connecting connect_to(const std::string& host, int port, TimeLimit limit);

} // namespace soapwrapper::probe

#endif
