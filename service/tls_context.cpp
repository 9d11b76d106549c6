#include "service/tls_context.h"

#include "service/tls_sessions.h"

#include <openssl/ssl.h>
#include <openssl/types.h>

#include <mutex>

#include "soapwrapperH.h"

namespace soapwrapper
{
namespace
{

// The settings that the runtime gives a client by default, with no certificate read and none checked; and
// with tickets, which let a session be resumed.
SSL_CTX* make_context()
{
    SSL_CTX* context = SSL_CTX_new(TLS_method());
    if (!context) return nullptr;
    SSL_CTX_set_options(context, SSL_OP_ALL);
    SSL_CTX_set_min_proto_version(context, TLS1_VERSION);
    SSL_CTX_set_max_proto_version(context, TLS1_3_VERSION);
    SSL_CTX_set_verify(context, SSL_VERIFY_NONE, nullptr);
    return context;
}

class SharedTls
{
  public:
    SharedTls() = default;
    ~SharedTls() { SSL_CTX_free(context_); }
    SharedTls(const SharedTls&) = delete;
    SharedTls& operator=(const SharedTls&) = delete;

    // A reference of the caller's own, or null; a failure is not remembered.
    SSL_CTX* reference()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!context_) context_ = make_context();
        if (context_) SSL_CTX_up_ref(context_);
        return context_;
    }

    TlsSessions& sessions() { return sessions_; }

  private:
    std::mutex mutex_;
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

} // namespace soapwrapper
