#include "simulator/service/events.h"

#include "simulator/service/call.h"
#include "simulator/service/event_wire.h"
#include "simulator/service/sessions.h"
#include "simulator/service/wire.h"
#include "simulator/storage/event_records.h"
#include "simulator/storage/model.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>

namespace soapwrapper::simulator
{
namespace
{

constexpr int kInlineFlag = 2;

// A client sends the event as it knows it, with kinds of its own and half of the payload: the number alone
// tells which one is meant.
std::int32_t seqno_of(const ns1__Event* event)
{
    return required(event, "event").seqno;
}

const std::string& channel_token(const ns1__EventChannelHandle* handle)
{
    return token_of(handle, "evcHandle");
}

} // namespace

void handle(Call& call, const _ns1__openEventChannel& request, _ns1__openEventChannelResponse& response)
{
    const Credential credential = credential_of(request.cred);
    const Model::Use storage = call.model().use();
    const std::size_t server = storage.admit(request.server, credential);
    response.pevcHandle =
        wire_handle(call, soap_new_ns1__EventChannelHandle,
                    storage->event_channels.open({server, request.server, request.evseqno}));
}

void handle(Call& call, const _ns1__closeEventChannel& request, _ns1__closeEventChannelResponse&)
{
    const Model::Use storage = call.model().use();
    storage->event_channels.close(channel_token(request.evcHandle));
}

void handle(Call& call, const _ns1__getEvent& request, _ns1__getEventResponse& response)
{
    const Model::Use storage = call.model().use();
    const std::string& token = channel_token(request.evcHandle);
    const Event& event = storage->next_event(token);
    const std::string& server_name = storage->event_channels.at(token).server_name;
    ns1__Event* wire = call.make(soap_new_ns1__Event);
    wire->seqno = event.seqno;
    wire->server = server_name;
    wire->flags = event.is_inline ? kInlineFlag : 0;
    wire->type = static_cast<int>(event.kind());
    wire->body = event.is_inline ? wire_payload(call, event.payload, server_name)
                                 : wire_announcement(call, event.payload);
    response.event = wire;
}

void handle(Call& call, const _ns1__getEventPayload& request, _ns1__getEventPayloadResponse& response)
{
    const Model::Use storage = call.model().use();
    const Session& session = storage->session(token_of(request.serverHandle));
    const StorageServer& server = storage->server(session.server);
    const EventPayload& payload = server.events.at(seqno_of(request.event)).payload;
    response.payload = std::holds_alternative<ServerInformed>(payload)
                           ? wire_server_payload(call, storage.properties(session.name))
                           : wire_payload(call, payload, session.name);
}

void handle(Call& call, const _ns1__deleteEvent& request, _ns1__deleteEventResponse&)
{
    const Model::Use storage = call.model().use();
    StorageServer& server = storage->server(storage->session(token_of(request.serverHandle)).server);
    server.events.erase(seqno_of(request.event));
}

} // namespace soapwrapper::simulator
