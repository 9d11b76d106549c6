#include "tests/entries/event_channel_events.h"
#include "tests/entries/event_channel_fixture.h"
#include "tests/torture/subject.h"

using namespace kit;

namespace torture
{
namespace
{

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
    return {
        {"stspi_get_event", get, reply("getEventResponse", event)},
        {"stspi_get_event_payload", payload,
         reply("getEventPayloadResponse", element("payload", activity_xml()))},
        {"stspi_delete_event", remove, reply("deleteEventResponse")},
    };
}

} // namespace torture
