// A host's signal handler that was installed without SA_RESTART, and that runs on a thread while it is in a
// call: the call goes on as if nothing had been.
#include "tests/entries/server_fixture.h"

#include <pthread.h>

#include <csignal>
#include <thread>

using namespace kit;
using Manner = Answer::Manner;

namespace
{

constexpr int kSignals = 100;

// More than the runtime's own waits put up with.
volatile std::sig_atomic_t g_handled = 0;

class Interruptions : public ServerTest
{
  protected:
    Interruptions()
    {
        struct sigaction count = {};
        count.sa_handler = [](int) { g_handled = g_handled + 1; };
        sigaction(SIGUSR1, &count, &old_action_); // without SA_RESTART
        g_handled = 0;
    }
    ~Interruptions() override { sigaction(SIGUSR1, &old_action_, nullptr); }

    // Each signal is handled before the next one is sent, so that none is merged with another.
    static void interrupt(std::thread& thread)
    {
        for (int i = 0; i < kSignals; ++i) {
            pthread_kill(thread.native_handle(), SIGUSR1);
            while (g_handled <= i) std::this_thread::yield();
        }
    }

    // A call with a credential of this size, interrupted while the service keeps silent in this manner.
    void call_interrupted(Manner manner, bool tls, std::size_t size)
    {
        const Credential credential(std::string(size, 'c'));
        ServerHandle source = make_server(session_, tls ? service_.tls_url() : service_.url(), tls);
        service_.script({manner, answer(reply("openTargetServerResponse",
                                              element("targetServerHandle", element("token", "new"))))
                                     .bytes});
        stsp_server_t* target = nullptr;
        int status = -1;
        std::thread caller(
            [&] { status = open_target_server()(source.get(), "t", credential.get(), "", &target); });
        service_.wait_for_connections(1);
        if (manner == Manner::kHold) service_.wait_for_requests(1);
        interrupt(caller);
        service_.release();
        caller.join();
        EXPECT_EQ(status, 0);
        const ServerHandle owner(target);
        ASSERT_NE(target, nullptr);
        EXPECT_STREQ(target->service_handle, "new");
        EXPECT_EQ(service_.connections(), 1U) << "nothing is sent twice";
        ASSERT_EQ(service_.requests().size(), 1U);
        EXPECT_GT(service_.requests()[0].body.size(), size);
    }

  private:
    struct sigaction old_action_ = {};
};

} // namespace

TEST_F(Interruptions, DontSpoilAPlainCallThatReceives)
{
    call_interrupted(Manner::kHold, false, 3);
}

TEST_F(Interruptions, DontSpoilATlsCallThatReceives)
{
    call_interrupted(Manner::kHold, true, 3);
}

TEST_F(Interruptions, DontSpoilAPlainCallThatSends)
{
    call_interrupted(Manner::kLateRead, false, 16 << 20);
}

TEST_F(Interruptions, DontSpoilATlsCallThatSends)
{
    call_interrupted(Manner::kLateRead, true, 16 << 20);
}

TEST_F(Interruptions, DontSpoilATlsHandshake)
{
    call_interrupted(Manner::kLateHandshake, true, 3);
}
