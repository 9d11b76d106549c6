// What a resumed session may stand for where certificates are checked.
#include "tests/entries/checked_channel_fixture.h"
#include "tests/kit/clock.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <ostream>

using namespace kit;

namespace
{

class CheckedSessions : public CheckedChannel
{
  protected:
    CheckedSessions()
    {
        trust(authority_.certificate_pem());
        show(authority_.issue(for_address()));
    }

    void expect_handshakes(std::size_t full, std::size_t resumed, std::size_t offered)
    {
        const Handshakes all = service_.handshakes();
        EXPECT_EQ(all.full, full);
        EXPECT_EQ(all.resumed, resumed);
        EXPECT_EQ(all.offered, offered);
    }
};

// How a service gives its sessions out.
struct Sessions {
    const char* how;
    TlsContext (*change)(TlsContext context);
};

void PrintTo(const Sessions& sessions, std::ostream* out)
{
    *out << sessions.how;
}

class EveryCheckedSession : public CheckedSessions, public testing::WithParamInterface<Sessions>
{
  protected:
    EveryCheckedSession() { show(authority_.issue(for_address())); }

    void show(const Identity& identity)
    {
        service_.set_tls_context(GetParam().change(make_tls_server_context(identity)));
    }
};

constexpr char kNoIssuer[] = "unable to get local issuer certificate";

} // namespace

TEST_P(EveryCheckedSession, PassesAtTheHostWhoseCertificateWasChecked)
{
    expect_accepted();
    expect_accepted();
    expect_handshakes(1, 1, 1);
}

// The service's certificate says nothing of this name.
TEST_P(EveryCheckedSession, IsNotOfferedByAnotherNameOfTheSameService)
{
    expect_accepted();
    expect_refused("hostname mismatch", "localhost");
    expect_handshakes(1, 0, 0);
}

TEST_P(EveryCheckedSession, IsForgottenWhenOtherAuthoritiesAreNamed)
{
    expect_accepted();
    trust(Authority("another").certificate_pem());
    expect_refused(kNoIssuer);
    EXPECT_EQ(service_.handshakes().offered, 0U);
}

TEST_P(EveryCheckedSession, IsNotOneOfATimeWithoutAuthorities)
{
    show(self_signed(for_address()));
    configure("");
    expect_accepted();
    trust(authority_.certificate_pem());
    expect_refused("self-signed certificate");
    EXPECT_EQ(service_.handshakes().offered, 0U);
}

TEST_P(EveryCheckedSession, SparesNoCheckWhereTheServiceDoesNotResumeIt)
{
    expect_accepted();
    show(Authority("another").issue(for_address()));
    expect_refused(kNoIssuer);
    EXPECT_EQ(service_.handshakes().resumed, 0U);
    EXPECT_EQ(service_.handshakes().offered, 1U);
}

TEST_P(EveryCheckedSession, DoesNotComeOfAServiceThatWasRefused)
{
    show(Authority("another").issue(for_address()));
    expect_refused(kNoIssuer);
    expect_refused(kNoIssuer);
    EXPECT_EQ(service_.handshakes().offered, 0U);
}

// It stands for what the certificate was an hour ago, and no longer, however often it was renewed.
TEST_P(EveryCheckedSession, OutlivesItsCertificateByAnHourAtMost)
{
    Clock clock;
    const std::int64_t start = std::time(nullptr);
    clock.set_time(start);
    show(authority_.issue(for_address().valid(-3600, 1800)));
    expect_accepted();
    for (const std::int64_t passed : {1700, 1900, 3599}) {
        clock.set_time(start + passed);
        expect_accepted();
    }
    expect_handshakes(1, 3, 3);
    clock.set_time(start + 3601);
    expect_refused("certificate has expired");
    EXPECT_EQ(service_.handshakes().offered, 3U);
}

INSTANTIATE_TEST_SUITE_P(
    Checked, EveryCheckedSession,
    testing::Values(Sessions{"TLS 1.3 by ticket", [](TlsContext context) { return context; }},
                    Sessions{"TLS 1.3 without tickets",
                             [](TlsContext context) { return without_tickets(std::move(context)); }},
                    Sessions{"TLS 1.2 by ticket", up_to_tls12},
                    Sessions{"TLS 1.2 by id", [](TlsContext context) {
                                 return without_tickets(up_to_tls12(std::move(context)));
                             }}));
