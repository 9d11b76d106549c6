#include "simulator/front/tls_identity.h"

#include <arpa/inet.h>
#include <openssl/asn1.h>
#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/types.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>

namespace soapwrapper::simulator
{
namespace
{

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

constexpr long kDay = 24L * 60 * 60;
constexpr std::size_t kMaxCommonName = 64;

void require(bool good, const char* step)
{
    if (!good) throw std::runtime_error(std::string("can't make the TLS certificate: ") + step);
}

bool is_ip_number(const std::string& host)
{
    unsigned char bytes[sizeof(in6_addr)];
    return inet_pton(AF_INET, host.c_str(), bytes) == 1 || inet_pton(AF_INET6, host.c_str(), bytes) == 1;
}

// A serial number of its own for every start, as browsers insist on for one issuer.
void set_serial(X509* certificate)
{
    const std::unique_ptr<BIGNUM, decltype(&BN_free)> number(BN_new(), BN_free);
    require(number && BN_rand(number.get(), 127, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY) == 1 &&
                BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(certificate)) != nullptr,
            "serial number");
}

void set_names(X509* certificate, const std::string& host)
{
    X509_NAME* name = X509_get_subject_name(certificate);
    const std::string common_name = host.substr(0, kMaxCommonName);
    require(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8,
                                       reinterpret_cast<const unsigned char*>(common_name.c_str()), -1, -1,
                                       0) == 1 &&
                X509_set_issuer_name(certificate, name) == 1,
            "name");

    std::string names = "DNS:localhost,IP:127.0.0.1,IP:::1";
    if (host != "localhost" && host != "127.0.0.1" && host != "::1") {
        names += (is_ip_number(host) ? ",IP:" : ",DNS:") + host;
    }
    const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> extension(
        X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, names.c_str()), X509_EXTENSION_free);
    require(extension && X509_add_ext(certificate, extension.get(), -1) == 1, "alternative names");
}

Certificate make_certificate(EVP_PKEY* key, const std::string& host)
{
    Certificate certificate(X509_new(), X509_free);
    require(certificate && X509_set_version(certificate.get(), X509_VERSION_3) == 1, "version");
    set_serial(certificate.get());
    require(X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -kDay) &&
                X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 365 * kDay),
            "dates");
    set_names(certificate.get(), host);
    require(X509_set_pubkey(certificate.get(), key) == 1 &&
                X509_sign(certificate.get(), key, EVP_sha256()) > 0,
            "signature");
    return certificate;
}

template <class Write>
std::string pem_of(const Write& write)
{
    const std::unique_ptr<BIO, decltype(&BIO_free_all)> memory(BIO_new(BIO_s_mem()), BIO_free_all);
    require(memory && write(memory.get()) == 1, "text");
    char* text = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &text);
    return {text, static_cast<std::size_t>(size)};
}

} // namespace

TlsIdentity make_tls_identity(const std::string& host)
{
    const Key key(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"), EVP_PKEY_free);
    require(key != nullptr, "key");
    const Certificate certificate = make_certificate(key.get(), host);
    return {pem_of([&](BIO* bio) { return PEM_write_bio_X509(bio, certificate.get()); }),
            pem_of([&](BIO* bio) {
                return PEM_write_bio_PrivateKey(bio, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
            })};
}

} // namespace soapwrapper::simulator
