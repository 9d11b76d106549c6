#include "service/sigpipe_guard.h"

#include <ctime>

namespace soapwrapper
{
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
    sigemptyset(&pending);
    sigpending(&pending);
    return sigismember(&pending, SIGPIPE) == 1;
}

} // namespace

SigpipeGuard::SigpipeGuard() : was_pending_(sigpipe_is_pending())
{
    const sigset_t sigpipe = sigpipe_alone();
    pthread_sigmask(SIG_BLOCK, &sigpipe, &old_mask_);
}

SigpipeGuard::~SigpipeGuard()
{
    // One that was pending before is the host's to see.
    if (!was_pending_ && sigpipe_is_pending()) {
        const sigset_t sigpipe = sigpipe_alone();
        const timespec at_once = {0, 0};
        sigtimedwait(&sigpipe, nullptr, &at_once);
    }
    pthread_sigmask(SIG_SETMASK, &old_mask_, nullptr);
}

} // namespace soapwrapper
