#include "tests/entries/event_channel_fixture.h"

#include <limits>

using namespace kit;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

constexpr char kEntry[] = "stspi_open_evchannel_v11";

class OpenEventChannel : public EventChannelTest
{
  protected:
    // What stands in the out pointer before an open.
    stsp_evc_t* untouched() { return reinterpret_cast<stsp_evc_t*>(&service_); }

    void close(stsp_evc_t* channel)
    {
        service_.script({channel_closed(), closed()});
        EXPECT_EQ(close_evchannel()(channel), 0);
    }

    // An open whose server opens and whose channel gets this answer; nothing may be made of it.
    int failed_open(const Answer& channel_answer)
    {
        const std::size_t before = service_.requests().size();
        service_.script({opened(), channel_answer, closed()});
        stsp_evc_t* channel = untouched();
        const int status = open_channel(&channel);
        EXPECT_EQ(channel, untouched());
        EXPECT_EQ(service_.requests().size(), before + 3);
        EXPECT_EQ(last_request(), element("closeServer", element("serverHandle", element("token", "T"))));
        return status;
    }
};

} // namespace

TEST_F(OpenEventChannel, RefusesNullArgumentsSilently)
{
    const Credential credential("abc");
    const auto open = open_evchannel();
    stsp_evc_t* channel = untouched();
    EXPECT_EQ(open(nullptr, kName, credential.get(), "", nullptr, nullptr, 0, 0, &channel), 2060001);
    EXPECT_EQ(open(session_.get(), nullptr, credential.get(), "", nullptr, nullptr, 0, 0, &channel), 2060001);
    EXPECT_EQ(open(session_.get(), kName, credential.get(), "", nullptr, nullptr, 0, 0, nullptr), 2060001);
    EXPECT_EQ(open(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0, nullptr), 2060001);
    EXPECT_EQ(channel, untouched());
    EXPECT_THAT(session_.lines(), IsEmpty());
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(OpenEventChannel, LeavesANullCredentialToTheServersOpen)
{
    stsp_evc_t* channel = untouched();
    EXPECT_EQ(open_evchannel()(session_.get(), kName, nullptr, "", nullptr, nullptr, 0, 0, &channel),
              2060001);
    EXPECT_EQ(channel, untouched());
    EXPECT_THAT(session_.lines(), ElementsAre(enter(kEntry), enter("stspi_open_server"),
                                              failure("stspi_open_server: null credentials not supported")));
}

TEST_F(OpenEventChannel, LeavesANameWithoutAColonToTheServersOpen)
{
    stsp_evc_t* channel = untouched();
    EXPECT_EQ(open_evchannel()(session_.get(), "Network_X", Credential("abc").get(), "", nullptr, nullptr, 0,
                               0, &channel),
              2060001);
    EXPECT_EQ(channel, untouched());
    EXPECT_THAT(session_.lines(),
                ElementsAre(enter(kEntry), enter("stspi_open_server"),
                            failure("stspi_open_server: no colon in server_name = Network_X")));
}

TEST_F(OpenEventChannel, OpensAServerAndThenTheChannelWithTheSameArguments)
{
    service_.script({opened(), channel_opened()});
    stsp_evc_t* channel = nullptr;
    ASSERT_EQ(open_channel(&channel, "11;1;2", -5, 6), 0);
    const std::string who =
        session_element() + element("server", kName) +
        element("cred", element("len", "3") + element("type", "1") + element("cert", "YWJj"));
    ASSERT_EQ(service_.requests().size(), 2U);
    EXPECT_EQ(service_.request_body(0), element("openServer", who + element("requiredInterface", "11;1;2")));
    EXPECT_EQ(service_.request_body(1),
              element("openEventChannel", who + element("interface", "11;1;2") + element("flags", "-5") +
                                              element("evseqno", "6")));
    close(channel);
}

TEST_F(OpenEventChannel, FillsTheRecord)
{
    service_.script({opened("server token"), channel_opened("a token &lt;1&gt;")});
    stsp_evc_t* channel = nullptr;
    ASSERT_EQ(open_channel(&channel), 0);
    EXPECT_EQ(channel->session, session_.get());
    EXPECT_STREQ(channel->token, "a token <1>");
    ASSERT_NE(channel->server, nullptr);
    EXPECT_STREQ(channel->server->server_name, kName);
    EXPECT_STREQ(channel->server->service_handle, "server token");
    EXPECT_STREQ(channel->server->endpoint, service_.url().c_str());
    EXPECT_EQ(channel->server->session, session_.get());
    EXPECT_FALSE(channel->server->use_https);
    close(channel);
}

TEST_F(OpenEventChannel, KeepsALongTokenWhole)
{
    const std::string token(5000, 't');
    service_.script({opened(), channel_opened(token)});
    stsp_evc_t* channel = nullptr;
    ASSERT_EQ(open_channel(&channel), 0);
    EXPECT_EQ(channel->token, token);
    close(channel);
}

TEST_F(OpenEventChannel, AcceptsAnEmptyToken)
{
    service_.script({opened(), channel_opened("")});
    stsp_evc_t* channel = nullptr;
    ASSERT_EQ(open_channel(&channel), 0);
    EXPECT_STREQ(channel->token, "");
    close(channel);
}

TEST_F(OpenEventChannel, LogsItsWholeCourse)
{
    service_.script({opened(), channel_opened()});
    stsp_evc_t* channel = nullptr;
    ASSERT_EQ(open_channel(&channel), 0);
    EXPECT_THAT(session_.lines(),
                ElementsAreArray(
                    joined({{enter(kEntry)}, server_open_lines(), {return_code(kEntry, 0), ok(kEntry)}})));
    EXPECT_TRUE(session_.ids_were_right());
    close(channel);
}

TEST_F(OpenEventChannel, SendsAnEmptyInterfaceForANullOne)
{
    service_.script({opened(), channel_opened()});
    stsp_evc_t* channel = nullptr;
    ASSERT_EQ(open_channel(&channel, nullptr), 0);
    EXPECT_THAT(service_.request_body(0), HasSubstr("<ns1:requiredInterface/>"));
    EXPECT_THAT(service_.request_body(1), HasSubstr("</ns1:cred><ns1:interface/><ns1:flags>"));
    close(channel);
}

TEST_F(OpenEventChannel, SendsANilIdForASessionWithoutOne)
{
    session_.drop_id();
    service_.script({opened(), channel_opened()});
    stsp_evc_t* channel = nullptr;
    ASSERT_EQ(open_channel(&channel), 0);
    EXPECT_THAT(service_.request_body(1), HasSubstr("</ns1:proxy>" + nil("id") + element("flags", "7")));
    close(channel);
}

TEST_F(OpenEventChannel, CutsTheSequenceNumberToItsLow32Bits)
{
    const std::pair<std::int64_t, const char*> numbers[] = {
        {0x100000005, "5"},
        {-1, "-1"},
        {0x7fffffff, "2147483647"},
        {0x80000000, "-2147483648"},
        {std::numeric_limits<std::int64_t>::min(), "0"},
    };
    for (const auto& [number, sent] : numbers) {
        service_.script({opened(), channel_opened()});
        stsp_evc_t* channel = nullptr;
        ASSERT_EQ(open_channel(&channel, "", std::numeric_limits<std::int32_t>::min(), number), 0);
        EXPECT_THAT(last_request(), HasSubstr(element("flags", "-2147483648") + element("evseqno", sent)));
        close(channel);
    }
}

TEST_F(OpenEventChannel, DoesNotReadTheTwoUnusedArguments)
{
    service_.script({opened(), channel_opened()});
    const auto* nowhere = reinterpret_cast<const void*>(std::uintptr_t{1});
    stsp_evc_t* channel = nullptr;
    ASSERT_EQ(open_evchannel()(session_.get(), kName, Credential("abc").get(), "", nowhere, nowhere, 0, 0,
                               &channel),
              0);
    close(channel);
}

TEST_F(OpenEventChannel, IsSilentWithoutACallback)
{
    session_->log_callback = nullptr;
    service_.script({opened(), channel_opened()});
    stsp_evc_t* channel = nullptr;
    ASSERT_EQ(open_channel(&channel), 0);
    close(channel);
    EXPECT_EQ(failed_open(fault_answer(fault(2060013))), 2060013);
    EXPECT_THAT(session_.lines(), IsEmpty());
}

TEST_F(OpenEventChannel, ReturnsTheStatusOfTheServersOpenAndAsksForNoChannel)
{
    for (const int status : {2060013, 5, -1}) {
        session_.clear();
        service_.script(fault_answer(fault(status)));
        stsp_evc_t* channel = untouched();
        EXPECT_EQ(open_channel(&channel), status);
        EXPECT_EQ(channel, untouched());
        EXPECT_THAT(last_request(), HasSubstr("<ns1:openServer>"));
        EXPECT_EQ(session_.lines().back(), failure(rendered_fault(status)));
    }
    EXPECT_EQ(service_.requests().size(), 3U);
}

TEST_F(OpenEventChannel, MakesNoChannelWhereTheServersOpenWasAnsweredWithoutAHandle)
{
    service_.script(answer(reply("openServerResponse")));
    stsp_evc_t* channel = untouched();
    EXPECT_EQ(open_channel(&channel), 2060046);
    EXPECT_EQ(channel, untouched());
    EXPECT_EQ(service_.requests().size(), 1U);
    EXPECT_EQ(session_.lines().back(), failure("stspi_open_server: the reply has no serverHandle"));
}

TEST_F(OpenEventChannel, MakesNoChannelWhereTheServersOpenFailedWithTheStatus0)
{
    service_.script(fault_answer(fault(0)));
    stsp_evc_t* channel = untouched();
    EXPECT_EQ(open_channel(&channel), 0);
    EXPECT_EQ(channel, untouched());
    EXPECT_EQ(service_.requests().size(), 1U);
    EXPECT_EQ(session_.lines().back(), failure(rendered_fault(0)));
}

TEST_F(OpenEventChannel, ClosesTheServerAfterAFault)
{
    EXPECT_EQ(failed_open(fault_answer(fault(2060013))), 2060013);
    EXPECT_THAT(session_.lines(),
                ElementsAreArray(joined({{enter(kEntry)},
                                         server_open_lines(),
                                         {return_code(kEntry, 1), failure(rendered_fault(2060013))},
                                         server_close_lines()})));
}

TEST_F(OpenEventChannel, ClosesTheServerAfterAFaultWithTheStatus0)
{
    EXPECT_EQ(failed_open(fault_answer(fault(0))), 0);
}

TEST_F(OpenEventChannel, ClosesTheServerAfterAFaultWithoutAStatus)
{
    EXPECT_EQ(failed_open(fault_answer(fault_with_detail(""))), 2060021);
}

TEST_F(OpenEventChannel, ClosesTheServerAfterAServerFault)
{
    EXPECT_EQ(failed_open(fault_answer(fault(2060013, "SOAP-ENV:Server"))), 2060017);
}

TEST_F(OpenEventChannel, ClosesTheServerAfterATransportError)
{
    EXPECT_EQ(failed_open({Answer::Manner::kReply, ""}), 2060017);
    EXPECT_EQ(session_.lines().back(), ok("stspi_close_server"));
}

TEST_F(OpenEventChannel, IgnoresTheStatusOfTheServersClose)
{
    const LeaksOnPurpose server_that_will_not_close;
    service_.script({opened(), fault_answer(fault(2060013)), fault_answer(fault(2060005))});
    stsp_evc_t* channel = untouched();
    EXPECT_EQ(open_channel(&channel), 2060013);
    EXPECT_EQ(channel, untouched());
    EXPECT_EQ(service_.requests().size(), 3U);
    EXPECT_EQ(session_.lines().back(), failure(rendered_fault(2060005)));
}

TEST_F(OpenEventChannel, HandsOutAnEmptyRecordForAReplyWithoutAToken)
{
    for (const std::string& content :
         {nil("pevcHandle"), std::string(), element("pevcHandle", nil("token")), element("pevcHandle")}) {
        session_.clear();
        service_.script({opened(), answer(reply("openEventChannelResponse", content))});
        stsp_evc_t* channel = nullptr;
        const std::size_t requests = service_.requests().size();
        EXPECT_EQ(open_channel(&channel), 2060046) << content;
        EXPECT_EQ(service_.requests().size(), requests + 2) << "the server stays open";
        EXPECT_THAT(session_.lines(),
                    ElementsAreArray(
                        joined({{enter(kEntry)},
                                server_open_lines(),
                                {return_code(kEntry, 0),
                                 failure(std::string(kEntry) + ": invalid response handle or token")}})));
        ASSERT_NE(channel, nullptr);
        EXPECT_STREQ(channel->token, "");
        EXPECT_EQ(channel->session, session_.get());
        ASSERT_NE(channel->server, nullptr);
        EXPECT_STREQ(channel->server->service_handle, "T");
        close(channel);
        EXPECT_THAT(service_.request_body(requests + 2),
                    element("closeEventChannel", element("evcHandle", "<ns1:token/>")));
    }
}

TEST_F(OpenEventChannel, ReachesServerAndChannelOverTlsWhereDiscoveryChoseIt)
{
    const std::string name = own_name();
    discover(name, {"11;1;2;https;" + service_.tls_url()});
    service_.script({opened(), channel_opened(), channel_closed(), closed()});
    stsp_evc_t* channel = nullptr;
    ASSERT_EQ(open_evchannel()(session_.get(), name.c_str(), Credential("abc").get(), "", nullptr, nullptr, 0,
                               0, &channel),
              0);
    EXPECT_TRUE(channel->server->use_https);
    ASSERT_EQ(close_evchannel()(channel), 0);
    ASSERT_EQ(service_.requests().size(), 4U);
    for (const Request& request : service_.requests()) EXPECT_TRUE(request.tls);
}
