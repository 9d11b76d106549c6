// A handshake resumes a session that the service gave out: which sessions are kept, for whom, and how long.
#include "tests/entries/async_fixture.h"
#include "tests/entries/tls_session_fixture.h"

#include <openssl/ssl.h>

#include <ctime>
#include <utility>

using namespace kit;
using Manner = Answer::Manner;

namespace
{

constexpr int kMostPerServer = 32;

class TlsSessions : public TlsSessionTestOfKinds
{
};

class TlsSessionsOfServers : public TlsSessionTest
{
};

class TlsSessionsAndTime : public TlsSessionTestOfKinds
{
  protected:
    TlsSessionsAndTime() { clock_.set_time(begin_); }

    void call_at(std::int64_t seconds)
    {
        clock_.set_time(begin_ + seconds);
        call();
    }

    std::int64_t begin_ = std::time(nullptr);
    Clock clock_;
};

class TlsSessionsOfEntries : public TlsSessionTest
{
  protected:
    // Both well-known URLs lead to the service: the path takes their ports.
    std::string name() const { return own_name("127.0.0.1:" + std::to_string(service_.port()) + "/x"); }
    Answer offers_tls() const { return discovered({"11;1;2;https;" + service_.tls_url()}); }
    int discover_service()
    {
        const auto info = std::make_unique<sts_server_info_v8_t>();
        return get_server_prop_byname()(session_.get(), name().c_str(), info.get());
    }
};

INSTANTIATE_TEST_SUITE_P(Kinds, TlsSessions, testing::ValuesIn(kResumptionKinds), kind_name);
INSTANTIATE_TEST_SUITE_P(Kinds, TlsSessionsAndTime, testing::ValuesIn(kResumptionKinds), kind_name);

} // namespace

TEST_P(TlsSessions, AreResumedByTheCallsThatFollow)
{
    for (int i = 0; i < 4; ++i) call();
    const std::vector<Request> requests = service_.requests();
    ASSERT_EQ(requests.size(), 4U);
    for (const Request& request : requests) EXPECT_EQ(request.tls_version, GetParam().version);
    expect_handshakes(1, 3, 3);
}

TEST_P(TlsSessions, LeaveALogLineNoTrace)
{
    call();
    const std::vector<LogLine> lines = session_.lines();
    call();
    EXPECT_EQ(session_.lines(), lines);
    expect_handshakes(1, 1, 1);
}

TEST_P(TlsSessions, AreKeptWhereTheServiceAnswersWithAFault)
{
    failing_call(fault_answer(fault(2060013)), 2060013);
    failing_call(fault_answer(fault(2060013)), 2060013);
    call();
    expect_handshakes(1, 2, 2);
}

// Each failure both in the call that made the full handshake and in one that resumed.
TEST_P(TlsSessions, AreNotKeptOfACallThatFailed)
{
    const std::pair<const char*, Answer> failures[] = {
        {"an HTTP error", {Manner::kReply, http_message("", 404, "Not Found")}},
        {"an HTTP error with a text", {Manner::kReply, http_message("<html/>", 503, "Unavailable")}},
        {"a reply that can't be read", {Manner::kReply, http_message("<unreadable")}},
        {"a reply of no HTTP", {Manner::kReply, "hello"}},
        {"a reset", {Manner::kReset, ""}},
        {"a reply that is cut", {Manner::kReset, closed().bytes.substr(0, closed().bytes.size() - 40)}},
        {"an end ahead of the reply", {Manner::kReply, ""}}};
    std::size_t rounds = 0;
    for (const auto& [name, failure] : failures) {
        SCOPED_TRACE(name);
        ++rounds;
        failing_call(failure); // in full
        call();                // in full, for want of a session
        failing_call(failure); // resumed
        expect_handshakes(2 * rounds, rounds, rounds);
    }
}

TEST_P(TlsSessions, ArePassedOnByEachConnectionToTheNext)
{
    // A service that takes each session once hands out the next with it.
    for (int i = 0; i < 40; ++i) call();
    expect_handshakes(1, 39, 39);
}

TEST_P(TlsSessions, AreUsedByOneConnectionAtATime)
{
    calls_together(1);
    calls_together(2);
    expect_handshakes(meeting_service_, 2, 1, 1);
    calls_together(2);
    expect_handshakes(meeting_service_, 2, 3, 3);
}

TEST_P(TlsSessions, AreKeptUpToSoManyOfAServer)
{
    calls_together(kMostPerServer + 3);
    calls_together(kMostPerServer + 3);
    expect_handshakes(meeting_service_, kMostPerServer + 6, kMostPerServer, kMostPerServer);
}

TEST_P(TlsSessions, AreForgottenWhenTheHostInitialises)
{
    calls_together(2);
    host().initialise();
    calls_together(2);
    expect_handshakes(meeting_service_, 4, 0, 0);
}

TEST_P(TlsSessionsAndTime, AreOfferedForAnHourAfterTheFullHandshakeHoweverOftenTheyWereResumed)
{
    call_at(0);
    for (const std::int64_t seconds : {1, 1800, 3599}) call_at(seconds);
    expect_handshakes(1, 3, 3);
    call_at(3600);
    expect_handshakes(2, 3, 3);
    call_at(7199);
    expect_handshakes(2, 4, 4);
    call_at(7200);
    expect_handshakes(3, 4, 4);
}

TEST_P(TlsSessionsAndTime, ArentOfferedOnceTheyAreAnHourOld)
{
    calls_together(3);
    clock_.set_time(begin_ + 3600);
    calls_together(3);
    expect_handshakes(meeting_service_, 6, 0, 0);
}

TEST_F(TlsSessionsOfServers, AreForTheHostAsTheUrlWritesIt)
{
    const std::string by_name = "https://localhost:" + std::to_string(service_.port());
    call();
    service_.script(closed());
    EXPECT_EQ(close(by_name, true), 0);
    expect_handshakes(2, 0, 0);
    service_.script(closed());
    EXPECT_EQ(close(by_name, true), 0);
    call();
    expect_handshakes(2, 2, 2);
}

TEST_F(TlsSessionsOfServers, AreForOnePort)
{
    ScriptedService other;
    other.script({closed(), closed()});
    call();
    EXPECT_EQ(close(other.tls_url(), true), 0);
    expect_handshakes(other, 1, 0, 0);
    EXPECT_EQ(close(other.tls_url(), true), 0);
    call();
    expect_handshakes(other, 1, 1, 1);
    expect_handshakes(1, 1, 1);
}

TEST_F(TlsSessionsOfServers, ArePartOfTheSameServerWhateverThePath)
{
    call();
    service_.script(closed());
    EXPECT_EQ(close(service_.tls_url() + "/elsewhere", true), 0);
    expect_handshakes(1, 1, 1);
}

TEST_F(TlsSessionsOfServers, AreNotTakenByAPlainCall)
{
    call();
    service_.script(closed());
    EXPECT_EQ(close_plainly(), 0);
    call();
    expect_handshakes(1, 1, 1);
}

TEST_F(TlsSessionsOfEntries, AreResumedByEachRequestOfAWait)
{
    const Clock clock;
    const ServerHandle server = make_server(session_, service_.tls_url(), true);
    const AsyncHandle async = make_async(server.get());
    const auto result = [](int error) {
        return answer(reply("asyncWaitResponse",
                            element("result", nil("image") + number("bytesTransferred", 1) +
                                                  number("error", error) + number("delayInSeconds", 1))));
    };
    service_.script({result(2060005), result(2060005), result(2060005), result(0)});
    sts_async_result_t record;
    EXPECT_EQ(main_slot<decltype(stspi_async_wait)>(2)(session_.get(), async.get(), 1, &record), 0);
    EXPECT_EQ(record.aio_error, 0U);
    expect_handshakes(1, 3, 3);
}

TEST_F(TlsSessionsOfEntries, AreResumedByDiscoveryAndByTheLoginBehindIt)
{
    service_.script({offers_tls(), offers_tls(), opened()});
    EXPECT_EQ(discover_service(), 0);
    EXPECT_EQ(discover_service(), 0);
    stsp_server_t* server = nullptr;
    EXPECT_EQ(open(name(), &server), 0);
    const ServerHandle owner(server);
    EXPECT_TRUE(owner && owner->use_https);
    expect_handshakes(1, 2, 2);
}

// Over TLS the service fails discovery, and answers it plainly.
TEST_F(TlsSessionsOfEntries, AreNotKeptOfADiscoveryThatFailedOverTls)
{
    service_.script({{Manner::kReply, http_message("", 404, "Not Found")}, offers_tls()});
    EXPECT_EQ(discover_service(), 0);
    call();
    expect_handshakes(2, 0, 0);
}
