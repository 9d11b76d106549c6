#include "probe/wire/real_calls.h"
#include "probe/wire/sockets.h"
#include "probe/wire/tap.h"
#include "probe/wire/tapped_calls.h"
#include "probe/wire/telling.h"

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/sslerr.h>
#include <openssl/types.h>
#include <openssl/x509.h>
#include <openssl/x509_vfy.h>

#include <cstddef>
#include <cstring>
#include <string>

namespace soapwrapper::probe::wire
{
namespace
{

// Why TLS ended, of which the queue of errors keeps what it has; empty: it goes on.
std::string tls_failure(const SSL* tls, int result, int error)
{
    const int kind = SSL_get_error(tls, result);
    if (kind == SSL_ERROR_WANT_READ || kind == SSL_ERROR_WANT_WRITE) return {};
    if (kind == SSL_ERROR_ZERO_RETURN) return "the peer ended TLS";
    if (kind == SSL_ERROR_SYSCALL) return error == 0 ? "the connection ended" : std::strerror(error);
    const long verified = SSL_get_verify_result(tls);
    if (verified != X509_V_OK && SSL_is_init_finished(tls) == 0) {
        return X509_verify_cert_error_string(verified);
    }
    const char* const reason = ERR_reason_error_string(ERR_peek_error());
    return reason ? reason : "TLS failed";
}

// The peer sends no more, with TLS's own farewell or without.
bool is_end_of_tls(const SSL* tls, int result, int error)
{
    switch (SSL_get_error(tls, result)) {
    case SSL_ERROR_ZERO_RETURN:
        return true;
    case SSL_ERROR_SYSCALL:
        return error == 0;
    case SSL_ERROR_SSL:
        return ERR_GET_REASON(ERR_peek_error()) == SSL_R_UNEXPECTED_EOF_WHILE_READING;
    default:
        return false;
    }
}

void tell_tls_failure(int socket, const SSL* tls, int result, int error)
{
    const std::string why = tls_failure(tls, result, error);
    if (why.empty()) return;
    tell(socket, [&](Observer& observer, const Connection& connection) { observer.failed(connection, why); });
}

} // namespace

int tapped_ssl_connect(SSL* tls) noexcept
{
    const int socket = SSL_get_fd(tls);
    if (is_tapped()) guarded([&] { Sockets::instance().set_tls(socket, ""); });
    const int result = real_tls_calls().connect(tls);
    const KeptError kept;
    if (!is_tapped()) return result;
    guarded([&] {
        if (result > 0) {
            const char* const resumed = SSL_session_reused(tls) == 1 ? ", resumed" : "";
            Sockets::instance().set_tls(socket, std::string(SSL_get_version(tls)) + ", " +
                                                    SSL_get_cipher_name(tls) + resumed);
        } else {
            tell_tls_failure(socket, tls, result, kept.get());
        }
    });
    return result;
}

int tapped_ssl_write(SSL* tls, const void* bytes, int count) noexcept
{
    const int result = real_tls_calls().write(tls, bytes, count);
    const KeptError kept;
    if (!is_tapped()) return result;
    guarded([&] {
        const int socket = SSL_get_fd(tls);
        if (result <= 0) return tell_tls_failure(socket, tls, result, kept.get());
        tell(socket, [&](Observer& observer, const Connection& connection) {
            observer.sent(connection, {static_cast<const char*>(bytes), static_cast<std::size_t>(result)});
        });
    });
    return result;
}

int tapped_ssl_read(SSL* tls, void* bytes, int count) noexcept
{
    const int result = real_tls_calls().read(tls, bytes, count);
    const KeptError kept;
    if (!is_tapped()) return result;
    guarded([&] {
        const int socket = SSL_get_fd(tls);
        const bool is_end = result <= 0 && is_end_of_tls(tls, result, kept.get());
        if (result <= 0 && !is_end) return tell_tls_failure(socket, tls, result, kept.get());
        const std::size_t size = is_end ? 0 : static_cast<std::size_t>(result);
        tell(socket, [&](Observer& observer, const Connection& connection) {
            observer.received(connection, {static_cast<const char*>(bytes), size});
        });
    });
    return result;
}

} // namespace soapwrapper::probe::wire
