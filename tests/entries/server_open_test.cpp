#include "tests/entries/server_fixture.h"

#include <future>

using namespace kit;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace
{

class OpenServer : public ServerTest
{
  protected:
    stsp_server_t* untouched() { return reinterpret_cast<stsp_server_t*>(&service_); }
};

} // namespace

TEST_F(OpenServer, RefusesNullArgumentsSilently)
{
    const Credential credential("abc");
    stsp_server_t* server = untouched();
    EXPECT_EQ(open_server()(nullptr, "Network_X:h", credential.get(), "", &server), 2060001);
    EXPECT_EQ(open_server()(session_.get(), nullptr, credential.get(), "", &server), 2060001);
    EXPECT_EQ(open_server()(session_.get(), "Network_X:h", credential.get(), "", nullptr), 2060001);
    EXPECT_EQ(open_server()(nullptr, nullptr, nullptr, nullptr, nullptr), 2060001);
    EXPECT_EQ(server, untouched());
    EXPECT_THAT(session_.lines(), IsEmpty());
}

TEST_F(OpenServer, RefusesANullCredentialAloud)
{
    stsp_server_t* server = untouched();
    EXPECT_EQ(open_server()(session_.get(), "Network_X:h", nullptr, "", &server), 2060001);
    EXPECT_EQ(server, untouched());
    EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_open_server: enter"),
                                              failure("stspi_open_server: null credentials not supported")));
}

TEST_F(OpenServer, TestsTheCredentialBeforeTheName)
{
    stsp_server_t* server = untouched();
    EXPECT_EQ(open_server()(session_.get(), "no colon", nullptr, "", &server), 2060001);
    EXPECT_EQ(session_.texts().back(), "stspi_open_server: null credentials not supported");
}

TEST_F(OpenServer, RefusesANameWithoutAColonAfterEnterAndSaysWhichOne)
{
    stsp_server_t* server = untouched();
    EXPECT_EQ(open("Network_X", &server), 2060001);
    EXPECT_EQ(open("", &server), 2060001);
    EXPECT_EQ(server, untouched());
    EXPECT_THAT(session_.lines(),
                ElementsAre(record("stspi_open_server: enter"),
                            failure("stspi_open_server: no colon in server_name = Network_X"),
                            record("stspi_open_server: enter"),
                            failure("stspi_open_server: no colon in server_name = ")));
}

TEST_F(OpenServer, SendsTheWholeNameTheSessionAndTheCredential)
{
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open_server()(session_.get(), "Network_X:host", Credential("abc", 4).get(), "11;1;2", &server),
              0);
    const ServerHandle owner(server);
    EXPECT_EQ(service_.request_body(0),
              element("openServer", session_element() + element("server", "Network_X:host") +
                                        element("cred", element("len", "3") + element("type", "4") +
                                                            element("cert", "YWJj")) +
                                        element("requiredInterface", "11;1;2")));
}

TEST_F(OpenServer, SendsAnEmptyInterfaceForANullOne)
{
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open("Network_X:host", &server, nullptr), 0);
    const ServerHandle owner(server);
    EXPECT_THAT(service_.request_body(0), HasSubstr("</ns1:cred><ns1:requiredInterface/></ns1:openServer>"));
}

TEST_F(OpenServer, SendsANilIdForASessionWithoutOne)
{
    session_.drop_id();
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open("Network_X:host", &server), 0);
    const ServerHandle owner(server);
    EXPECT_THAT(service_.request_body(0), HasSubstr("</ns1:proxy>" + nil("id") + element("flags", "7")));
    EXPECT_EQ(session_.texts().back(), "stspi_open_server: STS_EOK");
    EXPECT_TRUE(session_.ids_were_right());
}

TEST_F(OpenServer, SendsEveryByteOfACredentialAndLogsNone)
{
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script(opened());
    service_.script(fault_answer(fault(5)));
    const Credential credential(std::string_view("user\0pass\xff<&>", 13), -2);
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open_server()(session_.get(), "Network_X:host", credential.get(), nullptr, &server), 0);
    const ServerHandle owner(server);
    EXPECT_EQ(open_server()(session_.get(), "Network_X:host", credential.get(), nullptr, &server), 5);
    EXPECT_THAT(service_.request_body(0),
                HasSubstr(element("cred", element("len", "13") + element("type", "-2") +
                                              element("cert", "dXNlcgBwYXNz/zwmPg=="))));
    for (const std::string& text : session_.texts()) {
        EXPECT_EQ(text.find("user"), std::string::npos) << text;
        EXPECT_EQ(text.find("pass"), std::string::npos) << text;
        EXPECT_EQ(text.find("dXNl"), std::string::npos) << text;
    }
}

TEST_F(OpenServer, SendsAnEmptyCredential)
{
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open_server()(session_.get(), "Network_X:host", Credential("").get(), nullptr, &server), 0);
    const ServerHandle owner(server);
    EXPECT_THAT(service_.request_body(0), HasSubstr(element("len", "0")));
    EXPECT_THAT(service_.request_body(0), HasSubstr(element("requiredInterface").substr(0, 22)));
}

TEST_F(OpenServer, FillsTheHandle)
{
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script(opened("a token &lt;1&gt;"));
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open("Network_X:host", &server), 0);
    const ServerHandle owner(server);
    EXPECT_STREQ(server->server_name, "Network_X:host");
    EXPECT_STREQ(server->service_handle, "a token <1>");
    EXPECT_STREQ(server->endpoint, service_.url().c_str());
    EXPECT_EQ(server->session, session_.get());
    EXPECT_FALSE(server->use_https);
}

TEST_F(OpenServer, LogsItsWholeCourse)
{
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open("Network_X:host", &server), 0);
    const ServerHandle owner(server);
    EXPECT_THAT(
        session_.lines(),
        ElementsAre(record("stspi_open_server: enter"), record("stspi_open_server: new server_name = host"),
                    record("find_ss_name_in_conf: Attempting to open config file " + configuration_path()),
                    record("find_ss_name_in_conf: Config file found"),
                    record("find_ss_name_in_conf: Storage server match found"),
                    record("stspi_open_server: soap_endpoint = " + service_.url()),
                    record("stspi_open_server: SOAP return code = 0"), record("stspi_open_server: STS_EOK")));
    EXPECT_TRUE(session_.ids_were_right());
}

TEST_F(OpenServer, CallsTheWholeLongUrlAndKeeps255CharactersOfIt)
{
    const std::string url = service_.url() + "/" + std::string(300, 'p');
    host().write_configuration("host=" + url + "\n");
    service_.script(opened());
    service_.script(closed());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open("Network_X:host", &server), 0);
    EXPECT_THAT(service_.requests().at(0).head,
                StartsWith("POST /" + std::string(300, 'p') + " HTTP/1.1\r\n"));
    EXPECT_THAT(session_.texts(), testing::Contains("stspi_open_server: soap_endpoint = " + url));
    EXPECT_EQ(server->endpoint, url.substr(0, 255));

    const std::string path_kept = url.substr(0, 255).substr(service_.url().size());
    EXPECT_EQ(close_server()(server), 0);
    EXPECT_THAT(service_.requests().at(1).head, StartsWith("POST " + path_kept + " HTTP/1.1\r\n"));
}

TEST_F(OpenServer, Keeps511CharactersOfTheNameAndSendsItWhole)
{
    const std::string name = "Network_X:" + std::string(600, 'n');
    host().write_configuration(std::string(600, 'n') + "=" + service_.url() + "\n");
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open(name, &server), 0);
    const ServerHandle owner(server);
    EXPECT_EQ(server->server_name, name.substr(0, 511));
    EXPECT_THAT(service_.request_body(0), HasSubstr(element("server", name)));
}

TEST_F(OpenServer, KeepsALongTokenWhole)
{
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script(opened(std::string(100000, 't')));
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open("Network_X:host", &server), 0);
    const ServerHandle owner(server);
    EXPECT_EQ(server->service_handle, std::string(100000, 't'));
}

TEST_F(OpenServer, KeepsAnEmptyToken)
{
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script(opened(""));
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open("Network_X:host", &server), 0);
    const ServerHandle owner(server);
    EXPECT_STREQ(server->service_handle, "");
}

TEST_F(OpenServer, RefusesAReplyWithoutAHandleOrToken)
{
    host().write_configuration("host=" + service_.url() + "\n");
    const std::pair<std::string, const char*> replies[] = {
        {"", "serverHandle"},
        {nil("serverHandle"), "serverHandle"},
        {element("unknown", "T"), "serverHandle"},
        {element("serverHandle"), "token"},
        {element("serverHandle", nil("token")), "token"},
    };
    for (const auto& [content, missing] : replies) {
        session_.clear();
        service_.script(answer(reply("openServerResponse", content)));
        stsp_server_t* server = untouched();
        EXPECT_EQ(open("Network_X:host", &server), 2060046) << content;
        EXPECT_EQ(server, untouched());
        const std::vector<LogLine> lines = session_.lines();
        ASSERT_EQ(lines.size(), 8U);
        EXPECT_EQ(lines[6], record("stspi_open_server: SOAP return code = 0"));
        EXPECT_EQ(lines[7], failure(std::string("stspi_open_server: the reply has no ") + missing));
    }
}

TEST_F(OpenServer, HandsOverTheServicesRefusal)
{
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script(fault_answer(fault(2060012)));
    stsp_server_t* server = untouched();
    EXPECT_EQ(open("Network_X:host", &server), 2060012);
    EXPECT_EQ(server, untouched());
    const std::vector<LogLine> lines = session_.lines();
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines[6], record("stspi_open_server: SOAP return code = 1"));
    EXPECT_EQ(lines[7], failure(rendered_fault(2060012)));
}

TEST_F(OpenServer, EndsWith0AndNoHandleForAFaultThatBears0)
{
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script(fault_answer(fault(0)));
    stsp_server_t* server = untouched();
    EXPECT_EQ(open("Network_X:host", &server), 0);
    EXPECT_EQ(server, untouched());
    EXPECT_EQ(session_.lines().back(), failure(rendered_fault(0)));
}

TEST_F(OpenServer, HoldsNoLockWhileTheServiceThinks)
{
    host().write_configuration("slow=" + service_.url() + "/slow\nquick=" + service_.url() + "/quick\n");
    Answer held = opened("slow");
    held.manner = Answer::Manner::kHold;
    service_.script(held);
    service_.script(opened("quick"));
    RecordedSession other;
    std::future<stsp_server_t*> slow = std::async(std::launch::async, [&] {
        stsp_server_t* server = nullptr;
        open_server()(other.get(), "Network_X:slow", Credential("abc").get(), nullptr, &server);
        return server;
    });
    service_.wait_for_requests(1);
    stsp_server_t* quick = nullptr;
    EXPECT_EQ(open("Network_X:quick", &quick), 0);
    const ServerHandle quick_owner(quick);
    service_.release();
    const ServerHandle slow_owner(slow.get());
    ASSERT_TRUE(quick_owner && slow_owner);
    EXPECT_STREQ(quick_owner->service_handle, "quick");
    EXPECT_STREQ(slow_owner->service_handle, "slow");
}

TEST_F(OpenServer, BehavesTheSameWithNobodyListening)
{
    session_->log_callback = nullptr;
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script({opened(),
                     fault_answer(fault(77)),
                     fault_answer(fault_with_detail("")),
                     {Answer::Manner::kCloseAtOnce, ""}});
    stsp_server_t* server = nullptr;
    EXPECT_EQ(open("Network_X:host", &server), 0);
    const ServerHandle owner(server);
    EXPECT_EQ(open("Network_X:host", &server), 77);
    EXPECT_EQ(open("Network_X:host", &server), 2060021);
    EXPECT_EQ(open("Network_X:host", &server), 2060017);
    EXPECT_EQ(open_server()(session_.get(), "Network_X:host", nullptr, nullptr, &server), 2060001);
    EXPECT_THAT(session_.lines(), IsEmpty());
}
