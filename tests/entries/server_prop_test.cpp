#include "tests/entries/server_fixture.h"

#include <algorithm>

using namespace kit;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class GetServerProp : public ServerTest
{
  protected:
    GetServerProp() { std::memset(info_.get(), 0x5A, sizeof *info_); }

    bool record_is_untouched() const
    {
        const auto* bytes = reinterpret_cast<const unsigned char*>(info_.get());
        return std::all_of(bytes, bytes + sizeof *info_, [](unsigned char byte) { return byte == 0x5A; });
    }

    std::unique_ptr<sts_server_info_v8_t> info_ = std::make_unique<sts_server_info_v8_t>();
};

} // namespace

TEST_F(GetServerProp, RefusesNullArgumentsSilently)
{
    const ServerHandle server = make_server(session_, service_.url());
    EXPECT_EQ(get_server_prop()(nullptr, info_.get()), 2060001);
    EXPECT_EQ(get_server_prop()(server.get(), nullptr), 2060001);
    EXPECT_EQ(get_server_prop()(nullptr, nullptr), 2060001);
    EXPECT_THAT(session_.lines(), IsEmpty());
    EXPECT_TRUE(record_is_untouched());
}

TEST_F(GetServerProp, RefusesAHandleWithoutAServiceHandleAfterEnter)
{
    const ServerHandle server = make_server(session_, service_.url(), true, nullptr);
    EXPECT_EQ(get_server_prop()(server.get(), info_.get()), 2060026);
    EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_get_server_prop: enter")));
    EXPECT_EQ(service_.connections(), 0U);
    EXPECT_TRUE(record_is_untouched());
}

TEST_F(GetServerProp, FillsTheRecordAndLogsNoReturnCode)
{
    const ServerHandle server = make_server(session_, service_.url(), false, "the token");
    std::memset(info_.get(), 0, sizeof *info_);
    service_.script(answer(
        reply("getServerPropResponse",
              element("info", element("server", "s &amp; t") +
                                  element("sth", element("item", "type 0") + element("item", "type 1")) +
                                  element("flags", "-5") + element("maxconnect", "2147483647") +
                                  element("nconnect", "3") +
                                  element("cap", element("item", "5") + element("item", "3")) +
                                  interfaces({"11;1;2;http;u"}) + element("cred", element("item", "8")) +
                                  element("ndmpHost", "filer")))));
    EXPECT_EQ(get_server_prop()(server.get(), info_.get()), 0);
    EXPECT_EQ(service_.request_body(0),
              element("getServerProp", element("serverHandle", element("token", "the token"))));
    EXPECT_STREQ(info_->server, "s & t");
    EXPECT_STREQ(info_->sth[0], "type 0");
    EXPECT_STREQ(info_->sth[1], "type 1");
    EXPECT_EQ(info_->flags, -5);
    EXPECT_EQ(info_->maxconnect, 2147483647);
    EXPECT_EQ(info_->nconnect, 3);
    EXPECT_EQ(info_->cap[0], 40U);
    EXPECT_STREQ(info_->requiredInterface[0], "11;1;2;http;u");
    EXPECT_EQ(info_->cred[0], 8);
    EXPECT_STREQ(info_->ndmpHost, "filer");
    EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_get_server_prop: enter"),
                                              record("set_server_info_from_soap: capabilities = 5,3"),
                                              record("stspi_get_server_prop: STS_EOK")));
}

TEST_F(GetServerProp, CannotUseAReplyWithoutInformation)
{
    const ServerHandle server = make_server(session_, service_.url());
    for (const std::string& content :
         {std::string(), nil("info"), element("unknown", element("deep", "x"))}) {
        session_.clear();
        service_.script(answer(reply("getServerPropResponse", content)));
        EXPECT_EQ(get_server_prop()(server.get(), info_.get()), 2060046);
        EXPECT_TRUE(record_is_untouched());
        EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_get_server_prop: enter"),
                                                  failure("stspi_get_server_prop: the reply has no info")));
    }
}

TEST_F(GetServerProp, LeavesFieldsAloneThatTheReplyHasNilOrNot)
{
    const ServerHandle server = make_server(session_, service_.url());
    service_.script(answer(reply(
        "getServerPropResponse",
        element("info", nil("server") + nil("sth") + nil("cap") + nil("requiredInterface") + nil("cred") +
                            nil("ndmpHost") + element("surprise", element("item", "7"))))));
    EXPECT_EQ(get_server_prop()(server.get(), info_.get()), 0);
    // The three numbers are there in any case.
    EXPECT_EQ(info_->flags, 0);
    EXPECT_EQ(info_->maxconnect, 0);
    EXPECT_EQ(info_->nconnect, 0);
    info_->flags = info_->maxconnect = info_->nconnect = 0x5A5A5A5A;
    EXPECT_TRUE(record_is_untouched());
}

TEST_F(GetServerProp, ReadsAsManyCapabilitiesAsTheServiceNamesAndKeepsThoseThatTheRecordHolds)
{
    constexpr int kCapabilities = 120'000;
    const ServerHandle server = make_server(session_, service_.url());
    std::memset(info_.get(), 0, sizeof *info_);
    std::string items;
    std::string listed;
    for (int i = 0; i < kCapabilities; ++i) {
        items += element("item", std::to_string(i));
        listed += (i == 0 ? "" : ",") + std::to_string(i);
    }
    service_.script(answer(reply("getServerPropResponse", element("info", element("cap", items)))));
    EXPECT_EQ(get_server_prop()(server.get(), info_.get()), 0);
    sts_server_info_v8_t expected{};
    std::memset(expected.cap, 0xFF, sizeof expected.cap);
    EXPECT_EQ(std::memcmp(info_.get(), &expected, sizeof expected), 0);
    ASSERT_EQ(session_.lines().size(), 3U);
    EXPECT_TRUE(session_.texts()[1] == "set_server_info_from_soap: capabilities = " + listed);
}

TEST_F(GetServerProp, TellsAnUnreachableServiceByAStatusOfItsOwn)
{
    const DeadPort port;
    const ServerHandle server = make_server(session_, port.url());
    EXPECT_EQ(get_server_prop()(server.get(), info_.get()), 2060026);
    EXPECT_THAT(session_.lines(),
                ElementsAre(record("stspi_get_server_prop: enter"),
                            failure("SOAP 1.1 fault SOAP-ENV:Server[no subcode]\n\"Connection refused\"\n"
                                    "Detail: connect failed in tcp_connect()\n")));
    EXPECT_TRUE(record_is_untouched());
}

TEST_F(GetServerProp, HandsOverTheServicesRefusal)
{
    const ServerHandle server = make_server(session_, service_.url());
    service_.script({fault_answer(fault(2060013)), fault_answer(fault(2060013, "Custom")),
                     fault_answer(fault_with_detail(""))});
    EXPECT_EQ(get_server_prop()(server.get(), info_.get()), 2060013);
    EXPECT_EQ(get_server_prop()(server.get(), info_.get()), 2060013);
    EXPECT_EQ(get_server_prop()(server.get(), info_.get()), 2060021);
    EXPECT_EQ(session_.lines().at(0), record("stspi_get_server_prop: enter"));
    EXPECT_EQ(session_.lines().at(1), failure(rendered_fault(2060013)));
    EXPECT_EQ(session_.lines().size(), 6U);
    EXPECT_TRUE(record_is_untouched());
}

TEST_F(GetServerProp, TakesAServerSideFaultForAnyOtherFailure)
{
    const ServerHandle server = make_server(session_, service_.url());
    service_.script(fault_answer(fault(2060013, "SOAP-ENV:Server")));
    EXPECT_EQ(get_server_prop()(server.get(), info_.get()), 2060026);
    EXPECT_THAT(session_.lines(),
                ElementsAre(record("stspi_get_server_prop: enter"),
                            failure("SOAP 1.1 fault SOAP-ENV:Server[no subcode]\n\"it went wrong\"\n"
                                    "Detail: \n")));
}
