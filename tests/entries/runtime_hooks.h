// Stands between the library and the system: this program's own SSL_CTX_new, connect, poll and select come
// before the system's, as any host's would.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_RUNTIME_HOOKS_H
#define SOAPWRAPPER_TESTS_ENTRIES_RUNTIME_HOOKS_H

#include <cstddef>
#include <vector>

namespace hooks
{

// How often a TLS context was asked for, by anybody.
std::size_t tls_contexts_asked_for();

// While one lives, no TLS context can be had.
class NoTlsContexts
{
  public:
    NoTlsContexts();
    ~NoTlsContexts();
    NoTlsContexts(const NoTlsContexts&) = delete;
    NoTlsContexts& operator=(const NoTlsContexts&) = delete;
};

// One connection that was tried.
struct Attempt {
    int port;
    bool blocks;           // waits for as long as the system does
    int longest_wait = -1; // otherwise: for so many milliseconds altogether
};

// While one lives, nobody answers the calling thread: a connection that blocks ends as timed out, and all
// others stay under way for as long as they are waited for. No time passes.
class DeadNetwork
{
  public:
    DeadNetwork();
    ~DeadNetwork();
    DeadNetwork(const DeadNetwork&) = delete;
    DeadNetwork& operator=(const DeadNetwork&) = delete;

    const std::vector<Attempt>& attempts() const { return attempts_; }

    int connect(int socket, int port);
    int wait(int milliseconds);

  private:
    std::vector<Attempt> attempts_;
};

// While one lives, a signal interrupts each connection of the calling thread as soon as it is tried, and the
// system goes on with it.
class InterruptedConnections
{
  public:
    InterruptedConnections();
    ~InterruptedConnections();
    InterruptedConnections(const InterruptedConnections&) = delete;
    InterruptedConnections& operator=(const InterruptedConnections&) = delete;

    int tried() const { return tried_; }

    int connect(int result);

  private:
    int tried_ = 0;
};

// While one lives, no wait of the calling thread that has a limit takes any time: what is ready is told, and
// otherwise the limit has passed.
class PassedLimits
{
  public:
    PassedLimits();
    ~PassedLimits();
    PassedLimits(const PassedLimits&) = delete;
    PassedLimits& operator=(const PassedLimits&) = delete;

    // In milliseconds, of the waits that came to nothing.
    const std::vector<int>& limits() const { return limits_; }

    // A wait of so long came to nothing.
    void passed(int milliseconds) { limits_.push_back(milliseconds); }

  private:
    std::vector<int> limits_;
};

} // namespace hooks

#endif
