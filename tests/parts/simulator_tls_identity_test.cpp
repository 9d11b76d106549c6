// The certificate that the simulator makes at its start, as a client judges it.
#include "simulator/front/tls_identity.h"

#include <gmock/gmock.h>
#include <openssl/bio.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <arpa/inet.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using namespace soapwrapper::simulator;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

struct Free {
    void operator()(BIO* bio) const { BIO_free_all(bio); }
    void operator()(X509* certificate) const { X509_free(certificate); }
    void operator()(X509_STORE* store) const { X509_STORE_free(store); }
    void operator()(X509_STORE_CTX* context) const { X509_STORE_CTX_free(context); }
    void operator()(GENERAL_NAMES* names) const { GENERAL_NAMES_free(names); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Free>;

Owned<X509> certificate_in(const std::string& pem)
{
    const Owned<BIO> text(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
    return Owned<X509>(PEM_read_bio_X509(text.get(), nullptr, nullptr, nullptr));
}

// What a strict client that knows the authority makes of the certificate of a server that it calls so.
int judgement(const std::string& certificate, const std::string& authority, const std::string& host)
{
    const Owned<X509> leaf = certificate_in(certificate);
    const Owned<X509> root = certificate_in(authority);
    const Owned<X509_STORE> trusted(X509_STORE_new());
    const Owned<X509_STORE_CTX> context(X509_STORE_CTX_new());
    X509_STORE_add_cert(trusted.get(), root.get());
    X509_STORE_CTX_init(context.get(), trusted.get(), leaf.get(), nullptr);
    X509_VERIFY_PARAM* wanted = X509_STORE_CTX_get0_param(context.get());
    X509_VERIFY_PARAM_set_flags(wanted, X509_V_FLAG_X509_STRICT);
    X509_VERIFY_PARAM_set_purpose(wanted, X509_PURPOSE_SSL_SERVER);
    if (X509_VERIFY_PARAM_set1_ip_asc(wanted, host.c_str()) != 1) {
        X509_VERIFY_PARAM_set1_host(wanted, host.data(), host.size());
    }
    X509_verify_cert(context.get());
    return X509_STORE_CTX_get_error(context.get());
}

std::vector<std::string> names_in(const std::string& pem)
{
    const Owned<X509> certificate = certificate_in(pem);
    const Owned<GENERAL_NAMES> names(static_cast<GENERAL_NAMES*>(
        X509_get_ext_d2i(certificate.get(), NID_subject_alt_name, nullptr, nullptr)));
    std::vector<std::string> told;
    for (int i = 0; i < sk_GENERAL_NAME_num(names.get()); ++i) {
        int type = 0;
        const auto* value = static_cast<const ASN1_STRING*>(
            GENERAL_NAME_get0_value(sk_GENERAL_NAME_value(names.get(), i), &type));
        const unsigned char* bytes = ASN1_STRING_get0_data(value);
        if (type == GEN_DNS) {
            told.emplace_back(bytes, bytes + ASN1_STRING_length(value));
        } else {
            char text[INET6_ADDRSTRLEN] = "";
            inet_ntop(ASN1_STRING_length(value) == 4 ? AF_INET : AF_INET6, bytes, text, sizeof text);
            told.push_back("address " + std::string(text));
        }
    }
    return told;
}

std::string common_name_in(const std::string& pem)
{
    char name[128] = "";
    X509_NAME_get_text_by_NID(X509_get_subject_name(certificate_in(pem).get()), NID_commonName, name,
                              sizeof name);
    return name;
}

std::string trouble_with(const std::string& host)
{
    try {
        make_tls_identity({host});
        return "none";
    } catch (const std::runtime_error& trouble) {
        return trouble.what();
    }
}

TEST(SimulatorTlsIdentity, IsForTheHostsAndTheLoopback)
{
    const MadeTlsIdentity made = make_tls_identity({"storage.example", "192.0.2.7"});
    EXPECT_THAT(
        names_in(made.identity.certificate),
        ElementsAre("localhost", "address 127.0.0.1", "address ::1", "storage.example", "address 192.0.2.7"));
    EXPECT_EQ(common_name_in(made.identity.certificate), "storage.example");
}

TEST(SimulatorTlsIdentity, NamesEachHostOnceHoweverItIsWritten)
{
    const auto names_for = [](const std::vector<std::string>& hosts) {
        return names_in(make_tls_identity(hosts).identity.certificate);
    };
    EXPECT_THAT(names_for({"127.0.0.1", "0:0:0:0:0:0:0:1", "LocalHost"}),
                ElementsAre("localhost", "address 127.0.0.1", "address ::1"));
    EXPECT_THAT(names_for({"Storage.Example", "storage.example"}),
                ElementsAre("localhost", "address 127.0.0.1", "address ::1", "storage.example"));
}

TEST(SimulatorTlsIdentity, NamesAnAddressWithoutItsZone)
{
    const MadeTlsIdentity made = make_tls_identity({"fe80::1%eth0"});
    EXPECT_THAT(names_in(made.identity.certificate),
                ElementsAre("localhost", "address 127.0.0.1", "address ::1", "address fe80::1"));
}

TEST(SimulatorTlsIdentity, IsTrustedByWhoTrustsItsAuthorityForItsHostsAlone)
{
    const MadeTlsIdentity made = make_tls_identity({"storage.example", "192.0.2.7"});
    for (const char* host : {"storage.example", "192.0.2.7", "localhost", "127.0.0.1", "::1"}) {
        EXPECT_EQ(judgement(made.identity.certificate, made.authority, host), X509_V_OK) << host;
    }
    EXPECT_EQ(judgement(made.identity.certificate, made.authority, "other.example"),
              X509_V_ERR_HOSTNAME_MISMATCH);
    EXPECT_EQ(judgement(made.identity.certificate, made.authority, "192.0.2.8"),
              X509_V_ERR_IP_ADDRESS_MISMATCH);
}

TEST(SimulatorTlsIdentity, IsNotTrustedByWhoTrustsTheAuthorityOfAnotherStart)
{
    const MadeTlsIdentity made = make_tls_identity({"localhost"});
    const MadeTlsIdentity other = make_tls_identity({"localhost"});
    EXPECT_EQ(judgement(made.identity.certificate, other.authority, "localhost"),
              X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY);
    EXPECT_NE(common_name_in(made.authority), common_name_in(other.authority));
    EXPECT_THAT(common_name_in(made.authority), StartsWith("soapwrapper-sim authority "));
}

TEST(SimulatorTlsIdentity, HasAnAuthorityThatMaySignCertificatesAndIsNoServer)
{
    const MadeTlsIdentity made = make_tls_identity({"localhost"});
    const Owned<X509> authority = certificate_in(made.authority);
    EXPECT_NE(X509_get_extension_flags(authority.get()) & EXFLAG_CA, 0U);
    EXPECT_EQ(X509_get_key_usage(authority.get()), static_cast<std::uint32_t>(KU_KEY_CERT_SIGN));
    EXPECT_NE(X509_get0_subject_key_id(authority.get()), nullptr);
    EXPECT_NE(X509_get0_authority_key_id(authority.get()), nullptr);
    EXPECT_THAT(made.authority, testing::Not(HasSubstr("PRIVATE")));

    const Owned<X509> certificate = certificate_in(made.identity.certificate);
    EXPECT_EQ(X509_get_extension_flags(certificate.get()) & EXFLAG_CA, 0U);
    EXPECT_EQ(X509_get_extended_key_usage(certificate.get()), static_cast<std::uint32_t>(XKU_SSL_SERVER));
}

TEST(SimulatorTlsIdentity, IsNotMadeForWhatIsNoHost)
{
    for (const std::string& host :
         {std::string("a,DNS:b"), std::string("a b"), std::string("a:b"), std::string("b\xc3\xbc"),
          std::string("a\0b", 3), std::string("999.1.1.1:1")}) {
        EXPECT_THAT(trouble_with(host), HasSubstr("may not stand in it")) << host;
    }
    EXPECT_THAT(trouble_with(""), HasSubstr("empty or too long"));
    EXPECT_THAT(trouble_with(std::string(254, 'a')), HasSubstr("empty or too long"));
    EXPECT_EQ(trouble_with(std::string(253, 'a')), "none");
}

} // namespace
