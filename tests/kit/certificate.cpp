#include "tests/kit/certificate.h"

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <stdexcept>

namespace kit
{
namespace
{

void require(bool good, const char* what)
{
    if (!good) throw std::runtime_error(what);
}

} // namespace

TlsContext make_tls_server_context()
{
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(
        EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"), EVP_PKEY_free);
    require(key != nullptr, "no key");
    const std::unique_ptr<X509, decltype(&X509_free)> certificate(X509_new(), X509_free);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
    X509_set_pubkey(certificate.get(), key.get());
    X509_NAME* name = X509_get_subject_name(certificate.get());
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>("scripted"),
                               -1, -1, 0);
    X509_set_issuer_name(certificate.get(), name);
    require(X509_sign(certificate.get(), key.get(), EVP_sha256()) > 0, "can't sign the certificate");

    TlsContext context(SSL_CTX_new(TLS_server_method()));
    require(context != nullptr, "no TLS context");
    require(SSL_CTX_use_certificate(context.get(), certificate.get()) == 1, "certificate refused");
    require(SSL_CTX_use_PrivateKey(context.get(), key.get()) == 1, "key refused");
    return context;
}

} // namespace kit
