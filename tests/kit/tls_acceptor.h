// The service's side of TLS handshakes: what clients offered in them, and what came of it.
#ifndef SOAPWRAPPER_TESTS_KIT_TLS_ACCEPTOR_H
#define SOAPWRAPPER_TESTS_KIT_TLS_ACCEPTOR_H

#include "tests/kit/certificate.h"

#include <openssl/ssl.h>

#include <cstddef>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>

namespace kit
{

struct FreeTls {
    void operator()(SSL* tls) const { SSL_free(tls); }
};
using TlsConnection = std::unique_ptr<SSL, FreeTls>;

// How many there were.
struct Handshakes {
    std::size_t full = 0;
    std::size_t resumed = 0;
    // Hellos that offered a session to resume, whatever came of it.
    std::size_t offered = 0;
};

class TlsAcceptor
{
  public:
    explicit TlsAcceptor(TlsContext context) { set_context(std::move(context)); }
    TlsAcceptor(const TlsAcceptor&) = delete;
    TlsAcceptor& operator=(const TlsAcceptor&) = delete;

    // For handshakes that begin from now on.
    void set_context(TlsContext context);

    struct Outcome {
        TlsConnection tls; // none: the handshake failed, or wasn't carried on
        bool offered = false;
    };
    // If `stop_at_offer`, nothing is answered to a client that offers a session, and its hello is consumed.
    Outcome accept(int socket, bool stop_at_offer);

    Handshakes handshakes() const;

  private:
    struct Hello;
    static int look_at_hello(SSL* tls, int* alert, void* acceptor);
    TlsConnection new_tls() const;
    bool knows_id(const std::string& id) const;
    void count_offer();
    void count(SSL* tls);

    mutable std::mutex mutex_;
    TlsContext context_;
    std::set<std::string> ids_; // of the sessions that clients may resume by id
    Handshakes handshakes_;
};

} // namespace kit

#endif
