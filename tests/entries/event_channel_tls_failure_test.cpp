// What the entries do where TLS can't even be set up. A program of its own: once the library has made its one
// TLS context, nothing can keep it from having one.
#include "tests/entries/event_channel_fixture.h"
#include "tests/entries/runtime_hooks.h"
#include "tests/unit/canary.h"

using namespace kit;
using testing::ElementsAre;

namespace
{

class EventsWithoutTls : public EventChannelTest
{
  protected:
    EventsWithoutTls() : server_(make_server(session_, service_.tls_url(), true))
    {
        channel_.server = server_.get();
        channel_.session = session_.get();
        channel_.token = token_;
        fill_with_canary(*event_);
        fill_with_canary(*expected_);
    }

    // The entry has ended before a request was built, and with it before an event of no known kind was seen.
    void expect_failed_set_up(const std::string& entry)
    {
        EXPECT_THAT(session_.lines(),
                    ElementsAre(enter(entry),
                                failure("SOAP 1.1 fault SOAP-ENV:Server[no subcode]\n\"SSL/TLS error\"\n"
                                        "Detail: Can't setup context\nHANDLE_SOAP_FAULT: 2060021")));
        EXPECT_EQ(service_.connections(), 0U);
        EXPECT_TRUE(same_bytes(*event_, *expected_));
    }

    char token_[2] = "C";
    ServerHandle server_;
    stsp_evc_t channel_{};
    std::unique_ptr<sts_event_v11_t> event_ = std::make_unique<sts_event_v11_t>();
    std::unique_ptr<sts_event_v11_t> expected_ = std::make_unique<sts_event_v11_t>();
    const hooks::NoTlsContexts none_;
};

} // namespace

TEST_F(EventsWithoutTls, CloseTouchesNeitherTheChannelNorItsServer)
{
    EXPECT_EQ(close_evchannel()(&channel_), 2060021);
    expect_failed_set_up("stspi_close_evchannel");
    EXPECT_EQ(channel_.server, server_.get());
    EXPECT_STREQ(channel_.token, "C");
    EXPECT_STREQ(server_->service_handle, "T");
}

TEST_F(EventsWithoutTls, GetEventLeavesTheRecordAlone)
{
    EXPECT_EQ(get_event()(&channel_, event_.get()), 2060021);
    expect_failed_set_up("stspi_get_event");
}

TEST_F(EventsWithoutTls, GetEventPayloadBuildsNoRequestAndLeavesTheRecordAlone)
{
    const auto activity = std::make_unique<sts_ev_activity_v11_t>();
    const auto canary = std::make_unique<sts_ev_activity_v11_t>();
    fill_with_canary(*activity);
    fill_with_canary(*canary);
    EXPECT_EQ(get_event_payload()(server_.get(), activity.get(), event_.get()), 2060021);
    expect_failed_set_up("stspi_get_event_payload");
    EXPECT_TRUE(same_bytes(*activity, *canary));
}

TEST_F(EventsWithoutTls, DeleteEventBuildsNoRequest)
{
    EXPECT_EQ(delete_event()(server_.get(), event_.get()), 2060021);
    expect_failed_set_up("stspi_delete_event");
}
