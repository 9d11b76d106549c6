// How soapwrapper-probe waits for long operations, asks after them and cancels them.
#include "probe_operations_fixture.h"

#include <nlohmann/json.hpp>

namespace
{

using nlohmann::json;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

using ProbeWaiting = ProbeOperationsTest;
using Words = std::vector<std::string>;

Words with(Words command, const Words& more)
{
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

TEST_F(ProbeWaiting, ABusyOperationIsAskedForUntilItHasEnded)
{
    for (const char* wait : {kWithId, kWithName}) {
        for (int i = 0; i < 3; ++i) service.answer_first(wait, busy(i));
    }
    answer_waits(made_snapshot("createSnap"), {0, 0, 7});
    for (const Words& name : {Words{}, Words{"--name", "n"}}) {
        const ProcessResult result = run(with(kCreate, name));
        EXPECT_EQ(result.exit_code, 0);
        EXPECT_THAT(result.out, HasSubstr("Bytes transferred  7 B\n"));
        EXPECT_THAT(result.err, IsEmpty());
    }
    EXPECT_EQ(count(kWithId), 4);
    EXPECT_EQ(count(kWithName), 4);
    EXPECT_EQ(count("asyncCreateSnapByName"), 1);
}

TEST_F(ProbeWaiting, AResultThatComesWithABusyAnswerIsNotTheEnd)
{
    const std::string rows =
        element("getSnapDiff", element("numDiffs", "1") + element("diffObjectList", element("item", "")));
    service.answer_first(kWithId, standing({kBusy, 0, 0}, rows));
    service.answer_first(kWithId, standing({kBusy, 0, 0}, made_snapshot("createSnap")));
    answer_waits(topology("validateSnap"));
    const ProcessResult result = run(kCreate);
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_THAT(result.out, AllOf(HasSubstr("mirror of vol1"), Not(HasSubstr("nightly"))));
}

TEST_F(ProbeWaiting, AnOperationThatHasFailedIsTheFailureOfTheCommand)
{
    answer_waits("", {2060012, 0, 5});
    const ProcessResult result = run(kCreate);
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_EQ(result.err, "STS_EINUSE(2060012): the resource is in use\n    operation OP-1 has failed\n");
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(service.operations().back(), "closeServer");
    answer_waits("", {77, 0, 5});
    const ProcessResult own = run(with(kCreate, {"--name", "n", "--json"}));
    EXPECT_EQ(own.exit_code, 4);
    EXPECT_THAT(own.err, StartsWith("service status(77): the storage service's own status\n"));
    const json document = json::parse(own.out);
    EXPECT_EQ(document.at("operation_name"), "n");
    EXPECT_EQ(document.at("error").at("status"), 77);
    EXPECT_EQ(document.count("bytes_transferred"), 0U);
}

TEST_F(ProbeWaiting, AServiceThatGoesAwayIsAFailureThatNamesTheOperation)
{
    for (const char* reply : {"", "HTTP/1.1 200 OK\r\nContent-Length: 400\r\n\r\n<cut"}) {
        service.answer_first(kWithId, busy());
        service.answer_raw(kWithId, reply);
        const ProcessResult result = run(with(kCreate, {"--json"}));
        EXPECT_EQ(result.exit_code, 4);
        EXPECT_THAT(result.err, AllOf(StartsWith("STS_ESOAPERROR(2060017): "),
                                      EndsWith("\n    operation OP-1 was not followed to its end\n")));
        EXPECT_EQ(json::parse(result.out).at("operation_id"), "OP-1");
        EXPECT_EQ(count("asyncCancel"), 0);
    }
}

TEST_F(ProbeWaiting, AServiceThatRefusesToAnswerIsAFailureToo)
{
    service.answer_first(kWithName, busy());
    service.refuse(kWithName, "who?", 2060022);
    const ProcessResult result = run(with(kCreate, {"--name", "n"}));
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, AllOf(StartsWith("STS_EBADARG(2060022): "), HasSubstr("who?"),
                                  EndsWith("\n    operation n was not followed to its end\n")));
}

TEST_F(ProbeWaiting, AnAnswerWithoutAResultIsNotTakenForAGoodEnd)
{
    service.answer(kWithId, "");
    const ProcessResult result = run(kCreate);
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err,
                AllOf(StartsWith("STS_EPLUGIN(2060046): "), HasSubstr("the reply has no result")));
}

TEST_F(ProbeWaiting, AResultOfNoKnownKindIsAFailure)
{
    service.answer(kWithId,
                   element("result", element("totalBytesTransferred", "0") + element("error", "0") +
                                         element("retryInterval", "0") + element("resultSnapType", "3")));
    const ProcessResult result = run(kCreate);
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_EPLUGIN(2060046): "));
}

TEST_F(ProbeWaiting, TheCommandWaitFollowsAnOperationByItsId)
{
    service.answer_first(kWithId, busy());
    answer_waits(made_snapshot("createSnap"));
    const ProcessResult result = run({"operation", "wait", kName, "OP <7>"});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_THAT(result.out, AllOf(StartsWith("Operation id       OP <7>\n"), HasSubstr("nightly.0")));
    EXPECT_THAT(asked(kWithId), AllOf(HasSubstr(">OP &lt;7&gt;</ns1:token>"),
                                      HasSubstr("<ns1:id>soapwrapper-probe</ns1:id>")));
    EXPECT_THAT(service.operations(),
                ElementsAre("openServer", "asyncWaitSnap", "asyncWaitSnap", "closeServer"));
}

TEST_F(ProbeWaiting, TheCommandWaitFollowsAnOperationByItsName)
{
    service.answer_first(kWithName, busy());
    answer_waits("", {77, 0, 0});
    const ProcessResult result = run({"operation", "wait", kName, "--name", "nightly"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, EndsWith("\n    operation nightly has failed\n"));
    EXPECT_THAT(asked(kWithName), HasSubstr(">nightly</ns1:opname>"));
    EXPECT_EQ(count(kWithName), 2);
}

TEST_F(ProbeWaiting, TheCommandWaitNeedsOneOperation)
{
    for (const Words& command :
         {Words{"operation", "wait", kName}, Words{"operation", "wait", kName, "OP-1", "--name", "n"}}) {
        EXPECT_EQ(run(command).exit_code, 2);
    }
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeWaiting, TheStatusOfAnOperationIsRunningOrEnded)
{
    const Words status = {"operation", "status", kName, "--name", "nightly"};
    service.answer("namedAsyncStatus", "");
    EXPECT_EQ(run(status).out, "Operation name  nightly\nState           ended\n");
    EXPECT_THAT(asked("namedAsyncStatus"), HasSubstr(">nightly</ns1:opname>"));
    service.refuse("namedAsyncStatus", "not yet", kBusy);
    const ProcessResult running = run(with(status, {"--json"}));
    EXPECT_EQ(running.exit_code, 0);
    EXPECT_THAT(running.err, IsEmpty());
    EXPECT_EQ(json::parse(running.out),
              json({{"schema", 1}, {"operation_name", "nightly"}, {"state", "running"}}));
    EXPECT_EQ(run(with(status, {"--separator", "|"})).out, "operation_name|nightly\nstate|running\n");
    for (const int fault : {2060022, 0}) {
        service.refuse("namedAsyncStatus", "unknown", fault);
        const ProcessResult failed = run(status);
        EXPECT_EQ(failed.exit_code, 4);
        EXPECT_THAT(failed.err, HasSubstr("(" + std::to_string(fault) + "): "));
        EXPECT_THAT(failed.out, IsEmpty());
    }
    EXPECT_EQ(run({"operation", "status", kName}).exit_code, 2);
}

TEST_F(ProbeWaiting, CancelStopsAnOperationWithAnId)
{
    const Words cancel = {"operation", "cancel", kName, "OP-9"};
    const ProcessResult result = run(cancel);
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(result.out, "Cancelled operation  OP-9\n");
    EXPECT_THAT(asked("asyncCancel"), HasSubstr(">OP-9</ns1:token>"));
    EXPECT_EQ(json::parse(run(with(cancel, {"--json"})).out),
              json({{"schema", 1}, {"cancelled_operation", "OP-9"}}));
    service.refuse("asyncCancel", "too late", 2060013);
    const ProcessResult refused = run(cancel);
    EXPECT_EQ(refused.exit_code, 4);
    EXPECT_THAT(refused.err, StartsWith("STS_ENOENT(2060013): "));
    EXPECT_THAT(refused.out, IsEmpty());
    EXPECT_EQ(service.operations().back(), "closeServer");
}

TEST_F(ProbeWaiting, CancelRefusesAnOperationWithAName)
{
    for (const Words& command : {Words{"operation", "cancel", kName, "--name", "n"},
                                 Words{"operation", "cancel", kName, "OP-1", "--name", "n"}}) {
        const ProcessResult result = run(command);
        EXPECT_EQ(result.exit_code, 2);
        EXPECT_EQ(result.err, "soapwrapper-probe: usage: an operation with a name can't be cancelled: the "
                              "library has no entry for that\n");
    }
    EXPECT_EQ(run({"operation", "cancel", kName}).exit_code, 2);
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeWaiting, ATerminalSeesTheProgressAndAnEmptyLineAtTheEnd)
{
    service.answer_first(kWithId, busy(3 * 1024 * 1024 / 2));
    service.answer_first(kWithId, busy(0));
    answer_waits(made_snapshot("createSnap"));
    const ProcessResult result = run_on_terminal(kCreate);
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(result.err, StartsWith("\roperation OP-1: running, 1.5 MiB, 0:0"));
    EXPECT_THAT(result.err, HasSubstr("\roperation OP-1: running, 0 B, 0:0"));
    EXPECT_THAT(result.err, EndsWith(" \r"));
    EXPECT_THAT(result.err, Not(HasSubstr("\n")));
    EXPECT_THAT(result.out, HasSubstr("nightly.0"));
}

TEST_F(ProbeWaiting, ProgressStaysOutOfTheWayOfLogLines)
{
    service.answer_first(kWithId, busy());
    answer_waits("");
    const ProcessResult result = run_on_terminal(with(kCreate, {"--log", "record"}));
    const std::size_t progress = result.err.find("\roperation OP-1: running");
    ASSERT_NE(progress, std::string::npos);
    const std::size_t next_log = result.err.find("[3 record]", progress);
    ASSERT_NE(next_log, std::string::npos);
    EXPECT_EQ(result.err.substr(next_log - 2, 2), " \r");
}

} // namespace
