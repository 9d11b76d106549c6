#include "probe/library/signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <optional>
#include <system_error>

namespace soapwrapper::probe
{
namespace
{

bool is_ignored(int signal)
{
    struct sigaction action = {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

} // namespace

int required(int descriptor)
{
    if (descriptor < 0) throw std::system_error(errno, std::generic_category(), "signals can't be watched");
    return descriptor;
}

EndingSignals::Block::Block()
{
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        if (!is_ignored(signal)) sigaddset(&signals, signal);
    }
    pthread_sigmask(SIG_BLOCK, &signals, &mask_before);
}

EndingSignals::Block::~Block()
{
    pthread_sigmask(SIG_SETMASK, &mask_before, nullptr);
}

EndingSignals::EndingSignals()
    : descriptor_(required(signalfd(-1, &block_.signals, SFD_CLOEXEC | SFD_NONBLOCK)))
{
}

EndingSignals::~EndingSignals()
{
    while (take()) {
        // The end is near, and not to be cut short by one more.
    }
}

std::optional<int> EndingSignals::take() const
{
    signalfd_siginfo info = {};
    if (read(descriptor_.get(), &info, sizeof info) != static_cast<ssize_t>(sizeof info)) return std::nullopt;
    return static_cast<int>(info.ssi_signo);
}

void EndingSignals::end_by(int signal)
{
    sigset_t only = {};
    sigemptyset(&only);
    sigaddset(&only, signal);
    ::signal(signal, SIG_DFL);
    pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    raise(signal);
    _exit(128 + signal);
}

} // namespace soapwrapper::probe
