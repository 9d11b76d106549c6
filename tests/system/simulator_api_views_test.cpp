// What the simulator's API shows.
#include "tests/system/simulator_api.h"

namespace simulator_api
{
namespace
{

class SimulatorApiViews : public ApiClient
{
};

TEST_F(SimulatorApiViews, TheStateTellsOfTheSimulatorItself)
{
    const json state = get("/api/state");
    EXPECT_THAT(state.at("instance").get<std::string>(), testing::SizeIs(32));
    EXPECT_EQ(state.at("release"), SOAPWRAPPER_VERSION);
    EXPECT_EQ(state.at("urls"), json(simulator_.urls()));
    EXPECT_THAT(state.at("scenario").get<std::string>(), testing::EndsWith("/operations.json"));
    EXPECT_EQ(state.at("time"), 2) << "each request of SOAP takes a second, and no other does";
    EXPECT_EQ(get("/api/state").at("time"), 2);
}

TEST_F(SimulatorApiViews, TheStateTellsWhatTheServersHold)
{
    const json near = server("Near");
    EXPECT_EQ(near.at("types"), json::array());
    EXPECT_EQ(near.at("maxSessions"), 1024);
    const json home = near.at("lsus").at(0);
    EXPECT_EQ(home.at("name"), "home");
    EXPECT_EQ(home.at("used"), 1000);
    EXPECT_EQ(home.at("images").at(0).at("basename"), "weekly");
    EXPECT_EQ(home.at("images").at(0).at("isOpen"), false);
    const json volume = json::parse(
        R"({"nfs": {"exportHost": "filer1", "exportName": "/vol/home", "exportPath": "/vol/home"}})");
    EXPECT_EQ(home.at("volumes"), json::array({volume}));
    const json snapshot = {{"name", "old"},   {"type", 4},        {"status", 0},        {"size", 3000},
                           {"made", nullptr}, {"volume", volume}, {"isExported", false}};
    EXPECT_EQ(home.at("snapshots").at(0), snapshot);
    EXPECT_EQ(home.at("snapshots").at(1).at("name"), "new");
}

TEST_F(SimulatorApiViews, TheStateTellsWhatClientsHoldByNumbers)
{
    const std::string third = open_server("Near:once more");
    open("openSnapList", lsu(third, "home"));
    open("openLSUList", server_handle(near_));
    open("openImage",
         lsu(near_, "home") + element("image", element("basename", "weekly") + element("date", "1")));
    open_channel();
    ask("claimVolume", server_handle(third) + element("volSpec", home_volume()));
    ask("createExport",
        lsu(near_, "home") + snapshot("old") + element("volSpec", home_volume()) + hosts({"a", "b"}));
    const json near = server("Near");
    const json sessions =
        json::parse(R"([{"number": 1, "name": "Near:filer"}, {"number": 3, "name": "Near:once more"}])");
    EXPECT_EQ(near.at("sessions"), sessions);
    EXPECT_EQ(near.at("sessionCount"), 2);
    const json open = json::parse(R"([
        {"kind": "LSU list", "session": 1, "entries": 2, "read": 0},
        {"kind": "snapshot list", "session": 3, "entries": 2, "read": 0},
        {"kind": "event channel", "session": null, "entries": null, "read": null}])");
    json told = near.at("open");
    EXPECT_EQ(near.at("openCount"), told.size());
    for (const json& each : open) EXPECT_THAT(told, testing::Contains(each)) << told;
}

// The date of a storage whose clock counts requests.
TEST_F(SimulatorApiViews, ASnapshotThatWasMadeHasTheDateAndTheListsHowFarTheyAreRead)
{
    const std::string list = open("openSnapList", lsu(near_, "home"));
    next(kSnapshots, list);
    end(start("asyncCreateSnapByName", create("demo.1")));
    const json home = lsu_of("Near", "home");
    EXPECT_EQ(home.at("snapshots").at(2).at("name"), "demo.1");
    EXPECT_GT(home.at("snapshots").at(2).at("made"), 2);
    EXPECT_EQ(server("Near").at("open").at(0).at("read"), 1);
}

TEST_F(SimulatorApiViews, OperationsStandTheNewestFirst)
{
    start("asyncCreateSnapByName", create("first"));
    ask("namedAsyncCreateSnapByName", create("second") + opname("nightly"));
    json operations = get("/api/operations").at("operations");
    ASSERT_EQ(operations.size(), 2U);
    EXPECT_EQ(operations.at(0).at("name"), "nightly");
    EXPECT_EQ(operations.at(1).at("name"), nullptr);
    EXPECT_EQ(operations.at(0).at("number"), 2);
    EXPECT_EQ(operations.at(1).at("state"), "running");
    EXPECT_EQ(operations.at(1).at("seconds"), 3.0);
    EXPECT_EQ(operations.at(1).at("elapsed"), 1.0);
    EXPECT_EQ(operations.at(1).at("bytes"), 300);
    EXPECT_EQ(operations.at(1).at("bytesMoved"), 100);
    ask("namedAsyncCancel", by_name("nightly"));
    ask("labelLSU", lsu(near_, "side") + element("lsuLabel", "x"));
    operations = get("/api/operations").at("operations");
    EXPECT_EQ(operations.at(0).at("state"), "cancelled");
    EXPECT_EQ(operations.at(0).at("error"), kCancelled);
    EXPECT_EQ(operations.at(1).at("state"), "done");
    EXPECT_EQ(operations.at(1).at("result"), "snapshot first on home");
    EXPECT_EQ(operations.at(1).at("bytesMoved"), 300);
}

TEST_F(SimulatorApiViews, EventsAreToldInWordsTheNewestFirst)
{
    label("new \"label\"");
    const json events = get("/api/events").at("events");
    EXPECT_EQ(events.at(0).at("text"), "LSU side was labelled");
    EXPECT_EQ(events.at(0).at("server"), "Near");
    EXPECT_EQ(events.at(0).at("inline"), true);
    EXPECT_EQ(events.at(1).at("kind"), "lsu-info");
    EXPECT_EQ(events.at(1).at("text"), "LSU side has the label \"new \"label\"\"");
    EXPECT_EQ(events.size(), 6U); // two servers have started, with two events each
    EXPECT_EQ(get("/api/events?kind=server-status").at("events").size(), 2U);
    EXPECT_EQ(get("/api/events?server=Far").at("events").size(), 2U);
    EXPECT_EQ(get("/api/events?server=Near&after=3").at("events").size(), 1U);
    EXPECT_EQ(get("/api/events?limit=1").at("events").size(), 1U);
    EXPECT_EQ(refusal("/api/events?kind=no-such", 400), "there is no such kind of event");
    EXPECT_EQ(refusal("/api/events?server=None", 404), "no server has the prefix \"None\"");
}

TEST_F(SimulatorApiViews, EachKindOfEventHasItsWords)
{
    end(start("asyncCreateSnapByName", create("demo.1")));
    EXPECT_EQ(ask("deleteSnap", lsu(near_, "home") + snapshot("demo.1")).status, 200);
    EXPECT_EQ(ask("deleteImage",
                  lsu(near_, "home") + element("imd", element("basename", "weekly") + element("date", "1")))
                  .status,
              200);
    std::vector<std::string> texts;
    const json told = get("/api/events?server=Near");
    for (const json& event : told.at("events")) texts.push_back(event.at("text"));
    EXPECT_THAT(texts, ElementsAre("image weekly of LSU home deleted", "snapshot demo.1 of LSU home deleted",
                                   "operation 1 done", "snapshot demo.1 of LSU home created",
                                   "the server's properties can be asked for", "the server is up"));
}

TEST_F(SimulatorApiViews, RequestsAreToldWithWhatTheyWereAnswered)
{
    const json before = get("/api/requests");
    ask("closeServer", server_handle("0123456789abcdef0123456789abcdef"));
    const json after = get("/api/requests?after=" + before.at("last").dump());
    EXPECT_EQ(after.at("instance"), get("/api/state").at("instance"));
    ASSERT_EQ(after.at("requests").size(), 1U);
    const json told = after.at("requests").at(0);
    EXPECT_EQ(told.at("number"), after.at("last"));
    EXPECT_EQ(told.at("operation"), "closeServer");
    EXPECT_EQ(told.at("status"), 500);
    EXPECT_EQ(told.at("fault"), kBadHandle);
    EXPECT_EQ(told.at("tls"), false);
    EXPECT_EQ(told.at("trouble"), "");
    const json whole = get("/api/requests/" + told.at("number").dump());
    EXPECT_THAT(whole.at("request").get<std::string>(), HasSubstr("closeServer"));
    EXPECT_THAT(whole.at("reply").get<std::string>(), HasSubstr("Fault"));
    EXPECT_EQ(whole.at("method"), "POST");
    EXPECT_EQ(whole.at("path"), "/");
    EXPECT_EQ(entry_with(whole.at("fields"), "name", "SOAPAction").at("value"), "\"\"");
    EXPECT_EQ(get("/api/requests?limit=1").at("requests"), after.at("requests"));
    EXPECT_EQ(get("/api/report").at("log").at("entries").size(), told.at("number"));
}

TEST_F(SimulatorApiViews, RequestsCanBeForgottenAndTheirNumbersGoOn)
{
    const json last = get("/api/requests").at("last");
    EXPECT_EQ(remove("/api/requests").status, 204);
    EXPECT_EQ(get("/api/requests").at("last"), last);
    EXPECT_EQ(get("/api/requests").at("requests"), json::array());
    EXPECT_EQ(refusal("/api/requests/1", 404), "there is no request of that number, or no more");
    label("x");
    EXPECT_EQ(get("/api/requests").at("requests").at(0).at("number"), last.get<int>() + 1);
}

TEST_F(SimulatorApiViews, TheDifferencesOfTwoSnapshotsAreThoseOfTheirFiles)
{
    const std::string path = "/api/differences?server=Near&lsu=home&later=old";
    json told = get(path);
    EXPECT_EQ(told.at("total"), 3);
    EXPECT_EQ(told.at("isCut"), false);
    EXPECT_EQ(told.at("changes").at(1),
              json({{"path", "b"}, {"change", "created"}, {"type", "file"}, {"size", 150}}));
    told = get("/api/differences?server=Near&lsu=home&base=old&later=new&limit=2");
    EXPECT_EQ(told.at("total"), 3);
    EXPECT_EQ(told.at("isCut"), true);
    EXPECT_EQ(told.at("changes").size(), 2U);
    EXPECT_EQ(told.at("changes").at(0).at("change"), "deleted");
    EXPECT_EQ(refusal("/api/differences?server=Near&lsu=home", 400), "the parameter \"later\" is missing");
    EXPECT_EQ(refusal(path + "er", 404), "the LSU has no snapshot called \"older\"");
    EXPECT_EQ(refusal("/api/differences?server=Near&lsu=x&later=old", 404),
              "the server has no LSU called \"x\"");
    EXPECT_EQ(refusal(path + "&limit=-1", 400), "the parameter \"limit\" is no number");
    EXPECT_EQ(refusal(path + "&limit=1x", 400), "the parameter \"limit\" is no number");
    EXPECT_EQ(refusal(path + "&limit=99999999999999999999", 400), "the parameter \"limit\" is no number");
}

TEST_F(SimulatorApiViews, TheContractNamesEveryOperationAndTellsWhatItDoes)
{
    const json operations = get("/api/contract").at("operations");
    EXPECT_EQ(operations.size(), 74U);
    for (const json& operation : operations) EXPECT_NE(operation.at("text"), "") << operation.at("name");
}

TEST_F(SimulatorApiViews, TheScenarioIsTheTextThatWasRead)
{
    const HttpReply reply = simulator_api::get(port(), "/api/scenario");
    EXPECT_EQ(reply.body, scenario());
    json_of(reply);
}

// An operation without a name of its own goes by its token, and events tell of it.
TEST_F(SimulatorApiViews, NoTokenAndNoCredentialIsShown)
{
    std::vector<std::string> secrets = {"c2ltdWxhdG9y", near_, far_};
    secrets.push_back(open("openSnapList", lsu(near_, "home")));
    secrets.push_back(open("openImageList", lsu(near_, "home")));
    secrets.push_back(open("openLSUList", server_handle(near_)));
    secrets.push_back(open_channel());
    secrets.push_back(start("asyncCreateSnapByName", create("demo.1")));
    end(secrets.back());
    take_all(secrets[6]);
    secrets.push_back(start("asyncCreateSnapByName", create("demo.2")));
    ask("asyncCancel", by_id(secrets.back()));
    std::string all;
    for (const std::string path : {"state", "operations", "events", "requests", "report", "faults",
                                   "contract", "scenario", "differences?server=Near&lsu=home&later=demo.1"}) {
        const HttpReply reply = simulator_api::get(port(), "/api/" + path);
        EXPECT_EQ(reply.status, 200) << path;
        all += reply.head + reply.body;
    }
    const json recorded = get("/api/requests");
    for (const json& each : recorded.at("requests")) {
        all += get("/api/requests/" + each.at("number").dump()).dump();
    }
    EXPECT_THAT(all, HasSubstr("asyncWaitSnap"));
    for (const std::string& secret : secrets) {
        EXPECT_FALSE(secret.empty());
        EXPECT_THAT(all, Not(HasSubstr(secret)));
    }
}

// By default a client's text is kept as a byte for each of its characters, which need be no UTF-8.
TEST_F(SimulatorApiViews, OddNamesAreStringsLikeAnyOther)
{
    label("&lt;/script>\n\t\"\\\xc3\xa9");
    EXPECT_EQ(lsu_of("Near", "side").at("label"), "</script>\n\t\"\\\xef\xbf\xbd");
    open_server("Near:\"&lt;b>&amp;");
    EXPECT_EQ(server("Near").at("sessions").at(1).at("name"), "Near:\"<b>&");
}

} // namespace
} // namespace simulator_api
