#include "tests/kit/authority.h"

#include "tests/kit/certificate.h"

#include <gmock/gmock.h>

#include <openssl/bio.h>
#include <openssl/pem.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>

#include <functional>
#include <memory>
#include <string>

using namespace kit;

namespace
{

// What a client finds that trusts one authority: X509_V_OK, or what is wrong.
int verify(const Identity& identity, X509* trusted,
           const std::function<void(X509_VERIFY_PARAM*)>& expect = nullptr)
{
    const std::unique_ptr<X509_STORE, decltype(&X509_STORE_free)> store(X509_STORE_new(), X509_STORE_free);
    X509_STORE_add_cert(store.get(), trusted);
    STACK_OF(X509)* chain = sk_X509_new_null();
    for (const auto& authority : identity.chain) sk_X509_push(chain, authority.get());
    const std::unique_ptr<X509_STORE_CTX, decltype(&X509_STORE_CTX_free)> context(X509_STORE_CTX_new(),
                                                                                  X509_STORE_CTX_free);
    X509_STORE_CTX_init(context.get(), store.get(), identity.certificate.get(), chain);
    X509_STORE_CTX_set_default(context.get(), "ssl_server");
    if (expect) expect(X509_STORE_CTX_get0_param(context.get()));
    X509_verify_cert(context.get());
    sk_X509_free(chain);
    return X509_STORE_CTX_get_error(context.get());
}

int verify_host(const Identity& identity, const Authority& trusted, const char* host, unsigned int flags = 0)
{
    return verify(identity, trusted.certificate(), [&](X509_VERIFY_PARAM* expected) {
        X509_VERIFY_PARAM_set1_host(expected, host, 0);
        X509_VERIFY_PARAM_set_hostflags(expected, flags);
    });
}

int verify_address(const Identity& identity, const Authority& trusted, const char* address)
{
    return verify(identity, trusted.certificate(),
                  [&](X509_VERIFY_PARAM* expected) { X509_VERIFY_PARAM_set1_ip_asc(expected, address); });
}

class Certificates : public testing::Test
{
  protected:
    Authority authority_;
};

} // namespace

TEST_F(Certificates, OfAnAuthorityHoldForTheirNamesAndAddressesOnly)
{
    const Identity leaf = authority_.issue(
        Leaf().dns_name("a.example.com").dns_name("b.example.com").address("127.0.0.1").address("::1"));
    EXPECT_EQ(verify(leaf, authority_.certificate()), X509_V_OK);
    EXPECT_EQ(verify_host(leaf, authority_, "a.example.com"), X509_V_OK);
    EXPECT_EQ(verify_host(leaf, authority_, "b.example.com"), X509_V_OK);
    EXPECT_EQ(verify_host(leaf, authority_, "c.example.com"), X509_V_ERR_HOSTNAME_MISMATCH);
    EXPECT_EQ(verify_address(leaf, authority_, "127.0.0.1"), X509_V_OK);
    EXPECT_EQ(verify_address(leaf, authority_, "::1"), X509_V_OK);
    EXPECT_EQ(verify_address(leaf, authority_, "127.0.0.2"), X509_V_ERR_IP_ADDRESS_MISMATCH);
}

TEST_F(Certificates, MayHoldForAWildcard)
{
    const Identity leaf = authority_.issue(Leaf().dns_name("*.example.com"));
    EXPECT_EQ(verify_host(leaf, authority_, "any.example.com"), X509_V_OK);
    EXPECT_EQ(verify_host(leaf, authority_, "example.com"), X509_V_ERR_HOSTNAME_MISMATCH);
}

TEST_F(Certificates, MayHaveACommonNameAlone)
{
    const Identity leaf = authority_.issue(Leaf("a.example.com"));
    EXPECT_EQ(verify_host(leaf, authority_, "a.example.com"), X509_V_OK);
    EXPECT_EQ(verify_host(leaf, authority_, "a.example.com", X509_CHECK_FLAG_NEVER_CHECK_SUBJECT),
              X509_V_ERR_HOSTNAME_MISMATCH);
}

TEST_F(Certificates, MayBeOfAnotherTimeOrForAnotherPurpose)
{
    X509* const trusted = authority_.certificate();
    EXPECT_EQ(verify(authority_.issue(Leaf().expired()), trusted), X509_V_ERR_CERT_HAS_EXPIRED);
    EXPECT_EQ(verify(authority_.issue(Leaf().not_yet_valid()), trusted), X509_V_ERR_CERT_NOT_YET_VALID);
    EXPECT_EQ(verify(authority_.issue(Leaf().for_clients_only()), trusted), X509_V_ERR_INVALID_PURPOSE);
}

TEST_F(Certificates, SignedByThemselvesHaveNoAuthority)
{
    const Identity leaf = self_signed(Leaf().dns_name("a.example.com"));
    EXPECT_EQ(verify(leaf, authority_.certificate()), X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT);
    EXPECT_EQ(verify(leaf, leaf.certificate.get()), X509_V_OK);
}

TEST_F(Certificates, OfAnIntermediateAuthorityNeedTheirChain)
{
    const Authority upper = authority_.intermediate("upper");
    Identity leaf = upper.intermediate("lower").issue(Leaf());
    ASSERT_EQ(leaf.chain.size(), 2U);
    EXPECT_EQ(verify(leaf, authority_.certificate()), X509_V_OK);
    leaf.chain.pop_back();
    EXPECT_EQ(verify(leaf, authority_.certificate()), X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY);
}

TEST_F(Certificates, OfAServiceMaySignNone)
{
    const Identity service = authority_.issue(Leaf("service"));
    const Identity leaf = signed_by(service, Leaf());
    ASSERT_EQ(leaf.chain.size(), 1U);
    EXPECT_NE(verify(leaf, authority_.certificate()), X509_V_OK);
    EXPECT_EQ(X509_verify(leaf.certificate.get(), service.key.get()), 1);
}

TEST_F(Certificates, OfAnAuthorityOfTheSameNameDoNotHold)
{
    EXPECT_NE(verify(Authority().issue(Leaf()), authority_.certificate()), X509_V_OK);
}

TEST_F(Certificates, AreWrittenAsTextThatAServerCanRead)
{
    const Identity leaf = authority_.intermediate().issue(Leaf());
    const auto read = [](const std::string& text) {
        return std::unique_ptr<BIO, decltype(&BIO_free)>(
            BIO_new_mem_buf(text.data(), static_cast<int>(text.size())), BIO_free);
    };
    const auto next = [](BIO* from) {
        return std::unique_ptr<X509, decltype(&X509_free)>(PEM_read_bio_X509(from, nullptr, nullptr, nullptr),
                                                           X509_free);
    };
    const std::string chain = leaf.chain_pem();
    const std::string key = leaf.key_pem();
    const auto certificates = read(chain);
    const auto certificate = next(certificates.get());
    ASSERT_NE(certificate, nullptr);
    EXPECT_EQ(X509_cmp(certificate.get(), leaf.certificate.get()), 0);
    const auto intermediate = next(certificates.get());
    ASSERT_NE(intermediate, nullptr);
    EXPECT_EQ(X509_cmp(intermediate.get(), leaf.chain.front().get()), 0);
    EXPECT_EQ(next(certificates.get()), nullptr);
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> read_key(
        PEM_read_bio_PrivateKey(read(key).get(), nullptr, nullptr, nullptr), EVP_PKEY_free);
    EXPECT_EQ(X509_check_private_key(certificate.get(), read_key.get()), 1);
    EXPECT_THAT(chain, testing::StartsWith(leaf.certificate_pem()));
}
