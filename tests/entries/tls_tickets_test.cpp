// Services that give out tickets in great number, or of great size.
#include "tests/entries/tls_session_fixture.h"
#include "tests/kit/live_tls_sessions.h"

#include <openssl/ssl.h>

#include <optional>
#include <utility>

using namespace kit;

namespace
{

constexpr std::size_t kTickets = 200;
constexpr int kCalls = 30;

class TlsTickets : public TlsSessionTest
{
};

class TlsLargeTickets : public TlsSessionTest, public testing::WithParamInterface<int>
{
  protected:
    // A service whose tickets hold so many bytes of its own.
    TlsContext with_large_tickets()
    {
        TlsContext context = make_tls_server_context();
        SSL_CTX_set_max_proto_version(context.get(), GetParam());
        SSL_CTX_set_session_ticket_cb(context.get(), fill_ticket, nullptr, this);
        return context;
    }

    std::size_t size_ = 0;

  private:
    static int fill_ticket(SSL* tls, void* test)
    {
        const std::string data(static_cast<TlsLargeTickets*>(test)->size_, 'x');
        return SSL_SESSION_set1_ticket_appdata(SSL_get_session(tls), data.data(), data.size());
    }
};

INSTANTIATE_TEST_SUITE_P(Versions, TlsLargeTickets, testing::Values(TLS1_2_VERSION, TLS1_3_VERSION),
                         [](const auto& tested) {
                             return tested.param == TLS1_3_VERSION ? "Tls13" : "Tls12";
                         });

} // namespace

TEST_F(TlsTickets, AreAskedForAndOfferedInBothVersions)
{
    for (const int version : {TLS1_2_VERSION, TLS1_3_VERSION}) {
        SCOPED_TRACE(version);
        TlsContext context = make_tls_server_context();
        SSL_CTX_set_max_proto_version(context.get(), version);
        // Nor does the service find a session by its id.
        SSL_CTX_set_session_cache_mode(context.get(), SSL_SESS_CACHE_OFF);
        service_.set_tls_context(std::move(context));
        host().initialise();
        call();
        EXPECT_FALSE(service_.requests().back().resumed);
        call();
        EXPECT_TRUE(service_.requests().back().resumed);
    }
}

TEST_F(TlsTickets, InGreatNumberLeaveOneSessionForEachConnection)
{
    const LiveTlsSessions sessions;
    std::optional<ScriptedService> service(std::in_place);
    service->set_tls_context(with_tickets(make_tls_server_context(), kTickets));
    for (int i = 0; i < kCalls; ++i) {
        service->script(closed());
        EXPECT_EQ(close(service->tls_url(), true), 0);
    }
    expect_handshakes(*service, 1, kCalls - 1, kCalls - 1);
    service.reset(); // which has sessions too
    EXPECT_EQ(sessions.count(), 1);
    host().initialise();
    EXPECT_EQ(sessions.count(), 0);
}

TEST_F(TlsTickets, OfCallsThatFailLeaveNothing)
{
    const LiveTlsSessions sessions;
    std::optional<ScriptedService> service(std::in_place);
    service->set_tls_context(with_tickets(make_tls_server_context(), kTickets));
    for (int i = 0; i < kCalls; ++i) {
        service->script({Answer::Manner::kReply, http_message("", 404, "Not Found")});
        EXPECT_EQ(close(service->tls_url(), true), 2060017);
    }
    service.reset();
    EXPECT_EQ(sessions.count(), 0);
}

TEST_P(TlsLargeTickets, AreOfferedUpToSixteenKibibytes)
{
    for (const std::size_t size : {1000U, 8000U, 16000U}) {
        SCOPED_TRACE(size);
        size_ = size;
        service_.set_tls_context(with_large_tickets());
        host().initialise();
        const Handshakes before = service_.handshakes();
        for (int i = 0; i < 3; ++i) call();
        expect_handshakes(before.full + 1, before.resumed + 2, before.offered + 2);
    }
}

TEST_P(TlsLargeTickets, ArentOfferedBeyond)
{
    for (const std::size_t size : {16384U, 40000U, 60000U}) {
        SCOPED_TRACE(size);
        size_ = size;
        service_.set_tls_context(with_large_tickets());
        host().initialise();
        const Handshakes before = service_.handshakes();
        for (int i = 0; i < 3; ++i) call();
        expect_handshakes(before.full + 3, before.resumed, before.offered);
    }
}

// The largest that the service can make: in TLS 1.3 the client's first message has no room for it.
TEST_P(TlsLargeTickets, CostACallNoConnectionMore)
{
    constexpr std::size_t kTooLarge = 65500;
    constexpr std::size_t kStep = 10;
    size_ = kTooLarge;
    service_.set_tls_context(with_large_tickets());
    do {
        size_ -= kStep;
        service_.script(closed());
    } while (close_over_tls() != 0);
    EXPECT_GT(size_, 60000U);
    const std::size_t connections = service_.connections();
    for (std::size_t i = 1; i <= 5; ++i) {
        call();
        EXPECT_EQ(service_.connections(), connections + i);
    }
}
