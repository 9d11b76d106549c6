#include "probe/check/tls_look.h"

#include "probe/check/certificate.h"
#include "probe/check/connection.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/safestack.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>
#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>

namespace soapwrapper::probe
{
namespace
{

constexpr int kMostCertificates = 10;

struct FreeTls {
    void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
    void operator()(SSL* tls) const { SSL_free(tls); }
};
using Context = std::unique_ptr<SSL_CTX, FreeTls>;
using Tls = std::unique_ptr<SSL, FreeTls>;

std::string last_error(const char* otherwise)
{
    const unsigned long error = ERR_peek_last_error();
    const char* const reason = error != 0 ? ERR_reason_error_string(error) : nullptr;
    return reason ? reason : otherwise;
}

Context make_context(const TlsRules& rules)
{
    Context context(SSL_CTX_new(TLS_client_method()));
    if (!context) return nullptr;
    SSL_CTX_set_options(context.get(), SSL_OP_ALL);
    SSL_CTX_set_min_proto_version(context.get(), rules.oldest_version);
    SSL_CTX_set_max_proto_version(context.get(), TLS1_3_VERSION);
    SSL_CTX_set_verify(context.get(), SSL_VERIFY_NONE, nullptr);
    if (rules.authorities) {
        SSL_CTX_set1_cert_store(context.get(), rules.authorities);
        X509_VERIFY_PARAM_set_flags(SSL_CTX_get0_param(context.get()), X509_V_FLAG_PARTIAL_CHAIN);
    } else {
        SSL_CTX_set_default_verify_paths(context.get());
    }
    return context;
}

bool is_address(const std::string& host)
{
    unsigned char bytes[sizeof(in6_addr)];
    return inet_pton(AF_INET, host.c_str(), bytes) == 1 || inet_pton(AF_INET6, host.c_str(), bytes) == 1;
}

bool expect_host(SSL* tls, const std::string& host)
{
    X509_VERIFY_PARAM* const expected = SSL_get0_param(tls);
    X509_VERIFY_PARAM_set_hostflags(expected, X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
    const bool set = is_address(host) ? X509_VERIFY_PARAM_set1_ip_asc(expected, host.c_str()) == 1
                                      : X509_VERIFY_PARAM_set1_host(expected, host.c_str(), 0) == 1;
    return set && SSL_set_tlsext_host_name(tls, host.c_str()) == 1;
}

// Nothing, or why it fails.
std::string shake_hands(SSL* tls, const Socket& socket, TimeLimit limit)
{
    for (;;) {
        ERR_clear_error();
        errno = 0;
        const int result = SSL_connect(tls);
        if (result == 1) return {};
        const int system_error = errno;
        const int error = SSL_get_error(tls, result);
        if (error == SSL_ERROR_WANT_READ || error == SSL_ERROR_WANT_WRITE) {
            const short events = error == SSL_ERROR_WANT_READ ? POLLIN : POLLOUT;
            if (!socket.wait_for(events, limit)) return "the service does not go on with it";
            continue;
        }
        const char* const by_system = system_error != 0 ? std::strerror(system_error) : nullptr;
        return last_error(by_system ? by_system : "the service has closed the connection");
    }
}

void describe(SSL* tls, TlsLook& look)
{
    look.version = SSL_get_version(tls);
    look.cipher = SSL_get_cipher_name(tls);
    STACK_OF(X509)* const chain = SSL_get_peer_cert_chain(tls);
    const int count = chain ? sk_X509_num(chain) : 0;
    for (int i = 0; i < count && i < kMostCertificates; ++i) {
        look.chain.push_back(text_of(sk_X509_value(chain, i)));
    }
    const long judgement = SSL_get_verify_result(tls);
    if (judgement != X509_V_OK) look.untrusted = X509_verify_cert_error_string(judgement);
}

} // namespace

TlsLook look_at_tls(const Socket& socket, const std::string& host, const TlsRules& rules, TimeLimit limit)
{
    TlsLook look;
    ERR_clear_error();
    const Context context = make_context(rules);
    const Tls tls(context ? SSL_new(context.get()) : nullptr);
    BIO* const stream = tls ? BIO_new_socket(socket.get(), BIO_NOCLOSE) : nullptr;
    if (!stream) {
        look.failure = last_error("TLS cannot be set up");
        return look;
    }
    SSL_set_bio(tls.get(), stream, stream);
    look.failure = expect_host(tls.get(), host) ? shake_hands(tls.get(), socket, limit)
                                                : "the host's name cannot be used";
    if (look.failure.empty()) {
        describe(tls.get(), look);
        SSL_shutdown(tls.get());
    }
    ERR_clear_error();
    return look;
}

} // namespace soapwrapper::probe
