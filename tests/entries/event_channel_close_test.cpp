#include "tests/entries/event_channel_fixture.h"

using namespace kit;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

constexpr char kEntry[] = "stspi_close_evchannel";

class CloseEventChannel : public EventChannelTest
{
  protected:
    // The close of a new channel, with these answers to closeEventChannel and to closeServer. The channel is
    // gone afterwards; a server that wouldn't close is this object's to free.
    int close_with(const Answer& channel_answer, const Answer& server_answer, bool server_closes)
    {
        stsp_evc_t* channel = opened_channel();
        if (!server_closes) servers_.emplace_back(channel->server);
        service_.script({channel_answer, server_answer});
        const int status = close_evchannel()(channel);
        EXPECT_EQ(service_.requests().size(), 4U);
        EXPECT_EQ(service_.request_body(2), close_request());
        EXPECT_EQ(service_.request_body(3),
                  element("closeServer", element("serverHandle", element("token", "T"))));
        return status;
    }

    static std::string close_request()
    {
        return element("closeEventChannel", element("evcHandle", element("token", "C")));
    }

    // The lines of a close of the server that the service refuses.
    std::vector<LogLine> refused_server_lines(int status)
    {
        return {enter("stspi_close_server"), record("stspi_close_server: soap_endpoint = " + service_.url()),
                return_code("stspi_close_server", 1), failure(rendered_fault(status))};
    }

  private:
    std::vector<ServerHandle> servers_;
};

} // namespace

TEST_F(CloseEventChannel, RefusesANullHandleAndOneWithoutSessionOrServerSilently)
{
    EXPECT_EQ(close_evchannel()(nullptr), 2060001);
    const ServerHandle server = make_server(session_, service_.url());
    stsp_evc_t channel{};
    channel.server = server.get();
    EXPECT_EQ(close_evchannel()(&channel), 2060001);
    channel.server = nullptr;
    channel.session = session_.get();
    EXPECT_EQ(close_evchannel()(&channel), 2060001);
    EXPECT_THAT(session_.lines(), IsEmpty());
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(CloseEventChannel, ClosesTheChannelAndThenItsServerAndLogsItsWholeCourse)
{
    EXPECT_EQ(close_with(channel_closed(), closed(), true), 0);
    EXPECT_THAT(session_.lines(),
                ElementsAreArray(
                    joined({{enter(kEntry), return_code(kEntry, 0)}, server_close_lines(), {ok(kEntry)}})));
    EXPECT_TRUE(session_.ids_were_right());
}

TEST_F(CloseEventChannel, IsSilentWithoutACallback)
{
    session_->log_callback = nullptr;
    EXPECT_EQ(close_with(fault_answer(fault(2060013)), closed(), true), 2060013);
    EXPECT_THAT(session_.lines(), IsEmpty());
}

TEST_F(CloseEventChannel, ReportsAFaultOfTheServiceThoughTheChannelIsGone)
{
    EXPECT_EQ(close_with(fault_answer(fault(2060013)), closed(), true), 2060013);
    EXPECT_THAT(session_.lines(), ElementsAreArray(joined({{enter(kEntry), return_code(kEntry, 1)},
                                                           server_close_lines(),
                                                           {failure(rendered_fault(2060013))}})));
}

TEST_F(CloseEventChannel, ReportsAFaultWithTheStatus0WithoutCallingItSuccess)
{
    EXPECT_EQ(close_with(fault_answer(fault(0)), closed(), true), 0);
    EXPECT_EQ(session_.lines().back(), failure(rendered_fault(0)));
}

TEST_F(CloseEventChannel, ReportsAFaultWithoutAStatus)
{
    EXPECT_EQ(close_with(fault_answer(fault_with_detail("")), closed(), true), 2060021);
}

TEST_F(CloseEventChannel, ReportsATransportErrorThoughTheChannelIsGone)
{
    EXPECT_EQ(close_with({Answer::Manner::kReset, ""}, closed(), true), 2060017);
    const std::vector<LogLine> lines = session_.lines();
    EXPECT_EQ(lines.at(lines.size() - 2), ok("stspi_close_server"));
    EXPECT_EQ(lines.back().level, 4);
}

TEST_F(CloseEventChannel, KeepsTheRecordWhileTheServerIsBusyOrInUse)
{
    for (const int status : {2060005, 2060012}) {
        stsp_evc_t* channel = opened_channel();
        stsp_server_t* const server = channel->server;
        service_.script({channel_closed(), fault_answer(fault(status))});
        const std::size_t before = service_.requests().size();
        EXPECT_EQ(close_evchannel()(channel), status);
        EXPECT_THAT(session_.lines(),
                    ElementsAreArray(joined({{enter(kEntry), return_code(kEntry, 0)},
                                             refused_server_lines(status),
                                             {anomaly("retry event channel internal serverhandle")}})));
        EXPECT_EQ(channel->server, server);
        EXPECT_EQ(channel->session, session_.get());
        EXPECT_STREQ(channel->token, "C");
        EXPECT_STREQ(server->service_handle, "T");
        EXPECT_STREQ(server->endpoint, service_.url().c_str());

        session_.clear();
        service_.script({channel_closed(), closed()});
        EXPECT_EQ(close_evchannel()(channel), 0);
        EXPECT_THAT(session_.lines(),
                    ElementsAreArray(joined(
                        {{enter(kEntry), return_code(kEntry, 0)}, server_close_lines(), {ok(kEntry)}})));
        EXPECT_EQ(service_.requests().size(), before + 4);
        EXPECT_EQ(service_.request_body(before), close_request());
        EXPECT_EQ(service_.request_body(before + 2), close_request()) << "the service sees a second one";
    }
}

TEST_F(CloseEventChannel, DropsItsOwnFailureWhileTheServerIsBusy)
{
    stsp_evc_t* channel = opened_channel();
    service_.script({fault_answer(fault(2060013)), fault_answer(fault(2060005))});
    EXPECT_EQ(close_evchannel()(channel), 2060005);
    EXPECT_THAT(session_.lines(),
                ElementsAreArray(joined({{enter(kEntry), return_code(kEntry, 1)},
                                         refused_server_lines(2060005),
                                         {anomaly("retry event channel internal serverhandle")}})));
    service_.script({fault_answer(fault(2060013)), closed()});
    EXPECT_EQ(close_evchannel()(channel), 2060013);
}

TEST_F(CloseEventChannel, LooksNoFurtherAtAnyOtherStatusOfTheServersClose)
{
    EXPECT_EQ(close_with(channel_closed(), fault_answer(fault(2060013)), false), 0);
    EXPECT_THAT(session_.lines(),
                ElementsAreArray(joined(
                    {{enter(kEntry), return_code(kEntry, 0)}, refused_server_lines(2060013), {ok(kEntry)}})));
}

TEST_F(CloseEventChannel, ReportsItsOwnFaultWhereTheServersCloseFailsToo)
{
    EXPECT_EQ(close_with(fault_answer(fault(7)), fault_answer(fault(8)), false), 7);
    EXPECT_EQ(session_.lines().back(), failure(rendered_fault(7)));
}

TEST_F(CloseEventChannel, GoesAwayWhereTheServerHasNoServiceHandle)
{
    const ServerHandle server = make_server(session_, service_.url(), false, nullptr);
    auto* channel = new stsp_evc_t();
    channel->server = server.get();
    channel->session = session_.get();
    channel->token = strdup("C");
    service_.script(channel_closed());
    EXPECT_EQ(close_evchannel()(channel), 0);
    EXPECT_THAT(
        session_.lines(),
        ElementsAreArray({enter(kEntry), return_code(kEntry, 0), enter("stspi_close_server"),
                          record("stspi_close_server: soap_endpoint = " + service_.url()), ok(kEntry)}));
}

TEST_F(CloseEventChannel, LogsThroughTheChannelsOwnSession)
{
    RecordedSession other;
    stsp_evc_t* channel = opened_channel();
    channel->session = other.get();
    service_.script({fault_answer(fault(2060013)), closed()});
    EXPECT_EQ(close_evchannel()(channel), 2060013);
    EXPECT_THAT(session_.lines(), ElementsAreArray(server_close_lines()));
    EXPECT_THAT(other.lines(),
                ElementsAreArray({enter(kEntry), return_code(kEntry, 1), failure(rendered_fault(2060013))}));
}
