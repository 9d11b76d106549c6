// Who may use the simulator's API, where, and with what requests.
#include "tests/system/simulator_api.h"

#include <unistd.h>

#include <csignal>
#include <map>

namespace simulator_api
{
namespace
{

class SimulatorApiAdmission : public ApiClient
{
  protected:
    int status(const Fields& fields) const { return simulator_api::get(port(), "/api/state", fields).status; }
    int status_of_post(const Fields& fields, const std::string& body) const
    {
        return send(port(), request_text("POST", "/api/faults", fields, body)).status;
    }
};

const std::string kFault = R"({"operation": "labelLSU", "kind": "cut"})";

TEST_F(SimulatorApiAdmission, EachPathIsAskedForByItsMethodsAlone)
{
    const std::map<std::string, std::string> methods = {{"/api/state", "GET"},
                                                        {"/api/operations", "GET"},
                                                        {"/api/operations/1/cancel", "POST"},
                                                        {"/api/events", "GET"},
                                                        {"/api/requests", "GET, DELETE"},
                                                        {"/api/requests/1", "GET"},
                                                        {"/api/report", "GET"},
                                                        {"/api/faults", "GET, POST, DELETE"},
                                                        {"/api/faults/1", "DELETE"},
                                                        {"/api/differences", "GET"},
                                                        {"/api/contract", "GET"},
                                                        {"/api/reset", "POST"},
                                                        {"/api/scenario", "GET, POST"},
                                                        {"/api/changes", "GET"}};
    for (const auto& [path, allowed] : methods) {
        const HttpReply reply = send(port(), request_text("PATCH", path));
        EXPECT_EQ(refusal_of(reply, 405), "the path is asked for by " + allowed);
        EXPECT_THAT(reply.head, HasSubstr("\r\nAllow: " + allowed + "\r\n"));
    }
}

TEST_F(SimulatorApiAdmission, OtherPathsAndNumbersAreNotFound)
{
    for (const char* path : {"/api/", "/api/states", "/api/state/", "/api/State", "/api/requests/",
                             "/api/requests/x", "/api/requests/1x", "/api/requests/-1", "/api/requests/+1",
                             "/api/requests/%201", "/api/requests/99999999999999999999", "/api/requests/1/",
                             "/api/faults//", "/api/operations//cancel", "/api/operations/cancel",
                             "/api/operations/1cancel", "/api/../api/state"}) {
        EXPECT_EQ(simulator_api::get(port(), path).status, 404) << path;
    }
}

TEST_F(SimulatorApiAdmission, ABodyHasToBeJsonAndAMebibyteAtMost)
{
    EXPECT_EQ(status_of_post({}, kFault), 415);
    EXPECT_EQ(status_of_post({{"Content-Type", "text/plain"}}, kFault), 415);
    EXPECT_EQ(status_of_post({{"Content-Type", "application/x-www-form-urlencoded"}}, kFault), 415);
    EXPECT_EQ(status_of_post({{"Content-Type", "application/jsonp"}}, kFault), 415);
    EXPECT_EQ(status_of_post({{"Content-Type", "text/plain, application/json"}}, kFault), 415);
    EXPECT_EQ(get("/api/faults").at("faults"), json::array());
    EXPECT_EQ(status_of_post({{"Content-Type", kJson}}, kFault), 201);
    EXPECT_EQ(status_of_post({{"content-type", "Application/JSON; charset=utf-8"}}, kFault), 201);
    const std::string padded = kFault + std::string((std::size_t{1} << 20) - kFault.size(), ' ');
    EXPECT_EQ(status_of_post({{"Content-Type", kJson}}, padded), 201);
    const std::string head = request_text("POST", "/api/faults", {{"Content-Type", kJson}});
    const std::string too_long = "Content-Length: " + std::to_string(padded.size() + 1);
    EXPECT_EQ(send(port(), std::string(head).replace(head.find("Content-Length: 0"), 17, too_long)).status,
              413);
}

// A name in whose zone somebody else lets it lead here is none of the simulator's.
TEST_F(SimulatorApiAdmission, TheHostHasToBeTheSimulators)
{
    char own[256] = "";
    gethostname(own, sizeof own - 1);
    for (const std::string host : {"localhost", "LocalHost:8085", "127.0.0.1:1", "10.1.2.3", "[::1]",
                                   "[2001:db8::1]:80", static_cast<const char*>(own)}) {
        EXPECT_EQ(status({{"Host", host}}), 200) << host;
    }
    for (const char* host :
         {"evil.example", "localhost.evil.example", "127.0.0.1.evil.example", "evil.example:8085", "", ":80",
          "127.0.0.1:80:80", "127.0.0.1:x", "127.1", "[127.0.0.1]", "[::1", "[::1]x", "::1",
          "127.0.0.1, 127.0.0.1", "localhost@evil.example", "\"localhost\""}) {
        EXPECT_NE(status({{"Host", host}}), 200) << host;
    }
    EXPECT_EQ(status({{"Host", "evil.example"}}), 403);
    EXPECT_NE(status({{"Host", "127.0.0.1"}, {"Host", "evil.example"}}), 200);
    EXPECT_NE(status({{"Host", "evil.example"}, {"Host", "127.0.0.1"}}), 200);
}

TEST_F(SimulatorApiAdmission, AnotherSitesPageIsRefused)
{
    const auto from = [this](const char* origin) {
        return status({{"Host", "127.0.0.1:8085"}, {"Origin", origin}});
    };
    EXPECT_EQ(from("http://127.0.0.1:8085"), 200);
    EXPECT_EQ(from("https://127.0.0.1:8085"), 200);
    for (const char* origin : {"http://evil.example", "null", "", "http://127.0.0.1", "http://127.0.0.1:8086",
                               "ftp://127.0.0.1:8085", "http://127.0.0.1:8085.evil.example"}) {
        EXPECT_EQ(from(origin), 403) << origin;
    }
    for (const char* site : {"cross-site", "same-site", "anything"}) {
        EXPECT_EQ(status({{"Sec-Fetch-Site", site}}), 403) << site;
    }
    for (const char* site : {"same-origin", "none"})
        EXPECT_EQ(status({{"Sec-Fetch-Site", site}}), 200) << site;
}

TEST_F(SimulatorApiAdmission, WhatIsRefusedChangesNothing)
{
    const json revision = get("/api/state").at("revision");
    EXPECT_EQ(status_of_post({{"Content-Type", kJson}, {"Origin", "http://evil.example"}}, kFault), 403);
    EXPECT_EQ(status_of_post({{"Content-Type", kJson}, {"Host", "evil.example"}}, kFault), 403);
    const std::string reset = request_text("POST", "/api/reset", {{"Origin", "http://evil.example"}});
    EXPECT_EQ(send(port(), reset).status, 403);
    EXPECT_EQ(get("/api/state").at("revision"), revision);
    EXPECT_EQ(server("Near").at("sessions").size(), 1U);
}

TEST_F(SimulatorApiAdmission, ThePageIsForTheSameVisitorsAndMayBeLinkedTo)
{
    EXPECT_THAT(simulator_api::get(port(), "/").body, HasSubstr("<!doctype html>"));
    EXPECT_EQ(simulator_api::get(port(), "/", {{"Sec-Fetch-Site", "cross-site"}}).status, 200);
    EXPECT_EQ(simulator_api::get(port(), "/", {{"Host", "evil.example"}}).status, 403);
    EXPECT_EQ(simulator_api::get(port(), "/page/main.js").status, 200);
    EXPECT_EQ(simulator_api::get(port(), "/page/main.js", {{"Host", "evil.example"}}).status, 403);
    EXPECT_EQ(simulator_api::get(port(), "/page/../page/main.js").status, 405);
}

TEST(SimulatorApiListeners, TheServicesOtherAddressesKnowNothingOfIt)
{
    const SimulatorProcess simulator({"--page", "127.0.0.1:0"});
    ASSERT_EQ(simulator.urls().size(), 3U);
    const std::string page = simulator.urls().back();
    ASSERT_THAT(page, StartsWith("page http://127.0.0.1:"));
    const int port = std::stoi(page.substr(page.rfind(':') + 1));
    EXPECT_EQ(get(port, "/api/state").status, 200);
    EXPECT_EQ(get(port, "/").status, 200);
    EXPECT_EQ(get(simulator.http_port(), "/api/state").status, 405);
    EXPECT_EQ(get(simulator.http_port(), "/").status, 405);
    EXPECT_EQ(post(simulator.http_port(), "/api/reset").status, 500) << "it is no message of SOAP";
    EXPECT_EQ(json_of(get(port, "/api/state")).at("urls").size(), 2U);
    const std::string properties = element("server", "Network_NTAP:filer");
    EXPECT_EQ(ask(simulator.http_port(), "getServerPropByName", properties).status, 200);
    EXPECT_EQ(ask(port, "getServerPropByName", properties).status, 405);
}

TEST(SimulatorApiListeners, TheWsdlAndTheSchemaAreServedEverywhereWithTheAddressByWhichTheClientCame)
{
    const SimulatorProcess simulator({"--page", "127.0.0.1:0"});
    const std::string page = simulator.urls().back();
    for (const int port : {simulator.http_port(), std::stoi(page.substr(page.rfind(':') + 1))}) {
        const HttpReply wsdl = get(port, "/?wsdl", {{"Host", "storage.example:8085"}});
        EXPECT_EQ(wsdl.status, 200);
        EXPECT_THAT(wsdl.body, HasSubstr("location=\"http://storage.example:8085\""));
        EXPECT_THAT(get(port, "/ns1.xsd").body, HasSubstr("elementFormDefault=\"qualified\""));
    }
    const TlsClient client(simulator.https_port());
    client.send(request_text("GET", "/?wsdl", {{"Host", "storage.example"}}));
    EXPECT_THAT(parse_reply(client.receive_all()).body, HasSubstr("location=\"https://storage.example\""));
}

TEST(SimulatorApiListeners, WithoutAPageThereIsNothingElseToGet)
{
    SimulatorProcess simulator({"--page", "127.0.0.1:0", "-v"});
    const HttpReply reply = get(simulator.http_port(), "/");
    EXPECT_EQ(reply.status, 405);
    EXPECT_THAT(reply.head, HasSubstr("\r\nAllow: POST\r\n"));
    simulator.stop(SIGTERM);
    EXPECT_THAT(simulator.errors(), HasSubstr(" -: refused with HTTP status 405\n"));
}

TEST(SimulatorApiListeners, TheNamesOfTheCommandLineAreItsOwn)
{
    const SimulatorProcess simulator({"--page", "localhost:0", "--advertise", "Storage.example"});
    const std::string page = simulator.urls().back();
    const int port = std::stoi(page.substr(page.rfind(':') + 1));
    EXPECT_EQ(get(port, "/api/state", {{"Host", "storage.example:8085"}}).status, 200);
    EXPECT_EQ(get(port, "/api/state", {{"Host", "other.example"}}).status, 403);
}

TEST(SimulatorApiListeners, AnAddressForPeopleIsLookedAtAheadOfTheStart)
{
    EXPECT_EQ(run_process(SIMULATOR_PROGRAM, {"--page", "8085"}).exit_code, 2);
    EXPECT_EQ(run_process(SIMULATOR_PROGRAM,
                          {"--http", "127.0.0.1:0", "--https", "127.0.0.1:0", "--page", "203.0.113.1:0"})
                  .exit_code,
              1);
}

TEST(SimulatorApiListeners, OverHttpsItIsThereToo)
{
    const SimulatorProcess simulator;
    const TlsClient client(simulator.https_port());
    client.send(request_text("GET", "/api/state"));
    json_of(parse_reply(client.receive_all()));
}

TEST(SimulatorApiListeners, WhateverIsPostedElsewhereIsSoap)
{
    const SimulatorProcess simulator;
    for (const std::string path : {"/", "/anything", "/api", "/apis/state"}) {
        const std::string body =
            kit::envelope(element("getServerPropByName", element("server", "Network_NTAP:h")));
        EXPECT_EQ(send(simulator.http_port(), request_text("POST", path, {}, body)).status, 200) << path;
    }
}

} // namespace
} // namespace simulator_api
