// What becomes of a long operation when soapwrapper-probe is told to wait no longer.
#include "probe_operations_fixture.h"

#include <nlohmann/json.hpp>

#include <sched.h>

namespace
{

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

using ProbeInterruption = ProbeOperationsTest;
using Words = std::vector<std::string>;

Words with(Words command, const Words& more)
{
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

TEST_F(ProbeInterruption, CancelsAnOperationWithAnIdAtTheService)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        answer_waits("", {kBusy, 0, 0});
        const long before = count("asyncCancel");
        const long waits = count(kWithId);
        const ProcessResult result = run_and_signal(kCreate, kWithId, waits + 2, signal);
        EXPECT_EQ(result.exit_code, 5);
        EXPECT_EQ(result.err, "interrupted: cancelled operation OP-1\n");
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_EQ(count(kWithId), waits + 2);
        EXPECT_EQ(count("asyncCancel"), before + 1);
        EXPECT_THAT(asked("asyncCancel"), HasSubstr(">OP-1</ns1:token>"));
        EXPECT_EQ(service.operations().back(), "closeServer");
    }
}

TEST_F(ProbeInterruption, EndsALongPauseAtOnce)
{
    answer_waits("", {kBusy, 86400, 0});
    const ProcessResult result = run_and_signal(kCreate, kWithId, 1);
    EXPECT_EQ(result.exit_code, 5);
    EXPECT_EQ(count(kWithId), 1);
    EXPECT_EQ(count("asyncCancel"), 1);
}

TEST_F(ProbeInterruption, LeavesAnOperationWithANameToGoOn)
{
    answer_waits("", {kBusy, 0, 0});
    const ProcessResult result = run_and_signal(with(kCreate, {"--name", "n", "--json"}), kWithName, 2);
    EXPECT_EQ(result.exit_code, 5);
    EXPECT_EQ(result.err, "interrupted: operation n goes on at the service under that name\n");
    const json document = json::parse(result.out);
    EXPECT_EQ(document.at("operation_name"), "n");
    EXPECT_EQ(document.at("error").at("name"), "interrupted");
    EXPECT_EQ(document.at("error").at("status"), nullptr);
    EXPECT_THAT(service.operations(),
                ElementsAre("openServer", "namedAsyncCreateSnapByName", kWithName, kWithName, "closeServer"));
}

TEST_F(ProbeInterruption, DuringTheStartIsNotLost)
{
    const ProcessResult result = run_and_signal(kCreate, "asyncCreateSnapByName", 1);
    EXPECT_EQ(result.exit_code, 5);
    EXPECT_THAT(service.operations(),
                ElementsAre("openServer", "asyncCreateSnapByName", "asyncCancel", "closeServer"));
}

TEST_F(ProbeInterruption, OfACommandWaitCancelsOrLeavesAsWell)
{
    answer_waits("", {kBusy, 0, 0});
    EXPECT_EQ(run_and_signal({"operation", "wait", kName, "OP-7"}, kWithId, 1).err,
              "interrupted: cancelled operation OP-7\n");
    EXPECT_THAT(asked("asyncCancel"), HasSubstr(">OP-7</ns1:token>"));
    EXPECT_EQ(run_and_signal({"operation", "wait", kName, "--name", "n"}, kWithName, 1).err,
              "interrupted: operation n goes on at the service under that name\n");
    EXPECT_EQ(count("asyncCancel"), 1);
}

TEST_F(ProbeInterruption, ClearsTheProgressAheadOfItsWords)
{
    answer_waits("", {kBusy, 0, 0});
    Process::Streams streams;
    streams.terminal_for_err = true;
    const ProcessResult result = run_and_signal(kCreate, kWithId, 2, SIGINT, streams);
    EXPECT_THAT(result.err, StartsWith("\roperation OP-1: running, 0 B, 0:0"));
    EXPECT_THAT(result.err, EndsWith(" \rinterrupted: cancelled operation OP-1\r\n"));
}

TEST_F(ProbeInterruption, SaysSoIfTheServiceDoesNotCancel)
{
    answer_waits("", {kBusy, 0, 0});
    service.refuse("asyncCancel", "too late", 2060013);
    const ProcessResult result = run_and_signal(kCreate, kWithId, 1);
    EXPECT_EQ(result.exit_code, 5);
    EXPECT_THAT(result.err, StartsWith("interrupted: operation OP-1 could not be cancelled and may go on at "
                                       "the service: STS_ENOENT, there are no more entries\n"));
    EXPECT_THAT(result.err, HasSubstr("too late"));
    EXPECT_EQ(service.operations().back(), "closeServer");
}

TEST_F(ProbeInterruption, DuringTheLastAnswerShowsTheResultAndCancelsNothing)
{
    answer_waits(made_snapshot("createSnap"));
    const ProcessResult result = run_and_signal(kCreate, kWithId, 1);
    EXPECT_EQ(result.exit_code, 5);
    EXPECT_EQ(result.err, "interrupted: operation OP-1 had ended already\n");
    EXPECT_THAT(result.out, HasSubstr("nightly.0"));
    EXPECT_EQ(count("asyncCancel"), 0);
    EXPECT_EQ(service.operations().back(), "closeServer");
}

TEST_F(ProbeInterruption, DuringAnAnswerThatNeverComesStillCancels)
{
    service.answer_raw(kWithId, "");
    const ProcessResult result = run_and_signal(kCreate, kWithId, 1);
    EXPECT_EQ(result.exit_code, 5);
    EXPECT_EQ(result.err, "interrupted: cancelled operation OP-1\n");
}

TEST_F(ProbeInterruption, AheadOfTheStartStartsNothing)
{
    const ProcessResult result = run_and_signal(kCreate, "openServer", 1);
    EXPECT_EQ(result.exit_code, 5);
    EXPECT_EQ(result.err, "interrupted: the operation was not started\n");
    EXPECT_THAT(service.operations(), ElementsAre("openServer", "closeServer"));
}

TEST_F(ProbeInterruption, OfACommandThatDoesNotWaitShowsWhatItHasStarted)
{
    const ProcessResult result =
        run_and_signal(with(kCreate, {"--no-wait"}), "asyncCreateSnapByName", 1, SIGTERM);
    EXPECT_EQ(result.exit_code, 5);
    EXPECT_THAT(result.out, HasSubstr("OP-1"));
    EXPECT_EQ(result.err, "interrupted: the command had come to its end already\n");
    EXPECT_THAT(service.operations(), ElementsAre("openServer", "asyncCreateSnapByName", "closeServer"));
}

// The service answers only once the probe is gone: nothing but more signals can end it.
TEST_F(ProbeInterruption, AThirdTimeEndsAProbeWhoseServiceKeepsSilent)
{
    answer_waits("", {kBusy, 0, 0});
    std::promise<pid_t> id;
    std::shared_future<pid_t> known = id.get_future().share();
    service.watch([=](const std::string& operation, long) {
        if (operation != kWithId) return;
        siginfo_t ended = {};
        while (waitid(P_PID, static_cast<id_t>(known.get()), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
               ended.si_pid == 0) {
            kill(known.get(), SIGINT);
            sched_yield();
        }
    });
    Process process(PROBE_PROGRAM, complete(kCreate), kCredential, {});
    id.set_value(process.id());
    EXPECT_EQ(process.finish().exit_code, -SIGINT);
    EXPECT_EQ(service.operations().back(), kWithId);
}

} // namespace
