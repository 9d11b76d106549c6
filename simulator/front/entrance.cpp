#include "simulator/front/entrance.h"

#include "simulator/front/descriptor.h"
#include "simulator/front/tls_version.h"

#include <microhttpd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr unsigned kFlags = MHD_USE_EPOLL | MHD_USE_NO_LISTEN_SOCKET | MHD_ALLOW_SUSPEND_RESUME;
// What the library keeps of a connection: a head of the greatest size, and what it makes of that.
constexpr std::size_t kMemory = 32 * 1024;
// While a client keeps its TLS handshake waiting, the library always claims to have something to do.
constexpr int kRunsAtOnce = 32;
constexpr std::chrono::milliseconds kPause(5);
constexpr int kStrict = 1; // a head that breaks the rules is refused, not guessed at

std::vector<MHD_OptionItem> tls_options(Listener& listener)
{
    static char older[] = "NORMAL:-VERS-ALL:+VERS-TLS1.2";
    static char all[] = "NORMAL:-VERS-ALL:+VERS-TLS1.3:+VERS-TLS1.2";
    std::vector<MHD_OptionItem> options;
    if (listener.tls) {
        char* const versions = listener.newest_tls == TlsVersion::kTls12 ? older : all;
        options.push_back({MHD_OPTION_HTTPS_MEM_CERT, 0, listener.tls->certificate.data()});
        options.push_back({MHD_OPTION_HTTPS_MEM_KEY, 0, listener.tls->key.data()});
        options.push_back({MHD_OPTION_HTTPS_PRIORITIES, 0, versions});
    }
    options.push_back({MHD_OPTION_END, 0, nullptr});
    return options;
}

} // namespace

Entrance::Entrance(Listener listener, const EntranceCalls& calls, std::size_t connections)
    : listener_(std::move(listener))
{
    daemon_.reset(MHD_start_daemon(listener_.tls ? kFlags | MHD_USE_TLS : kFlags, 0, nullptr, nullptr,
                                   calls.request, calls.context, MHD_OPTION_NOTIFY_CONNECTION,
                                   calls.connection, calls.context, MHD_OPTION_CONNECTION_LIMIT,
                                   static_cast<unsigned>(connections), MHD_OPTION_CONNECTION_MEMORY_LIMIT,
                                   kMemory, MHD_OPTION_STRICT_FOR_CLIENT, kStrict, MHD_OPTION_ARRAY,
                                   tls_options(listener_).data(), MHD_OPTION_END));
    if (!daemon_)
        throw std::runtime_error(listener_.tls ? "can't start the HTTPS daemon with this certificate and key"
                                               : "can't start the HTTP daemon");
    if (!listener_.tls) return;
    listener_.tls->key.wipe(); // the library has read it
    tickets_.emplace();
}

bool Entrance::accept()
{
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    auto* raw = reinterpret_cast<sockaddr*>(&address);
    Descriptor socket(accept4(listening_fd(), raw, &size, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!socket.valid()) return false;
    MHD_add_connection(daemon_.get(), socket.release(), raw, size); // which closes what it doesn't take
    return true;
}

void Entrance::close()
{
    listener_.socket = Descriptor();
}

void Entrance::prepare(MHD_Connection* connection) const
{
    if (tickets_) tickets_->offer(connection);
}

int Entrance::fd() const
{
    return MHD_get_daemon_info(daemon_.get(), MHD_DAEMON_INFO_EPOLL_FD)->epoll_fd;
}

std::optional<std::chrono::milliseconds> Entrance::time_to_wait() const
{
    MHD_UNSIGNED_LONG_LONG milliseconds = 0;
    if (MHD_get_timeout(daemon_.get(), &milliseconds) != MHD_YES) return std::nullopt;
    return std::max(std::chrono::milliseconds(milliseconds), kPause);
}

void Entrance::run()
{
    MHD_UNSIGNED_LONG_LONG wait = 0;
    int runs = 0;
    do {
        MHD_run(daemon_.get());
    } while (++runs < kRunsAtOnce && MHD_get_timeout(daemon_.get(), &wait) == MHD_YES && wait == 0);
}

} // namespace soapwrapper::simulator
