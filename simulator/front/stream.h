// A client's socket, plain or TLS, that never blocks.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_STREAM_H
#define SOAPWRAPPER_SIMULATOR_FRONT_STREAM_H

#include "simulator/front/descriptor.h"

#include <openssl/ssl.h>
#include <openssl/types.h>

#include <cstddef>
#include <memory>
#include <string_view>

namespace soapwrapper::simulator
{

class Stream
{
  public:
    enum class Result {
        kDone,
        kWantsRead,  // again when there is something to read
        kWantsWrite, // again when there is room to write
        kEnded       // the peer has closed, or the connection is broken
    };

    // With a context the stream speaks TLS. Throws std::bad_alloc.
    Stream(Descriptor socket, SSL_CTX* tls);

    int fd() const { return socket_.get(); }
    bool is_tls() const { return ssl_ != nullptr; }

    Result handshake();
    Result read(char* buffer, std::size_t size, std::size_t& count);
    Result write(std::string_view bytes, std::size_t& count);
    // Tells the peer that nothing more comes.
    void end_writing();
    // Reads and drops what the peer still sends, under TLS undeciphered.
    Result discard();

  private:
    Result result_of(int outcome);

    struct FreeSsl {
        void operator()(SSL* ssl) const { SSL_free(ssl); }
    };

    Descriptor socket_;
    std::unique_ptr<SSL, FreeSsl> ssl_;
    bool broken_ = false; // of a broken TLS stream nothing more may be asked
};

} // namespace soapwrapper::simulator

#endif
