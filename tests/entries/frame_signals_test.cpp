// A peer that hangs up early is an error of the call. The host's signals are its own.
#include "tests/entries/server_fixture.h"

#include <csignal>
#include <ctime>
#include <thread>

using namespace kit;

namespace
{

sigset_t sigpipe_alone()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    return set;
}

bool sigpipe_is_pending()
{
    sigset_t pending;
    sigpending(&pending);
    return sigismember(&pending, SIGPIPE) == 1;
}

bool take_pending_sigpipe()
{
    const sigset_t set = sigpipe_alone();
    const timespec at_once = {0, 0};
    return sigtimedwait(&set, nullptr, &at_once) == SIGPIPE;
}

bool sigpipe_is_blocked()
{
    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    return sigismember(&mask, SIGPIPE) == 1;
}

int g_signals_seen = 0;

// How a host may have disposed of the signal, for the length of a test.
class Disposition
{
  public:
    explicit Disposition(void (*handler)(int))
    {
        struct sigaction action = {};
        action.sa_handler = handler;
        sigaction(SIGPIPE, &action, &old_);
    }
    ~Disposition() { sigaction(SIGPIPE, &old_, nullptr); }
    Disposition(const Disposition&) = delete;
    Disposition& operator=(const Disposition&) = delete;

    static void (*current())(int)
    {
        struct sigaction action = {};
        sigaction(SIGPIPE, nullptr, &action);
        return action.sa_handler;
    }

  private:
    struct sigaction old_ = {};
};

class Signals : public ServerTest
{
  protected:
    // A call with a request that is too long for one write, against a peer that goes away before it is read.
    void call_a_peer_that_goes_away(bool tls)
    {
        const Credential long_credential(std::string(4 << 20, 'c'));
        const ServerHandle source = make_server(session_, tls ? service_.tls_url() : service_.url(), tls);
        for (const Answer::Manner manner : {Answer::Manner::kCloseMidRequest, Answer::Manner::kCloseAtOnce,
                                            Answer::Manner::kResetAtOnce, Answer::Manner::kReset}) {
            service_.script({manner, ""});
            stsp_server_t* target = nullptr;
            EXPECT_EQ(open_target_server()(source.get(), "t", long_credential.get(), "", &target), 2060017);
        }
    }

    void call_peers_that_go_away()
    {
        call_a_peer_that_goes_away(false);
        call_a_peer_that_goes_away(true);
    }
};

} // namespace

TEST_F(Signals, DontEndAHostThatLeavesSigpipeAtItsDefault)
{
    const Disposition by_default(SIG_DFL);
    call_peers_that_go_away();
    EXPECT_EQ(Disposition::current(), SIG_DFL);
    EXPECT_FALSE(sigpipe_is_blocked());
    EXPECT_FALSE(sigpipe_is_pending());
}

TEST_F(Signals, DontReachAHostsHandler)
{
    const auto count = [](int) { ++g_signals_seen; };
    const Disposition handled(count);
    g_signals_seen = 0;
    call_peers_that_go_away();
    EXPECT_EQ(g_signals_seen, 0);
    EXPECT_EQ(Disposition::current(), static_cast<void (*)(int)>(count));
}

TEST_F(Signals, LeaveAHostAloneThatIgnoresSigpipe)
{
    const Disposition ignored(SIG_IGN);
    call_peers_that_go_away();
    EXPECT_EQ(Disposition::current(), SIG_IGN);
    EXPECT_FALSE(sigpipe_is_blocked());
}

TEST_F(Signals, LeaveNothingPendingForAHostThatBlocksSigpipe)
{
    const sigset_t set = sigpipe_alone();
    sigset_t old;
    pthread_sigmask(SIG_BLOCK, &set, &old);
    call_peers_that_go_away();
    EXPECT_FALSE(sigpipe_is_pending());
    EXPECT_TRUE(sigpipe_is_blocked());
    pthread_sigmask(SIG_SETMASK, &old, nullptr);
}

TEST_F(Signals, LeaveAHostThePendingSigpipeOfItsOwn)
{
    const sigset_t set = sigpipe_alone();
    sigset_t old;
    pthread_sigmask(SIG_BLOCK, &set, &old);
    pthread_kill(pthread_self(), SIGPIPE);
    call_peers_that_go_away();
    EXPECT_TRUE(take_pending_sigpipe());
    EXPECT_FALSE(sigpipe_is_pending());
    pthread_sigmask(SIG_SETMASK, &old, nullptr);
}

TEST_F(Signals, StayOpenOnOtherThreadsWhileACallWaits)
{
    // A mask that a call changes is its own thread's.
    const ServerHandle server = make_server(session_, service_.tls_url(), true);
    service_.script({Answer::Manner::kHold, closed().bytes});
    bool blocked_behind_the_call = true;
    std::thread caller([&] {
        auto info = std::make_unique<sts_server_info_v8_t>();
        get_server_prop()(server.get(), info.get());
        blocked_behind_the_call = sigpipe_is_blocked();
    });
    service_.wait_for_requests(1);
    EXPECT_FALSE(sigpipe_is_blocked());
    service_.release();
    caller.join();
    EXPECT_FALSE(blocked_behind_the_call);
}
