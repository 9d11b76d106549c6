#include "tests/kit/authority.h"

#include "tests/kit/require.h"

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kit
{
namespace
{

using Extensions = std::vector<std::pair<int, std::string>>;

void add_extensions(X509* certificate, X509* issuer, const Extensions& extensions)
{
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    for (const auto& [number, value] : extensions) {
        const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> extension(
            X509V3_EXT_conf_nid(nullptr, &context, number, value.c_str()), X509_EXTENSION_free);
        require(extension && X509_add_ext(certificate, extension.get(), -1) == 1, "extension refused");
    }
}

// A new key, and a certificate of it that the issuer has signed; without one, it has signed itself.
Identity make_identity(const Leaf& names, const Extensions& extensions, const Identity* issuer)
{
    static std::atomic<long> serial{0};
    Identity made;
    made.key.reset(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"), EVP_PKEY_free);
    made.certificate.reset(X509_new(), X509_free);
    require(made.key && made.certificate, "no key or no certificate");
    const Identity& signer = issuer ? *issuer : made;
    X509* certificate = made.certificate.get();

    X509_set_version(certificate, 2); // counted from 0
    ASN1_INTEGER_set(X509_get_serialNumber(certificate), ++serial);
    X509_gmtime_adj(X509_getm_notBefore(certificate), names.from());
    X509_gmtime_adj(X509_getm_notAfter(certificate), names.until());
    X509_set_pubkey(certificate, made.key.get());
    const std::unique_ptr<X509_NAME, decltype(&X509_NAME_free)> name(X509_NAME_new(), X509_NAME_free);
    X509_NAME_add_entry_by_txt(name.get(), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>(names.common_name().c_str()), -1, -1,
                               0);
    X509_set_subject_name(certificate, name.get());
    X509_set_issuer_name(certificate, X509_get_subject_name(signer.certificate.get()));
    add_extensions(certificate, signer.certificate.get(), extensions);
    require(X509_sign(certificate, signer.key.get(), EVP_sha256()) > 0, "can't sign the certificate");
    return made;
}

Identity make_authority(const std::string& name, const Identity* issuer)
{
    Extensions extensions = {{NID_basic_constraints, "critical,CA:TRUE"},
                             {NID_key_usage, "critical,keyCertSign,cRLSign"},
                             {NID_subject_key_identifier, "hash"}};
    if (issuer) extensions.push_back({NID_authority_key_identifier, "keyid"});
    return make_identity(Leaf(name), extensions, issuer);
}

template <class Write>
std::string pem(Write write)
{
    const std::unique_ptr<BIO, decltype(&BIO_free)> memory(BIO_new(BIO_s_mem()), BIO_free);
    require(memory && write(memory.get()) == 1, "no PEM text");
    char* text = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &text);
    return {text, static_cast<std::size_t>(size)};
}

std::string pem_of(X509* certificate)
{
    return pem([&](BIO* memory) { return PEM_write_bio_X509(memory, certificate); });
}

} // namespace

Leaf& Leaf::alternative(const std::string& text)
{
    alternatives_ += (alternatives_.empty() ? "" : ",") + text;
    return *this;
}

Leaf& Leaf::valid(long from, long until)
{
    from_ = from;
    until_ = until;
    return *this;
}

Leaf& Leaf::for_clients_only()
{
    purpose_ = "clientAuth";
    return *this;
}

std::vector<std::pair<int, std::string>> Leaf::extensions() const
{
    Extensions all = {{NID_basic_constraints, "critical,CA:FALSE"},
                      {NID_key_usage, "critical,digitalSignature"},
                      {NID_ext_key_usage, purpose_},
                      {NID_subject_key_identifier, "hash"}};
    if (!alternatives_.empty()) all.push_back({NID_subject_alt_name, alternatives_});
    return all;
}

std::string Identity::certificate_pem() const
{
    return pem_of(certificate.get());
}

std::string Identity::chain_pem() const
{
    std::string text = certificate_pem();
    for (const auto& authority : chain) text += pem_of(authority.get());
    return text;
}

std::string Identity::key_pem() const
{
    return pem([this](BIO* memory) {
        return PEM_write_bio_PrivateKey(memory, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    });
}

Authority::Authority(const std::string& name) : root_(true), identity_(make_authority(name, nullptr)) {}

Authority::Authority(const std::string& name, const Authority& issuer)
    : root_(false), identity_(make_authority(name, &issuer.identity_))
{
    identity_.chain = issuer.chain_below();
}

Authority Authority::intermediate(const std::string& name) const
{
    return {name, *this};
}

Identity Authority::issue(const Leaf& leaf) const
{
    Extensions extensions = leaf.extensions();
    extensions.push_back({NID_authority_key_identifier, "keyid"});
    Identity issued = make_identity(leaf, extensions, &identity_);
    issued.chain = chain_below();
    return issued;
}

std::vector<std::shared_ptr<X509>> Authority::chain_below() const
{
    if (root_) return {};
    std::vector<std::shared_ptr<X509>> chain = {identity_.certificate};
    chain.insert(chain.end(), identity_.chain.begin(), identity_.chain.end());
    return chain;
}

Identity self_signed(const Leaf& leaf)
{
    return make_identity(leaf, leaf.extensions(), nullptr);
}

Identity signed_by(const Identity& service, const Leaf& leaf)
{
    Identity made = make_identity(leaf, leaf.extensions(), &service);
    made.chain = service.chain;
    made.chain.insert(made.chain.begin(), service.certificate);
    return made;
}

} // namespace kit
