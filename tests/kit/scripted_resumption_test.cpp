#include "tests/kit/resumption_kinds.h"
#include "tests/kit/scripted_service.h"

#include <gmock/gmock.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace kit;
using Manner = Answer::Manner;

namespace
{

struct FreeSession {
    void operator()(SSL_SESSION* session) const { SSL_SESSION_free(session); }
};

// A client that offers the last session which it was given.
class Client
{
  public:
    Client() : context_(SSL_CTX_new(TLS_client_method()))
    {
        SSL_CTX_set_session_cache_mode(context_.get(), SSL_SESS_CACHE_CLIENT | SSL_SESS_CACHE_NO_INTERNAL);
        SSL_CTX_sess_set_new_cb(context_.get(), keep);
    }

    // What the service has answered, or how the handshake has failed.
    std::string ask(const ScriptedService& service)
    {
        const int socket = connected_socket(service.port());
        const TlsConnection tls(SSL_new(context_.get()));
        SSL_set_app_data(tls.get(), this);
        SSL_set_fd(tls.get(), socket);
        if (session_) SSL_set_session(tls.get(), session_.get());
        std::string text;
        ERR_clear_error();
        const int connected = SSL_connect(tls.get());
        if (connected != 1) {
            text = failure(SSL_get_error(tls.get(), connected));
        } else {
            SSL_write(tls.get(), "GET / HTTP/1.1\r\n\r\n", 18);
            char buffer[1024];
            int count = 0;
            while ((count = SSL_read(tls.get(), buffer, sizeof buffer)) > 0) {
                text.append(buffer, static_cast<std::size_t>(count));
            }
            SSL_shutdown(tls.get());
        }
        close(socket);
        return text;
    }

    SSL_CTX* context() const { return context_.get(); }
    int sessions_given() const { return sessions_given_; }
    bool has_ticket() const { return session_ && SSL_SESSION_has_ticket(session_.get()) == 1; }

  private:
    static int keep(SSL* tls, SSL_SESSION* session)
    {
        Client& self = *static_cast<Client*>(SSL_get_app_data(tls));
        ++self.sessions_given_;
        self.session_.reset(session);
        return 1; // the reference is ours
    }

    static std::string failure(int error)
    {
        if (error == SSL_ERROR_SYSCALL) return errno == ECONNRESET ? "reset" : "failed otherwise";
        const int reason = ERR_GET_REASON(ERR_peek_error());
        if (reason == SSL_R_UNEXPECTED_EOF_WHILE_READING) return "closed";
        return reason == SSL_AD_REASON_OFFSET + SSL_AD_HANDSHAKE_FAILURE ? "alert" : "garbage";
    }

    static int connected_socket(int port)
    {
        const int made = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        EXPECT_EQ(connect(made, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        return made;
    }

    TlsContext context_;
    std::unique_ptr<SSL_SESSION, FreeSession> session_;
    int sessions_given_ = 0;
};

class Resumption : public testing::TestWithParam<ResumptionKind>
{
  protected:
    Resumption() { service_.set_tls_context(GetParam().make_context()); }

    void expect_handshakes(std::size_t full, std::size_t resumed, std::size_t offered) const
    {
        const Handshakes counted = service_.handshakes();
        EXPECT_EQ(counted.full, full);
        EXPECT_EQ(counted.resumed, resumed);
        EXPECT_EQ(counted.offered, offered);
    }

    ScriptedService service_{[](const Request&) { return std::string("chosen"); }};
    Client client_;
};

INSTANTIATE_TEST_SUITE_P(Kinds, Resumption, testing::ValuesIn(kResumptionKinds),
                         [](const auto& instance) { return std::string(instance.param.name); });

} // namespace

TEST_P(Resumption, IsToldOfEachRequestAndCounted)
{
    for (int i = 0; i < 3; ++i) EXPECT_EQ(client_.ask(service_), "chosen");
    const std::vector<Request> requests = service_.requests();
    ASSERT_EQ(requests.size(), 3U);
    for (const Request& request : requests) EXPECT_EQ(request.tls_version, GetParam().version);
    EXPECT_FALSE(requests[0].resumed);
    EXPECT_TRUE(requests[1].resumed);
    EXPECT_TRUE(requests[2].resumed);
    expect_handshakes(1, 2, 2);
}

TEST_P(Resumption, IsNotTakenToBeOfferedByAClientWithoutASession)
{
    for (int i = 0; i < 3; ++i) {
        service_.script({Manner::kCloseAtResumption, "answered"});
        EXPECT_EQ(Client().ask(service_), "answered");
    }
    expect_handshakes(3, 0, 0);
}

TEST_P(Resumption, IsOfferedInVainOnceTheContextIsAnother)
{
    client_.ask(service_);
    service_.set_tls_context(GetParam().make_context());
    EXPECT_EQ(client_.ask(service_), "chosen");
    EXPECT_FALSE(service_.requests().at(1).resumed);
    expect_handshakes(2, 0, 1);
}

TEST_P(Resumption, IsOfferedByAClientThatKnowsNoTls13)
{
    SSL_CTX_set_max_proto_version(client_.context(), TLS1_2_VERSION);
    client_.ask(service_);
    client_.ask(service_);
    EXPECT_TRUE(service_.requests().at(1).resumed);
    expect_handshakes(1, 1, 1);
}

TEST_P(Resumption, IsAnsweredAsScripted)
{
    const std::pair<Manner, const char*> kinds[] = {{Manner::kAlertAtResumption, "alert"},
                                                    {Manner::kGarbageAtResumption, "garbage"},
                                                    {Manner::kCloseAtResumption, "closed"},
                                                    {Manner::kResetAtResumption, "reset"}};
    for (const auto& [manner, failure] : kinds) {
        Client client;
        service_.script({{manner, "in full"}, {manner, "never sent"}});
        EXPECT_EQ(client.ask(service_), "in full");
        EXPECT_EQ(client.ask(service_), failure);
    }
    expect_handshakes(4, 0, 4);
}

TEST_P(Resumption, IsLeftUnansweredUntilReleased)
{
    client_.ask(service_);
    service_.script({Manner::kSilentAtResumption, "never sent"});
    std::atomic<bool> ended{false};
    std::thread waiting([&] {
        EXPECT_EQ(client_.ask(service_), "closed");
        ended = true;
    });
    service_.wait_for_connections(2);
    EXPECT_EQ(Client().ask(service_), "chosen");
    EXPECT_FALSE(ended);
    service_.release();
    waiting.join();
    expect_handshakes(2, 0, 1);
}

TEST(Tickets, AreGivenOutAsManyAsAreAskedFor)
{
    ScriptedService service{[](const Request&) { return std::string("chosen"); }};
    service.set_tls_context(with_tickets(make_tls_server_context(), 7));
    Client client;
    client.ask(service);
    EXPECT_EQ(client.sessions_given(), 7);
}

TEST(Tickets, AreNotGivenOutByAServiceThatKeepsItsSessions)
{
    ScriptedService service{[](const Request&) { return std::string("chosen"); }};
    Client client;
    service.set_tls_context(up_to_tls12(make_tls_server_context()));
    client.ask(service);
    EXPECT_TRUE(client.has_ticket());
    service.set_tls_context(without_tickets(up_to_tls12(make_tls_server_context())));
    client.ask(service);
    EXPECT_EQ(client.sessions_given(), 2);
    EXPECT_FALSE(client.has_ticket());
}
