// Which versions of TLS are spoken, by tls_min_version.
#include "tests/entries/checked_channel_fixture.h"
#include "tests/kit/new_process.h"

#include <openssl/ssl.h>

#include <cstdlib>

using namespace kit;

namespace
{

TlsContext up_to_tls11(TlsContext context)
{
    SSL_CTX_set_min_proto_version(context.get(), TLS1_VERSION);
    SSL_CTX_set_max_proto_version(context.get(), TLS1_1_VERSION);
    return context;
}

class MinVersion : public CheckedChannel
{
  protected:
    void expect_version(int version)
    {
        expect_accepted();
        ASSERT_FALSE(service_.requests().empty());
        EXPECT_EQ(service_.requests().back().tls_version, version);
    }

    // What the service's alert is called.
    void expect_version_refused() { expect_refused("alert protocol version\n"); }
};

// In a process whose TLS library is told to speak versions that it knows and would no longer speak by itself.
class OldVersions : public MinVersion
{
  protected:
    OldVersions()
    {
        const std::filesystem::path file = folder_.path() / "openssl.cnf";
        std::ofstream(file) << "openssl_conf = all\n[all]\nssl_conf = ssl\n[ssl]\nsystem_default = old\n"
                               "[old]\nMinProtocol = TLSv1\nCipherString = DEFAULT:@SECLEVEL=0\n";
        setenv("OPENSSL_CONF", file.c_str(), 1);
    }
    ~OldVersions() override { unsetenv("OPENSSL_CONF"); }

  private:
    TemporaryFolder folder_;
};

} // namespace

TEST_F(MinVersion, Of13RefusesAServiceOf12)
{
    configure("tls_min_version = 1.3\n");
    service_.set_tls_context(up_to_tls12(make_tls_server_context()));
    expect_version_refused();
}

TEST_F(MinVersion, Of13Speaks13)
{
    configure("tls_min_version = 1.3\n");
    expect_version(TLS1_3_VERSION);
}

TEST_F(MinVersion, Of12SpeaksBothAndPrefersTheNewer)
{
    configure("tls_min_version = 1.2\n");
    expect_version(TLS1_3_VERSION);
    service_.set_tls_context(up_to_tls12(make_tls_server_context()));
    expect_version(TLS1_2_VERSION);
}

TEST_F(MinVersion, IsKeptBesideCheckedCertificates)
{
    trust(authority_.certificate_pem());
    show(authority_.issue(for_address()));
    configure("tls_min_version = 1.3\ntls_ca_file = authorities.pem\n");
    expect_version(TLS1_3_VERSION);
    service_.set_tls_context(up_to_tls12(make_tls_server_context(authority_.issue(for_address()))));
    expect_version_refused();
}

TEST_F(MinVersion, IsAsLowAsBeforeOnceItIsNoLongerSet)
{
    service_.set_tls_context(up_to_tls12(make_tls_server_context()));
    configure("tls_min_version = 1.3\n");
    expect_version_refused();
    configure("");
    expect_version(TLS1_2_VERSION);
}

// The session is one of a version that is too old by now.
TEST_F(MinVersion, EndsTheUseOfSessionsOfAnOlderOne)
{
    service_.set_tls_context(up_to_tls12(make_tls_server_context()));
    expect_version(TLS1_2_VERSION);
    configure("tls_min_version = 1.3\n");
    expect_version_refused();
    EXPECT_EQ(service_.handshakes().offered, 0U);
}

TEST_F(OldVersions, AreSpokenWithoutTheKey)
{
    IN_A_NEW_PROCESS({
        service_.set_tls_context(up_to_tls11(make_tls_server_context()));
        expect_version(TLS1_1_VERSION);
    });
}

TEST_F(OldVersions, AreRefusedWhereTheKeyForbidsThem)
{
    IN_A_NEW_PROCESS({
        service_.set_tls_context(up_to_tls11(make_tls_server_context()));
        for (const char* oldest : {"1.2", "1.3"}) {
            SCOPED_TRACE(oldest);
            configure("tls_min_version = " + std::string(oldest) + "\n");
            expect_version_refused();
        }
    });
}
