#include "service/tls_context.h"

#include "service/certificate_authorities.h"
#include "service/tls_sessions.h"

#include <openssl/ssl.h>
#include <openssl/types.h>
#include <openssl/x509_vfy.h>

#include <mutex>
#include <utility>

#include "soapwrapperH.h"

namespace soapwrapper
{
namespace
{

void check_certificates(SSL_CTX* context, X509_STORE* authorities)
{
    SSL_CTX_set1_cert_store(context, authorities);
    SSL_CTX_set_verify(context, SSL_VERIFY_PEER, nullptr);
    // What the file names is trusted, be it the authority of another one or a server's own certificate.
    X509_VERIFY_PARAM_set_flags(SSL_CTX_get0_param(context), X509_V_FLAG_PARTIAL_CHAIN);
}

// The settings that the runtime gives a client by default, with no certificate read and none checked; and
// with tickets, which let a session be resumed.
SSL_CTX* make_context(int oldest_version, X509_STORE* authorities)
{
    SSL_CTX* context = SSL_CTX_new(TLS_method());
    if (!context) return nullptr;
    SSL_CTX_set_options(context, SSL_OP_ALL);
    const bool bounded = SSL_CTX_set_min_proto_version(context, oldest_version) == 1;
    if (!bounded && oldest_version != TLS1_VERSION) { // older ones would be spoken against the settings
        SSL_CTX_free(context);
        return nullptr;
    }
    SSL_CTX_set_max_proto_version(context, TLS1_3_VERSION);
    SSL_CTX_set_verify(context, SSL_VERIFY_NONE, nullptr);
    if (authorities) check_certificates(context, authorities);
    return context;
}

bool g_tls_has_begun = false;

class SharedTls
{
  public:
    SharedTls() { g_tls_has_begun = true; }
    ~SharedTls() { SSL_CTX_free(context_); }
    SharedTls(const SharedTls&) = delete;
    SharedTls& operator=(const SharedTls&) = delete;

    // A reference of the caller's own, or null; a failure is not remembered.
    SSL_CTX* reference()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!context_) context_ = make_context(oldest_version_, authorities_.get());
        if (context_) SSL_CTX_up_ref(context_);
        return context_;
    }

    TlsSessions& sessions() { return sessions_; }

    // What there is was made by other rules.
    void begin_anew(int oldest_version, AuthorityStore authorities)
    {
        sessions_.forget_all();
        const std::lock_guard<std::mutex> lock(mutex_);
        SSL_CTX_free(std::exchange(context_, nullptr));
        oldest_version_ = oldest_version;
        authorities_ = std::move(authorities);
    }

  private:
    std::mutex mutex_;
    int oldest_version_ = TLS1_VERSION;
    AuthorityStore authorities_; // null: certificates aren't checked
    SSL_CTX* context_ = nullptr;
    TlsSessions sessions_;
};

SharedTls& shared_tls()
{
    // Started first, the TLS library is also ended last: behind the destructor that is registered next.
    OPENSSL_init_ssl(0, nullptr);
    static SharedTls shared;
    return shared;
}

} // namespace

int share_tls_context(soap* context)
{
    if (context->ctx) return SOAP_OK;
    context->ctx = shared_tls().reference();
    if (!context->ctx) {
        return soap_set_receiver_error(context, "SSL/TLS error", "Can't setup context", SOAP_SSL_ERROR);
    }
    return SOAP_OK;
}

TlsSessions& tls_sessions()
{
    return shared_tls().sessions();
}

bool begin_tls_anew(int oldest_version, const char* ca_file)
{
    const bool has_rules = oldest_version != TLS1_VERSION || ca_file;
    if (!has_rules && !g_tls_has_begun) return true; // nothing to change, and no TLS library to start
    SharedTls& tls = shared_tls();
    AuthorityStore authorities = ca_file ? read_authorities(ca_file) : nullptr;
    const bool good = authorities || !ca_file;
    tls.begin_anew(oldest_version, std::move(authorities));
    return good;
}

} // namespace soapwrapper
