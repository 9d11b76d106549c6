// The contexts of TLS servers.
#ifndef SOAPWRAPPER_TESTS_KIT_CERTIFICATE_H
#define SOAPWRAPPER_TESTS_KIT_CERTIFICATE_H

#include "tests/kit/authority.h"

#include <openssl/ssl.h>

#include <cstddef>
#include <memory>

namespace kit
{

struct FreeContext {
    void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
};
using TlsContext = std::unique_ptr<SSL_CTX, FreeContext>;

// With a certificate made on the spot, signed by itself.
TlsContext make_tls_server_context();
// With this certificate, and its chain. Each context has ticket keys and a cache of sessions of its own.
TlsContext make_tls_server_context(const Identity& identity);

// The context, changed: it speaks TLS 1.2 at the highest; it keeps sessions itself in place of giving tickets
// out; a handshake of TLS 1.3 gives so many tickets out.
TlsContext up_to_tls12(TlsContext context);
TlsContext without_tickets(TlsContext context);
TlsContext with_tickets(TlsContext context, std::size_t count);

} // namespace kit

#endif
