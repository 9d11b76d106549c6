// The simulator's TLS identity, made at the start and kept in memory only.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_TLS_IDENTITY_H
#define SOAPWRAPPER_SIMULATOR_FRONT_TLS_IDENTITY_H

#include <openssl/ssl.h>
#include <openssl/types.h>

#include <memory>
#include <string>

namespace soapwrapper::simulator
{

struct FreeTlsContext {
    void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
};
using TlsContext = std::unique_ptr<SSL_CTX, FreeTlsContext>;

// A server's context with a fresh key on P-256 and a certificate, signed by itself, for the host and for the
// names of the loopback. Throws a std::runtime_error.
TlsContext make_tls_identity(const std::string& host);

} // namespace soapwrapper::simulator

#endif
