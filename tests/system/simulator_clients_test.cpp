// What clients do that no good client does, and how the simulator starts and stops.
#include "tests/kit/soap_text.h"
#include "tests/system/probe_process.h"
#include "tests/system/simulator_process.h"
#include "tests/system/soap_client.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <deque>

namespace
{

using kit::element;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string kProperties = element("server", "Network_NTAP:127.0.0.1");

bool answers(const SimulatorProcess& simulator)
{
    return ask(simulator.http_port(), "getServerPropByName", kProperties).status == 200 &&
           ask(simulator.https_port(), "getServerPropByName", kProperties, true).status == 200;
}

HttpReply send_raw(int port, const std::string& bytes)
{
    const ClientSocket client(port);
    client.send(bytes);
    return parse_reply(client.receive_all());
}

const std::string kPost = "POST / HTTP/1.1\r\nHost: x\r\n";

int status_of_head(const SimulatorProcess& simulator, const std::string& head)
{
    return send_raw(simulator.http_port(), head + "\r\n\r\n").status;
}

TEST(SimulatorClients, AHeadThatIsNoHttpIsABadRequest)
{
    const SimulatorProcess simulator;
    EXPECT_EQ(status_of_head(simulator, "POST / what\r\nHost: x"), 400);
    EXPECT_EQ(status_of_head(simulator, "POST /"), 400);
    EXPECT_EQ(status_of_head(simulator, "POST / HTTP/1.1\r\nContent-Length: 0"), 400); // and no Host
    EXPECT_EQ(status_of_head(simulator, kPost + "no colon"), 400);
    EXPECT_EQ(status_of_head(simulator, kPost + "Content-Length: -1"), 400);
    EXPECT_EQ(status_of_head(simulator, kPost + "Content-Length: 1x"), 400);
    EXPECT_EQ(status_of_head(simulator, kPost + "Content-Length:"), 400);
    EXPECT_EQ(status_of_head(simulator, kPost + "Content-Length: 0\r\nContent-Length: 0"), 400);
    EXPECT_TRUE(answers(simulator));
}

TEST(SimulatorClients, BytesThatAreNotEvenLikeAHeadEndTheConnection)
{
    const SimulatorProcess simulator;
    EXPECT_THAT(status_of_head(simulator, "\x01\x02 what is this"), testing::AnyOf(0, 400));
    EXPECT_TRUE(answers(simulator));
}

TEST(SimulatorClients, AnEmptyLineAheadOfARequestIsSkipped)
{
    const SimulatorProcess simulator;
    const std::string request = post_text(kit::envelope(element("getServerPropByName", kProperties)));
    EXPECT_EQ(send_raw(simulator.http_port(), "\r\n" + request).status, 200);
}

TEST(SimulatorClients, WhatTheServiceDoesNotTakeIsRefusedByItsHttpStatus)
{
    const SimulatorProcess simulator;
    EXPECT_EQ(status_of_head(simulator, "PUT / HTTP/1.1\r\nHost: x"), 405);
    EXPECT_EQ(status_of_head(simulator, "GET /elsewhere HTTP/1.1\r\nHost: x"), 405);
    EXPECT_EQ(status_of_head(simulator, "POST / HTTP/1.1\r\nHost: x"), 411);
    EXPECT_EQ(status_of_head(simulator, kPost + "Transfer-Encoding: chunked"), 411);
    EXPECT_EQ(status_of_head(simulator, kPost + "Content-Encoding: gzip\r\nContent-Length: 1"), 415);
    EXPECT_TRUE(answers(simulator));
}

TEST(SimulatorClients, ABodyOrHeadBeyondTheBoundIsRefusedUnread)
{
    const SimulatorProcess simulator;
    EXPECT_EQ(status_of_head(simulator, kPost + "Content-Length: 1048577"), 413);
    EXPECT_EQ(status_of_head(simulator, kPost + "Content-Length: 99999999999999999999999999"), 413);
    EXPECT_EQ(send_raw(simulator.http_port(), post_text(std::string(3 * 1024 * 1024, 'x'))).status, 413);
    const std::string field = kPost + "X: ";
    EXPECT_EQ(status_of_head(simulator, field + std::string(16 * 1024 - field.size() - 3, 'x')), 431);
    EXPECT_EQ(send_raw(simulator.http_port(), field + std::string(64 * 1024, 'x')).status, 431);
    EXPECT_EQ(send_raw(simulator.http_port(), "POST /" + std::string(64 * 1024, 'x')).status, 414);
    EXPECT_TRUE(answers(simulator));
}

TEST(SimulatorClients, AHeadOfTheGreatestSizeIsRead)
{
    const SimulatorProcess simulator;
    const std::string field = kPost + "Content-Length: 0\r\nX: ";
    EXPECT_EQ(status_of_head(simulator, field + std::string(16 * 1024 - field.size() - 4, 'x')), 500);
}

TEST(SimulatorClients, ABodyOfTheGreatestSizeIsRead)
{
    const SimulatorProcess simulator;
    std::string body = kit::envelope(element("getServerPropByName", kProperties));
    body.append(1024 * 1024 - body.size(), ' ');
    EXPECT_EQ(send_raw(simulator.http_port(), post_text(body)).status, 200);
}

TEST(SimulatorClients, ABodyThatIsNoSoapGetsAFault)
{
    const SimulatorProcess simulator;
    std::string deep;
    for (int i = 0; i < 100000; ++i) deep += "<a>";
    for (const std::string& body :
         {std::string(), std::string("garbage"), std::string("<<<>"), std::string("\0\xff\xfe", 3),
          std::string("{\"json\": true}"), std::string("<getServerPropByName/>"), deep, kit::envelope(deep),
          kit::envelope(""), kit::envelope(element("getServerPropByName", kProperties)).substr(0, 300)}) {
        const HttpReply reply = send_raw(simulator.http_port(), post_text(body));
        EXPECT_EQ(reply.status, 500) << body.substr(0, 50);
        EXPECT_THAT(reply.body, HasSubstr("<SOAP-ENV:Fault><faultcode>SOAP-ENV:")) << body.substr(0, 50);
        EXPECT_EQ(reply.body.find("STSException"), std::string::npos);
    }
    EXPECT_TRUE(answers(simulator));
}

TEST(SimulatorClients, AnUnknownElementIsSkippedHoweverDeeplyItIsNested)
{
    const SimulatorProcess simulator;
    std::string nested;
    for (int i = 0; i < 50000; ++i) nested += "<ns1:a>";
    for (int i = 0; i < 50000; ++i) nested += "</ns1:a>";
    EXPECT_EQ(ask(simulator.http_port(), "getServerPropByName", nested + kProperties).status, 200);
}

HttpReply ask_with(const SimulatorProcess& simulator, const std::string& attributes)
{
    const std::string name = "ns1:getServerPropByName";
    const std::string message =
        kit::envelope("<" + name + attributes + ">" + kProperties + "</" + name + ">");
    return send_raw(simulator.http_port(), post_text(message));
}

// The SOAP runtime would search through all of them for each of them.
TEST(SimulatorClients, MoreAttributesOrNamespacesThanAnyClientHasAreRefused)
{
    const char* const kRefused = "the request has too many attributes or namespaces";
    const SimulatorProcess simulator;
    for (const char* prefix : {"a", "xmlns:a"}) {
        std::string attributes;
        std::string some;
        std::string too_many; // all of which are read ahead of the refusal
        for (int i = 0; i < 3000; ++i) {
            attributes += std::string(" ") + prefix + std::to_string(i) + "=\"x\"";
            if (i == 50) some = attributes;
            if (i == 150) too_many = attributes;
        }
        EXPECT_EQ(ask_with(simulator, some).status, 200) << prefix;
        EXPECT_THAT(ask_with(simulator, too_many).body, HasSubstr(kRefused)) << prefix;
        EXPECT_THAT(ask_with(simulator, attributes).body, HasSubstr(kRefused)) << prefix;
    }
    EXPECT_TRUE(answers(simulator));
}

TEST(SimulatorClients, AnEntityOfTheDocumentIsNotExpanded)
{
    const SimulatorProcess simulator;
    std::string body = kit::envelope(element("getServerPropByName", element("server", "&e;")));
    body.insert(body.find("<SOAP-ENV:Envelope"),
                "<!DOCTYPE x [<!ENTITY e SYSTEM \"file:///etc/hostname\">]>");
    const HttpReply reply = send_raw(simulator.http_port(), post_text(body));
    EXPECT_EQ(reply.status, 500);
    EXPECT_TRUE(answers(simulator));
}

TEST(SimulatorClients, AnEnvelopeOfTheNewerSoapIsAnsweredInKind)
{
    const SimulatorProcess simulator;
    std::string body = kit::envelope(element("getServerPropByName", element("server", "nobody")));
    const std::string old_namespace = "http://schemas.xmlsoap.org/soap/envelope/";
    body.replace(body.find(old_namespace), old_namespace.size(), "http://www.w3.org/2003/05/soap-envelope");
    const HttpReply reply = send_raw(simulator.http_port(), post_text(body));
    EXPECT_EQ(reply.status, 500);
    EXPECT_THAT(reply.head, HasSubstr("application/soap+xml"));
    EXPECT_EQ(text_of(text_of(reply.body, "STSException"), "errorCode"), "2069001");
}

TEST(SimulatorClients, ARequestInSmallPiecesIsPutTogether)
{
    const SimulatorProcess simulator;
    const ClientSocket client(simulator.http_port());
    for (const char byte : post_text(kit::envelope(element("getServerPropByName", kProperties)))) {
        client.send({&byte, 1});
    }
    EXPECT_EQ(parse_reply(client.receive_all()).status, 200);
}

TEST(SimulatorClients, AClientThatWaitsForAWordIsToldToGoOn)
{
    const SimulatorProcess simulator;
    const std::string body = kit::envelope(element("getServerPropByName", kProperties));
    const ClientSocket client(simulator.http_port());
    client.send(kPost + "Expect: 100-continue\r\nContent-Length: " + std::to_string(body.size()) +
                "\r\n\r\n");
    char word[26] = "";
    ASSERT_EQ(recv(client.fd(), word, 25, MSG_WAITALL), 25);
    EXPECT_STREQ(word, "HTTP/1.1 100 Continue\r\n\r\n");
    client.send(body);
    EXPECT_EQ(parse_reply(client.receive_all()).status, 200);
}

TEST(SimulatorClients, SilentAndHalfOpenClientsKeepNobodyWaiting)
{
    SimulatorProcess simulator({"--threads", "2"});
    const std::string whole = post_text(kit::envelope(element("getServerPropByName", kProperties)));
    std::deque<ClientSocket> clients;
    for (int i = 0; i < 10; ++i) {
        clients.emplace_back(simulator.http_port());
        clients.emplace_back(simulator.https_port());
        clients.emplace_back(simulator.http_port()).send(whole.substr(0, 30));
        clients.emplace_back(simulator.http_port()).send(whole.substr(0, whole.size() - 1));
        clients.emplace_back(simulator.https_port()).send("\x16\x03\x01");
    }
    EXPECT_TRUE(answers(simulator));
    clients[3].send(whole.substr(whole.size() - 1));
    EXPECT_EQ(parse_reply(clients[3].receive_all()).status, 200);
    EXPECT_EQ(simulator.stop(SIGTERM), 0) << simulator.errors();
}

TEST(SimulatorClients, MoreSilentClientsThanThereIsRoomForMakeRoomForOneThatAsks)
{
    const SimulatorProcess simulator;
    std::deque<ClientSocket> clients;
    for (int i = 0; i < 300; ++i) clients.emplace_back(simulator.http_port());
    EXPECT_TRUE(answers(simulator));
    EXPECT_THAT(clients.front().receive_all(), IsEmpty()); // dropped: the read ends
    EXPECT_FALSE(clients.back().has_something_to_read());
}

TEST(SimulatorClients, ClientsThatVanishDisturbNothing)
{
    SimulatorProcess simulator({"--delay", "openServer=3600000", "--threads", "4"});
    const std::string whole = post_text(kit::envelope(element("openServer", kProperties)));
    for (int i = 0; i < 2; ++i) {
        ClientSocket in_service(simulator.http_port());
        in_service.send(whole);
        in_service.reset();
    }
    const std::string quick = post_text(kit::envelope(element("getServerPropByName", kProperties)));
    for (int i = 0; i < 10; ++i) {
        ClientSocket impatient(simulator.http_port());
        impatient.send(quick);
        impatient.reset();
        ClientSocket torn(simulator.https_port());
        torn.send("\x16\x03");
        torn.reset();
    }
    EXPECT_TRUE(answers(simulator));
    EXPECT_EQ(simulator.stop(SIGTERM), 0) << simulator.errors();
}

TEST(SimulatorClients, PlainTextOnTheTlsPortDisturbsNothing)
{
    SimulatorProcess simulator({"-v"});
    const std::string request = post_text(kit::envelope(element("getServerPropByName", kProperties)));
    EXPECT_EQ(send_raw(simulator.https_port(), request).status, 0);
    EXPECT_TRUE(answers(simulator));
    EXPECT_EQ(simulator.stop(SIGTERM), 0);
    EXPECT_THAT(simulator.errors(), HasSubstr(" -: closed without a whole request"));
}

TEST(SimulatorStart, UrlsAreToldInOrderWithTheirRealPorts)
{
    const SimulatorProcess simulator;
    ASSERT_EQ(simulator.urls().size(), 2U);
    EXPECT_EQ(simulator.urls()[0], "http://127.0.0.1:" + std::to_string(simulator.http_port()));
    EXPECT_EQ(simulator.urls()[1], "https://127.0.0.1:" + std::to_string(simulator.https_port()));
    EXPECT_GT(simulator.http_port(), 0);
    EXPECT_NE(simulator.http_port(), simulator.https_port());
}

TEST(SimulatorStart, AnIpv6AddressIsServedAndNamedInBrackets)
{
    try {
        const SimulatorProcess simulator(
            SimulatorProcess::Exactly{{"--http", "[::1]:0", "--https", "127.0.0.1:0"}});
        EXPECT_THAT(simulator.urls().front(), StartsWith("http://[::1]:"));
        const ClientSocket client(simulator.http_port(), "::1");
        client.send(post_text(kit::envelope(element("getServerPropByName", kProperties))));
        EXPECT_THAT(client.receive_all(), HasSubstr("11;1;2;http;" + simulator.urls().front() + "<"));
    } catch (const std::runtime_error& error) {
        if (std::string(error.what()).find("can't listen on [::1]:0") == std::string::npos) throw;
        GTEST_SKIP() << "this machine has no IPv6 loopback";
    }
}

TEST(SimulatorStart, APortInUseIsNamedInTheError)
{
    const SimulatorProcess first;
    const std::string taken = "127.0.0.1:" + std::to_string(first.http_port());
    const ProcessResult second = run_process(SIMULATOR_PROGRAM, {"--http", taken, "--https", "127.0.0.1:0"});
    EXPECT_EQ(second.exit_code, 1);
    EXPECT_EQ(second.out, "");
    EXPECT_THAT(second.err,
                AllOf(StartsWith("soapwrapper-sim: can't listen on " + taken), HasSubstr("in use")));
}

TEST(SimulatorStart, AWrongCommandLineIsExplainedAndEndsWithTwo)
{
    const ProcessResult result = run_process(SIMULATOR_PROGRAM, {"--fault", "openServr=1"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("--fault: \"openServr=1\" doesn't begin with an operation"));
}

TEST(SimulatorStart, HelpAndVersionGoToStandardOutput)
{
    const ProcessResult version = run_process(SIMULATOR_PROGRAM, {"--version"});
    EXPECT_EQ(version.exit_code, 0);
    EXPECT_EQ(version.out, "soapwrapper-sim " SOAPWRAPPER_VERSION "\n");
    const ProcessResult help = run_process(SIMULATOR_PROGRAM, {"--help"});
    EXPECT_EQ(help.exit_code, 0);
    EXPECT_EQ(help.err, "");
    for (const char* option : {"--http", "--https", "--no-http", "--no-https", "--advertise", "--credential",
                               "--threads", "--fault", "--delay", "--verbose", "--version"}) {
        EXPECT_THAT(help.out, HasSubstr(option));
    }
}

TEST(SimulatorStop, EitherSignalEndsItWithZero)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        SimulatorProcess simulator;
        EXPECT_TRUE(answers(simulator));
        EXPECT_EQ(simulator.stop(signal), 0) << simulator.errors();
        EXPECT_EQ(simulator.errors(), "");
    }
}

TEST(SimulatorStop, ALogThatNobodyReadsHoldsNeitherTheRequestsNorIt)
{
    int log[2];
    ASSERT_EQ(pipe2(log, O_CLOEXEC), 0);
    ASSERT_GT(fcntl(log[1], F_SETPIPE_SZ, 4096), 0);
    SimulatorProcess simulator(SimulatorProcess::WithErrorsTo{log[1], {"-v"}});
    close(log[1]);
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(ask(simulator.http_port(), "getServerPropByName", kProperties).status, 200);
    }
    EXPECT_EQ(simulator.stop(SIGTERM), 0);
    close(log[0]);
}

TEST(SimulatorStop, ASilentClientDoesNotHoldIt)
{
    SimulatorProcess simulator;
    const ClientSocket silent(simulator.http_port());
    EXPECT_TRUE(answers(simulator));
    EXPECT_EQ(simulator.stop(SIGTERM), 0) << simulator.errors();
    EXPECT_THAT(silent.receive_all(), IsEmpty());
}

} // namespace
