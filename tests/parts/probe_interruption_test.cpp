// Signals and limits of time: what they end, and what is still called behind them.
#include "probe/library/interruption.h"
#include "probe/output/descriptor_stream.h"
#include "probe/output/progress_line.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

using namespace soapwrapper::probe;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace
{

// The library's network, and a call that ends when it is cut.
class Network
{
  public:
    LibraryNetwork network()
    {
        return {[this] { set(cut_, true); }, [this] { set(cut_, false); }, [this] { set(ended_, true); },
                [this] { return where; }};
    }

    std::string where = "filer:1 (192.0.2.7)";

    void wait_until_cut()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return cut_; });
    }

    void wait_until_ended()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return ended_; });
    }

    bool is_cut()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return cut_;
    }

  private:
    void set(bool& what, bool value)
    {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            what = value;
        }
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    bool cut_ = false;
    bool ended_ = false; // the connections that there were
};

using Kind = Interruption::CallKind;

RunLimits no_limits()
{
    RunLimits limits;
    limits.grace = limits.clean_up = limits.cut = hours(24);
    return limits;
}

class ShortRun
{
  public:
    explicit ShortRun(const RunLimits& limits = no_limits()) : interruption(limits, network.network(), line)
    {
    }

    // A call that ends when it is cut and fails for it: why it was cut.
    std::string cut_call(Kind kind, const std::function<void()>& during = {})
    {
        Interruption::Call call(interruption, kind);
        if (during) during();
        network.wait_until_cut();
        return told(call.why_cut("the library's words"));
    }

    // How a call is refused; empty: it is not.
    std::string refusal(Kind kind)
    {
        try {
            const Interruption::Call call(interruption, kind);
            return {};
        } catch (const Problem& problem) {
            return told(problem);
        }
    }

    static std::string told(const std::optional<Problem>& problem)
    {
        return problem ? problem->name() + ": " + problem->meaning() : "";
    }

    Network network;
    ProgressLine line;
    Interruption interruption;
    const Interruption::Work work{interruption}; // a signal does not end this process
};

void signal_this(int signal)
{
    ASSERT_EQ(kill(getpid(), signal), 0);
}

TEST(Interruption, IsNoneWithoutASignal)
{
    ShortRun run;
    EXPECT_FALSE(run.interruption.requested());
    EXPECT_FALSE(run.interruption.pause(milliseconds(0)));
    EXPECT_EQ(run.refusal(Kind::kWork), "");
    EXPECT_FALSE(run.interruption.unanswered());
}

TEST(Interruption, IsFoundAtOnceAndForEver)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        ShortRun run;
        signal_this(signal);
        EXPECT_TRUE(run.interruption.requested());
        EXPECT_TRUE(run.interruption.requested());
        EXPECT_TRUE(run.interruption.pause(hours(24)));
        EXPECT_EQ(ShortRun::told(run.interruption.unanswered()),
                  "interrupted: the command had come to its end already");
    }
}

TEST(Interruption, EndsAPause)
{
    ShortRun run;
    std::thread sender([] { signal_this(SIGTERM); });
    EXPECT_TRUE(run.interruption.pause(hours(24)));
    sender.join();
}

TEST(Interruption, SwallowsASecondSignal)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        ShortRun run;
        signal_this(signal);
        EXPECT_TRUE(run.interruption.requested());
        signal_this(signal);
        EXPECT_TRUE(run.interruption.requested());
    }
}

TEST(Interruption, LeavesAnIgnoredSignalIgnored)
{
    for (const int signal : {SIGINT, SIGHUP}) {
        std::signal(signal, SIG_IGN);
        {
            ShortRun run;
            signal_this(signal);
            EXPECT_FALSE(run.interruption.requested());
        }
        std::signal(signal, SIG_DFL);
    }
}

TEST(Interruption, BegunCallsAreForCleanUpAlone)
{
    ShortRun run;
    signal_this(SIGINT);
    EXPECT_EQ(run.refusal(Kind::kWork), "interrupted: the work was not done to its end");
    EXPECT_EQ(run.refusal(Kind::kCleanUp), "");
}

TEST(Interruption, IsAGoodEndWhereACommandSaysSo)
{
    ShortRun run;
    signal_this(SIGTERM);
    EXPECT_TRUE(run.interruption.requested());
    EXPECT_TRUE(run.interruption.take_as_good_end());
    EXPECT_FALSE(run.interruption.unanswered());
}

TEST(Interruption, CutsACallThatDoesNotEndInItsGrace)
{
    RunLimits limits = no_limits();
    limits.grace = milliseconds(20);
    ShortRun run(limits);
    EXPECT_EQ(run.cut_call(Kind::kWork, [] { signal_this(SIGINT); }),
              "interrupted: the service did not answer within 0.02 seconds: filer:1 (192.0.2.7)");
}

TEST(Interruption, TellsWhomItWaitedForWithoutHarmToATerminal)
{
    RunLimits limits = no_limits();
    limits.call = milliseconds(1);
    ShortRun run(limits);
    run.network.where = "\x1b[2J";
    EXPECT_THAT(run.cut_call(Kind::kWork), EndsWith(": \xEF\xBF\xBD[2J"));
}

TEST(Interruption, LeavesACallAloneThatEndsInItsGrace)
{
    ShortRun run;
    {
        Interruption::Call call(run.interruption, Kind::kWork);
        signal_this(SIGINT);
        EXPECT_FALSE(call.why_cut(""));
    }
    EXPECT_FALSE(run.network.is_cut());
    EXPECT_TRUE(run.interruption.requested());
}

TEST(Interruption, BoundsAllCleanUpTogether)
{
    RunLimits limits = no_limits();
    limits.clean_up = milliseconds(20);
    ShortRun run(limits);
    signal_this(SIGINT);
    const char* const kTold = "timeout: the service did not answer within 0.02 seconds: filer:1 (192.0.2.7)";
    EXPECT_EQ(run.cut_call(Kind::kCleanUp), kTold);
    EXPECT_THAT(run.cut_call(Kind::kCleanUp), HasSubstr("within 0.02 seconds"));
    EXPECT_TRUE(run.network.is_cut()) << "there is no time left, so that nothing is connected again";
}

TEST(Interruption, LetsCleanUpConnectBehindACallThatWasCut)
{
    RunLimits limits = no_limits();
    limits.grace = milliseconds(1);
    ShortRun run(limits);
    signal_this(SIGINT);
    EXPECT_TRUE(run.interruption.requested());
    EXPECT_EQ(run.refusal(Kind::kCleanUp), "");
    EXPECT_FALSE(run.network.is_cut());
}

TEST(CallLimit, CutsACallAndNotTheNextOne)
{
    RunLimits limits = no_limits();
    limits.call = milliseconds(20);
    ShortRun run(limits);
    for (const Kind kind : {Kind::kWork, Kind::kCleanUp}) {
        EXPECT_EQ(run.cut_call(kind),
                  "timeout: the service did not answer within 0.02 seconds: filer:1 (192.0.2.7)");
    }
    EXPECT_EQ(run.refusal(Kind::kWork), "");
    EXPECT_FALSE(run.network.is_cut());
    EXPECT_FALSE(run.interruption.requested());
}

// Such an entry closes a login of its own behind the request that wasn't answered.
TEST(CallLimit, LeavesAnEntryThatClosesTheTimeForIt)
{
    RunLimits limits = no_limits();
    limits.call = milliseconds(20);
    ShortRun run(limits);
    Interruption::Call call(run.interruption, Kind::kWork, Interruption::AfterCut::kCloses);
    run.network.wait_until_ended();
    EXPECT_FALSE(run.network.is_cut());
    EXPECT_THAT(ShortRun::told(call.why_cut("")), StartsWith("timeout: "));
}

TEST(CallLimit, CutsAnEntryThatTakesTooLongToClose)
{
    RunLimits limits = no_limits();
    limits.call = limits.clean_up = milliseconds(20);
    ShortRun run(limits);
    const Interruption::Call call(run.interruption, Kind::kWork, Interruption::AfterCut::kCloses);
    run.network.wait_until_ended();
    run.network.wait_until_cut();
}

TEST(Deadline, CutsTheCallThatRunsAndRefusesTheNext)
{
    RunLimits limits = no_limits();
    limits.run = milliseconds(20);
    ShortRun run(limits);
    EXPECT_EQ(run.cut_call(Kind::kWork),
              "deadline: the service did not answer within 0.02 seconds: filer:1 (192.0.2.7)");
    EXPECT_EQ(run.refusal(Kind::kWork), "deadline: the work was not done to its end");
    EXPECT_EQ(run.refusal(Kind::kCleanUp), "");
    EXPECT_FALSE(run.interruption.take_as_good_end());
}

TEST(Deadline, EndsAPause)
{
    RunLimits limits = no_limits();
    limits.run = milliseconds(20);
    ShortRun run(limits);
    EXPECT_TRUE(run.interruption.pause(hours(24)));
    EXPECT_EQ(run.interruption.problem("").name(), "deadline");
}

// A pipe that nobody reads, and that has no room.
class FullPipe
{
  public:
    FullPipe()
    {
        EXPECT_EQ(pipe2(ends_, O_CLOEXEC | O_NONBLOCK), 0);
        const std::string bytes(65536, 'x');
        while (write(ends_[1], bytes.data(), bytes.size()) > 0) {
        }
    }
    ~FullPipe()
    {
        close(ends_[0]);
        close(ends_[1]);
    }
    FullPipe(const FullPipe&) = delete;
    FullPipe& operator=(const FullPipe&) = delete;

    int end() const { return ends_[1]; }
    int reader() const { return ends_[0]; }
    void take_all() const
    {
        char bytes[65536];
        while (read(ends_[0], bytes, sizeof bytes) > 0) {
        }
    }

  private:
    int ends_[2] = {-1, -1};
};

DescriptorBuffer::Wait room_in(ShortRun& run)
{
    return [&run](int descriptor) { return run.interruption.wait_for_room(descriptor); };
}

TEST(Interruption, EndsTheWaitingForAReaderOfTheOutput)
{
    RunLimits limits = no_limits();
    limits.grace = milliseconds(20);
    limits.clean_up = seconds(10);
    ShortRun run(limits);
    const FullPipe pipe;
    DescriptorStream stream(pipe.end(), room_in(run));
    std::thread sender([] { signal_this(SIGINT); });
    stream << "text" << std::flush;
    EXPECT_EQ(stream.error(), ETIMEDOUT);
    EXPECT_FALSE(stream.good());
    sender.join();
    const Interruption::Call closing(run.interruption, Kind::kCleanUp);
    EXPECT_FALSE(run.network.is_cut()) << "closing has its own time";
}

TEST(Deadline, EndsTheWaitingForAReaderOfTheOutput)
{
    RunLimits limits = no_limits();
    limits.run = limits.grace = milliseconds(20);
    limits.clean_up = seconds(10);
    ShortRun run(limits);
    const FullPipe pipe;
    DescriptorStream stream(pipe.end(), room_in(run));
    const auto begin = std::chrono::steady_clock::now();
    stream << "text" << std::flush;
    EXPECT_EQ(stream.error(), ETIMEDOUT);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, limits.clean_up) << "that is for closing";
    const Interruption::Call closing(run.interruption, Kind::kCleanUp);
    EXPECT_FALSE(run.network.is_cut());
}

// As of a trace.
TEST(Interruption, LeavesClosingTheTimeWhileItsOwnOutputIsNotTaken)
{
    RunLimits limits = no_limits();
    limits.clean_up = milliseconds(40);
    ShortRun run(limits);
    signal_this(SIGINT);
    const FullPipe pipe;
    DescriptorStream stream(pipe.end(), room_in(run));
    const Interruption::Call closing(run.interruption, Kind::kCleanUp);
    stream << "text" << std::flush;
    EXPECT_EQ(stream.error(), ETIMEDOUT);
}

TEST(Deadline, CountsFromTheBeginningOfTheRun)
{
    Network network;
    ProgressLine line;
    RunLimits limits = no_limits();
    limits.run = hours(1);
    const auto begin = std::chrono::steady_clock::now() - hours(1);
    Interruption interruption(limits, network.network(), line, begin);
    EXPECT_TRUE(interruption.requested());
    EXPECT_EQ(interruption.problem("").name(), "deadline");
}

TEST(DescriptorStream, WaitsForAReaderAndLosesNothing)
{
    const FullPipe pipe;
    pipe.take_all();
    const std::string text(1000000, 't');
    std::thread writer([&] { DescriptorStream(pipe.end()) << text; });
    std::string taken;
    char bytes[65536];
    pollfd watched = {pipe.reader(), POLLIN, 0};
    while (taken.size() < text.size() && poll(&watched, 1, -1) > 0) {
        const ssize_t count = read(watched.fd, bytes, sizeof bytes);
        if (count > 0) taken.append(bytes, static_cast<std::size_t>(count));
    }
    writer.join();
    EXPECT_EQ(taken, text);
}

TEST(DescriptorStream, KeepsTheReasonOfItsFailure)
{
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    DescriptorStream stream(full);
    stream << "text";
    EXPECT_EQ(stream.error(), 0);
    stream.flush();
    EXPECT_EQ(stream.error(), ENOSPC);
    EXPECT_FALSE(stream.used());
    close(full);
}

[[noreturn]] void idle_until_ended(int signal, bool works)
{
    Network network;
    ProgressLine line;
    Interruption interruption(no_limits(), network.network(), line);
    interruption.set_farewell(
        [](const Problem& problem) { std::fprintf(stderr, "%s\n", ShortRun::told(problem).c_str()); });
    std::optional<Interruption::Work> work;
    if (works) work.emplace(interruption);
    kill(getpid(), signal);
    if (works) {
        while (!interruption.pause(hours(24))) {
        }
        _exit(0);
    }
    for (;;) pause();
}

TEST(InterruptionDeathTest, EndsAtOnceWhatHasNothingOpen)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        EXPECT_EXIT(idle_until_ended(signal, false), ::testing::ExitedWithCode(5),
                    "interrupted: nothing was open at the service");
    }
    EXPECT_EXIT(idle_until_ended(SIGINT, true), ::testing::ExitedWithCode(0), "");
}

[[noreturn]] void hold_a_call_for_ever()
{
    Network network;
    ProgressLine line;
    RunLimits limits = no_limits();
    limits.call = limits.cut = milliseconds(20);
    Interruption interruption(limits, network.network(), line);
    interruption.set_farewell(
        [](const Problem& problem) { std::fprintf(stderr, "%s\n", problem.detail().c_str()); });
    const Interruption::Call call(interruption, Kind::kWork);
    for (;;) pause();
}

TEST(InterruptionDeathTest, ACallThatCannotBeCutIsLeft)
{
    EXPECT_EXIT(hold_a_call_for_ever(), ::testing::ExitedWithCode(4),
                "what is open at the service stays open");
}

// Each one taken by itself: two that are pending together are one to the kernel.
void interrupt(int times)
{
    {
        ShortRun run;
        for (int i = 0; i < times; ++i) {
            kill(getpid(), SIGINT);
            if (!run.interruption.requested()) _exit(1);
        }
    }
    _exit(0);
}

TEST(InterruptionDeathTest, OfAThirdSigintEndsTheProcess)
{
    EXPECT_EXIT(interrupt(2), ::testing::ExitedWithCode(0), "");
    EXPECT_EXIT(interrupt(3), ::testing::KilledBySignal(SIGINT), "");
}

} // namespace
