#include "tests/kit/stream.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cstddef>
#include <utility>

namespace kit
{

Stream::~Stream()
{
    tls_.reset();
    if (socket_ >= 0) close(socket_);
}

unsigned char Stream::first_byte() const
{
    unsigned char byte = 0;
    return recv(socket_, &byte, 1, MSG_PEEK) == 1 ? byte : 0;
}

bool Stream::read_some(std::string& text)
{
    char buffer[16384];
    const auto count = tls_ ? SSL_read(tls_.get(), buffer, sizeof buffer)
                            : static_cast<int>(recv(socket_, buffer, sizeof buffer, 0));
    if (count <= 0) return false;
    text.append(buffer, static_cast<std::size_t>(count));
    return true;
}

void Stream::write_all(std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto count = tls_ ? SSL_write(tls_.get(), bytes.data(), static_cast<int>(bytes.size()))
                                : static_cast<int>(send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL));
        if (count <= 0) return;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void Stream::end()
{
    if (tls_) SSL_shutdown(tls_.get());
    shutdown(socket_, SHUT_WR);
}

void Stream::reset()
{
    const linger at_once = {1, 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    close(std::exchange(socket_, -1));
}

} // namespace kit
