#include "tests/kit/tls_acceptor.h"

#include "tests/kit/require.h"

#include <openssl/ssl.h>
#include <openssl/tls1.h>

#include <string>
#include <utility>

namespace kit
{
namespace
{

constexpr unsigned char kSessionContext[] = "scripted service";

// Whether the extension is there; its content is that, or nothing.
bool extension(SSL* tls, unsigned int type, std::string& content)
{
    const unsigned char* bytes = nullptr;
    std::size_t size = 0;
    if (SSL_client_hello_get0_ext(tls, type, &bytes, &size) != 1) return false;
    content.assign(reinterpret_cast<const char*>(bytes), size);
    return true;
}

std::string session_id(SSL* tls)
{
    const unsigned char* bytes = nullptr;
    const std::size_t size = SSL_client_hello_get0_session_id(tls, &bytes);
    return {reinterpret_cast<const char*>(bytes), size};
}

} // namespace

// What a handshake is to do about its client's hello, and what stood there.
struct TlsAcceptor::Hello {
    bool stop_at_offer;
    bool offered = false;
};

void TlsAcceptor::set_context(TlsContext context)
{
    require(context != nullptr, "no TLS context");
    SSL_CTX_set_session_id_context(context.get(), kSessionContext, sizeof kSessionContext - 1);
    SSL_CTX_set_client_hello_cb(context.get(), look_at_hello, this);
    const std::lock_guard<std::mutex> lock(mutex_);
    context_ = std::move(context);
}

// A client that knows TLS 1.3 fills its session id in any case, for the sake of what is in between. So an id
// counts if the service has given it out, or if the client doesn't know TLS 1.3.
int TlsAcceptor::look_at_hello(SSL* tls, int* /*alert*/, void* acceptor)
{
    TlsAcceptor& self = *static_cast<TlsAcceptor*>(acceptor);
    Hello& hello = *static_cast<Hello*>(SSL_get_app_data(tls));
    std::string content;
    if (extension(tls, TLSEXT_TYPE_psk, content)) {
        hello.offered = true;
    } else if (extension(tls, TLSEXT_TYPE_session_ticket, content) && !content.empty()) {
        hello.offered = true;
    } else {
        const std::string id = session_id(tls);
        const bool knows_tls13 = extension(tls, TLSEXT_TYPE_supported_versions, content) &&
                                 content.find("\x03\x04", 1) != std::string::npos;
        hello.offered = !id.empty() && (!knows_tls13 || self.knows_id(id));
    }
    if (hello.offered) self.count_offer();
    return hello.offered && hello.stop_at_offer ? SSL_CLIENT_HELLO_RETRY : SSL_CLIENT_HELLO_SUCCESS;
}

TlsAcceptor::Outcome TlsAcceptor::accept(int socket, bool stop_at_offer)
{
    Hello hello{stop_at_offer};
    Outcome outcome{new_tls()};
    SSL* const tls = outcome.tls.get();
    SSL_set_app_data(tls, &hello);
    SSL_set_fd(tls, socket);
    const bool done = SSL_accept(tls) == 1;
    SSL_set_app_data(tls, nullptr);
    outcome.offered = hello.offered;
    if (done) {
        count(tls);
    } else {
        outcome.tls.reset();
    }
    return outcome;
}

TlsConnection TlsAcceptor::new_tls() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    TlsConnection tls(SSL_new(context_.get()));
    require(tls != nullptr, "no TLS connection");
    return tls;
}

bool TlsAcceptor::knows_id(const std::string& id) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return ids_.count(id) > 0;
}

void TlsAcceptor::count_offer()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    ++handshakes_.offered;
}

void TlsAcceptor::count(SSL* tls)
{
    unsigned int size = 0;
    const unsigned char* bytes = SSL_SESSION_get_id(SSL_get_session(tls), &size);
    const std::lock_guard<std::mutex> lock(mutex_);
    ids_.emplace(reinterpret_cast<const char*>(bytes), size);
    ++(SSL_session_reused(tls) == 1 ? handshakes_.resumed : handshakes_.full);
}

Handshakes TlsAcceptor::handshakes() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return handshakes_;
}

} // namespace kit
