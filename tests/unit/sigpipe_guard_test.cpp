#include "service/sigpipe_guard.h"

#include <gmock/gmock.h>

#include <ctime>
#include <optional>
#include <thread>

using soapwrapper::SigpipeGuard;

namespace
{

sigset_t only(int signal)
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    return set;
}

bool is_blocked(int signal)
{
    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    return sigismember(&mask, signal) == 1;
}

bool is_pending(int signal)
{
    sigset_t pending;
    sigpending(&pending);
    return sigismember(&pending, signal) == 1;
}

void raise_sigpipe()
{
    pthread_kill(pthread_self(), SIGPIPE);
}

bool take_pending_sigpipe()
{
    const sigset_t set = only(SIGPIPE);
    const timespec at_once = {0, 0};
    return sigtimedwait(&set, nullptr, &at_once) == SIGPIPE;
}

// SIGPIPE blocked by the host, for the length of a test.
class BlockedByTheHost
{
  public:
    BlockedByTheHost()
    {
        const sigset_t set = only(SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &set, &old_);
    }
    ~BlockedByTheHost()
    {
        take_pending_sigpipe();
        pthread_sigmask(SIG_SETMASK, &old_, nullptr);
    }
    BlockedByTheHost(const BlockedByTheHost&) = delete;
    BlockedByTheHost& operator=(const BlockedByTheHost&) = delete;

  private:
    sigset_t old_;
};

} // namespace

TEST(SigpipeGuard, BlocksTheSignalForItsScopeOnly)
{
    ASSERT_FALSE(is_blocked(SIGPIPE));
    {
        const SigpipeGuard guard;
        EXPECT_TRUE(is_blocked(SIGPIPE));
    }
    EXPECT_FALSE(is_blocked(SIGPIPE));
}

TEST(SigpipeGuard, TakesAwayASignalOfItsScope)
{
    {
        const SigpipeGuard guard;
        raise_sigpipe();
    }
    // The default action would have ended the program by now.
    EXPECT_FALSE(is_pending(SIGPIPE));
}

TEST(SigpipeGuard, TakesAwayASignalOfItsScopeWhereTheHostBlocksIt)
{
    const BlockedByTheHost host;
    {
        const SigpipeGuard guard;
        raise_sigpipe();
    }
    EXPECT_FALSE(is_pending(SIGPIPE));
    EXPECT_TRUE(is_blocked(SIGPIPE));
}

TEST(SigpipeGuard, LeavesTheHostItsPendingSignal)
{
    const BlockedByTheHost host;
    raise_sigpipe();
    {
        const SigpipeGuard guard;
    }
    EXPECT_TRUE(take_pending_sigpipe());
}

TEST(SigpipeGuard, LeavesTheHostItsPendingSignalBesideOneOfItsScope)
{
    const BlockedByTheHost host;
    raise_sigpipe();
    {
        const SigpipeGuard guard;
        raise_sigpipe();
    }
    EXPECT_TRUE(take_pending_sigpipe());
}

TEST(SigpipeGuard, LeavesOtherSignalsAlone)
{
    const sigset_t usr1 = only(SIGUSR1);
    sigset_t old;
    pthread_sigmask(SIG_BLOCK, &usr1, &old);
    {
        const SigpipeGuard guard;
        EXPECT_TRUE(is_blocked(SIGUSR1));
        EXPECT_FALSE(is_blocked(SIGUSR2));
    }
    EXPECT_TRUE(is_blocked(SIGUSR1));
    EXPECT_FALSE(is_blocked(SIGUSR2));
    pthread_sigmask(SIG_SETMASK, &old, nullptr);
}

TEST(SigpipeGuard, LeavesTheDispositionAlone)
{
    struct sigaction before = {};
    struct sigaction within = {};
    struct sigaction after = {};
    sigaction(SIGPIPE, nullptr, &before);
    {
        const SigpipeGuard guard;
        sigaction(SIGPIPE, nullptr, &within);
    }
    sigaction(SIGPIPE, nullptr, &after);
    EXPECT_EQ(within.sa_handler, before.sa_handler);
    EXPECT_EQ(after.sa_handler, before.sa_handler);
}

TEST(SigpipeGuard, LeavesOtherThreadsAlone)
{
    const SigpipeGuard guard;
    bool blocked = true;
    std::thread other([&] {
        const sigset_t set = only(SIGPIPE);
        pthread_sigmask(SIG_UNBLOCK, &set, nullptr); // it inherited the mask
        {
            const SigpipeGuard own;
        }
        blocked = is_blocked(SIGPIPE);
    });
    other.join();
    EXPECT_FALSE(blocked);
    EXPECT_TRUE(is_blocked(SIGPIPE));
}

TEST(SigpipeGuard, NestsWithinAnother)
{
    std::optional<SigpipeGuard> outer(std::in_place);
    {
        const SigpipeGuard inner;
        raise_sigpipe();
    }
    EXPECT_TRUE(is_blocked(SIGPIPE));
    EXPECT_FALSE(is_pending(SIGPIPE));
    outer.reset();
    EXPECT_FALSE(is_blocked(SIGPIPE));
}
