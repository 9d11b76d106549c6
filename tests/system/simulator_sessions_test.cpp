#include "tests/kit/soap_text.h"
#include "tests/system/simulator_process.h"
#include "tests/system/soap_client.h"

#include <gmock/gmock.h>

#include <atomic>
#include <csignal>
#include <thread>

namespace
{

using kit::element;
using kit::nil;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr long kMissingElement = 2060001;
constexpr long kBadHandle = 2060022;
constexpr long kUnknownServer = 2069001;
constexpr long kCredentialRefused = 2069002;
constexpr long kNotSupported = 2069003;

const std::string kServer = "Network_NTAP:127.0.0.1";
const std::string kSimulatorInBase64 = "c2ltdWxhdG9y";

std::string session_definition()
{
    return element("sd", nil("proxy") + element("id", "7") + element("flags", "0"));
}

std::string credential(int len = 9, int type = 1,
                       const std::string& cert = element("cert", kSimulatorInBase64))
{
    return element("cred",
                   element("len", std::to_string(len)) + element("type", std::to_string(type)) + cert);
}

std::string handle(const std::string& token)
{
    return element("serverHandle", element("token", token));
}

std::string by_name(const std::string& server)
{
    return session_definition() + element("server", server);
}

std::string open_request(const std::string& server, const std::string& cred = credential())
{
    return by_name(server) + cred + element("requiredInterface");
}

std::string target_request(const std::string& token, const std::string& server,
                           const std::string& cred = credential())
{
    return handle(token) + element("server", server) + cred + element("interface");
}

class SimulatorSessions : public testing::Test
{
  protected:
    HttpReply ask_http(const std::string& operation, const std::string& content) const
    {
        return ask(simulator_.http_port(), operation, content);
    }

    std::string open_server(const std::string& server = kServer) const
    {
        return text_of(ask_http("openServer", open_request(server)).body, "token");
    }

    // How many sessions the server behind the token says it has, or the code of its fault.
    std::string sessions(const std::string& token) const
    {
        const HttpReply reply = ask_http("getServerProp", handle(token));
        return reply.status == 200 ? text_of(reply.body, "nconnect")
                                   : "fault " + std::to_string(fault_code(reply));
    }

    SimulatorProcess simulator_;
};

std::string rows_of(const SimulatorProcess& simulator)
{
    const HttpReply reply = ask(simulator.http_port(), "getServerPropByName", by_name(kServer));
    return text_of(reply.body, "requiredInterface");
}

TEST_F(SimulatorSessions, PropertiesByNameDescribeTheServerWithItsOwnUrls)
{
    const std::string http = "http://127.0.0.1:" + std::to_string(simulator_.http_port());
    const std::string https = "https://127.0.0.1:" + std::to_string(simulator_.https_port());
    const HttpReply reply = ask_http("getServerPropByName", by_name("Network_NTAP:filer"));
    EXPECT_EQ(reply.status, 200);
    EXPECT_THAT(reply.head, HasSubstr("Content-Type: text/xml; charset=utf-8"));
    std::string capabilities;
    for (const char* number : {"0", "1", "2", "3", "5", "8", "32", "33"})
        capabilities += element("item", number);
    const std::string rows =
        element("item", "11;1;1;https;" + https) + element("item", "11;1;2;http;" + http) +
        element("item", "11;1;2;https;" + https) + element("item", "11;2;0;https;" + https);
    const std::string info = element("server", "Network_NTAP:filer") +
                             element("sth", element("item", "Network_NTAP")) + element("flags", "0") +
                             element("maxconnect", "1024") + element("nconnect", "0") +
                             element("cap", capabilities) + element("requiredInterface", rows) +
                             element("cred", element("item", "1")) + element("ndmpHost", "filer");
    EXPECT_EQ(reply.body, element("getServerPropByNameResponse", element("info", info)));
}

TEST_F(SimulatorSessions, PropertiesByNameNameUrlsThatAnswer)
{
    const std::string rows = rows_of(simulator_);
    const std::string row = "11;1;2;https;https://127.0.0.1:";
    const std::size_t start = rows.find(row);
    ASSERT_NE(start, std::string::npos);
    const int port = std::stoi(rows.substr(start + row.size()));
    EXPECT_EQ(ask(port, "getServerPropByName", by_name(kServer), true).status, 200);
}

TEST_F(SimulatorSessions, PropertiesByNameNeedNoSessionDefinition)
{
    EXPECT_EQ(ask_http("getServerPropByName", nil("sd") + element("server", kServer)).status, 200);
}

TEST_F(SimulatorSessions, UnknownServersAreRefusedByNameAndAtTheOpen)
{
    for (const char* name : {"Network_NONE:host", "Network_NTAP", "Network_NTAP:", ":host", "",
                             "network_ntap:host", "Network_NTAPX:host"}) {
        EXPECT_EQ(fault_code(ask_http("getServerPropByName", by_name(name))), kUnknownServer) << name;
        EXPECT_EQ(fault_code(ask_http("openServer", open_request(name))), kUnknownServer) << name;
    }
}

TEST_F(SimulatorSessions, UnknownServerIsNamedInTheFaultWithoutWhatItMightSmuggleIn)
{
    const HttpReply reply = ask_http("getServerPropByName", by_name("x&#9;&lt;" + std::string(5000, 'y')));
    EXPECT_EQ(fault_code(reply), kUnknownServer);
    EXPECT_THAT(reply.body, HasSubstr("no server is called \"x?&lt;yyy"));
    EXPECT_LT(reply.body.size(), 1000U);
}

TEST_F(SimulatorSessions, OpenServerIssuesATokenOfItsOwnEachTime)
{
    const std::string first = open_server();
    const std::string second = open_server();
    EXPECT_EQ(first.size(), 32U);
    EXPECT_EQ(second.size(), 32U);
    EXPECT_NE(first, second);
    EXPECT_EQ(sessions(first), "2");
}

TEST_F(SimulatorSessions, OpenServerAnswersTheSameOverHttps)
{
    const HttpReply reply = ask(simulator_.https_port(), "openServer", open_request(kServer), true);
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(sessions(text_of(reply.body, "token")), "1");
}

TEST_F(SimulatorSessions, ServerPropertiesGiveBackTheNameThatWasOpened)
{
    const std::string token = open_server("Network_VAULT:somewhere");
    const HttpReply reply = ask_http("getServerProp", handle(token));
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.body.find("<ns1:getServerPropResponse><ns1:info><ns1:server>Network_VAULT:somewhere<"),
              0U);
    EXPECT_EQ(text_of(reply.body, "ndmpHost"), "somewhere");
}

TEST_F(SimulatorSessions, OpenServerRefusesAnyOtherCredential)
{
    const std::string wrong = element("cert", "c2ltdWxhdG9z");
    EXPECT_EQ(fault_code(ask_http("openServer", open_request(kServer, credential(9, 1, wrong)))),
              kCredentialRefused);
    EXPECT_EQ(fault_code(ask_http("openServer", open_request(kServer, credential(9, 2)))),
              kCredentialRefused);
    EXPECT_EQ(fault_code(ask_http("openServer", open_request(kServer, credential(8)))), kCredentialRefused);
    EXPECT_EQ(fault_code(ask_http("openServer", open_request(kServer, credential(-1)))), kCredentialRefused);
    EXPECT_EQ(fault_code(ask_http("openServer", open_request(kServer, credential(0, 1, nil("cert"))))),
              kCredentialRefused);
    const std::string with_terminator = element("cert", "c2ltdWxhdG9yAA==");
    EXPECT_EQ(fault_code(ask_http("openServer", open_request(kServer, credential(10, 1, with_terminator)))),
              kCredentialRefused);
    EXPECT_EQ(sessions(open_server()), "1");
}

TEST_F(SimulatorSessions, OpenServerWithoutACredentialIsMissingAnElement)
{
    EXPECT_EQ(fault_code(ask_http("openServer", open_request(kServer, nil("cred")))), kMissingElement);
    EXPECT_EQ(fault_code(ask_http("openServer", open_request(kServer, ""))), kMissingElement);
}

TEST_F(SimulatorSessions, CloseServerEndsTheSessionOnce)
{
    const std::string token = open_server();
    const HttpReply reply = ask_http("closeServer", handle(token));
    EXPECT_EQ(reply.status, 200);
    EXPECT_THAT(reply.body, AllOf(HasSubstr("closeServerResponse"), Not(HasSubstr("token"))));
    EXPECT_EQ(fault_code(ask_http("closeServer", handle(token))), kBadHandle);
    EXPECT_EQ(fault_code(ask_http("getServerProp", handle(token))), kBadHandle);
    EXPECT_EQ(fault_code(ask_http("openTargetServer", target_request(token, kServer))), kBadHandle);
    EXPECT_EQ(sessions(open_server()), "1");
}

TEST_F(SimulatorSessions, ATokenThatWasNeverIssuedIsABadHandle)
{
    for (const std::string& token : {std::string(), std::string("guess"), std::string(32, '0')}) {
        EXPECT_EQ(fault_code(ask_http("getServerProp", handle(token))), kBadHandle);
        EXPECT_EQ(fault_code(ask_http("closeServer", handle(token))), kBadHandle);
        EXPECT_EQ(fault_code(ask_http("openTargetServer", target_request(token, kServer))), kBadHandle);
    }
}

TEST_F(SimulatorSessions, AHandleThatIsNilOrHasNoTokenIsMissingAnElement)
{
    for (const char* operation : {"getServerProp", "closeServer", "openTargetServer"}) {
        EXPECT_EQ(fault_code(ask_http(operation, "")), kMissingElement);
        EXPECT_EQ(fault_code(ask_http(operation, nil("serverHandle"))), kMissingElement);
        EXPECT_EQ(fault_code(ask_http(operation, element("serverHandle", nil("token")))), kMissingElement);
    }
}

TEST_F(SimulatorSessions, ATargetServerOutlivesTheSessionThatItWasOpenedThrough)
{
    const std::string source = open_server();
    const HttpReply reply = ask_http("openTargetServer", target_request(source, "Network_VAULT:elsewhere"));
    const std::string target = text_of(text_of(reply.body, "targetServerHandle"), "token");
    ASSERT_EQ(target.size(), 32U);
    EXPECT_NE(target, source);
    EXPECT_EQ(ask_http("closeServer", handle(source)).status, 200);
    EXPECT_EQ(text_of(ask_http("getServerProp", handle(target)).body, "server"), "Network_VAULT:elsewhere");
    EXPECT_EQ(ask_http("closeServer", handle(target)).status, 200);
    EXPECT_EQ(fault_code(ask_http("getServerProp", handle(target))), kBadHandle);
}

TEST_F(SimulatorSessions, ATargetServerIsOpenedByNameAndCredentialLikeAnyOther)
{
    const std::string source = open_server();
    EXPECT_EQ(fault_code(ask_http("openTargetServer", target_request(source, "Network_NONE:x"))),
              kUnknownServer);
    EXPECT_EQ(fault_code(ask_http("openTargetServer", target_request(source, kServer, credential(9, 3)))),
              kCredentialRefused);
    EXPECT_EQ(fault_code(ask_http("openTargetServer", target_request(source, kServer, nil("cred")))),
              kMissingElement);
}

TEST_F(SimulatorSessions, AnOperationThatIsNotServedIsSaidToBeSo)
{
    EXPECT_EQ(fault_code(ask_http("copyExtent", "")), kNotSupported);
    EXPECT_EQ(fault_code(ask_http("includeInImage", "")), kNotSupported);
}

TEST_F(SimulatorSessions, ManyClientsAtOnceEachGetTheirOwnSession)
{
    constexpr int kClients = 8;
    constexpr int kRounds = 5;
    std::atomic<int> rounds_done{0};
    std::vector<std::thread> clients;
    for (int i = 0; i < kClients; ++i) {
        clients.emplace_back([this, i, &rounds_done] {
            const bool tls = i % 2 == 0;
            const int port = tls ? simulator_.https_port() : simulator_.http_port();
            for (int round = 0; round < kRounds; ++round) {
                const std::string name = "Network_NTAP:client" + std::to_string(i);
                const std::string token =
                    text_of(ask(port, "openServer", open_request(name), tls).body, "token");
                const std::string seen =
                    text_of(ask(port, "getServerProp", handle(token), tls).body, "server");
                const int closed = ask(port, "closeServer", handle(token), tls).status;
                if (seen == name && closed == 200) ++rounds_done;
            }
        });
    }
    for (std::thread& client : clients) client.join();
    EXPECT_EQ(rounds_done, kClients * kRounds);
    EXPECT_EQ(sessions(open_server()), "1");
    EXPECT_EQ(simulator_.stop(SIGTERM), 0) << simulator_.errors();
}

TEST(SimulatorOptions, CredentialSetsTheTextThatOpensAServer)
{
    const SimulatorProcess simulator({"--credential", "simulatos"});
    EXPECT_EQ(fault_code(ask(simulator.http_port(), "openServer", open_request(kServer))),
              kCredentialRefused);
    const std::string other = credential(9, 1, element("cert", "c2ltdWxhdG9z"));
    EXPECT_EQ(ask(simulator.http_port(), "openServer", open_request(kServer, other)).status, 200);
}

TEST(SimulatorOptions, AdvertiseSetsTheHostOfTheInterfaces)
{
    const SimulatorProcess simulator({"--advertise", "storage.example"});
    const std::string rows = rows_of(simulator);
    EXPECT_THAT(rows, HasSubstr("http://storage.example:" + std::to_string(simulator.http_port())));
    EXPECT_THAT(rows, HasSubstr("https://storage.example:" + std::to_string(simulator.https_port())));
    EXPECT_THAT(rows, Not(HasSubstr("127.0.0.1")));
}

TEST(SimulatorOptions, NoHttpsLeavesOnlyPlainInterfaces)
{
    const SimulatorProcess simulator(SimulatorProcess::Exactly{{"--no-https", "--http", "127.0.0.1:0"}});
    EXPECT_EQ(simulator.urls().size(), 1U);
    const std::string url = "http://127.0.0.1:" + std::to_string(simulator.http_port());
    EXPECT_EQ(rows_of(simulator), element("item", "11;1;1;http;" + url) +
                                      element("item", "11;1;2;http;" + url) +
                                      element("item", "11;2;0;http;" + url));
}

TEST(SimulatorOptions, NoHttpLeavesOnlyHttps)
{
    const SimulatorProcess simulator(SimulatorProcess::Exactly{{"--no-http", "--https", "127.0.0.1:0"}});
    EXPECT_EQ(simulator.urls().size(), 1U);
    const HttpReply reply = ask(simulator.https_port(), "getServerPropByName", by_name(kServer), true);
    EXPECT_THAT(reply.body, AllOf(HasSubstr("11;1;2;https;https://"), Not(HasSubstr("http://"))));
}

TEST(SimulatorOptions, FaultFailsTheOperationAsOftenAsToldAndThenNoMore)
{
    const SimulatorProcess simulator({"--fault", "getServerPropByName=2060005,2", "--fault",
                                      "getServerPropByName=-7,1", "--fault", "closeServer=0"});
    const auto ask_properties = [&] {
        return ask(simulator.http_port(), "getServerPropByName", by_name(kServer));
    };
    EXPECT_EQ(fault_code(ask_properties()), 2060005);
    EXPECT_EQ(fault_code(ask_properties()), 2060005);
    EXPECT_EQ(fault_code(ask_properties()), -7);
    EXPECT_EQ(ask_properties().status, 200);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(fault_code(ask(simulator.http_port(), "closeServer", handle("x"))), 0);
}

TEST(SimulatorOptions, FaultWorksForOperationsThatAreNotServed)
{
    const SimulatorProcess simulator({"--fault", "copyExtent=2060013,1"});
    EXPECT_EQ(fault_code(ask(simulator.http_port(), "copyExtent", "")), 2060013);
    EXPECT_EQ(fault_code(ask(simulator.http_port(), "copyExtent", "")), kNotSupported);
}

TEST(SimulatorOptions, DelayHoldsOnlyItsOperationAndEndsWithAStop)
{
    SimulatorProcess simulator({"--delay", "openServer=3600000", "--threads", "2"});
    const ClientSocket delayed(simulator.http_port());
    delayed.send(post_text(kit::envelope(element("openServer", open_request(kServer)))));
    EXPECT_EQ(ask(simulator.http_port(), "getServerPropByName", by_name(kServer)).status, 200);
    EXPECT_FALSE(delayed.has_something_to_read());
    simulator.send_signal(SIGTERM);
    const HttpReply reply = parse_reply(delayed.receive_all());
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(text_of(reply.body, "token").size(), 32U);
    EXPECT_EQ(simulator.wait(), 0) << simulator.errors();
}

TEST(SimulatorOptions, VerboseLogsRequestsAndNoSecrets)
{
    SimulatorProcess simulator({"-v"});
    const std::string opened = ask(simulator.http_port(), "openServer", open_request(kServer)).body;
    const std::string token = text_of(opened, "token");
    ask(simulator.https_port(), "getServerProp", handle(token), true);
    ask(simulator.http_port(), "openServer", open_request(kServer, credential(8)));
    ask(simulator.http_port(), "getServerProp", handle("secret-guess"));
    ask(simulator.http_port(), "getServerPropByName", by_name("a&#10;b"));
    ask(simulator.http_port(), "noSuchOperation", "");
    ASSERT_EQ(simulator.stop(SIGINT), 0);
    const std::string log = simulator.errors();
    EXPECT_THAT(log, testing::ContainsRegex(
                         "[0-9-]{10}T[0-9:]{8}\\.[0-9]{3}Z http 127\\.0\\.0\\.1:[0-9]+ openServer: ok\n"));
    EXPECT_THAT(log, testing::ContainsRegex("Z https 127\\.0\\.0\\.1:[0-9]+ getServerProp: ok\n"));
    EXPECT_THAT(log, HasSubstr("openServer: fault 2069002, the credential is refused"));
    EXPECT_THAT(log, HasSubstr("getServerProp: fault 2060022, "));
    EXPECT_THAT(log, HasSubstr("no server is called \"a?b\"\n"));
    EXPECT_THAT(log, HasSubstr(" -: fault, Method 'ns1:noSuchOperation' not implemented"));
    EXPECT_THAT(log, AllOf(Not(HasSubstr(token)), Not(HasSubstr("secret-guess")),
                           Not(HasSubstr(kSimulatorInBase64)), Not(HasSubstr("simulator"))));
}

TEST(SimulatorOptions, WithoutVerboseNothingIsLogged)
{
    SimulatorProcess simulator;
    ask(simulator.http_port(), "getServerPropByName", by_name(kServer));
    ASSERT_EQ(simulator.stop(SIGTERM), 0);
    EXPECT_EQ(simulator.errors(), "");
}

} // namespace
