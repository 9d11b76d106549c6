// A service that won't resume the session which it gave out, politely or not: the call is to succeed as one
// that never had a session.
#include "tests/entries/runtime_hooks.h"
#include "tests/entries/tls_session_fixture.h"

#include <openssl/ssl.h>

#include <utility>

using namespace kit;
using Manner = Answer::Manner;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

const std::pair<const char*, Manner> kRefusals[] = {{"alert", Manner::kAlertAtResumption},
                                                    {"garbage", Manner::kGarbageAtResumption},
                                                    {"close", Manner::kCloseAtResumption},
                                                    {"reset", Manner::kResetAtResumption}};

Answer http_error()
{
    return {Manner::kReply, http_message("", 404, "Not Found")};
}

class TlsServiceChange : public TlsSessionTestOfKinds
{
};

class TlsRefusedResumption : public TlsSessionTestOfKinds
{
  protected:
    // What the refused connection gets, and the one behind it.
    void script_refusal(Manner manner)
    {
        service_.script({{manner, closed().bytes}, {manner, closed().bytes}});
    }
};

class TlsFailedResumption : public TlsSessionTest
{
};

INSTANTIATE_TEST_SUITE_P(Kinds, TlsServiceChange, testing::ValuesIn(kResumptionKinds), kind_name);
INSTANTIATE_TEST_SUITE_P(Kinds, TlsRefusedResumption, testing::ValuesIn(kResumptionKinds), kind_name);

// Makes the tickets of one service those of the other.
void share_ticket_keys(SSL_CTX* from, SSL_CTX* to)
{
    unsigned char keys[80];
    ASSERT_EQ(SSL_CTX_get_tlsext_ticket_keys(from, keys, sizeof keys), 1);
    ASSERT_EQ(SSL_CTX_set_tlsext_ticket_keys(to, keys, sizeof keys), 1);
}

} // namespace

// Its certificate, the keys of its tickets, and how it resumes sessions at all.
TEST_P(TlsServiceChange, BetweenTwoCallsIsMetByAFullHandshake)
{
    std::size_t rounds = 0;
    for (const ResumptionKind& other : kResumptionKinds) {
        SCOPED_TRACE(other.name);
        ++rounds;
        host().initialise();
        service_.set_tls_context(GetParam().make_context());
        call();
        service_.set_tls_context(other.make_context());
        call();
        EXPECT_EQ(service_.requests().back().tls_version, other.version);
        call();
        EXPECT_EQ(service_.connections(), 3 * rounds);
        const Handshakes counted = service_.handshakes();
        EXPECT_EQ(counted.full, 2 * rounds);
        EXPECT_EQ(counted.resumed, rounds);
    }
}

TEST_P(TlsServiceChange, OfTheVersionAloneIsMetByAFullHandshake)
{
    for (const ResumptionKind& other : kResumptionKinds) {
        if (other.version == GetParam().version) continue;
        SCOPED_TRACE(other.name);
        host().initialise();
        TlsContext first = GetParam().make_context();
        TlsContext second = other.make_context();
        share_ticket_keys(first.get(), second.get());
        service_.set_tls_context(std::move(first));
        call();
        service_.set_tls_context(std::move(second));
        call();
        EXPECT_EQ(service_.requests().back().tls_version, other.version);
        EXPECT_FALSE(service_.requests().back().resumed);
    }
    EXPECT_EQ(service_.connections(), 4U);
}

TEST_P(TlsRefusedResumption, IsFollowedByAFullHandshakeOnAnotherConnection)
{
    std::size_t rounds = 0;
    for (const auto& [name, manner] : kRefusals) {
        SCOPED_TRACE(name);
        ++rounds;
        host().initialise();
        call();
        script_refusal(manner);
        EXPECT_EQ(close_over_tls(), 0);
        EXPECT_EQ(service_.requests().size(), 2 * rounds) << "the request is sent once";
        EXPECT_EQ(service_.connections(), 3 * rounds);
        expect_handshakes(2 * rounds, 0, rounds);
    }
}

TEST_P(TlsRefusedResumption, LeavesTheLinesOfAnyOtherCall)
{
    for (const auto& [name, manner] : kRefusals) {
        SCOPED_TRACE(name);
        call();
        const std::vector<LogLine> lines = session_.lines();
        script_refusal(manner);
        EXPECT_EQ(close_over_tls(), 0);
        EXPECT_EQ(session_.lines(), lines);
    }
}

TEST_P(TlsRefusedResumption, DoesNotEndResumptionForGood)
{
    call();
    script_refusal(Manner::kAlertAtResumption);
    EXPECT_EQ(close_over_tls(), 0);
    call();
    expect_handshakes(2, 1, 2);
}

TEST_P(TlsRefusedResumption, LeavesNoSessionOfThatServerToOffer)
{
    for (const auto& [name, manner] : kRefusals) {
        SCOPED_TRACE(name);
        host().initialise();
        call();
        calls_together(3);
        const std::size_t offered = meeting_service_.handshakes().offered;
        // The second connection leaves no session either.
        meeting_service_.script({{manner, ""}, http_error()});
        EXPECT_EQ(close(meeting_service_.tls_url(), true), 2060017);
        calls_together(3);
        EXPECT_EQ(meeting_service_.handshakes().offered, offered + 1);
        const std::size_t resumed = service_.handshakes().resumed;
        call();
        EXPECT_EQ(service_.handshakes().resumed, resumed + 1) << "of another server";
    }
}

TEST_P(TlsRefusedResumption, DoesNotMakeDiscoveryTurnToAPlainConnection)
{
    const std::string name = own_name("127.0.0.1:" + std::to_string(service_.port()) + "/x");
    const Answer answer = discovered({"11;1;2;https;" + service_.tls_url()});
    call();
    service_.script({{Manner::kCloseAtResumption, answer.bytes}, {Manner::kCloseAtResumption, answer.bytes}});
    const auto info = std::make_unique<sts_server_info_v8_t>();
    EXPECT_EQ(get_server_prop_byname()(session_.get(), name.c_str(), info.get()), 0);
    EXPECT_TRUE(service_.requests().back().tls);
    EXPECT_EQ(service_.connections(), 3U);
}

TEST_P(TlsRefusedResumption, ComesToWhatTheFullHandshakeBehindItComesTo)
{
    configure("tls_min_version = 1.2\n");
    for (const Manner manner : {Manner::kCloseAtOnce, Manner::kResetAtOnce, Manner::kRefuseHandshake}) {
        call();
        service_.script({{Manner::kAlertAtResumption, ""}, {manner, ""}});
        const std::size_t before = service_.connections();
        EXPECT_EQ(close_over_tls(), 2060017);
        EXPECT_EQ(service_.connections(), before + 2) << "and there is no third";
        const std::vector<LogLine> lines = session_.lines();
        ASSERT_EQ(lines.size(), 4U);
        EXPECT_EQ(lines[2], return_code("stspi_close_server", 30));
        EXPECT_EQ(lines[3].level, 4);
        EXPECT_THAT(lines[3].text, HasSubstr("SSL/TLS handshake failed"));
    }
}

// With a session and without one the service's alert is the same.
TEST_F(TlsFailedResumption, FailsLikeACallWithoutASession)
{
    configure("tls_min_version = 1.3\n");
    call();
    service_.set_tls_context(up_to_tls12(make_tls_server_context()));
    service_.script(closed());
    failing_call(closed());
    const std::vector<LogLine> with_session = session_.lines();
    EXPECT_EQ(service_.connections(), 3U);
    failing_call(closed());
    EXPECT_EQ(service_.connections(), 4U);
    EXPECT_EQ(with_session, session_.lines());
    EXPECT_EQ(service_.handshakes().offered, 1U);
}

TEST_F(TlsFailedResumption, IsNotTriedAgainOnceTheTimeIsUp)
{
    configure("connect_timeout = 3\n");
    call();
    service_.script({Manner::kSilentAtResumption, ""});
    {
        const hooks::PassedLimits limits;
        EXPECT_EQ(close_over_tls(), 2060017);
        EXPECT_THAT(limits.limits(), ElementsAre(3000));
    }
    EXPECT_THAT(session_.lines().back().text, HasSubstr("\"Timeout\"\nDetail: SSL_connect() failed"));
    service_.wait_for_connections(2);
    service_.release();
    call();
    EXPECT_FALSE(service_.requests().back().resumed);
    EXPECT_EQ(service_.connections(), 3U);
}
