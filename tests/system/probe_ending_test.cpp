// How soapwrapper-probe ends before its time: by a signal, a limit of time, or an output that nobody takes.
// Whatever it is, nothing stays open at the service.
#include "probe_events_fixture.h"

#include <nlohmann/json.hpp>

#include <sys/stat.h>

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace
{

using nlohmann::json;
using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

using Words = std::vector<std::string>;

class ProbeEnding : public ProbeEventsTest
{
  protected:
    ProbeEnding()
    {
        answer_lists();
        answer_waits("", {kBusy, 0, 0});
        have_entries();
    }

    // A list of LSUs and a channel aren't at their end yet.
    void have_entries()
    {
        for (const char* name : {"vol1", "vol2"}) service.answer_first("listLSU", element("lsu", name));
        tell_operation(1, "one");
    }

    // The service keeps silent when an operation is asked for, until the probe has ended.
    ProcessResult run_in_silence(Words arguments, const std::string& operation,
                                 const Process::Streams& streams = Process::Streams())
    {
        std::promise<void> end;
        const std::shared_future<void> ended = end.get_future().share();
        service.watch([=](const std::string& asked, long) {
            if (asked == operation) ended.wait();
        });
        const ProcessResult result =
            Process(PROBE_PROGRAM, complete(std::move(arguments)), kCredential, streams).finish();
        end.set_value();
        return result;
    }

    // The same with a limit of time; where the machine was too slow to come to that operation, with a longer
    // one.
    ProcessResult run_with_limit(const Words& command, const char* option, const std::string& operation)
    {
        ProcessResult result;
        for (const char* limit : {"0.1", "0.7", "5"}) {
            earlier_ = service.operations();
            result = run_in_silence(with(command, {option, limit}), operation);
            if (asked_now(operation) > 0) break;
        }
        return result;
    }

    // How often an operation was asked for in the last of these runs.
    long asked_now(const std::string& operation) const
    {
        return count(operation) - std::count(earlier_.begin(), earlier_.end(), operation);
    }

    ProcessResult run_to(Words arguments, const Process::Streams& streams) const
    {
        return Process(PROBE_PROGRAM, complete(std::move(arguments)), kCredential, streams).finish();
    }
    ProcessResult run_to_closed_pipe(Words arguments) const
    {
        Process::Streams streams;
        streams.out_is_closed = true;
        return run_to(std::move(arguments), streams);
    }
    ProcessResult run_to_full_disk(Words arguments) const
    {
        Process::Streams streams;
        streams.out_file = "/dev/full";
        return run_to(std::move(arguments), streams);
    }

    // Of each kind of thing that was opened, as many were closed.
    void expect_nothing_open() const
    {
        const std::pair<const char*, const char*> pairs[] = {{"openServer", "closeServer"},
                                                             {"openLSUList", "closeLSUList"},
                                                             {"openEventChannel", "closeEventChannel"}};
        for (const auto& [open, close] : pairs) EXPECT_EQ(asked_now(open), asked_now(close)) << open;
        EXPECT_EQ(service.operations().back(), "closeServer");
    }

    static Words with(Words command, const Words& more)
    {
        command.insert(command.end(), more.begin(), more.end());
        return command;
    }

    const Words kLsus = {"lsus", kName};
    const Words kServer = {"server", kName};
    const Words kEvents = {"events", kName};
    Operations earlier_;
};

struct Call {
    const char* name;
    Words command; // behind which the server's name stands
    const char* operation;
    const char* told;
};

class ProbeEndingAt : public ProbeEnding, public ::testing::WithParamInterface<Call>
{
};

TEST_P(ProbeEndingAt, ASignalClosesWhatIsOpenAndIsTold)
{
    const Call& call = GetParam();
    long before = 0;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const ProcessResult result = run_and_signal(call.command, call.operation, before + 1, signal);
        EXPECT_EQ(result.exit_code, 5) << signal;
        EXPECT_EQ(result.err, std::string("interrupted: ") + call.told + '\n');
        EXPECT_EQ(count(call.operation), before + 1);
        expect_nothing_open();
        before = count(call.operation);
        have_entries();
    }
}

TEST_P(ProbeEndingAt, ASilentServiceIsWaitedForAsLongAsTheLimitSays)
{
    const Call& call = GetParam();
    const ProcessResult result = run_with_limit(call.command, "--timeout", call.operation);
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, ContainsRegex("timeout: the service did not answer within [0-9.]+ seconds: 127"));
    if (std::string(call.operation) == "openServer") return;
    EXPECT_EQ(asked_now("openServer"), asked_now("closeServer"));
    EXPECT_EQ(service.operations().back(), "closeServer");
}

INSTANTIATE_TEST_SUITE_P(
    EachKindOfCall, ProbeEndingAt,
    ::testing::Values(
        Call{"Login", {"server", "Network_store:filer"}, "openServer", "the work was not done to its end"},
        Call{"Properties",
             {"server", "Network_store:filer"},
             "getServerProp",
             "the command had come to its end already"},
        Call{"ListOpening",
             {"lsus", "Network_store:filer"},
             "openLSUList",
             "the list was not read to its end"},
        Call{"ListEntry", {"lsus", "Network_store:filer"}, "listLSU", "the list was not read to its end"},
        Call{"Event", {"events", "Network_store:filer"}, "getEvent", "not all events were read"},
        Call{"ChannelOpening",
             {"events", "Network_store:filer"},
             "openEventChannel",
             "not all events were read"},
        Call{"OperationStart",
             {"snapshot", "create", "Network_store:filer", "n", "--volume", "nfs:f:/v"},
             "asyncCreateSnapByName",
             "cancelled operation OP-1"},
        Call{"OperationWait",
             {"operation", "wait", "Network_store:filer", "OP-7"},
             "asyncWaitSnap",
             "cancelled operation OP-7"},
        Call{"Closing",
             {"server", "Network_store:filer"},
             "closeServer",
             "the command had come to its end already"}),
    [](const auto& call) { return std::string(call.param.name); });

TEST_F(ProbeEnding, AnInterruptedListShowsWhatWasReadUpToThen)
{
    const ProcessResult result = run_and_signal(with(kLsus, {"--json"}), "listLSU", 1);
    EXPECT_EQ(result.exit_code, 5);
    const json document = json::parse(result.out);
    EXPECT_EQ(document.at("lsus").size(), 1U);
    EXPECT_EQ(document.at("complete"), false);
    EXPECT_EQ(document.at("error").at("name"), "interrupted");
}

TEST_F(ProbeEnding, ASignalWhileACredentialIsWaitedForEndsTheProbeAtOnce)
{
    const std::string fifo = (folder / "fifo").string();
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    for (const char* command : {"server", "events"}) {
        Process process(PROBE_PROGRAM, complete({command, kName, "--credential-file", fifo, "--json"}), {},
                        {});
        const int writer = open(fifo.c_str(), O_WRONLY | O_CLOEXEC); // it is being read from now on
        kill(process.id(), SIGTERM);
        const ProcessResult result = process.finish();
        close(writer);
        EXPECT_EQ(result.exit_code, 5);
        EXPECT_EQ(result.err, "interrupted: nothing was open at the service\n");
        EXPECT_EQ(json::parse(result.out).at("error").at("name"), "interrupted");
    }
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeEnding, ASignalWhileTheLibraryIsTriedEndsTheProbeAtOnce)
{
    const std::string hangs = std::string(FAKE_PLUGIN_FOLDER) + "/libprobe_fake_hangs.so";
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Process process(PROBE_PROGRAM, {"discover", kName, "--library", hangs}, {}, {});
        process.wait_for_err("hanging\n");
        kill(process.id(), signal);
        const ProcessResult result = process.finish();
        EXPECT_EQ(result.exit_code, 5) << signal;
        EXPECT_EQ(result.err, "hanging\ninterrupted: nothing was open at the service\n");
    }
}

TEST_F(ProbeEnding, ALimitOfTheWholeRunHoldsWhileTheLibraryIsTried)
{
    const std::string hangs = std::string(FAKE_PLUGIN_FOLDER) + "/libprobe_fake_hangs.so";
    const ProcessResult result =
        Process(PROBE_PROGRAM, {"discover", kName, "--library", hangs, "--deadline", "0.2"}, {}, {}).finish();
    EXPECT_EQ(result.exit_code, 5);
    EXPECT_THAT(result.err, EndsWith("deadline: nothing was open at the service\n"));
}

TEST_F(ProbeEnding, ALimitOfTheWholeRunClosesWhatIsOpen)
{
    const std::pair<Words, const char*> cases[] = {{kLsus, "listLSU"},
                                                   {with(kEvents, {"--follow"}), "getEvent"}};
    for (const auto& [command, operation] : cases) {
        const ProcessResult result = run_with_limit(command, "--deadline", operation);
        EXPECT_EQ(result.exit_code, 5);
        EXPECT_THAT(result.err, StartsWith("deadline: "));
        expect_nothing_open();
    }
}

TEST_F(ProbeEnding, ALimitOfTheWholeRunHoldsBetweenCallsToo)
{
    answer_waits("", {kBusy, 86400, 0});
    const std::tuple<Words, const char*, const char*> cases[] = {
        {with(kEvents, {"--follow"}), "getEvent", "deadline: not all events were read\n"},
        {kCreate, kWithId, "deadline: cancelled operation OP-1\n"}};
    for (const auto& [command, operation, told] : cases) {
        ProcessResult result;
        for (const char* limit : {"0.2", "1", "5"}) { // the machine may be too slow for a short one
            earlier_ = service.operations();
            result = run(with(command, {"--deadline", limit}));
            if (asked_now(operation) > 0) break;
        }
        EXPECT_EQ(result.exit_code, 5);
        EXPECT_EQ(result.err, told);
    }
    expect_nothing_open();
}

TEST_F(ProbeEnding, WhatCannotBeClosedInTimeIsNamed)
{
    service.refuse("listLSU", "broken", 77);
    const ProcessResult result = run_with_limit(kLsus, "--timeout", "closeLSUList");
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, ContainsRegex("^warning: the list could not be closed\n"
                                          "timeout: the service did not answer within [0-9.]+ seconds: 127"));
    EXPECT_THAT(result.err, HasSubstr("\nservice status(77): "));
    EXPECT_EQ(service.operations().back(), "closeServer") << "the server is closed all the same";
}

TEST_F(ProbeEnding, LimitsAreNumbersOfSeconds)
{
    for (const char* wrong : {"", "-1", "1s", "nan", "inf", "1e3", "0x5", "2000000000", " 1", "1 "}) {
        for (const char* option : {"--timeout", "--deadline"}) {
            EXPECT_EQ(run(with(kServer, {std::string(option) + '=' + wrong})).exit_code, 2) << wrong;
        }
    }
    EXPECT_EQ(count("openServer"), 0);
    for (const char* good : {"0", "0.0", "600", ".5e", "1000000000", "30.25"}) {
        const int code = std::string(good) == ".5e" ? 2 : 0;
        EXPECT_EQ(run(with(kServer, {"--timeout", good, "--deadline", good})).exit_code, code) << good;
    }
}

// The line on the terminal tells when that is.
TEST_F(ProbeEnding, ASignalBetweenCallsClosesWhatIsOpenToo)
{
    answer_waits("", {kBusy, 86400, 0});
    Process::Streams streams;
    streams.terminal_for_err = true;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Process process(PROBE_PROGRAM, complete(kCreate), kCredential, streams);
        process.wait_for_err("running");
        kill(process.id(), signal);
        const ProcessResult result = process.finish();
        EXPECT_EQ(result.exit_code, 5);
        EXPECT_THAT(result.err, HasSubstr("\rinterrupted: cancelled operation OP-1\r\n"));
        expect_nothing_open();
    }
}

TEST_F(ProbeEnding, AClosedPipeIsSilentAndNothingStaysOpen)
{
    for (const Words& command : {kLsus, with(kLsus, {"--json"}), kServer, kEvents,
                                 with(kEvents, {"--follow"}), with(kEvents, {"--json", "--follow"})}) {
        have_entries();
        const ProcessResult result = run_to_closed_pipe(command);
        EXPECT_EQ(result.exit_code, 141);
        EXPECT_THAT(result.err, IsEmpty());
        expect_nothing_open();
    }
}

TEST_F(ProbeEnding, AFullDiskIsAFailureAndNothingStaysOpen)
{
    for (const Words& command :
         {kLsus, with(kLsus, {"--json"}), kServer, kEvents, with(kEvents, {"--json"})}) {
        have_entries();
        const ProcessResult result = run_to_full_disk(command);
        EXPECT_EQ(result.exit_code, 4);
        EXPECT_EQ(result.err, "output: it could not be written\n    No space left on device\n");
        expect_nothing_open();
    }
}

TEST_F(ProbeEnding, HelpAndVersionThatCannotBeWrittenAreFailures)
{
    for (const char* option : {"--help", "--version"}) {
        Process::Streams streams;
        streams.out_file = "/dev/full";
        const ProcessResult full = Process(PROBE_PROGRAM, {option}, {}, streams).finish();
        EXPECT_EQ(full.exit_code, 4);
        EXPECT_EQ(full.err, "output: it could not be written\n    No space left on device\n");
        streams = {};
        streams.out_is_closed = true;
        const ProcessResult closed = Process(PROBE_PROGRAM, {option}, {}, streams).finish();
        EXPECT_EQ(closed.exit_code, 141);
        EXPECT_THAT(closed.err, IsEmpty());
    }
}

TEST_F(ProbeEnding, AClosedStandardOutputIsNeverAConnections)
{
    const std::string command = std::string("exec ") + PROBE_PROGRAM + " lsus " + kName +
                                " --no-discover --library " PROBE_LIBRARY " --plugin-path " +
                                (folder / "libsoapwrapper.so").string() + " <&- >&-";
    const ProcessResult result = run_process("/bin/sh", {"-c", command}, kCredential);
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_EQ(result.err, "output: it could not be written\n    Bad file descriptor\n");
    expect_nothing_open();
}

TEST_F(ProbeEnding, OnATerminalALineTellsWhoIsWaitedFor)
{
    Process::Streams streams;
    streams.terminal_for_err = true;
    const ProcessResult result =
        run_in_silence(with(kServer, {"--timeout", "1.2"}), "getServerProp", streams);
    EXPECT_THAT(result.err, AllOf(StartsWith("\rwaiting for 127.0.0.1:"), HasSubstr(", 0:01\r")));
    EXPECT_THAT(result.err,
                HasSubstr(" \rtimeout: the service did not answer within 1.2 seconds: 127.0.0.1:"));
}

// The service answers only once the probe is gone: nothing but more signals can end it.
TEST_F(ProbeEnding, AThirdTimeEndsAProbeWhoseServiceKeepsSilentAtItsClosing)
{
    std::promise<pid_t> id;
    std::shared_future<pid_t> known = id.get_future().share();
    service.watch([=](const std::string& operation, long) {
        if (operation != "closeServer") return;
        siginfo_t ended = {};
        while (waitid(P_PID, static_cast<id_t>(known.get()), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
               ended.si_pid == 0) {
            kill(known.get(), SIGINT);
            sched_yield();
        }
    });
    Process process(PROBE_PROGRAM, complete(kServer), kCredential, {});
    id.set_value(process.id());
    EXPECT_EQ(process.finish().exit_code, -SIGINT);
}

} // namespace
