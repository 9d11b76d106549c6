// What a client sees of troubles, and what is written of requests to files.
#include "tests/kit/soap_text.h"
#include "tests/system/probe_process.h"
#include "tests/system/simulator_process.h"
#include "tests/system/soap_client.h"

#include <gmock/gmock.h>

#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

using kit::element;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr char kServer[] = "Network_NTAP:127.0.0.1";
constexpr char kCredential[] = "sesame-open-9";
constexpr char kCredentialInBase64[] = "c2VzYW1lLW9wZW4tOQ==";

std::string open_content(const std::string& cert = kCredentialInBase64)
{
    const std::string credential =
        element("cred", element("len", "13") + element("type", "1") + element("cert", cert));
    return element("server", kServer) + credential + element("requiredInterface");
}

SimulatorProcess::Arguments with_credential(SimulatorProcess::Arguments more)
{
    more.insert(more.end(), {"--credential", kCredential});
    return more;
}

std::string answer_to(int port, const std::string& body)
{
    const ClientSocket client(port);
    client.send(post_text(body));
    return client.receive_all();
}

class SimulatorTroubles : public testing::Test
{
  protected:
    static SimulatorProcess::Arguments failing(const std::string& trouble)
    {
        return with_credential({"-v", "--fault", "openServer=" + trouble + ",1"});
    }
    // All bytes of the answer to an openServer.
    static std::string opened(const SimulatorProcess& simulator)
    {
        return answer_to(simulator.http_port(), kit::envelope(element("openServer", open_content())));
    }
    static std::string sessions(const SimulatorProcess& simulator)
    {
        return text_of(ask(simulator.http_port(), "getServerPropByName", element("server", kServer)).body,
                       "nconnect");
    }
    // Whether the next one is answered as if nothing had been, and what the log tells of the one before.
    static void expect_recovery(SimulatorProcess& simulator, const std::string& sessions_before,
                                const std::string& outcome)
    {
        EXPECT_EQ(sessions(simulator), sessions_before);
        EXPECT_EQ(parse_reply(opened(simulator)).status, 200);
        EXPECT_EQ(simulator.stop(SIGTERM), 0);
        EXPECT_THAT(simulator.errors(), HasSubstr(" openServer: " + outcome + "\n"));
        EXPECT_THAT(simulator.errors(), HasSubstr(" openServer: ok\n"));
    }
};

TEST_F(SimulatorTroubles, AnEmptyAnswerIsNoByteAndNothingIsPerformed)
{
    SimulatorProcess simulator(failing("empty"));
    EXPECT_EQ(opened(simulator), "");
    expect_recovery(simulator, "0", "trouble: empty");
}

TEST_F(SimulatorTroubles, AResetComesInPlaceOfTheAnswer)
{
    SimulatorProcess simulator(failing("reset"));
    {
        const ClientSocket client(simulator.http_port());
        client.send(post_text(kit::envelope(element("openServer", open_content()))));
        char byte = 0;
        EXPECT_EQ(recv(client.fd(), &byte, 1, 0), -1);
        EXPECT_EQ(errno, ECONNRESET);
    }
    expect_recovery(simulator, "0", "trouble: reset");
}

TEST_F(SimulatorTroubles, GarbageIsNoHttpAndHoldsBytesOfAllKinds)
{
    SimulatorProcess simulator(failing("garbage"));
    const std::string bytes = opened(simulator);
    EXPECT_THAT(bytes, SizeIs(300));
    EXPECT_THAT(bytes, Not(HasSubstr("HTTP")));
    EXPECT_THAT(bytes, HasSubstr(std::string(1, '\0')));
    EXPECT_THAT(bytes, HasSubstr("\xFF"));
    expect_recovery(simulator, "0", "trouble: garbage");
}

TEST_F(SimulatorTroubles, AMalformedChunkHasASizeThatIsNoNumber)
{
    SimulatorProcess simulator(failing("malformed-chunk"));
    const HttpReply reply = parse_reply(opened(simulator));
    EXPECT_EQ(reply.status, 200);
    EXPECT_THAT(reply.head, AllOf(HasSubstr("Transfer-Encoding: chunked"), Not(HasSubstr("Content-Length"))));
    EXPECT_THAT(reply.body, StartsWith("xyz\r\n"));
    expect_recovery(simulator, "0", "trouble: malformed-chunk");
}

TEST_F(SimulatorTroubles, AnHttpErrorIsTheStatusAlone)
{
    SimulatorProcess simulator(failing("http-error:418"));
    const HttpReply reply = parse_reply(opened(simulator));
    EXPECT_EQ(reply.status, 418);
    EXPECT_THAT(reply.body, StartsWith("418 "));
    expect_recovery(simulator, "0", "trouble: http-error");
}

TEST_F(SimulatorTroubles, AnHttpErrorIs503UnlessToldOtherwise)
{
    SimulatorProcess simulator(failing("http-error"));
    EXPECT_EQ(parse_reply(opened(simulator)).status, 503);
}

TEST_F(SimulatorTroubles, AReplyThatIsCutComesHalfwayAndTheOperationIsPerformed)
{
    SimulatorProcess simulator(failing("cut"));
    const HttpReply reply = parse_reply(opened(simulator));
    EXPECT_EQ(reply.status, 200);
    const std::size_t at = reply.head.find("Content-Length: ");
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(reply.body.size(), std::stoul(reply.head.substr(at + 16)) / 2);
    expect_recovery(simulator, "1", "ok, trouble: cut");
}

TEST_F(SimulatorTroubles, AReplyThatDribblesIsWholeInTheEnd)
{
    SimulatorProcess simulator(failing("dribble:20"));
    const HttpReply reply = parse_reply(opened(simulator));
    EXPECT_EQ(reply.status, 200);
    EXPECT_THAT(reply.body, HasSubstr("</SOAP-ENV:Envelope>"));
    expect_recovery(simulator, "1", "ok, trouble: dribble");
}

TEST_F(SimulatorTroubles, AFaultOnDemandIsLoggedAsAFault)
{
    SimulatorProcess simulator(failing("2060005"));
    EXPECT_EQ(parse_reply(opened(simulator)).status, 500);
    expect_recovery(simulator, "0", "fault 2060005, openServer fails on demand");
}

TEST_F(SimulatorTroubles, ARequestThatIsNotTheOperationIsNotTroubled)
{
    SimulatorProcess simulator(failing("empty"));
    EXPECT_EQ(sessions(simulator), "0");
    EXPECT_EQ(parse_reply(answer_to(simulator.http_port(), "<openServer/>")).status, 500);
    EXPECT_EQ(opened(simulator), "");
}

// Files of the folder that end so, with what is in them.
std::vector<std::string> contents(const std::filesystem::path& folder, const std::string& end)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    std::vector<std::string> texts;
    for (const std::filesystem::path& file : files) {
        const std::string name = file.filename().string();
        if (name.size() >= end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0) {
            texts.push_back(read_file(file));
        }
    }
    return texts;
}

// The credential's text, and its Base64 as it stands in others: each time what no neighbour has a part in.
const std::vector<std::string> kSecrets = {kCredential, "c2VzYW1lLW9wZW4tO", "Nlc2FtZS1vcGVuLT",
                                           "zZXNhbWUtb3Blbi05"};

void expect_no_secret(const std::filesystem::path& folder)
{
    for (const std::string& text : contents(folder, "")) {
        std::string packed = text;
        packed.erase(std::remove_if(packed.begin(), packed.end(), [](char c) { return c <= ' '; }),
                     packed.end());
        for (const std::string& secret : kSecrets) {
            EXPECT_THAT(text, Not(HasSubstr(secret)));
            EXPECT_THAT(packed, Not(HasSubstr(secret)));
        }
    }
}

class SimulatorDumps : public testing::Test
{
  protected:
    TemporaryFolder parent_;
    const std::filesystem::path folder_ = parent_ / "dump";
    SimulatorProcess simulator_{with_credential({"--dump", folder_.string(), "--fault", "listLSU=garbage"})};
};

TEST_F(SimulatorDumps, HoldARunWithTokensThatCanBeFollowedAndNoSecret)
{
    const HttpReply opened = ask(simulator_.http_port(), "openServer", open_content());
    const std::string token = text_of(opened.body, "token");
    ASSERT_THAT(token, SizeIs(32));
    const std::string handle = element("serverHandle", element("token", token));
    ask(simulator_.http_port(), "getServerProp", handle);
    ask(simulator_.https_port(), "ioControl",
        handle + element("command", "10103") + element("args", "filer1 user sesame-open-9;/vol/archive") +
            element("ioflag", "0") + element("len", "0"),
        true);
    ask(simulator_.http_port(), "listLSU", element("lsuListHandle", element("token", "none")));
    answer_to(simulator_.http_port(), std::string("not ") + kCredential);

    EXPECT_TRUE(std::filesystem::exists(folder_ / "000001-openServer.request.xml"));
    EXPECT_TRUE(std::filesystem::exists(folder_ / "000003-ioControl.reply.xml"));
    EXPECT_TRUE(std::filesystem::exists(folder_ / "000005-unknown.request.xml"));
    const std::vector<std::string> requests = contents(folder_, ".request.xml");
    const std::vector<std::string> replies = contents(folder_, ".reply.xml");
    ASSERT_THAT(requests, SizeIs(5));
    ASSERT_THAT(replies, SizeIs(5));
    EXPECT_THAT(requests[0], HasSubstr("cert>***<"));
    EXPECT_THAT(replies[0], HasSubstr("token>[token 1]<"));
    EXPECT_THAT(requests[1], HasSubstr("token>[token 1]<"));
    EXPECT_THAT(replies[1], HasSubstr(kServer));
    EXPECT_THAT(requests[2], HasSubstr("args>filer1 ***;/vol/archive<"));
    EXPECT_EQ(replies[3], "(not XML, 300 bytes)\n");
    EXPECT_EQ(requests[4], "(not XML, 17 bytes)\n");
    for (const std::string& text : contents(folder_, "")) EXPECT_THAT(text, Not(HasSubstr(token)));
    expect_no_secret(folder_);
}

TEST_F(SimulatorDumps, HoldNoSecretOfARequestThatHidesIt)
{
    const std::string in_base64 = kCredentialInBase64;
    std::string spread;
    for (const char c : in_base64) spread += std::string(1, c) + "\n";
    std::string references;
    for (const char c : std::string(kCredential)) references += "&#" + std::to_string(int{c}) + ";";
    const std::vector<std::string> hiding = {
        element("server", kCredential),
        element("server", references),
        element("server", in_base64),
        element("server", "eHNlc2FtZS1vcGVuLTk="),
        element("server", "eHhzZXNhbWUtb3Blbi05"),
        element("server", spread),
        "<!-- " + std::string(kCredential) + " -->",
        "<a b='" + references + "'/>",
        std::string("<![CDATA[<cert>sesame-open-9]]>"),
        std::string("<cert>sesame-open-9"),
        std::string("<x:cert a='/>'>sesame<!-- </x:cert> -->-open-9</x:cert>"),
        open_content("<![CDATA[" + in_base64 + "]]>"),
        open_content("c2Vz<!-- -->YW1lLW9wZW4tOQ=="),
        element("args", "<![CDATA[filer user sesame-open-9;/vol]]>"),
        std::string(70000, ' ') + kCredential,
        std::string(65000, '.') + element("server", references)};
    for (const std::string& content : hiding) {
        for (const char* operation : {"openServer", "ioControl", kCredential}) {
            ask(simulator_.http_port(), operation, content);
        }
    }
    const std::string utf16 = kit::envelope(element("openServer", open_content()));
    std::string wide = "\xFF\xFE";
    for (const char c : utf16) wide += std::string(1, c) + std::string(1, '\0');
    answer_to(simulator_.http_port(), wide);
    answer_to(simulator_.http_port(), "--boundary\r\n\r\n" + utf16);
    EXPECT_THAT(contents(folder_, ".request.xml"), SizeIs(3 * hiding.size() + 2));
    expect_no_secret(folder_);
}

TEST(SimulatorDumpFolder, ThatCannotBeMadeEndsTheSimulatorAtOnce)
{
    const TemporaryFolder parent;
    const ProcessResult result =
        run_process(SIMULATOR_PROGRAM,
                    {"--http", "127.0.0.1:0", "--https", "127.0.0.1:0", "--dump", parent.write("file", "")});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_THAT(result.err, AllOf(HasSubstr("--dump: "), HasSubstr("can't be used: Not a directory")));
    EXPECT_THAT(result.out, IsEmpty());
}

TEST(SimulatorDumpFolder, ThatHasGoneStopsNoService)
{
    const TemporaryFolder parent;
    SimulatorProcess simulator({"--dump", (parent / "dump").string()});
    std::filesystem::remove_all(parent / "dump");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(ask(simulator.http_port(), "getServerPropByName", element("server", kServer)).status, 200);
    }
    EXPECT_EQ(simulator.stop(SIGTERM), 0);
    const std::string errors = simulator.errors();
    EXPECT_THAT(errors, HasSubstr("can't be written: No such file or directory"));
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1);
}

} // namespace
