#include "service/tls_connection.h"

#include "service/clock.h"
#include "service/deadline.h"
#include "service/tls_context.h"
#include "service/tls_sessions.h"
#include "service/transport.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/types.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstdint>
#include <utility>

#include "soapwrapperH.h"

namespace soapwrapper
{
namespace
{

enum class Outcome {
    kDone,
    kRefused, // in the handshake
    kFailed   // otherwise, or for want of time
};

bool is_address(const char* host)
{
    unsigned char bytes[sizeof(in6_addr)];
    return inet_pton(AF_INET, host, bytes) == 1 || inet_pton(AF_INET6, host, bytes) == 1;
}

// The name or address that a certificate must be for, where it is checked.
bool expect_host(SSL* tls, const char* host)
{
    if (SSL_get_verify_mode(tls) == SSL_VERIFY_NONE) return true;
    X509_VERIFY_PARAM* expected = SSL_get0_param(tls);
    X509_VERIFY_PARAM_set_hostflags(expected, X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
    return is_address(host) ? X509_VERIFY_PARAM_set1_ip_asc(expected, host) == 1
                            : X509_VERIFY_PARAM_set1_host(expected, host, 0) == 1;
}

// False, and the context's error, if the TLS library can't begin at all.
bool prepare_tls(soap* context, const char* host)
{
    ERR_clear_error();
    context->ssl_flags |= SOAP_SSL_CLIENT;
    if (!context->ctx && context->fsslauth(context) != SOAP_OK) {
        context->error = SOAP_SSL_ERROR;
        return false;
    }
    if (context->ssl) SSL_free(context->ssl);
    context->ssl = SSL_new(context->ctx);
    BIO* stream = context->ssl ? BIO_new_socket(context->socket, BIO_NOCLOSE) : nullptr;
    if (!stream) {
        context->error = SOAP_SSL_ERROR;
        return false;
    }
    SSL_set_bio(context->ssl, stream, stream);
    if (!expect_host(context->ssl, host)) {
        context->error = SOAP_SSL_ERROR;
        return false;
    }
    if (SSL_set_tlsext_host_name(context->ssl, host) == 1) return true;
    soap_set_receiver_error(context, "SSL/TLS error", "SNI failed", SOAP_SSL_ERROR);
    return false;
}

Outcome shake_hands(soap* context)
{
    Deadline deadline(context->connect_timeout);
    for (;;) {
        const int result = SSL_connect(context->ssl);
        if (result > 0) return Outcome::kDone;
        short events = 0;
        if (!wants_again(context->ssl, result, events)) {
            context->errnum = errno;
            const int error = SSL_get_error(context->ssl, result);
            soap_set_sender_error(context, soap_ssl_error(context, result, error), "SSL/TLS handshake failed",
                                  SOAP_SSL_ERROR);
            return Outcome::kRefused;
        }
        if (!deadline.wait_for(context->socket, events)) {
            fail(context, "Timeout", "SSL_connect() failed in tcp_connect()");
            return Outcome::kFailed;
        }
    }
}

// A connection with TLS on it, which offers the server this session if there is one.
Outcome connect_offering(soap* context, const char* host, int port, SSL_SESSION* session)
{
    if (open_connection(context, host, port) == SOAP_INVALID_SOCKET) return Outcome::kFailed;
    Outcome outcome = Outcome::kFailed;
    if (prepare_tls(context, host)) {
        if (session) SSL_set_session(context->ssl, session);
        if (context->connect_timeout > 0) set_blocking(context->socket, false);
        outcome = shake_hands(context);
    }
    if (outcome == Outcome::kDone) return outcome;
    context->fclosesocket(context, context->socket);
    context->socket = SOAP_INVALID_SOCKET;
    return outcome;
}

} // namespace

int open_tls_connection(soap* context, const char* host, int port, std::int64_t& full_handshake)
{
    const KnownTlsSession known = tls_sessions().take(host, port);
    Outcome outcome = connect_offering(context, host, port, known.session.get());
    if (outcome == Outcome::kRefused && known.session) {
        // A server that chokes on the session that it gave out serves a client that never had one.
        tls_sessions().forget(host, port);
        outcome = connect_offering(context, host, port, nullptr);
    }
    if (outcome != Outcome::kDone) return SOAP_INVALID_SOCKET;
    full_handshake = SSL_session_reused(context->ssl) == 1 ? known.full_handshake : now();
    // A limit on the transfer is kept by waiting for the socket, which then mustn't block by itself.
    set_blocking(context->socket, context->recv_timeout == 0);
    context->imode |= SOAP_ENC_SSL;
    context->omode |= SOAP_ENC_SSL;
    return context->socket;
}

void keep_tls_session(soap* context, std::int64_t full_handshake)
{
    if (!context->session) return;
    TlsSession session(std::exchange(context->session, nullptr));
    tls_sessions().keep(context->session_host, context->session_port, {std::move(session), full_handshake});
}

} // namespace soapwrapper
