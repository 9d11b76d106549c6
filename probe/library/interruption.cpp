#include "probe/library/interruption.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <mutex>
#include <system_error>

namespace soapwrapper::probe
{
namespace
{

// Not two: what sends a signal to a program and to its group, as timeout does, sends it twice.
constexpr int kSigintsThatEnd = 3;

// A shell without job control starts what goes to the background with SIGINT ignored.
bool is_ignored(int signal)
{
    struct sigaction action = {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

[[noreturn]] void end_by(int signal)
{
    sigset_t only = {};
    sigemptyset(&only);
    sigaddset(&only, signal);
    ::signal(signal, SIG_DFL);
    pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    raise(signal);
    _exit(128 + signal);
}

} // namespace

Interruption::Descriptor::Descriptor(int descriptor) : descriptor_(descriptor)
{
    if (descriptor < 0) throw std::system_error(errno, std::generic_category(), "signals can't be watched");
}

Interruption::Descriptor::~Descriptor()
{
    close(descriptor_);
}

Interruption::Block::Block()
{
    sigemptyset(&signals_);
    for (const int signal : {SIGINT, SIGTERM}) {
        if (!is_ignored(signal)) sigaddset(&signals_, signal);
    }
    pthread_sigmask(SIG_BLOCK, &signals_, &mask_before_);
}

Interruption::Block::~Block()
{
    pthread_sigmask(SIG_SETMASK, &mask_before_, nullptr);
}

Interruption::Interruption()
    : signals_(signalfd(-1, &block_.signals(), SFD_CLOEXEC | SFD_NONBLOCK)), stop_(eventfd(0, EFD_CLOEXEC)),
      watcher_([this] { watch(); })
{
}

Interruption::~Interruption()
{
    eventfd_write(stop_.get(), 1);
    watcher_.join();
    signalfd_siginfo info = {};
    while (asked_for_ && read(signals_.get(), &info, sizeof info) > 0) {
        // The end is near, and not to be cut short by one more.
    }
    if (noted_ != 0 && !asked_for_) raise(noted_); // it is blocked until the members are gone
}

void Interruption::watch()
{
    pollfd watched[] = {{signals_.get(), POLLIN, 0}, {stop_.get(), POLLIN, 0}};
    for (;;) {
        if (poll(watched, 2, -1) < 0) continue;
        if (watched[1].revents != 0) return;
        const std::lock_guard<std::mutex> lock(mutex_);
        take_pending();
    }
}

bool Interruption::take_pending()
{
    signalfd_siginfo info = {};
    while (read(signals_.get(), &info, sizeof info) == static_cast<ssize_t>(sizeof info)) {
        take(static_cast<int>(info.ssi_signo));
    }
    return noted_ != 0;
}

void Interruption::take(int signal)
{
    if (signal == SIGINT && ++sigints_ == kSigintsThatEnd) end_by(signal);
    if (noted_ == 0) noted_ = signal;
    changed_.notify_all();
}

bool Interruption::pause(std::chrono::milliseconds time)
{
    std::unique_lock<std::mutex> lock(mutex_);
    if (!take_pending()) changed_.wait_for(lock, time, [this] { return noted_ != 0; });
    if (noted_ != 0) asked_for_ = true;
    return noted_ != 0;
}

} // namespace soapwrapper::probe
