#include "probe/library/library_trial.h"

#include "probe/library/plugin_library.h"
#include "probe/library/plugin_manager.h"
#include "probe/output/problem.h"

#include <fcntl.h>
#include <linux/prctl.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <new> // IWYU pragma: keep, for what is made in place
#include <optional>
#include <sstream>
#include <string>

namespace soapwrapper::probe
{
namespace
{

using Clock = std::chrono::steady_clock;

// Written by the child and read behind its end: how far it came.
class Progress
{
  public:
    Progress()
        : page_(mmap(nullptr, sizeof(std::atomic<LoadStep>), PROT_READ | PROT_WRITE,
                     MAP_SHARED | MAP_ANONYMOUS, -1, 0))
    {
        if (page_ != MAP_FAILED) step_ = new (page_) std::atomic<LoadStep>(LoadStep::kLoading);
    }
    ~Progress()
    {
        if (step_) munmap(page_, sizeof *step_);
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    explicit operator bool() const { return step_ != nullptr; }
    void reached(LoadStep step) const { step_->store(step); }
    LoadStep last() const { return step_->load(); }

  private:
    void* page_;
    std::atomic<LoadStep>* step_ = nullptr;
};

// While it exists, the end of a child is a signal that waits to be fetched. Signals that ask the program to
// end and are blocked already are waited for as well, and left to whoever blocked them.
class ChildSignal
{
  public:
    ChildSignal()
    {
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGCHLD);
        sigprocmask(SIG_BLOCK, &signals_, &mask_before_);
        for (const int ending : {SIGINT, SIGTERM, SIGHUP}) {
            if (sigismember(&mask_before_, ending) == 1) sigaddset(&signals_, ending);
        }
        // A process whose parent ignores the signal inherits that, and then nothing is left to wait for.
        struct sigaction by_default = {};
        by_default.sa_handler = SIG_DFL;
        sigaction(SIGCHLD, &by_default, &action_before_);
    }
    ~ChildSignal()
    {
        sigset_t child = {};
        sigemptyset(&child);
        sigaddset(&child, SIGCHLD);
        const timespec none = {};
        while (sigtimedwait(&child, nullptr, &none) > 0) continue; // it was for the trial alone
        sigaction(SIGCHLD, &action_before_, nullptr);
        restore_mask();
    }
    ChildSignal(const ChildSignal&) = delete;
    ChildSignal& operator=(const ChildSignal&) = delete;

    void restore_mask() const { sigprocmask(SIG_SETMASK, &mask_before_, nullptr); }

    // For the child, which has nobody to look after them.
    void let_all_through() const
    {
        restore_mask();
        sigprocmask(SIG_UNBLOCK, &signals_, nullptr);
    }

    // Returns at a signal, at the end of the time, and for reasons that don't matter. False: this program is
    // asked to end.
    bool wait(Clock::duration time) const
    {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
        const timespec left = {seconds.count(), std::chrono::nanoseconds(time - seconds).count()};
        const int signal = sigtimedwait(&signals_, nullptr, &left);
        if (signal <= 0 || signal == SIGCHLD) return true;
        kill(getpid(), signal); // it waits for whichever thread looks
        return false;
    }

  private:
    sigset_t signals_ = {};
    sigset_t mask_before_ = {};
    struct sigaction action_before_ = {};
};

void detach_from_terminal()
{
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nothing < 0) return;
    dup2(nothing, STDIN_FILENO); // what stands there may be the credential
    dup2(nothing, STDOUT_FILENO);
    close(nothing);
}

[[noreturn]] void try_in_child(const LibraryPlaces& places, const Progress& progress, pid_t parent)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(0);
    detach_from_terminal();
    for (const int fatal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) ::signal(fatal, SIG_DFL);
    try {
        const auto reach = [&](LoadStep step) { progress.reached(step); };
        if (places.manager) {
            reach(LoadStep::kLoadingManager);
            load_plugin_manager(*places.manager);
        }
        const PluginLibrary library(places, reach);
    } catch (...) { // why a library can't be used is told by the process that wants to use it
    }
    progress.reached(LoadStep::kDone);
    _exit(0);
}

struct Outcome {
    std::optional<int> status; // that waitpid() gives; none: it has not ended
    bool is_abandoned = false; // this program is asked to end
};

Outcome wait_for(pid_t child, const ChildSignal& signal, Clock::time_point end)
{
    for (bool goes_on = true;; goes_on = signal.wait(end - Clock::now())) {
        if (!goes_on) return {std::nullopt, true};
        int status = 0;
        const pid_t ended = waitpid(child, &status, WNOHANG);
        if (ended == child) return {status};
        if (ended < 0 && errno != EINTR) return {0};
        if (Clock::now() >= end) return {std::nullopt};
    }
}

void end_child(pid_t child)
{
    kill(child, SIGKILL);
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) continue;
}

std::string name_of(LoadStep step)
{
    switch (step) {
    case LoadStep::kLoadingManager:
        return "while the plug-in manager was loaded";
    case LoadStep::kLoading:
        return "while it was loaded";
    case LoadStep::kInit:
        return "in stspi_init";
    case LoadStep::kInit3:
        return "in stspi_init3";
    case LoadStep::kTerminate:
        return "in stspi_terminate";
    case LoadStep::kUnloading:
    case LoadStep::kDone:
        break;
    }
    return "while it was unloaded";
}

std::string name_of_signal(int signal)
{
    const char* name = sigabbrev_np(signal);
    return name ? std::string("SIG") + name : "signal " + std::to_string(signal);
}

std::string in_seconds(std::chrono::milliseconds time)
{
    std::ostringstream text;
    text << static_cast<double>(time.count()) / 1000 << " seconds";
    return text.str();
}

Problem trouble(const LibraryPlaces& places, LoadStep step, const std::string& what)
{
    const bool manager = step == LoadStep::kLoadingManager;
    const std::string subject = manager ? "the plug-in manager " : "the library ";
    return library_problem(subject + what + ' ' + name_of(step),
                           manager ? *places.manager : place_of_library(places));
}

} // namespace

std::optional<Problem> try_library(const LibraryPlaces& places, std::chrono::milliseconds limit,
                                   Clock::time_point end_of_run)
{
    const Progress progress;
    if (!progress) return std::nullopt; // it is a precaution only
    const ChildSignal signal;
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child < 0) return std::nullopt;
    if (child == 0) {
        signal.let_all_through();
        try_in_child(places, progress, parent);
    }
    const Clock::time_point end = Clock::now() + limit;
    const auto [status, is_abandoned] = wait_for(child, signal, std::min(end, end_of_run));
    if (!status) {
        end_child(child);
        if (is_abandoned || end_of_run < end) return std::nullopt;
        return trouble(places, progress.last(), "did not come back within " + in_seconds(limit));
    }
    if (WIFSIGNALED(*status)) {
        return trouble(places, progress.last(), "crashed with " + name_of_signal(WTERMSIG(*status)));
    }
    if (progress.last() == LoadStep::kDone) return std::nullopt;
    return trouble(places, progress.last(),
                   "ended the process with exit code " + std::to_string(WEXITSTATUS(*status)));
}

} // namespace soapwrapper::probe
