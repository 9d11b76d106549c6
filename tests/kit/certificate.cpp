#include "tests/kit/certificate.h"

#include "tests/kit/require.h"

namespace kit
{

TlsContext make_tls_server_context()
{
    return make_tls_server_context(self_signed(Leaf()));
}

TlsContext make_tls_server_context(const Identity& identity)
{
    TlsContext context(SSL_CTX_new(TLS_server_method()));
    require(context != nullptr, "no TLS context");
    require(SSL_CTX_use_certificate(context.get(), identity.certificate.get()) == 1, "certificate refused");
    require(SSL_CTX_use_PrivateKey(context.get(), identity.key.get()) == 1, "key refused");
    for (const auto& authority : identity.chain) {
        require(SSL_CTX_add1_chain_cert(context.get(), authority.get()) == 1, "chain refused");
    }
    return context;
}

TlsContext up_to_tls12(TlsContext context)
{
    require(SSL_CTX_set_max_proto_version(context.get(), TLS1_2_VERSION) == 1, "version refused");
    return context;
}

TlsContext without_tickets(TlsContext context)
{
    SSL_CTX_set_options(context.get(), SSL_OP_NO_TICKET);
    return context;
}

TlsContext with_tickets(TlsContext context, std::size_t count)
{
    require(SSL_CTX_set_num_tickets(context.get(), count) == 1, "number of tickets refused");
    return context;
}

} // namespace kit
