// How soapwrapper-probe waits for events, and how it ends.
#include "probe_events_fixture.h"

namespace
{

using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

using ProbeEventsEnding = ProbeEventsTest;

TEST_F(ProbeEventsEnding, FollowingGoesOnBehindAnEmptyChannel)
{
    service.refuse_first("getEvent", "not yet", 2060013);
    tell_operation(1, "late");
    const ProcessResult result = run_and_signal(command({"--follow"}), "getEvent", 3);
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("late: 12 B"));
    EXPECT_THAT(service.operations(), ElementsAreArray(around({"getEvent", "getEvent", "getEvent"})));
}

TEST_F(ProbeEventsEnding, FollowingIsEndedWellByEitherSignal)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        const long before = count("getEvent");
        const ProcessResult result = run_and_signal(command({"--follow"}), "getEvent", before + 1, signal);
        EXPECT_EQ(result.exit_code, 0);
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_THAT(result.err, IsEmpty());
        EXPECT_EQ(count("getEvent"), before + 1);
        EXPECT_EQ(service.operations().back(), "closeServer");
    }
    EXPECT_EQ(count("closeEventChannel"), 2);
    EXPECT_EQ(count("closeServer"), 4);
}

TEST_F(ProbeEventsEnding, ASignalWhileAnEventComesLetsItBeShownAndDeleted)
{
    tell_operation(1, "one");
    tell_operation(2, "two");
    const ProcessResult result =
        run_and_signal(command({"--follow", "--delete", "--separator", "|"}), "getEvent", 1);
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.out, "1|inline|operation|one: 12 bytes, good\n");
    EXPECT_THAT(service.operations(), ElementsAreArray(around({"getEvent", "deleteEvent"})));
}

TEST_F(ProbeEventsEnding, ASignalToWhoDoesNotFollowCutsTheReadingShort)
{
    tell_operation(1, "one");
    tell_operation(2, "two");
    const ProcessResult result = run_and_signal(command({}), "getEvent", 1);
    EXPECT_EQ(result.exit_code, 5);
    EXPECT_THAT(result.out, HasSubstr("one: 12 B"));
    EXPECT_EQ(result.err, "interrupted: not all events were read\n");
    EXPECT_THAT(service.operations(), ElementsAreArray(around({"getEvent"})));
}

TEST_F(ProbeEventsEnding, FollowingEndsAtAFailure)
{
    service.refuse_first("getEvent", "not yet", 2060013);
    service.refuse("getEvent", "down", 2060005);
    const ProcessResult result = run_events({"--follow"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_EBUSY(2060005): "));
    EXPECT_THAT(service.operations(), ElementsAreArray(around_a_failure({"getEvent", "getEvent"})));
}

TEST_F(ProbeEventsEnding, AReaderOfTheLinesThatGoesAwayLeavesNoChannelOpen)
{
    tell_operation(1, "one");
    Process::Streams streams;
    streams.out_file = "/dev/full";
    Process process(PROBE_PROGRAM, complete(command({"--follow"})), kCredential, streams);
    EXPECT_EQ(process.finish().exit_code, 4);
    EXPECT_THAT(service.operations(), ElementsAreArray(around_a_failure({"getEvent"})));
}

TEST_F(ProbeEventsEnding, AChannelWhoseLoginIsBusyIsClosedAgain)
{
    for (const int busy : {2060005, 2060012}) {
        const long closed = count("closeEventChannel");
        service.refuse_first("closeServer", "not yet", busy);
        const ProcessResult result = run_events();
        EXPECT_EQ(result.exit_code, 0) << result.err;
        EXPECT_EQ(count("closeEventChannel"), closed + 2);
    }
    EXPECT_EQ(count("closeServer"), 6);
}

TEST_F(ProbeEventsEnding, AChannelThatWasClosedByTheFirstTryMayBeUnknownToTheSecond)
{
    service.answer_first("closeEventChannel", "");
    service.refuse("closeEventChannel", "no such channel", 2060022);
    service.refuse_first("closeServer", "not yet", 2060005);
    const ProcessResult result = run_events();
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(count("closeEventChannel"), 2);
}

TEST_F(ProbeEventsEnding, AChannelWhoseOwnEndIsRefusedIsNeverClosedAgain)
{
    for (const int status : {2060005, 2060012, 2060022}) {
        const long closed = count("closeEventChannel");
        service.refuse("closeEventChannel", "no", status);
        const ProcessResult result = run_events();
        EXPECT_EQ(result.exit_code, 4);
        EXPECT_THAT(result.err, HasSubstr("(" + std::to_string(status) + "): "));
        EXPECT_EQ(count("closeEventChannel"), closed + 1);
    }
    EXPECT_EQ(count("closeServer"), 6);
}

TEST_F(ProbeEventsEnding, AChannelThatStaysBusyIsGivenUp)
{
    for (int i = 0; i < 5; ++i) service.refuse_first("closeServer", "not yet", 2060012);
    const ProcessResult result = run_events();
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_EINUSE(2060012): "));
    EXPECT_EQ(count("closeEventChannel"), 5);
    EXPECT_EQ(count("closeServer"), 6) << "the probe's own server is closed all the same";
}

TEST_F(ProbeEventsEnding, AChannelThatCannotBeClosedBehindAFailureIsAWarning)
{
    service.refuse("getEvent", "broken", 77);
    service.refuse("closeEventChannel", "no", 78);
    const ProcessResult result = run_events();
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("warning: the event channel could not be closed\n"
                                       "service status(78): "));
    EXPECT_THAT(result.err, HasSubstr("\nservice status(77): "));
}

} // namespace
