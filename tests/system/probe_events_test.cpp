// The events that soapwrapper-probe shows.
#include "probe_events_fixture.h"

#include <nlohmann/json.hpp>

namespace
{

using nlohmann::json;
using ::testing::AllOf;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

class ProbeEvents : public ProbeEventsTest
{
  protected:
    // One of each kind.
    void tell_all()
    {
        tell(event(1, 2, 1, operation("backup", 2060012)));
        tell(event(
            2, 2, 2,
            element("lsuInfo",
                    number("fields", 3) +
                        element("lsuInfo", element("def", element("name", "vol1") + element("label", "Home") +
                                                              element("description", "the first")) +
                                               number("capacity", 100) + number("capacityPhys", 90) +
                                               number("used", 50) + number("usedPhys", 45) +
                                               number("images", 7)))));
        tell(event(3, 2, 3, element("srvStat", number("action", 8) + element("name", "S"))));
        tell(event(4, 2, 4, element("lsuStat", number("action", 9) + element("name", "vol1"))));
        tell(event(5, 2, 5, element("imgInfo", number("fields", 4) + element("imgInfo", image()))));
        tell(event(6, 2, 6, activity("told at once")));
        tell(event(7, 0, 6, activity("four")));
        tell(event(8, 0, 7));
        tell(event(9, 0, 8));
    }
    static std::string image()
    {
        return element("def", element("basename", "img") + element("date", "0131") + element("policy", "p")) +
               element("lsu", "vol1") + number("size", 77) + number("status", 1);
    }
    static std::vector<json> lines_of(const std::string& out)
    {
        std::vector<json> lines;
        for (std::size_t at = 0; at < out.size(); at = out.find('\n', at) + 1) {
            lines.push_back(json::parse(out.substr(at, out.find('\n', at) - at)));
        }
        return lines;
    }
};

TEST_F(ProbeEvents, OfAllKindsAreALineEach)
{
    tell_all();
    const ProcessResult result = run_events();
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(result.out,
              "     1  inline    operation          backup: 12 B, error 2060012 (STS_EINUSE)\n"
              "     2  inline    lsu-info           LSU vol1: label \"Home\", 50 B of 100 B used, 7 images\n"
              "     3  inline    server-status      server S: action 8\n"
              "     4  inline    lsu-status         LSU vol1: action 9\n"
              "     5  inline    image-info         image img 0131 of LSU vol1: 77 B, status 1\n"
              "     6  inline    activity           1970-01-01T00:16:40Z told at once\n"
              "     7  detached  activity           1970-01-01T00:16:40Z fetched\n"
              "     8  detached  server-info        -\n"
              "     9  detached  image-replication  -\n");
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_THAT(
        service.operations(),
        ElementsAreArray(around({"getEvent", "getEvent", "getEvent", "getEvent", "getEvent", "getEvent",
                                 "getEvent", "getEventPayload", "getEvent", "getEvent", "getEvent"})));
}

TEST_F(ProbeEvents, AsJsonAreALineEachWithAllThatTheLibraryBrings)
{
    tell_all();
    const ProcessResult result = run_events({"--json"});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    const std::vector<json> lines = lines_of(result.out);
    ASSERT_EQ(lines.size(), 9U);
    EXPECT_EQ(lines[0], json::parse(R"({"schema": 1, "seqno": 1, "server": "Network_store:filer", "flags": 2,
        "shape": "inline", "kind": "operation", "name": "backup", "bytes_transferred": 12,
        "error_code": 2060012, "error_code_name": "STS_EINUSE"})"));
    EXPECT_EQ(lines[1], json::parse(R"({"schema": 1, "seqno": 2, "server": "Network_store:filer", "flags": 2,
        "shape": "inline", "kind": "lsu-info", "fields": 3, "lsu": "vol1", "label": "Home",
        "description": "the first", "capacity": 100, "physical_capacity": 90, "used": 50,
        "physically_used": 45, "images": 7})"));
    EXPECT_EQ(lines[2], json::parse(R"({"schema": 1, "seqno": 3, "server": "Network_store:filer", "flags": 2,
        "shape": "inline", "kind": "server-status", "name": "S", "action": 8})"));
    EXPECT_EQ(lines[3], json::parse(R"({"schema": 1, "seqno": 4, "server": "Network_store:filer", "flags": 2,
        "shape": "inline", "kind": "lsu-status", "lsu": "vol1", "action": 9})"));
    EXPECT_EQ(lines[4], json::parse(R"({"schema": 1, "seqno": 5, "server": "Network_store:filer", "flags": 2,
        "shape": "inline", "kind": "image-info", "fields": 4, "lsu": "vol1", "basename": "img",
        "date": "0131", "policy": "p", "size": 77, "status": 1})"));
    EXPECT_EQ(lines[6], json::parse(R"({"schema": 1, "seqno": 7, "server": "Network_store:filer", "flags": 0,
        "shape": "detached", "kind": "activity", "payload_length": 4, "action": 2, "event_set": "set",
        "time": 1000, "severity": 3, "vendor_type": "vendor", "lsu": "vol1", "application": "app",
        "application_version": "9", "application_value": -4, "message_length": 7, "message": "fetched"})"));
    EXPECT_EQ(lines[7], json::parse(R"({"schema": 1, "seqno": 8, "server": "Network_store:filer", "flags": 0,
        "shape": "detached", "kind": "server-info"})"));
    EXPECT_EQ(lines[5].at("message"), "told at once");
    EXPECT_EQ(lines[5].count("image"), 0U);
    EXPECT_EQ(lines[5].count("payload_length"), 0U);
}

TEST_F(ProbeEvents, AnActivityWithAnImageTellsItInJson)
{
    std::string with_image = activity("m");
    const std::string behind = element("lsuName", "vol1");
    with_image.insert(with_image.find(behind) + behind.size(), element("imgInfo", image()));
    tell(event(1, 2, 6, with_image));
    EXPECT_EQ(lines_of(run_events({"--json"}).out).at(0).at("image"),
              json::parse(R"({"lsu": "vol1", "basename": "img", "date": "0131", "policy": "p", "size": 77,
                              "status": 1})"));
}

TEST_F(ProbeEvents, WithASeparatorAreBareFields)
{
    tell_operation(1, "one");
    tell(event(-5, 0, 8));
    EXPECT_EQ(run_events({"--separator", "|"}).out,
              "1|inline|operation|one: 12 bytes, good\n-5|detached|image-replication|\n");
}

TEST_F(ProbeEvents, WithControlCharactersAreShownWithoutThem)
{
    tell(event(1, 2, 6, activity("two\nlines&#9;and &#27;[2J &#x85;")));
    const ProcessResult result = run_events({"--separator", "|"});
    EXPECT_EQ(result.out, "1|inline|activity|two lines and \xEF\xBF\xBD[2J \xEF\xBF\xBD\n");
}

TEST_F(ProbeEvents, WithoutAMessageTellTheActionAndTheLsu)
{
    tell(event(1, 2, 6, activity("")));
    EXPECT_THAT(run_events().out, HasSubstr("activity           1970-01-01T00:16:40Z LSU vol1: action 2\n"));
}

TEST_F(ProbeEvents, OfKindsThatTheLibraryHasNoPlaceForAreShownAsUnknown)
{
    tell(event(1, 2, 77));
    tell(event(2, 0, 3));
    tell_operation(3, "next");
    const ProcessResult result = run_events({"--separator", "|", "--delete"});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(result.out,
              "1|inline|unknown|\n2|detached|unknown|\n3|inline|operation|next: 12 bytes, good\n");
    EXPECT_EQ(count("deleteEvent"), 3);
}

TEST_F(ProbeEvents, AreAskedForFromTheNumberThatIsGiven)
{
    EXPECT_THAT(run_events().out, IsEmpty());
    EXPECT_THAT(asked("openEventChannel"),
                AllOf(HasSubstr("<ns1:evseqno>0</ns1:evseqno>"), HasSubstr("<ns1:flags>0</ns1:flags>"),
                      HasSubstr("<ns1:server>Network_store:filer</ns1:server>"),
                      HasSubstr("b3BlbiBzZXNhbWU="), HasSubstr("<ns1:interface/>")));
    run_events({"--from", "-7", "--interface", "11;1;2"});
    EXPECT_THAT(asked("openEventChannel"), AllOf(HasSubstr("<ns1:evseqno>-7</ns1:evseqno>"),
                                                 HasSubstr("<ns1:interface>11;1;2</ns1:interface>")));
    EXPECT_EQ(run_events({"--from", "2147483648"}).exit_code, 2);
    EXPECT_EQ(run_events({"--from", "x"}).exit_code, 2);
}

TEST_F(ProbeEvents, AreFoundByDiscoveryLikeAnythingElse)
{
    tell_operation(1, "one");
    const ProcessResult result = probe({"events", kName}, kCredential);
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(service.operations().front(), "getServerPropByName");
}

TEST_F(ProbeEvents, ToBeDeletedAreDeletedOneByOneOnceTheyWereShown)
{
    tell_operation(1, "one");
    tell(event(2, 0, 6, activity("four")));
    EXPECT_EQ(run_events({"--delete"}).exit_code, 0);
    EXPECT_THAT(service.operations(),
                ElementsAreArray(around(
                    {"getEvent", "deleteEvent", "getEvent", "getEventPayload", "deleteEvent", "getEvent"})));
    EXPECT_THAT(asked("deleteEvent"), AllOf(HasSubstr("<ns1:seqno>2</ns1:seqno>"), HasSubstr(">T-1<")));
}

TEST_F(ProbeEvents, ThatCouldNotBeWrittenAreNotDeleted)
{
    tell_operation(1, "one");
    std::vector<std::string> arguments = complete(command({"--delete"}));
    const ProcessResult result = run_process(PROBE_PROGRAM, arguments, kCredential, "/dev/full");
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_EQ(result.err, "output: it could not be written\n    No space left on device\n");
    EXPECT_THAT(service.operations(), ElementsAreArray(around_a_failure({"getEvent"})));
}

TEST_F(ProbeEvents, ThatWillNotBeDeletedEndTheReading)
{
    tell_operation(1, "one");
    service.refuse("deleteEvent", "never", 2060012);
    const ProcessResult result = run_events({"--delete"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.out, HasSubstr("one"));
    EXPECT_THAT(result.err, StartsWith("STS_EINUSE(2060012): "));
    EXPECT_THAT(service.operations(), ElementsAreArray(around_a_failure({"getEvent", "deleteEvent"})));
}

TEST_F(ProbeEvents, WhosePayloadIsRefusedAreShownWithoutItAndKept)
{
    tell(event(1, 0, 6, activity("four")));
    tell_operation(2, "two");
    service.refuse("getEventPayload", "gone", 2069020);
    const ProcessResult result = run_events({"--delete"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.out, "     1  detached  activity           the payload could not be fetched\n"
                          "     2  inline    operation          two: 12 B, good\n");
    EXPECT_THAT(result.err, StartsWith("warning: the payload of event 1 could not be fetched\n"
                                       "service status(2069020): "));
    EXPECT_EQ(count("deleteEvent"), 1);
    EXPECT_THAT(asked("deleteEvent"), HasSubstr("<ns1:seqno>2</ns1:seqno>"));
}

TEST_F(ProbeEvents, WhosePayloadIsLostWithTheConnectionEndTheReading)
{
    tell(event(1, 0, 6, activity("four")));
    service.answer_raw("getEventPayload", "");
    const ProcessResult result = run_events();
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_ESOAPERROR(2060017): "));
}

TEST_F(ProbeEvents, ThePayloadIsAskedForOfTheEventThatWasAnnounced)
{
    tell(event(41, 0, 6, activity("four")));
    run_events();
    EXPECT_THAT(asked("getEventPayload"),
                AllOf(HasSubstr("<ns1:seqno>41</ns1:seqno>"), HasSubstr("<ns1:type>6</ns1:type>")));
}

TEST_F(ProbeEvents, ALostConnectionIsAFailureBehindWhatWasShown)
{
    tell_operation(1, "one");
    service.answer_raw("getEvent", "");
    const ProcessResult result = run_events({"--json"});
    EXPECT_EQ(result.exit_code, 4);
    const std::vector<json> lines = lines_of(result.out);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].at("name"), "one");
    EXPECT_EQ(lines[1].at("error").at("status"), 2060017);
    EXPECT_THAT(service.operations(), ElementsAreArray(around_a_failure({"getEvent", "getEvent"})));
}

TEST_F(ProbeEvents, TheStatusOfTheEndIsTheServicesToChoose)
{
    service.refuse("getEvent", "enough", 77);
    EXPECT_EQ(run_events().exit_code, 4);
    EXPECT_EQ(run_events({"--end-status", "77"}).exit_code, 0);
    EXPECT_EQ(run_events({"--end-status", "2060017"}).exit_code, 2);
    service.refuse("getEvent", "success", 0);
    EXPECT_EQ(run_events().exit_code, 4) << "a refusal with the status of success is a refusal";
}

TEST_F(ProbeEvents, TheSameOneOverAndOverIsAFailure)
{
    service.answer("getEvent", event(5, 2, 1, operation("again")));
    const ProcessResult result = run_events({"--follow"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("endless list: "));
    EXPECT_EQ(count("getEvent"), 102);
}

TEST_F(ProbeEvents, AnAnswerWithoutOneIsAFailure)
{
    service.answer("getEvent", "");
    const ProcessResult result = run_events();
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_EPLUGIN(2060046): "));
    EXPECT_THAT(service.operations(), ElementsAreArray(around_a_failure({"getEvent"})));
}

TEST_F(ProbeEvents, AChannelThatIsRefusedLeavesNothingOpen)
{
    service.refuse("openEventChannel", "no", 2069004);
    const ProcessResult result = run_events();
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("service status(2069004): "));
    EXPECT_EQ(count("closeServer"), 2);
    EXPECT_EQ(count("closeEventChannel"), 0);
}

TEST_F(ProbeEvents, AChannelWithoutATokenIsClosedAllTheSame)
{
    service.answer("openEventChannel", "");
    const ProcessResult result = run_events();
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_EPLUGIN(2060046): "));
    EXPECT_THAT(service.operations(), ElementsAreArray(around_a_failure({})));
}

TEST_F(ProbeEvents, TheCredentialIsInNoOutput)
{
    service.refuse("openEventChannel", "bad: open sesame, b3BlbiBzZXNhbWU=", 2069002);
    const ProcessResult result = run_events({"--log", "record"});
    EXPECT_THAT(result.err, HasSubstr("(credential)"));
    EXPECT_THAT(result.err, Not(HasSubstr("sesame")));
    EXPECT_THAT(result.err, Not(HasSubstr("b3BlbiBzZXNhbWU=")));
}

} // namespace
