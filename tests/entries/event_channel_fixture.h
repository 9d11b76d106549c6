// What the tests of event channels have in common: the entries by their slots, open channels, and events as
// the service writes them.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_EVENT_CHANNEL_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_EVENT_CHANNEL_FIXTURE_H

#include "tests/entries/server_fixture.h"
#include "tests/kit/entry_lines.h"

inline auto open_evchannel()
{
    return kit::Host::instance().main_slot<decltype(stspi_open_evchannel_v11)>(27);
}
inline auto close_evchannel()
{
    return kit::Host::instance().main_slot<decltype(stspi_close_evchannel)>(5);
}
inline auto get_event()
{
    return kit::Host::instance().main_slot<decltype(stspi_get_event)>(15);
}
inline auto get_event_payload()
{
    return kit::Host::instance().main_slot<decltype(stspi_get_event_payload)>(44);
}
inline auto delete_event()
{
    return kit::Host::instance().main_slot<decltype(stspi_delete_event)>(12);
}

struct FreeChannel {
    void operator()(stsp_evc_t* channel) const
    {
        std::free(channel->token);
        delete channel;
    }
};

// A channel that a test owns, apart from its server. One that was closed must be released from it.
using ChannelHandle = std::unique_ptr<stsp_evc_t, FreeChannel>;

// What a test leaves behind on purpose: records that no entry can reach any more.
extern "C" void __lsan_disable() __attribute__((weak));
extern "C" void __lsan_enable() __attribute__((weak));
class LeaksOnPurpose
{
  public:
    LeaksOnPurpose()
    {
        if (__lsan_disable) __lsan_disable();
    }
    ~LeaksOnPurpose()
    {
        if (__lsan_enable) __lsan_enable();
    }
    LeaksOnPurpose(const LeaksOnPurpose&) = delete;
    LeaksOnPurpose& operator=(const LeaksOnPurpose&) = delete;
};

inline kit::Answer channel_opened(std::string_view token = "C")
{
    return kit::answer(
        kit::reply("openEventChannelResponse", kit::element("pevcHandle", kit::element("token", token))));
}

inline kit::Answer channel_closed()
{
    return kit::answer(kit::reply("closeEventChannelResponse"));
}

class EventChannelTest : public ServerTest
{
  protected:
    EventChannelTest() { host().write_configuration("host=" + service_.url() + "\n"); }

    static constexpr char kName[] = "Network_X:host";

    // The open, with nothing scripted and nothing special about its arguments.
    int open_channel(stsp_evc_t** channel, const char* interface_name = "11;1;2", std::int32_t flags = 3,
                     std::int64_t evseqno = 4)
    {
        return open_evchannel()(session_.get(), kName, kit::Credential("abc").get(), interface_name, nullptr,
                                nullptr, flags, evseqno, channel);
    }

    // A channel with the token "C" on a server with the token "T", as the open makes it.
    stsp_evc_t* opened_channel()
    {
        service_.script({opened(), channel_opened()});
        stsp_evc_t* channel = nullptr;
        EXPECT_EQ(open_channel(&channel), 0);
        session_.clear();
        return channel;
    }

    std::string last_request() { return service_.request_body(service_.requests().size() - 1); }

    std::vector<kit::LogLine> server_open_lines()
    {
        return {kit::record("stspi_open_server: enter"),
                kit::record("stspi_open_server: new server_name = host"),
                kit::record("find_ss_name_in_conf: Attempting to open config file " + configuration_path()),
                kit::record("find_ss_name_in_conf: Config file found"),
                kit::record("find_ss_name_in_conf: Storage server match found"),
                kit::record("stspi_open_server: soap_endpoint = " + service_.url()),
                kit::return_code("stspi_open_server", 0),
                kit::ok("stspi_open_server")};
    }

    std::vector<kit::LogLine> server_close_lines()
    {
        return {kit::enter("stspi_close_server"),
                kit::record("stspi_close_server: soap_endpoint = " + service_.url()),
                kit::return_code("stspi_close_server", 0), kit::ok("stspi_close_server")};
    }
};

#endif
