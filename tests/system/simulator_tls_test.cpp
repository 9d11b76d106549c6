// What a client finds at the simulator's HTTPS port.
#include "tests/system/simulator_process.h"
#include "tests/system/soap_client.h"

#include <gmock/gmock.h>
#include <openssl/ec.h>
#include <openssl/x509v3.h>

namespace
{

using testing::StartsWith;

TEST(SimulatorTls, TheCertificateIsForTheHostAndSignedByAnAuthority)
{
    const SimulatorProcess simulator({"--advertise", "storage.example"});
    const TlsClient client(simulator.https_port());
    X509* certificate = SSL_get0_peer_certificate(client.ssl());
    ASSERT_NE(certificate, nullptr);
    for (const char* host : {"storage.example", "localhost"}) {
        EXPECT_EQ(X509_check_host(certificate, host, 0, 0, nullptr), 1) << host;
    }
    for (const char* number : {"127.0.0.1", "::1"}) {
        EXPECT_EQ(X509_check_ip_asc(certificate, number, 0), 1) << number;
    }
    char name[128] = "";
    X509_NAME_get_text_by_NID(X509_get_subject_name(certificate), NID_commonName, name, sizeof name);
    EXPECT_STREQ(name, "storage.example");
    EVP_PKEY* key = X509_get0_pubkey(certificate);
    EXPECT_EQ(X509_verify(certificate, key), 0);
    X509_NAME_get_text_by_NID(X509_get_issuer_name(certificate), NID_commonName, name, sizeof name);
    EXPECT_THAT(name, StartsWith("soapwrapper-sim authority "));
    char group[64] = "";
    EXPECT_EQ(EVP_PKEY_get_group_name(key, group, sizeof group, nullptr), 1);
    EXPECT_STREQ(group, "prime256v1");
}

TEST(SimulatorTls, TheCertificateIsAnotherOneAtEachStart)
{
    const SimulatorProcess first;
    const SimulatorProcess second;
    const TlsClient one(first.https_port());
    const TlsClient other(second.https_port());
    EXPECT_NE(X509_cmp(SSL_get0_peer_certificate(one.ssl()), SSL_get0_peer_certificate(other.ssl())), 0);
}

} // namespace
