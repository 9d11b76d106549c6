// A service's side of one connection, plain or TLS.
#ifndef SOAPWRAPPER_TESTS_KIT_STREAM_H
#define SOAPWRAPPER_TESTS_KIT_STREAM_H

#include "tests/kit/tls_acceptor.h"

#include <string>
#include <string_view>
#include <utility>

namespace kit
{

class Stream
{
  public:
    explicit Stream(int descriptor) : socket_(descriptor) {}
    ~Stream();
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    int socket() const { return socket_; }
    // From now on, with what a handshake on the socket has come to.
    void encrypt(TlsConnection tls) { tls_ = std::move(tls); }

    bool is_tls() const { return tls_ != nullptr; }
    // 0 without TLS.
    int tls_version() const { return tls_ ? SSL_version(tls_.get()) : 0; }
    bool is_resumed() const { return tls_ && SSL_session_reused(tls_.get()) == 1; }

    // What the client begins with, left in place; 0 if it goes away.
    unsigned char first_byte() const;

    bool read_some(std::string& text);
    void write_all(std::string_view bytes);
    void end();
    void reset();

  private:
    int socket_;
    TlsConnection tls_;
};

} // namespace kit

#endif
