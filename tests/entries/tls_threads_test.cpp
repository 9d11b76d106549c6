// The host's threads share what the library keeps of TLS: its context, and the sessions that services gave
// out.
#include "tests/entries/channel_fixture.h"
#include "tests/kit/certificate.h"

#include <cstddef>
#include <deque>
#include <thread>
#include <vector>

using namespace kit;
using Manner = Answer::Manner;

namespace
{

constexpr std::size_t kThreads = 16;
constexpr std::size_t kCallsPerThread = 15;
constexpr std::size_t kCalls = kThreads * kCallsPerThread;

class TlsThreads : public Channel
{
  protected:
    // Each thread calls the services in turn, and each call is answered.
    void call_on_all_threads(std::deque<ScriptedService>& services)
    {
        std::vector<std::thread> threads;
        for (std::size_t thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&services, thread] {
                RecordedSession session;
                const auto info = std::make_unique<sts_server_info_v8_t>();
                for (std::size_t call = 0; call < kCallsPerThread; ++call) {
                    const ScriptedService& service = services[(thread + call) % services.size()];
                    const ServerHandle server = make_server(session, service.tls_url(), true);
                    EXPECT_EQ(get_server_prop()(server.get(), info.get()), 0);
                    EXPECT_STREQ(info->server, "the server");
                }
            });
        }
        for (std::thread& thread : threads) thread.join();
    }

    static std::string properties()
    {
        return http_message(reply("getServerPropResponse", information(interfaces({"11;1;2;http;u"}))));
    }
    static std::string answer_always(const Request& /*request*/) { return properties(); }
};

} // namespace

// A thread goes without a session only while all that there are serve other threads.
TEST_F(TlsThreads, ResumeTheSessionsThatOthersLeftAtOneService)
{
    std::deque<ScriptedService> services;
    services.emplace_back(answer_always);
    call_on_all_threads(services);
    const Handshakes counted = services[0].handshakes();
    EXPECT_LE(counted.full, kThreads);
    EXPECT_EQ(counted.full + counted.resumed, kCalls);
    EXPECT_EQ(counted.offered, counted.resumed);
}

TEST_F(TlsThreads, ResumeTheSessionsOfEachServiceAtThatService)
{
    std::deque<ScriptedService> services;
    for (int i = 0; i < 3; ++i) services.emplace_back(answer_always);
    services[1].set_tls_context(up_to_tls12(make_tls_server_context()));
    services[2].set_tls_context(without_tickets(make_tls_server_context()));
    call_on_all_threads(services);
    std::size_t calls = 0;
    for (const ScriptedService& service : services) {
        const Handshakes counted = service.handshakes();
        EXPECT_LE(counted.full, kThreads);
        EXPECT_EQ(counted.offered, counted.resumed);
        calls += counted.full + counted.resumed;
    }
    EXPECT_EQ(calls, kCalls);
}

// While some threads forget the service's sessions, others take and keep them.
TEST_F(TlsThreads, SucceedAtAServiceThatRefusesEachResumption)
{
    std::deque<ScriptedService> services(1);
    const Manner refusals[] = {Manner::kAlertAtResumption, Manner::kGarbageAtResumption,
                               Manner::kCloseAtResumption, Manner::kResetAtResumption};
    // A call makes two connections at most.
    for (std::size_t i = 0; i < 2 * kCalls; ++i) services[0].script({refusals[i % 4], properties()});
    call_on_all_threads(services);
    EXPECT_EQ(services[0].requests().size(), kCalls);
    const Handshakes counted = services[0].handshakes();
    EXPECT_EQ(counted.full, kCalls);
    EXPECT_GT(counted.offered, 0U);
}
