// What people change by the simulator's API.
#include "tests/system/simulator_api.h"

namespace simulator_api
{
namespace
{

class SimulatorApiControls : public ApiClient
{
  protected:
    long fault_of_label() const { return fault("labelLSU", lsu(near_, "side") + element("lsuLabel", "x")); }
};

TEST_F(SimulatorApiControls, AFaultIsSetAndMetAndGone)
{
    const HttpReply added =
        post("/api/faults", R"({"operation": "labelLSU", "kind": "fault", "code": 2060005, "count": 2})");
    const json set = json_of(added, 201);
    EXPECT_EQ(set.at("number"), 1);
    EXPECT_EQ(set.at("left"), 2);
    EXPECT_EQ(get("/api/faults").at("faults"), json::array({set}));
    EXPECT_EQ(fault_of_label(), kBusy);
    EXPECT_EQ(get("/api/faults").at("faults").at(0).at("left"), 1);
    EXPECT_EQ(get("/api/faults").at("faults").at(0).at("hits"), 1);
    EXPECT_EQ(fault_of_label(), kBusy);
    EXPECT_EQ(get("/api/faults").at("faults"), json::array());
    EXPECT_EQ(fault_of_label(), -1);
}

TEST_F(SimulatorApiControls, AFaultCanBeTakenAwayAloneOrWithAllOthers)
{
    const std::string body = R"({"operation": "labelLSU", "kind": "fault", "code": 2060005})";
    for (int i = 0; i < 3; ++i) EXPECT_EQ(post("/api/faults", body).status, 201);
    EXPECT_EQ(remove("/api/faults/2").status, 204);
    EXPECT_EQ(remove("/api/faults/2").status, 404);
    EXPECT_EQ(get("/api/faults").at("faults").size(), 2U);
    EXPECT_EQ(remove("/api/faults").status, 204);
    EXPECT_EQ(fault_of_label(), -1);
}

// The time of the storage tells that the request has come.
TEST(SimulatorApiDelay, CanBeTakenAwayThoughAllThreadsWaitBecauseOfIt)
{
    const TemporaryFolder folder;
    const SimulatorProcess simulator({"--threads", "1", "--delay", "listLSU=3600000", "--scenario",
                                      folder.write("requests.json", scenario())});
    const int port = simulator.http_port();
    const ClientSocket client(port);
    client.send(post_text(kit::envelope(element("listLSU", nil("lsuListHandle")))));
    while (json_of(get(port, "/api/state")).at("time") != 1) continue;
    EXPECT_EQ(send(port, request_text("DELETE", "/api/faults/1")).status, 204);
    EXPECT_EQ(parse_reply(client.receive_all()).status, 500);
}

TEST_F(SimulatorApiControls, AFaultThatMakesNoSenseIsRefusedWithTheReason)
{
    for (const char* body :
         {"", "{", "[]", "7", R"({"operation": "labelLSU"})", R"({"operation": "none", "kind": "cut"})",
          R"({"operation": "labelLSU", "kind": "odd"})",
          R"({"operation": "labelLSU", "kind": "cut", "more": 1})", "{\"operation\": \"\xff\"}"}) {
        EXPECT_THAT(refusal_of(post("/api/faults", body), 400), Not(IsEmpty())) << body;
    }
    EXPECT_EQ(get("/api/faults").at("faults"), json::array());
}

// Whoever reads JSON calls himself for what is nested.
TEST_F(SimulatorApiControls, DeeplyNestedJsonIsRefused)
{
    const std::string deep = std::string(400000, '[') + std::string(400000, ']');
    for (const char* path : {"/api/faults", "/api/scenario"}) {
        EXPECT_THAT(refusal_of(post(path, deep), 400), HasSubstr("nest"));
        EXPECT_THAT(refusal_of(post(path, "{\"a\": " + deep + "}"), 400), HasSubstr("nest"));
        EXPECT_THAT(refusal_of(post(path, "\"" + deep + "\""), 400), Not(HasSubstr("nest")));
    }
}

TEST_F(SimulatorApiControls, AnOperationIsCancelledOnce)
{
    const std::string id = start("asyncCreateSnapByName", create("demo.1"));
    EXPECT_EQ(post("/api/operations/1/cancel").status, 204);
    EXPECT_EQ(error_of(wait(id)), kCancelled);
    EXPECT_EQ(refusal_of(post("/api/operations/1/cancel"), 409), "the operation has ended already");
    EXPECT_THAT(refusal_of(post("/api/operations/2/cancel"), 404), HasSubstr("no such operation"));
    EXPECT_EQ(lsu_of("Near", "home").at("snapshots").size(), 2U);
}

TEST_F(SimulatorApiControls, AResetTakesSessionsListsOperationsAndChangesAway)
{
    const std::string list = open("openSnapList", lsu(near_, "home"));
    next(kSnapshots, list);
    const std::string id = start("asyncCreateSnapByName", create("demo.1"));
    label("changed");
    const json recorded = get("/api/requests").at("requests");
    EXPECT_EQ(post("/api/reset").status, 204);
    EXPECT_EQ(fault_code(next(kSnapshots, list)), kBadHandle);
    EXPECT_EQ(fault("asyncWaitSnap", by_id(id)), kUnknownOperation);
    EXPECT_EQ(fault_of_label(), kBadHandle);
    EXPECT_EQ(server("Near").at("sessions"), json::array());
    EXPECT_EQ(lsu_of("Near", "side").at("label"), "");
    EXPECT_EQ(get("/api/operations").at("operations"), json::array());
    EXPECT_EQ(get("/api/events").at("events").size(), 4U);
    EXPECT_EQ(get("/api/requests").at("requests").size(), recorded.size() + 3);
}

// Somebody may look at an older list while he cancels one.
TEST_F(SimulatorApiControls, TheNumbersOfOperationsGoOnAfterAReset)
{
    start("asyncCreateSnapByName", create("demo.1"));
    EXPECT_EQ(post("/api/reset").status, 204);
    ask("asyncCreateSnapByName", server_handle(open_server("Near:filer")) +
                                     element("sourceVolSpec", home_volume()) +
                                     definition("targetSnapDef", "demo.1") + targets({}) + kSet);
    EXPECT_EQ(get("/api/operations").at("operations").at(0).at("number"), 2);
}

TEST(SimulatorApiReset, SetsTheFaultsOfTheCommandLineAgain)
{
    const SimulatorProcess simulator({"--fault", "openServer=2060005,1"});
    const int port = simulator.http_port();
    const auto faults = [port] { return json_of(get(port, "/api/faults")).at("faults"); };
    ask(port, "openServer", "");
    EXPECT_EQ(faults(), json::array());
    EXPECT_EQ(post(port, "/api/faults", R"({"operation": "closeServer", "kind": "reset"})").status, 201);
    EXPECT_EQ(post(port, "/api/reset").status, 204);
    ASSERT_EQ(faults().size(), 1U);
    EXPECT_EQ(faults().at(0).at("operation"), "openServer");
    EXPECT_EQ(faults().at(0).at("left"), 1);
}

TEST_F(SimulatorApiControls, APostedScenarioTakesThePlaceOfTheOther)
{
    const std::string text = R"({"servers": [{"prefix": "Posted", "lsus": [{"name": "only"}]}]})";
    EXPECT_EQ(post("/api/scenario", text).status, 204);
    EXPECT_EQ(fault_of_label(), kBadHandle);
    json state = get("/api/state");
    EXPECT_EQ(state.at("scenario"), "posted");
    EXPECT_EQ(state.at("servers").size(), 1U);
    EXPECT_EQ(simulator_api::get(port(), "/api/scenario").body, text);
    const std::string session = open_server("Posted:host");
    EXPECT_EQ(ask("labelLSU", lsu(session, "only") + element("lsuLabel", "x")).status, 200);
    EXPECT_EQ(post("/api/reset").status, 204);
    EXPECT_EQ(lsu_of("Posted", "only").at("label"), "");
}

TEST_F(SimulatorApiControls, AScenarioThatIsWrongIsRefusedWithThePlaceAndChangesNothing)
{
    EXPECT_EQ(refusal_of(post("/api/scenario", "{\n  x"), 400).substr(0, 17), "line 2, column 3:");
    EXPECT_THAT(refusal_of(post("/api/scenario", R"({"servers": [{"prefix": 7}]})"), 400),
                HasSubstr("servers[0].prefix: a string is expected"));
    EXPECT_THAT(refusal_of(post("/api/scenario", "\xff\xfe"), 400), Not(IsEmpty()));
    EXPECT_EQ(fault_of_label(), -1);
    EXPECT_NE(get("/api/state").at("scenario"), "posted");
}

TEST_F(SimulatorApiControls, AScenarioFromThisMachineMayNameATree)
{
    const TemporaryFolder folder;
    folder.write("a file", "12345");
    const std::string tree = std::filesystem::path(folder.write("b", "")).parent_path();
    const json scenario = {
        {"servers",
         {{{"prefix", "P"},
           {"lsus",
            {{{"name", "l"},
              {"snapshots",
               {{{"name", "s"}, {"volume", {{"device", {{"devicePath", "d"}}}}}, {"tree", tree}}}}}}}}}}};
    EXPECT_EQ(post("/api/scenario", scenario.dump()).status, 204);
    const json changes = get("/api/differences?server=P&lsu=l&later=s").at("changes");
    EXPECT_EQ(entry_with(changes, "path", "a file").at("size"), 5);
}

TEST(SimulatorApiScenario, WithoutAFileItIsTheBuiltInOne)
{
    const SimulatorProcess simulator;
    EXPECT_EQ(json_of(get(simulator.http_port(), "/api/state")).at("scenario"), "built-in");
    EXPECT_EQ(get(simulator.http_port(), "/api/scenario").body,
              run_process(SIMULATOR_PROGRAM, {"--print-scenario"}).out);
}

} // namespace
} // namespace simulator_api
