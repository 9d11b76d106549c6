// A client of the simulator's event channels, where each request comes a second after the last one.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_SIMULATOR_EVENTS_H
#define SOAPWRAPPER_TESTS_SYSTEM_SIMULATOR_EVENTS_H

#include "tests/system/simulator_operations.h"

#include <string>
#include <vector>

namespace simulator_events
{

using namespace simulator_operations;

constexpr long kUnknownEvent = 2069020;

// The kinds on the wire.
enum Kind { kOp = 1, kLsuInfo, kSrvStat, kLsuStat, kImgInfo, kActv, kSrvInfo, kImgRep };

inline const std::string kCredential =
    element("cred", element("len", "9") + element("type", "1") + element("cert", "c2ltdWxhdG9y"));

inline std::string channel_request(const std::string& server, const std::string& from = "0",
                                   const std::string& credential = kCredential)
{
    return nil("sd") + element("server", server) + credential + element("interface") + element("flags", "0") +
           element("evseqno", from);
}

inline std::string channel_handle(const std::string& token)
{
    return element("evcHandle", element("token", token));
}

// An event as the library sends it back: with a kind that is the host's, and without a body.
inline std::string event(const std::string& seqno)
{
    return element("event", element("seqno", seqno) + element("server", "whatever") + element("flags", "0") +
                                element("type", "2") + nil("body"));
}

inline std::string inline_event(int seqno, const std::string& server, Kind kind, const std::string& body)
{
    return number("seqno", seqno) + element("server", server) + element("flags", "2") + number("type", kind) +
           element("body", body);
}

class EventsClient : public OperationsClient
{
  protected:
    using OperationsClient::OperationsClient;

    std::string open_channel(const std::string& server = "Near:filer", const std::string& from = "0") const
    {
        return open("openEventChannel", channel_request(server, from));
    }
    HttpReply next_event(const std::string& channel) const
    {
        return ask("getEvent", channel_handle(channel));
    }

    // The next event, without its frame; the fault, if there is none.
    std::string take(const std::string& channel) const
    {
        const HttpReply reply = next_event(channel);
        return reply.status == 200 ? text_of(reply.body, "event")
                                   : "fault " + std::to_string(fault_code(reply));
    }
    // Number, flags and kind of each event that is left; whatever ends them stands as the last entry.
    std::vector<std::string> take_all(const std::string& channel) const
    {
        std::vector<std::string> all;
        for (;;) {
            const std::string taken = take(channel);
            if (taken.rfind("fault", 0) == 0) {
                all.push_back(taken);
                return all;
            }
            all.push_back(text_of(taken, "seqno") + " " + text_of(taken, "flags") + " " +
                          text_of(taken, "type"));
        }
    }
    // A channel that stands behind all that has happened so far.
    std::string channel_at_the_end(const std::string& server = "Near:filer") const
    {
        const std::string channel = open_channel(server);
        take_all(channel);
        return channel;
    }

    HttpReply ask_payload(const std::string& seqno) const
    {
        return ask("getEventPayload", server_handle(near_) + event(seqno));
    }
    std::string payload(const std::string& seqno) const
    {
        return text_of(ask_payload(seqno).body, "payload");
    }
    int remove(const std::string& seqno) const
    {
        return ask("deleteEvent", server_handle(near_) + event(seqno)).status;
    }
    void label(const std::string& text) const
    {
        EXPECT_EQ(ask("labelLSU", lsu(near_, "side") + element("lsuLabel", text)).status, 200);
    }
};

} // namespace simulator_events

#endif
