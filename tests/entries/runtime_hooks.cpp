#include "tests/entries/runtime_hooks.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/select.h>
#include <sys/socket.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>

namespace hooks
{
namespace
{

std::atomic<std::size_t> g_tls_contexts{0};
std::atomic<bool> g_refuse_tls_contexts{false};
thread_local DeadNetwork* t_network = nullptr;
thread_local InterruptedConnections* t_interrupted = nullptr;
thread_local PassedLimits* t_limits = nullptr;

// The system's function of this name.
template <class Function>
Function* next(const char* name)
{
    void* found = dlsym(RTLD_NEXT, name);
    if (!found) std::abort();
    return reinterpret_cast<Function*>(found);
}

int port_of(const sockaddr* address)
{
    return address->sa_family == AF_INET ? ntohs(reinterpret_cast<const sockaddr_in*>(address)->sin_port) : 0;
}

} // namespace

std::size_t tls_contexts_asked_for()
{
    return g_tls_contexts;
}

NoTlsContexts::NoTlsContexts()
{
    g_refuse_tls_contexts = true;
}

NoTlsContexts::~NoTlsContexts()
{
    g_refuse_tls_contexts = false;
}

DeadNetwork::DeadNetwork()
{
    t_network = this;
}

DeadNetwork::~DeadNetwork()
{
    t_network = nullptr;
}

int DeadNetwork::connect(int socket, int port)
{
    const bool blocks = (fcntl(socket, F_GETFL) & O_NONBLOCK) == 0;
    attempts_.push_back({port, blocks, blocks ? -1 : 0});
    errno = blocks ? ETIMEDOUT : EINPROGRESS;
    return -1;
}

int DeadNetwork::wait(int milliseconds)
{
    if (attempts_.empty() || milliseconds < 0) std::abort(); // it would be a wait without end
    attempts_.back().longest_wait += milliseconds;
    return 0;
}

InterruptedConnections::InterruptedConnections()
{
    t_interrupted = this;
}

InterruptedConnections::~InterruptedConnections()
{
    t_interrupted = nullptr;
}

PassedLimits::PassedLimits()
{
    t_limits = this;
}

PassedLimits::~PassedLimits()
{
    t_limits = nullptr;
}

int InterruptedConnections::connect(int result)
{
    ++tried_;
    if (result != 0) return result;
    errno = EINTR;
    return -1;
}

} // namespace hooks

extern "C" {

__attribute__((visibility("default"))) SSL_CTX* SSL_CTX_new(const SSL_METHOD* method)
{
    ++hooks::g_tls_contexts;
    if (hooks::g_refuse_tls_contexts) return nullptr;
    return hooks::next<SSL_CTX*(const SSL_METHOD*)>("SSL_CTX_new")(method);
}

__attribute__((visibility("default"))) int connect(int socket, const sockaddr* address, socklen_t size)
{
    if (hooks::t_network) return hooks::t_network->connect(socket, hooks::port_of(address));
    const int result = hooks::next<int(int, const sockaddr*, socklen_t)>("connect")(socket, address, size);
    return hooks::t_interrupted ? hooks::t_interrupted->connect(result) : result;
}

__attribute__((visibility("default"))) int poll(pollfd* descriptors, nfds_t count, int milliseconds)
{
    if (hooks::t_network) return hooks::t_network->wait(milliseconds);
    const auto wait = hooks::next<int(pollfd*, nfds_t, int)>("poll");
    const bool has_limit = hooks::t_limits && milliseconds > 0;
    const int ready = wait(descriptors, count, has_limit ? 0 : milliseconds);
    if (has_limit && ready == 0) hooks::t_limits->passed(milliseconds);
    return ready;
}

__attribute__((visibility("default"))) int select(int count, fd_set* readable, fd_set* writable,
                                                  fd_set* exceptional, timeval* timeout)
{
    const int milliseconds =
        timeout ? static_cast<int>(timeout->tv_sec * 1000 + timeout->tv_usec / 1000) : -1;
    if (hooks::t_network) return hooks::t_network->wait(milliseconds);
    const auto wait = hooks::next<int(int, fd_set*, fd_set*, fd_set*, timeval*)>("select");
    const bool has_limit = hooks::t_limits && milliseconds > 0;
    timeval none = {0, 0};
    const int ready = wait(count, readable, writable, exceptional, has_limit ? &none : timeout);
    if (has_limit && ready == 0) hooks::t_limits->passed(milliseconds);
    return ready;
}

} // extern "C"
