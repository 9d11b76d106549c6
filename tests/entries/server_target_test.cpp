#include "tests/entries/server_fixture.h"

using namespace kit;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

Answer target_opened(std::string_view token = "U")
{
    return answer(reply("openTargetServerResponse", element("targetServerHandle", element("token", token))));
}

class OpenTargetServer : public ServerTest
{
  protected:
    int open_target(stsp_server_t* source, stsp_server_t** target)
    {
        return open_target_server()(source, "Network_X:target", Credential("abc", 4).get(), "11;1;2", target);
    }

    stsp_server_t* untouched() { return reinterpret_cast<stsp_server_t*>(&service_); }
};

} // namespace

TEST_F(OpenTargetServer, RefusesANullSource)
{
    stsp_server_t* target = untouched();
    EXPECT_EQ(open_target(nullptr, &target), 2060022);
    EXPECT_EQ(target, untouched());
}

TEST_F(OpenTargetServer, RefusesASourceWithoutAServiceHandleSilently)
{
    const ServerHandle source = make_server(session_, service_.url(), false, nullptr);
    stsp_server_t* target = untouched();
    EXPECT_EQ(open_target(source.get(), &target), 2060026);
    EXPECT_EQ(target, untouched());
    EXPECT_THAT(session_.lines(), IsEmpty());
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(OpenTargetServer, RefusesANullNameOrCredentialSilently)
{
    const ServerHandle source = make_server(session_, service_.url());
    const Credential credential("abc");
    const auto entry = open_target_server();
    stsp_server_t* target = untouched();
    EXPECT_EQ(entry(source.get(), nullptr, credential.get(), "", &target), 2060001);
    EXPECT_EQ(entry(source.get(), "Network_X:t", nullptr, "", &target), 2060001);
    EXPECT_EQ(target, untouched());
    EXPECT_THAT(session_.lines(), IsEmpty());
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(OpenTargetServer, RefusesANullPlaceForTheHandleAndSaysSo)
{
    const ServerHandle source = make_server(session_, service_.url());
    EXPECT_EQ(open_target(source.get(), nullptr), 2060001);
    EXPECT_EQ(open_target_server()(source.get(), nullptr, nullptr, nullptr, nullptr), 2060001);
    const LogLine told = anomaly("stspi_open_target_server: no place for the handle");
    EXPECT_THAT(session_.lines(), ElementsAre(told, told));
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(OpenTargetServer, TestsTheSourceAndItsServiceHandleFirst)
{
    const ServerHandle source = make_server(session_, service_.url(), false, nullptr);
    EXPECT_EQ(open_target_server()(nullptr, nullptr, nullptr, nullptr, nullptr), 2060022);
    EXPECT_EQ(open_target_server()(source.get(), nullptr, nullptr, nullptr, nullptr), 2060026);
    EXPECT_THAT(session_.lines(), IsEmpty());
}

TEST_F(OpenTargetServer, SendsAnEmptyInterfaceForANullOne)
{
    const ServerHandle source = make_server(session_, service_.url());
    service_.script(target_opened());
    stsp_server_t* target = nullptr;
    ASSERT_EQ(open_target_server()(source.get(), "Network_X:t", Credential("").get(), nullptr, &target), 0);
    const ServerHandle owner(target);
    EXPECT_THAT(service_.request_body(0), testing::HasSubstr("<ns1:interface/></ns1:openTargetServer>"));
}

TEST_F(OpenTargetServer, SendsTheSourceTheNameTheCredentialAndTheInterface)
{
    const ServerHandle source = make_server(session_, service_.url(), false, "S");
    service_.script(target_opened());
    stsp_server_t* target = nullptr;
    ASSERT_EQ(open_target(source.get(), &target), 0);
    const ServerHandle owner(target);
    EXPECT_EQ(
        service_.request_body(0),
        element("openTargetServer",
                element("serverHandle", element("token", "S")) + element("server", "Network_X:target") +
                    element("cred", element("len", "3") + element("type", "4") + element("cert", "YWJj")) +
                    element("interface", "11;1;2")));
}

TEST_F(OpenTargetServer, MakesAHandleThatSpeaksToTheSourcesService)
{
    const ServerHandle source = make_server(session_, service_.url() + "/path");
    service_.script(target_opened("the target"));
    stsp_server_t* target = nullptr;
    ASSERT_EQ(open_target(source.get(), &target), 0);
    const ServerHandle owner(target);
    EXPECT_STREQ(target->server_name, "Network_X:target");
    EXPECT_STREQ(target->service_handle, "the target");
    EXPECT_STREQ(target->endpoint, source->endpoint);
    EXPECT_NE(target->endpoint, source->endpoint);
    EXPECT_EQ(target->session, session_.get());
    EXPECT_FALSE(target->use_https);
    EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_open_target_server: enter"),
                                              record("stspi_open_target_server: SOAP return code = 0"),
                                              record("stspi_open_target_server: STS_EOK")));
}

TEST_F(OpenTargetServer, TakesOverTlsFromTheSource)
{
    const ServerHandle source = make_server(session_, service_.tls_url(), true);
    service_.script({target_opened(), closed()});
    stsp_server_t* target = nullptr;
    ASSERT_EQ(open_target(source.get(), &target), 0);
    EXPECT_TRUE(target->use_https);
    EXPECT_TRUE(service_.requests().at(0).tls);
    EXPECT_EQ(close_server()(target), 0);
    EXPECT_TRUE(service_.requests().at(1).tls);
}

TEST_F(OpenTargetServer, Keeps511CharactersOfTheName)
{
    const ServerHandle source = make_server(session_, service_.url());
    service_.script(target_opened());
    const std::string name(600, 'n');
    stsp_server_t* target = nullptr;
    ASSERT_EQ(open_target_server()(source.get(), name.c_str(), Credential("").get(), "", &target), 0);
    const ServerHandle owner(target);
    EXPECT_EQ(target->server_name, name.substr(0, 511));
    EXPECT_THAT(service_.request_body(0), testing::HasSubstr(element("server", name)));
}

TEST_F(OpenTargetServer, RefusesAReplyWithoutAHandleOrToken)
{
    const ServerHandle source = make_server(session_, service_.url());
    const std::pair<std::string, const char*> replies[] = {
        {"", "targetServerHandle"},
        {nil("targetServerHandle"), "targetServerHandle"},
        {element("targetServerHandle"), "token"},
        {element("targetServerHandle", nil("token")), "token"},
    };
    for (const auto& [content, missing] : replies) {
        session_.clear();
        service_.script(answer(reply("openTargetServerResponse", content)));
        stsp_server_t* target = untouched();
        EXPECT_EQ(open_target(source.get(), &target), 2060046) << content;
        EXPECT_EQ(target, untouched());
        EXPECT_THAT(
            session_.lines(),
            ElementsAre(record("stspi_open_target_server: enter"),
                        record("stspi_open_target_server: SOAP return code = 0"),
                        failure(std::string("stspi_open_target_server: the reply has no ") + missing)));
    }
}

TEST_F(OpenTargetServer, HandsOverTheServicesRefusal)
{
    const ServerHandle source = make_server(session_, service_.url());
    service_.script(fault_answer(fault(2060005)));
    stsp_server_t* target = untouched();
    EXPECT_EQ(open_target(source.get(), &target), 2060005);
    EXPECT_EQ(target, untouched());
    EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_open_target_server: enter"),
                                              record("stspi_open_target_server: SOAP return code = 1"),
                                              failure(rendered_fault(2060005))));
}
