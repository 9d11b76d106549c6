// What a client finds at the simulator's HTTPS port, and the file by which it checks that.
#include "simulator/front/tls_identity.h"
#include "tests/system/probe_process.h"
#include "tests/system/simulator_process.h"
#include "tests/system/soap_client.h"

#include <gmock/gmock.h>
#include <openssl/ec.h>
#include <openssl/x509v3.h>

#include <sys/stat.h>

#include <filesystem>
#include <memory>

namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// Of a handshake with the server under that name, by a client that trusts what the file holds.
long judgement(int port, const std::filesystem::path& trusted, const char* host)
{
    const TlsClient client(port, [&](SSL* ssl) {
        X509_STORE* store = X509_STORE_new();
        X509_STORE_load_file(store, trusted.c_str());
        SSL_set0_verify_cert_store(ssl, store);
        SSL_set1_host(ssl, host);
    });
    return SSL_get_verify_result(client.ssl());
}

std::string common_name_of(X509_NAME* name)
{
    char text[128] = "";
    X509_NAME_get_text_by_NID(name, NID_commonName, text, sizeof text);
    return text;
}

std::vector<std::string> files_in(const std::filesystem::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

ProcessResult run_with_ca_file(const std::filesystem::path& path)
{
    return run_process(SIMULATOR_PROGRAM,
                       {"--http", "127.0.0.1:0", "--https", "127.0.0.1:0", "--ca-out", path.string()});
}

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
    EXPECT_EQ(common_name_of(X509_get_subject_name(certificate)), "storage.example");
    EVP_PKEY* key = X509_get0_pubkey(certificate);
    EXPECT_EQ(X509_verify(certificate, key), 0);
    EXPECT_THAT(common_name_of(X509_get_issuer_name(certificate)), StartsWith("soapwrapper-sim authority "));
    char group[64] = "";
    EXPECT_EQ(EVP_PKEY_get_group_name(key, group, sizeof group, nullptr), 1);
    EXPECT_STREQ(group, "prime256v1");
}

TEST(SimulatorTls, TheCertificateIsForTheAddressBoundAlthoughAnotherHostIsAdvertised)
{
    const SimulatorProcess simulator(
        SimulatorProcess::Exactly{{"--no-http", "--https", "127.0.0.2:0", "--advertise", "storage.example"}});
    const TlsClient client(simulator.https_port(), {}, "127.0.0.2");
    X509* certificate = SSL_get0_peer_certificate(client.ssl());
    EXPECT_EQ(X509_check_ip_asc(certificate, "127.0.0.2", 0), 1);
    EXPECT_EQ(X509_check_host(certificate, "storage.example", 0, 0, nullptr), 1);
    EXPECT_EQ(X509_check_ip_asc(certificate, "127.0.0.3", 0), 0);
}

TEST(SimulatorTls, TheCertificateIsAnotherOneAtEachStart)
{
    const SimulatorProcess first;
    const SimulatorProcess second;
    const TlsClient one(first.https_port());
    const TlsClient other(second.https_port());
    EXPECT_NE(X509_cmp(SSL_get0_peer_certificate(one.ssl()), SSL_get0_peer_certificate(other.ssl())), 0);
}

// The version that a client of versions in that range comes to; 0 if there is no handshake.
int version_spoken(int port, int oldest, int newest)
{
    try {
        const TlsClient client(port, [&](SSL* ssl) {
            SSL_set_min_proto_version(ssl, oldest);
            SSL_set_max_proto_version(ssl, newest);
        });
        return SSL_version(client.ssl());
    } catch (const std::runtime_error&) {
        return 0;
    }
}

TEST(SimulatorTls, SpeaksTheNewerOfItsTwoVersionsWithWhoKnowsBoth)
{
    const SimulatorProcess simulator;
    EXPECT_EQ(version_spoken(simulator.https_port(), TLS1_2_VERSION, TLS1_3_VERSION), TLS1_3_VERSION);
    EXPECT_EQ(version_spoken(simulator.https_port(), TLS1_2_VERSION, TLS1_2_VERSION), TLS1_2_VERSION);
}

TEST(SimulatorTls, SpeaksNoNewerVersionThanItMay)
{
    const SimulatorProcess simulator({"--tls-max", "1.2"});
    EXPECT_EQ(version_spoken(simulator.https_port(), TLS1_2_VERSION, TLS1_3_VERSION), TLS1_2_VERSION);
    EXPECT_EQ(version_spoken(simulator.https_port(), TLS1_3_VERSION, TLS1_3_VERSION), 0);
    EXPECT_EQ(ask(simulator.https_port(), "getServerPropByName", "", true).status, 500);
}

struct FreeSession {
    void operator()(SSL_SESSION* session) const { SSL_SESSION_free(session); }
};

// Whether a client of that version resumes at the one port the session that it had at the other.
bool resumes(int version, int first_port, int second_port)
{
    const auto speak_it = [version](SSL* ssl) {
        SSL_set_min_proto_version(ssl, version);
        SSL_set_max_proto_version(ssl, version);
    };
    const std::string request = post_text("");
    const TlsClient first(first_port, speak_it);
    first.send(request);
    first.receive_all(); // in the newer version what resumes a session comes behind the handshake
    const std::unique_ptr<SSL_SESSION, FreeSession> session(SSL_get1_session(first.ssl()));
    const TlsClient second(second_port, [&](SSL* ssl) {
        speak_it(ssl);
        SSL_set_session(ssl, session.get());
    });
    second.send(request);
    EXPECT_EQ(parse_reply(second.receive_all()).status, 500);
    return SSL_session_reused(second.ssl()) == 1;
}

TEST(SimulatorTls, ResumesTheSessionsThatItBeganInEitherVersion)
{
    const SimulatorProcess simulator;
    EXPECT_TRUE(resumes(TLS1_2_VERSION, simulator.https_port(), simulator.https_port()));
    EXPECT_TRUE(resumes(TLS1_3_VERSION, simulator.https_port(), simulator.https_port()));
}

TEST(SimulatorTls, ServesAClientThatWouldResumeASessionOfAnotherStart)
{
    const SimulatorProcess one;
    const SimulatorProcess other;
    EXPECT_FALSE(resumes(TLS1_2_VERSION, one.https_port(), other.https_port()));
    EXPECT_FALSE(resumes(TLS1_3_VERSION, one.https_port(), other.https_port()));
}

TEST(SimulatorCaFile, LetsAClientCheckTheCertificateAndTheHost)
{
    const TemporaryFolder folder;
    const SimulatorProcess simulator({"--ca-out", folder / "ca.pem", "--advertise", "storage.example"});
    for (const char* host : {"storage.example", "localhost", "127.0.0.1", "::1"}) {
        EXPECT_EQ(judgement(simulator.https_port(), folder / "ca.pem", host), X509_V_OK) << host;
    }
    EXPECT_EQ(judgement(simulator.https_port(), folder / "ca.pem", "other.example"),
              X509_V_ERR_HOSTNAME_MISMATCH);
    EXPECT_THAT(read_file(folder / "ca.pem"),
                AllOf(StartsWith("-----BEGIN CERTIFICATE-----"), Not(HasSubstr("PRIVATE"))));
}

TEST(SimulatorCaFile, IsOfNoUseForAnotherStart)
{
    const TemporaryFolder folder;
    const SimulatorProcess one({"--ca-out", folder / "ca.pem"});
    const SimulatorProcess other;
    EXPECT_NE(judgement(other.https_port(), folder / "ca.pem", "localhost"), X509_V_OK);
}

TEST(SimulatorCaFile, IsANewFileInThePlaceOfTheOldOne)
{
    const TemporaryFolder folder;
    const std::string old = folder.write("ca.pem", "old");
    std::filesystem::create_hard_link(old, folder / "kept");
    const SimulatorProcess simulator({"--ca-out", old});
    EXPECT_EQ(judgement(simulator.https_port(), old, "localhost"), X509_V_OK);
    EXPECT_EQ(read_file(folder / "kept"), "old");
    EXPECT_THAT(files_in(folder / ""), testing::UnorderedElementsAre("ca.pem", "kept"));
}

TEST(SimulatorCaFile, MayBeReadByAllWhomTheUmaskLets)
{
    const TemporaryFolder folder;
    const auto permissions_under = [&folder](mode_t mask) {
        const mode_t before = umask(mask);
        const SimulatorProcess simulator({"--ca-out", folder / "ca.pem"});
        umask(before);
        return static_cast<int>(std::filesystem::status(folder / "ca.pem").permissions());
    };
    EXPECT_EQ(permissions_under(022), 0644);
    EXPECT_EQ(permissions_under(077), 0600);
    EXPECT_EQ(permissions_under(0), 0644);
}

TEST(SimulatorCaFile, ThatCannotBeWrittenEndsTheStart)
{
    const TemporaryFolder folder;
    for (const std::filesystem::path& path : {folder / "missing/ca.pem", folder / "", folder / "missing/"}) {
        const ProcessResult result = run_with_ca_file(path);
        EXPECT_EQ(result.exit_code, 1) << path;
        EXPECT_EQ(result.out, "") << path;
        EXPECT_THAT(result.err,
                    StartsWith("soapwrapper-sim: --ca-out: \"" + path.string() + "\" can't be written: "));
    }
    EXPECT_THAT(files_in(folder / ""), testing::IsEmpty());
}

TEST(SimulatorCaFile, TakesThePlaceOfNoDeviceAndNoLink)
{
    const TemporaryFolder folder;
    std::filesystem::create_symlink(folder.write("target", "old"), folder / "link");
    ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
    for (const char* name : {"link", "fifo"}) {
        const ProcessResult result = run_with_ca_file(folder / name);
        EXPECT_EQ(result.exit_code, 1) << name;
        EXPECT_THAT(result.err, HasSubstr("what is there is no regular file")) << name;
    }
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_TRUE(std::filesystem::is_fifo(folder / "fifo"));
    EXPECT_EQ(read_file(folder / "target"), "old");
}

TEST(SimulatorCaFile, StaysAsItIsIfThePortIsInUse)
{
    const TemporaryFolder folder;
    const SimulatorProcess first({"--ca-out", folder / "ca.pem"});
    const std::string taken = "127.0.0.1:" + std::to_string(first.https_port());
    const ProcessResult second =
        run_process(SIMULATOR_PROGRAM, {"--no-http", "--https", taken, "--ca-out", folder / "ca.pem"});
    EXPECT_EQ(second.exit_code, 1);
    EXPECT_EQ(judgement(first.https_port(), folder / "ca.pem", "localhost"), X509_V_OK);
}

// The files of an identity that somebody has.
class SimulatorCertificate : public testing::Test
{
  protected:
    static std::vector<std::string> options(const std::string& certificate, const std::string& key)
    {
        return {"--certificate", certificate, "--key", key};
    }

    const TemporaryFolder folder_;
    const soapwrapper::simulator::MadeTlsIdentity made_ =
        soapwrapper::simulator::make_tls_identity({"storage.example"});
    const std::string authority_ = folder_.write("authority.pem", made_.authority);
    const std::string chain_ = folder_.write("chain.pem", made_.identity.certificate + made_.authority);
    const std::string key_ = folder_.write("key.pem", std::string(made_.identity.key.view()));
};

TEST_F(SimulatorCertificate, IsShownWithItsWholeChain)
{
    const SimulatorProcess simulator(options(chain_, key_));
    EXPECT_EQ(judgement(simulator.https_port(), authority_, "storage.example"), X509_V_OK);
    const TlsClient client(simulator.https_port());
    STACK_OF(X509)* chain = SSL_get_peer_cert_chain(client.ssl());
    ASSERT_EQ(sk_X509_num(chain), 2);
    EXPECT_EQ(common_name_of(X509_get_subject_name(sk_X509_value(chain, 0))), "storage.example");
    EXPECT_THAT(common_name_of(X509_get_subject_name(sk_X509_value(chain, 1))),
                StartsWith("soapwrapper-sim authority "));
    EXPECT_EQ(ask(simulator.https_port(), "getServerPropByName", "", true).status, 500);
}

TEST_F(SimulatorCertificate, WithAKeyOfAnotherEndsTheStartAndTellsNothingOfTheKey)
{
    const soapwrapper::simulator::MadeTlsIdentity other = soapwrapper::simulator::make_tls_identity({"x"});
    const std::string key(other.identity.key.view());
    const std::string file = folder_.write("other.pem", key);
    const ProcessResult result = run_process(SIMULATOR_PROGRAM, options(chain_, file));
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "soapwrapper-sim: --key: \"" + file +
                              "\" is not the key of the first certificate in \"" + chain_ + "\"\n");
}

TEST_F(SimulatorCertificate, ThatCannotBeReadEndsTheStart)
{
    const std::string missing = folder_ / "missing";
    const ProcessResult result = run_process(SIMULATOR_PROGRAM, options(missing, key_));
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "soapwrapper-sim: --certificate: \"" + missing +
                              "\" can't be read: No such file or directory\n");
}

} // namespace
