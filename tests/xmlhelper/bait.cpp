#include "tests/xmlhelper/bait.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>

namespace xmlhelper
{
namespace
{

// Connections and openings are queued by the system before the call that makes them returns.
bool is_readable(int descriptor)
{
    pollfd wanted{descriptor, POLLIN, 0};
    return poll(&wanted, 1, 0) == 1;
}

} // namespace

ListeningPort::ListeningPort() : socket_(socket(AF_INET, SOCK_STREAM, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* any = reinterpret_cast<sockaddr*>(&address);
    if (bind(socket_, any, size) != 0 || listen(socket_, 8) != 0 || getsockname(socket_, any, &size) != 0) {
        throw std::runtime_error("no port to listen on");
    }
    port_ = ntohs(address.sin_port);
}

ListeningPort::~ListeningPort()
{
    close(socket_);
}

std::string ListeningPort::url(const std::string& name) const
{
    return "http://127.0.0.1:" + std::to_string(port_) + "/" + name;
}

bool ListeningPort::was_touched() const
{
    return is_readable(socket_);
}

NamedPipe::NamedPipe(const Folder& folder) : path_(folder.path("pipe")), watch_(inotify_init1(IN_NONBLOCK))
{
    if (mkfifo(path_.c_str(), 0600) != 0) throw std::runtime_error("no named pipe");
    pipe_ = open(path_.c_str(), O_RDWR | O_CLOEXEC);
    if (inotify_add_watch(watch_, path_.c_str(), IN_OPEN | IN_ACCESS) < 0) {
        throw std::runtime_error("no watch on the pipe");
    }
    const std::string content = "<!ENTITY stolen 'x'>";
    if (write(pipe_, content.data(), content.size()) < 0) throw std::runtime_error("the pipe takes nothing");
    was_touched();
}

NamedPipe::~NamedPipe()
{
    close(pipe_);
    close(watch_);
}

bool NamedPipe::was_touched() const
{
    char events[4096];
    bool any = false;
    while (read(watch_, events, sizeof events) > 0) any = true;
    return any;
}

} // namespace xmlhelper
