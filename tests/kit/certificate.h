// A TLS server's context with a certificate made on the spot, signed by itself.
#ifndef SOAPWRAPPER_TESTS_KIT_CERTIFICATE_H
#define SOAPWRAPPER_TESTS_KIT_CERTIFICATE_H

#include <openssl/ssl.h>

#include <memory>

namespace kit
{

struct FreeContext {
    void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
};
using TlsContext = std::unique_ptr<SSL_CTX, FreeContext>;

TlsContext make_tls_server_context();

} // namespace kit

#endif
