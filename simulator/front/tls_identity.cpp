#include "simulator/front/tls_identity.h"

#include "simulator/front/pem.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/asn1.h>
#include <openssl/bn.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/objects.h>
#include <openssl/types.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <sys/socket.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstring>
#include <ctime>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

using Number = std::unique_ptr<BIGNUM, decltype(&BN_free)>;

constexpr long kDay = 24L * 60 * 60;
constexpr std::size_t kMaxCommonName = 64;
constexpr std::size_t kMaxDnsName = 253;

struct Extension {
    int nid;
    std::string value;
};

void require(bool good, const std::string& step)
{
    if (!good) throw std::runtime_error("can't make the TLS certificate: " + step);
}

// The address as everybody writes it, or none if it is a name.
std::string address_in(const std::string& host)
{
    const std::string number = host.substr(0, host.find('%')); // a zone is no part of the address
    for (const int family : {AF_INET, AF_INET6}) {
        unsigned char bytes[sizeof(in6_addr)];
        char text[INET6_ADDRSTRLEN];
        if (inet_pton(family, number.c_str(), bytes) == 1 && inet_ntop(family, bytes, text, sizeof text)) {
            return text;
        }
    }
    return {};
}

// As the extension of the alternative names wants it, the same text for the same host.
std::string alternative_name(const std::string& host)
{
    const std::string address = address_in(host);
    if (!address.empty()) return "IP:" + address;
    std::string name;
    for (const char c : host) {
        const auto byte = static_cast<unsigned char>(c);
        require(byte < 0x80 && (std::isalnum(byte) || std::strchr(".-_", c)) && c != '\0',
                "the host's name may not stand in it");
        name += static_cast<char>(std::tolower(byte));
    }
    require(!name.empty() && name.size() <= kMaxDnsName, "the host's name is empty or too long");
    return "DNS:" + name;
}

std::string alternative_names(const std::vector<std::string>& hosts)
{
    std::vector<std::string> names = {"DNS:localhost", "IP:127.0.0.1", "IP:::1"};
    for (const std::string& host : hosts) {
        const std::string name = alternative_name(host);
        if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    }
    std::string all;
    for (const std::string& name : names) all.append(all.empty() ? "" : ",").append(name);
    return all;
}

Key make_key()
{
    Key key(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"), EVP_PKEY_free);
    require(key != nullptr, "key");
    return key;
}

// Another one for every certificate, as browsers insist on for one issuer.
Number draw_serial()
{
    Number number(BN_new(), BN_free);
    require(number && BN_rand(number.get(), 127, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY) == 1, "serial number");
    return number;
}

// All but the issuer, the extensions and the signature.
Certificate begin_certificate(EVP_PKEY* key, const Number& serial, std::string_view common_name)
{
    Certificate certificate(X509_new(), X509_free);
    require(certificate && X509_set_version(certificate.get(), X509_VERSION_3) == 1, "version");
    require(BN_to_ASN1_INTEGER(serial.get(), X509_get_serialNumber(certificate.get())) != nullptr,
            "serial number");
    require(X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -kDay) &&
                X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 365 * kDay),
            "dates");
    const std::string_view name = common_name.substr(0, kMaxCommonName);
    require(X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8,
                                       reinterpret_cast<const unsigned char*>(name.data()),
                                       static_cast<int>(name.size()), -1, 0) == 1,
            "name");
    require(X509_set_pubkey(certificate.get(), key) == 1, "public key");
    return certificate;
}

void sign(X509* certificate, X509* issuer, EVP_PKEY* issuer_key, const std::vector<Extension>& extensions)
{
    require(X509_set_issuer_name(certificate, X509_get_subject_name(issuer)) == 1, "issuer");
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    X509V3_set_ctx_nodb(&context);
    for (const Extension& each : extensions) {
        const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> extension(
            X509V3_EXT_conf_nid(nullptr, &context, each.nid, each.value.c_str()), X509_EXTENSION_free);
        require(extension && X509_add_ext(certificate, extension.get(), -1) == 1, OBJ_nid2sn(each.nid));
    }
    require(X509_sign(certificate, issuer_key, EVP_sha256()) > 0, "signature");
}

// Each start's authority has a name of its own: a client that keeps those of several tells them apart by it.
Certificate make_authority(EVP_PKEY* key)
{
    const Number serial = draw_serial();
    const std::unique_ptr<char, void (*)(char*)> digits(BN_bn2hex(serial.get()),
                                                        [](char* text) { OPENSSL_free(text); });
    require(digits != nullptr, "serial number");
    Certificate authority =
        begin_certificate(key, serial, std::string("soapwrapper-sim authority ") + digits.get());
    sign(authority.get(), authority.get(), key,
         {{NID_basic_constraints, "critical,CA:TRUE,pathlen:0"},
          {NID_key_usage, "critical,keyCertSign"},
          {NID_subject_key_identifier, "hash"},
          {NID_authority_key_identifier, "keyid:always"}});
    return authority;
}

Certificate make_certificate(EVP_PKEY* key, const std::string& common_name, const std::string& names,
                             X509* authority, EVP_PKEY* authority_key)
{
    Certificate certificate = begin_certificate(key, draw_serial(), common_name);
    sign(certificate.get(), authority, authority_key,
         {{NID_basic_constraints, "critical,CA:FALSE"},
          {NID_key_usage, "critical,digitalSignature"},
          {NID_ext_key_usage, "serverAuth"},
          {NID_subject_key_identifier, "hash"},
          {NID_authority_key_identifier, "keyid:always"},
          {NID_subject_alt_name, names}});
    return certificate;
}

} // namespace

MadeTlsIdentity make_tls_identity(const std::vector<std::string>& hosts)
{
    const std::string names = alternative_names(hosts);
    const Key authority_key = make_key();
    const Certificate authority = make_authority(authority_key.get());
    const Key key = make_key();
    const Certificate certificate =
        make_certificate(key.get(), hosts.front(), names, authority.get(), authority_key.get());
    return {{pem_of(certificate), pem_of(key)}, pem_of(authority)};
}

} // namespace soapwrapper::simulator
