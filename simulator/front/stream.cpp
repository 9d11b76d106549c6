#include "simulator/front/stream.h"

#include "simulator/front/descriptor.h"

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/types.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <new>
#include <string_view>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

bool would_block()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

} // namespace

Stream::Stream(Descriptor socket, SSL_CTX* tls) : socket_(std::move(socket))
{
    if (!tls) return;
    ssl_.reset(SSL_new(tls));
    if (!ssl_ || SSL_set_fd(ssl_.get(), socket_.get()) != 1) throw std::bad_alloc();
    SSL_set_accept_state(ssl_.get());
}

Stream::Result Stream::handshake()
{
    if (!ssl_) return Result::kDone;
    ERR_clear_error();
    return result_of(SSL_do_handshake(ssl_.get()));
}

Stream::Result Stream::read(char* buffer, std::size_t size, std::size_t& count)
{
    count = 0;
    if (ssl_) {
        ERR_clear_error();
        return result_of(SSL_read_ex(ssl_.get(), buffer, size, &count));
    }
    const ssize_t got = recv(socket_.get(), buffer, size, 0);
    if (got > 0) {
        count = static_cast<std::size_t>(got);
        return Result::kDone;
    }
    return got < 0 && would_block() ? Result::kWantsRead : Result::kEnded;
}

Stream::Result Stream::write(std::string_view bytes, std::size_t& count)
{
    count = 0;
    if (ssl_) {
        ERR_clear_error();
        return result_of(SSL_write_ex(ssl_.get(), bytes.data(), bytes.size(), &count));
    }
    const ssize_t sent = send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent >= 0) {
        count = static_cast<std::size_t>(sent);
        return Result::kDone;
    }
    return would_block() ? Result::kWantsWrite : Result::kEnded;
}

void Stream::end_writing()
{
    if (ssl_ && !broken_) {
        ERR_clear_error();
        SSL_shutdown(ssl_.get());
    }
    shutdown(socket_.get(), SHUT_WR);
}

Stream::Result Stream::discard()
{
    constexpr int kRounds = 8; // a peer that never stops sending must not keep the others waiting
    char buffer[16 * 1024];
    for (int i = 0; i < kRounds; ++i) {
        const ssize_t got = recv(socket_.get(), buffer, sizeof buffer, 0);
        if (got == 0) return Result::kEnded;
        if (got < 0) return would_block() ? Result::kWantsRead : Result::kEnded;
    }
    return Result::kWantsRead;
}

Stream::Result Stream::result_of(int outcome)
{
    if (outcome == 1) return Result::kDone;
    switch (SSL_get_error(ssl_.get(), outcome)) {
    case SSL_ERROR_WANT_READ:
        return Result::kWantsRead;
    case SSL_ERROR_WANT_WRITE:
        return Result::kWantsWrite;
    case SSL_ERROR_ZERO_RETURN:
        return Result::kEnded;
    default:
        broken_ = true;
        return Result::kEnded;
    }
}

} // namespace soapwrapper::simulator
