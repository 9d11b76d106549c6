// What happens to the simulated storage, and the events that tell of it.
#include "tests/system/simulator_events.h"

namespace
{

using namespace simulator_events;

// The elements of an activity up to where the LSU's name stands.
std::string activity_head(int action, const std::string& set, int time, const std::string& lsu)
{
    return element("version", "11") + number("action", action) + element("eventset", set) +
           number("time", time) + element("sev", "1") + element("vendorType", "soapwrapper-sim") +
           element("lsuName", lsu) + nil("imgInfo");
}

std::string message(const std::string& text)
{
    return nil("dpaid") + nil("dpaver") + nil("dpaext") + number("msgLen", static_cast<long>(text.size())) +
           element("msg", text);
}

std::string home_volume_told()
{
    return element("volSpec", nfs("filer1", "/vol/home", "/vol/home"));
}

class SimulatorEvents : public EventsClient
{
  protected:
    using EventsClient::EventsClient;

    const std::string channel_ = channel_at_the_end();
};

TEST_F(SimulatorEvents, AtTheStartTellThatTheServerIsUpAndCanBeAskedForItsProperties)
{
    const std::string channel = open_channel("Near:elsewhere");
    EXPECT_EQ(
        next_event(channel).body,
        element("getEventResponse",
                element("event", inline_event(1, "Near:elsewhere", kSrvStat,
                                              element("srvStat", element("action", "1") +
                                                                     element("name", "Near:elsewhere"))))));
    EXPECT_EQ(take(channel), element("seqno", "2") + element("server", "Near:elsewhere") +
                                 element("flags", "0") + number("type", kSrvInfo) + nil("body"));
    const std::string asked = text_of(ask("getServerProp", server_handle(near_)).body, "info");
    EXPECT_EQ(payload("2"), element("srvInfo", element("fields", "511") + element("srvInfo", asked)));
}

TEST_F(SimulatorEvents, ADeletedSnapshotIsAnActivityThatWaitsToBeAskedFor)
{
    const std::string told = properties(near_, "home", "old");
    EXPECT_EQ(ask("deleteSnap", lsu(near_, "home") + snapshot("old")).status, 200);
    const std::string text = "snapshot old of LSU home deleted";
    // Two logins, the channel with its three events, the properties, the deletion.
    const std::string head = activity_head(2, "snapshots", 8, "home");
    const std::string announced = head + nil("snapInfo") + nil("volSpec") + nil("hostSpec") + nil("dpaid") +
                                  nil("dpaver") + nil("dpaext") +
                                  number("msgLen", static_cast<long>(text.size())) + "<ns1:msg/>";
    EXPECT_EQ(take(channel_), element("seqno", "3") + element("server", "Near:filer") +
                                  element("flags", "0") + number("type", kActv) +
                                  element("body", element("actv", announced)));
    EXPECT_EQ(payload("3"), element("actv", head + element("snapInfo", told) + home_volume_told() +
                                                nil("hostSpec") + message(text)));
}

TEST_F(SimulatorEvents, ACreatedSnapshotIsTheWorkOfAnOperationThatEndsAfterIt)
{
    EXPECT_EQ(failure(start("asyncCreateSnapByName", create("made"))), 0);
    EXPECT_THAT(take(channel_), HasSubstr(number("type", kActv)));
    EXPECT_THAT(payload("3"), HasSubstr(element("msg", "snapshot made of LSU home created")));
    EXPECT_THAT(payload("3"), StartsWith("<ns1:actv>" + element("version", "11") + number("action", 1)));
    EXPECT_EQ(text_of(payload("3"), "snapInfo"), properties(near_, "home", "made"));
    EXPECT_THAT(take(channel_), HasSubstr(number("type", kOp)));
    EXPECT_EQ(take(channel_), kEnd);
}

TEST_F(SimulatorEvents, AnOperationOfTheClientsNameTellsItWithWhatItCameTo)
{
    EXPECT_EQ(ask("namedAsyncPostProcessSnapByName", post_process("old") + opname("mine")).status, 200);
    ask("namedAsyncCancel", by_name("mine"));
    const auto op = [](const std::string& name, const std::string& bytes, long error) {
        return element("op",
                       element("name", name) +
                           element("result", nil("image") + element("bytesTransferred", bytes) +
                                                 number("error", error) + element("delayInSeconds", "-1")));
    };
    const std::string cancelled = take(channel_);
    EXPECT_EQ(cancelled, inline_event(3, "Near:filer", kOp,
                                      op("mine", text_of(cancelled, "bytesTransferred"), kCancelled)));

    const std::string id = start("asyncRollbackSnap", rollback("old", {"new"}));
    EXPECT_EQ(ask("deleteSnap", lsu(near_, "home") + snapshot("old")).status, 200);
    wait(id);
    wait(id);
    take(channel_);
    const std::string failed = take(channel_);
    EXPECT_EQ(failed, inline_event(5, "Near:filer", kOp,
                                   op(id, text_of(failed, "bytesTransferred"), kUnknownSnapshot)));
}

TEST_F(SimulatorEvents, ARollbackTellsTheSnapshotsThatItTookAwayAndWhereItWentBack)
{
    EXPECT_EQ(failure(start("asyncRollbackSnap", rollback("old", {"new"}))), 0);
    EXPECT_THAT(take_all(channel_), ElementsAre("3 0 6", "4 2 4", "5 2 1", kEnd));
    EXPECT_THAT(payload("3"), HasSubstr(element("msg", "snapshot new of LSU home deleted")));
    EXPECT_EQ(payload("4"), element("lsuStat", element("action", "3") + element("name", "home")));
}

TEST_F(SimulatorEvents, ADeletedImageIsToldAsItWas)
{
    const std::string image = element("version", "0") + element("basename", "weekly") + nil("date") +
                              nil("fulldate") + nil("policy") + element("saveas", "0") +
                              element("flags", "0") + nil("format") + nil("isid");
    const std::string told =
        text_of(ask("getImagePropByName", lsu(near_, "home") + element("image", image)).body, "info");
    ASSERT_THAT(told, HasSubstr("weekly"));
    EXPECT_EQ(
        ask("deleteImage", lsu(near_, "home") + element("imd", image) + element("asyncFlag", "0")).status,
        200);
    EXPECT_EQ(take(channel_),
              inline_event(3, "Near:filer", kImgInfo,
                           element("imgInfo", element("fields", "255") + element("imgInfo", told))));
}

TEST_F(SimulatorEvents, ACopiedImageIsAReplicationThatWaitsToBeAskedFor)
{
    const auto image = [](const std::string& role, const std::string& name) {
        return element(role, element("version", "10") + element("basename", name) + element("date", "1") +
                                 "<ns1:fulldate/>" + element("policy", "p") + element("saveas", "0") +
                                 element("flags", "0") + "<ns1:format/>" + nil("isid"));
    };
    const auto lsu_as = [](const std::string& role, const std::string& token, const std::string& name) {
        return element(role, server_handle(token) + element("lsuName", name));
    };
    const std::string channel = channel_at_the_end("Far:else");
    const std::string request = lsu_as("targetLSU", far_, "vault") + image("targetImage", "copied") +
                                lsu_as("sourceLSU", near_, "home") + image("sourceImage", "weekly") + kSet +
                                element("eventFlag", "0");
    const std::string id = start("asyncCopyImage", request);
    ASSERT_NE(id, "");
    while (error_of(ask("asyncWait", by_id(id))) == kBusy) {
    }
    EXPECT_EQ(take(channel), element("seqno", "3") + element("server", "Far:else") + element("flags", "0") +
                                 number("type", kImgRep) + nil("body"));
    EXPECT_EQ(text_of(ask("getEventPayload", server_handle(far_) + event("3")).body, "payload"),
              element("imgRep", element("lsu", "vault") + image("name", "copied") +
                                    element("origServer", "Near:else") + element("origLsu", "home") +
                                    image("origName", "weekly")));
}

TEST_F(SimulatorEvents, ALabelIsToldWithTheLsuAsItIsThen)
{
    label("now");
    const std::string then = text_of(ask("getLSUPropByName", lsu(near_, "side")).body, "info");
    label("later");
    EXPECT_EQ(take(channel_),
              inline_event(3, "Near:filer", kLsuInfo,
                           element("lsuInfo", element("fields", "255") + element("lsuInfo", then))));
    EXPECT_EQ(take(channel_),
              inline_event(4, "Near:filer", kLsuStat,
                           element("lsuStat", element("action", "1") + element("name", "side"))));
    EXPECT_THAT(take_all(channel_), ElementsAre("5 2 2", "6 2 4", kEnd));
}

TEST_F(SimulatorEvents, AnExportIsAnActivityAtItsBeginningAndAtItsEnd)
{
    const auto told_hosts = [](const std::vector<std::string>& names) {
        std::string items;
        for (const std::string& name : names) items += element("item", name);
        return element("hostSpec", element("hostname", items) + element("port") + element("flags", "0"));
    };
    const std::string told = properties(near_, "home", "new");
    const HttpReply made =
        ask("createExport", lsu(near_, "home") + element("snapName", "new") + hosts({"h1", "h2"}));
    const std::string volume = text_of(made.body, "exportedVolume");
    EXPECT_EQ(
        take(channel_),
        inline_event(3, "Near:filer", kActv,
                     element("actv", activity_head(3, "exports", 8, "home") + element("snapInfo", told) +
                                         element("volSpec", volume) + told_hosts({"h1", "h2"}) +
                                         message("snapshot new of LSU home exported"))));
    const auto end_export = [&](const std::vector<std::string>& names) {
        return ask("deleteExport", lsu(near_, "home") + element("exportedVolume", volume) + hosts(names))
            .status;
    };
    EXPECT_EQ(end_export({"h1"}), 200);
    EXPECT_EQ(take(channel_), kEnd) << "the export is still there";
    EXPECT_EQ(end_export({"h2"}), 200);
    const std::string ended = take(channel_);
    EXPECT_THAT(ended, HasSubstr(element("msg", "snapshot new of LSU home no longer exported")));
    EXPECT_EQ(text_of(ended, "action"), "4");
    EXPECT_EQ(
        ask("addExport", lsu(near_, "home") + element("sourceVolSpec", home_volume()) + hosts({})).status,
        200);
    const std::string of_a_volume = take(channel_);
    EXPECT_THAT(of_a_volume, HasSubstr(element("msg", "a volume of LSU home exported")));
    EXPECT_THAT(of_a_volume, HasSubstr(nil("snapInfo")));
    EXPECT_THAT(of_a_volume, HasSubstr(nil("hostSpec")));
}

TEST_F(SimulatorEvents, AnExportToMoreHostsThanAHostCanNameIsToldWithTheFirstOnes)
{
    std::vector<std::string> names(16, std::string(256, 'y'));
    names.front() = std::string(255, 'x');
    names.emplace_back("last");
    EXPECT_EQ(ask("createExport", lsu(near_, "home") + element("snapName", "new") + hosts(names)).status,
              200);
    const std::string told = text_of(take(channel_), "hostname");
    EXPECT_THAT(told, StartsWith(element("item", names.front())));
    EXPECT_THAT(told, Not(HasSubstr("last")));
    EXPECT_THAT(told, Not(HasSubstr(std::string(256, 'y'))));
}

TEST_F(SimulatorEvents, WhatWasRefusedIsNoEvent)
{
    EXPECT_EQ(fault("deleteSnap", lsu(near_, "home") + snapshot("nope")), kUnknownSnapshot);
    EXPECT_EQ(fault("labelLSU", lsu(near_, "home") + element("lsuLabel", std::string(64, 'x'))), kBadValue);
    EXPECT_EQ(take(channel_), kEnd);
}

TEST_F(SimulatorEvents, OfAnotherServerAreNotSeen)
{
    label("near");
    const std::string far = channel_at_the_end("Far:else");
    EXPECT_EQ(ask("labelLSU", lsu(far_, "spare") + element("lsuLabel", "far")).status, 200);
    EXPECT_THAT(take_all(far), ElementsAre("3 2 2", "4 2 4", kEnd));
    EXPECT_THAT(take_all(channel_), ElementsAre("3 2 2", "4 2 4", kEnd));
}

// A server with room for two sessions and for the snapshots that it has, and an application's snapshot.
const char* const kNarrow = R"("servers": [
  {"prefix": "Near", "maxSessions": 2, "lsus": [
    {"name": "home", "used": 300, "capacity": 400,
     "volumes": [{"nfs": {"exportHost": "filer1", "exportName": "/vol/home", "exportPath": "/vol/home"}}],
     "files": [{"path": "b", "size": 200, "modified": 5}],
     "snapshots": [
       {"name": "new", "size": 10, "isid": {"version": 7, "dpaid": "app", "dpaver": "2.1"},
        "volume": {"nfs": {"exportHost": "filer1", "exportName": "/vol/home", "exportPath": "/vol/home"}}}]}]},
  {"prefix": "Far"}])";

class SimulatorEventsInANarrowPlace : public EventsClient
{
  protected:
    SimulatorEventsInANarrowPlace() : EventsClient(scenario("", kNarrow)) {}

    const std::string channel_ = channel_at_the_end();
};

TEST_F(SimulatorEventsInANarrowPlace, TheLastFreeSessionIsToldWhenItIsTakenAndWhenItIsBack)
{
    const std::string second = open_server("Near:filer");
    EXPECT_EQ(open_server("Near:filer"), "");
    EXPECT_EQ(ask("closeServer", server_handle(second)).status, 200);
    EXPECT_EQ(ask("closeServer", server_handle(near_)).status, 200);
    const auto status = [](int seqno, int action) {
        return inline_event(seqno, "Near:filer", kSrvStat,
                            element("srvStat", number("action", action) + element("name", "Near:filer")));
    };
    EXPECT_EQ(take(channel_), status(3, 2));
    EXPECT_EQ(take(channel_), status(4, 3));
    EXPECT_EQ(take(channel_), kEnd);
}

TEST_F(SimulatorEventsInANarrowPlace, AnLsuThatFillsUpIsToldOnce)
{
    EXPECT_EQ(failure(start("asyncCreateSnapByName", create("first"))), 0);
    EXPECT_EQ(failure(start("asyncCreateSnapByName", create("second"))), 0);
    EXPECT_THAT(take_all(channel_), ElementsAre("3 0 6", "4 2 4", "5 2 1", "6 0 6", "7 2 1", kEnd));
    EXPECT_EQ(payload("4"), element("lsuStat", element("action", "2") + element("name", "home")));
}

TEST_F(SimulatorEventsInANarrowPlace, ASnapshotOfAnApplicationIsToldWithIt)
{
    EXPECT_EQ(ask("deleteSnap", lsu(near_, "home") + snapshot("new")).status, 200);
    EXPECT_THAT(payload("3"),
                HasSubstr(element("dpaid", "app") + element("dpaver", "2.1") + element("dpaext", "7")));
}

} // namespace
