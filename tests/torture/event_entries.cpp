#include "tests/entries/event_channel_events.h"
#include "tests/entries/event_channel_fixture.h"
#include "tests/torture/subject.h"

#include <algorithm>

using namespace kit;

namespace torture
{
namespace
{

std::string closed_server()
{
    return reply("closeServerResponse");
}

// The internal server stays where its own close came to nothing: then it is the test's.
bool closed_its_server(const Subject& subject)
{
    const std::vector<std::string> texts = subject.session.texts();
    return std::find(texts.begin(), texts.end(), "stspi_close_server: STS_EOK") != texts.end();
}

int open(Subject& subject)
{
    stsp_evc_t* made = nullptr;
    const int status = open_evchannel()(subject.session.get(), subject.name, subject.credential.get(),
                                        nullptr, nullptr, nullptr, 0, 1, &made);
    // A channel whose token can't be used is handed out all the same, for the host to close.
    EXPECT_EQ(made != nullptr, status == STS_EOK || status == STS_EPLUGIN);
    if (made) {
        FreeServer()(made->server);
        FreeChannel()(made);
    }
    return status;
}

int close(Subject& subject)
{
    subject.session.clear();
    auto* channel = new stsp_evc_t();
    channel->server = subject.server.release();
    channel->session = subject.session.get();
    channel->token = strdup("C");
    stsp_server_t* internal = channel->server;
    const int status = close_evchannel()(channel); // whatever it says, the channel is gone
    if (!closed_its_server(subject)) FreeServer()(internal);
    subject.open_handle();
    return status;
}

int get(Subject& subject)
{
    char token[] = "C";
    stsp_evc_t channel{};
    channel.server = subject.server.get();
    channel.session = subject.session.get();
    channel.token = token;
    const auto event = std::make_unique<sts_event_v11_t>();
    return get_event()(&channel, event.get());
}

int payload(Subject& subject)
{
    const auto event = std::make_unique<sts_event_v11_t>();
    const auto activity = std::make_unique<sts_ev_activity_v11_t>();
    event->detached_kind = 6;
    return get_event_payload()(subject.server.get(), activity.get(), event.get());
}

int remove(Subject& subject)
{
    const auto event = std::make_unique<sts_event_v11_t>();
    return delete_event()(subject.server.get(), event.get());
}

} // namespace

std::vector<Entry> event_entries()
{
    const std::string event =
        element("event", number("seqno", 1) + element("server", "s") + number("flags", 2) +
                             number("type", 6) + element("body", activity_xml()));
    const Entry open_channel{"stspi_open_evchannel_v11",
                             open,
                             reply("openEventChannelResponse", element("pevcHandle", element("token", "C"))),
                             2060017,
                             {reply("openServerResponse", element("serverHandle", element("token", "T")))},
                             {},
                             {closed_server()}};
    const Entry get_next{"stspi_get_event", get, reply("getEventResponse", event)};
    const Entry get_payload{"stspi_get_event_payload", payload,
                            reply("getEventPayloadResponse", element("payload", activity_xml()))};
    return {
        open_channel.requiring({"pevcHandle", "token"}),
        {"stspi_close_evchannel",
         close,
         reply("closeEventChannelResponse"),
         2060017,
         {},
         {closed_server()},
         {closed_server()}},
        get_next.requiring({"event"}),
        get_payload.requiring({"payload", "actv"}),
        {"stspi_delete_event", remove, reply("deleteEventResponse")},
    };
}

} // namespace torture
