// A stream of events from the service: open and close, one event at a time, its payload, its end.
#include "conversion/events_from_soap.h"
#include "conversion/events_from_sts.h"
#include "operations/handle_text.h"
#include "plugin/base/bounded_text.h"
#include "plugin/base/session_log.h"
#include "plugin/host/entry_points.h"
#include "service/service_call.h"
#include "service/wire_session.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

using namespace soapwrapper;

namespace
{

constexpr std::int64_t kRecordVersion = 11;

// The kinds of a detached event, as the service numbers them.
enum { kWireActivity = 6, kWireServerInformation = 7, kWireImageReplication = 8 };

using WireChannel = WireToken<ns1__EventChannelHandle>;
using Arms = _ns1__union_EventBody;

// The arm of a body that belongs to a kind; null where the body holds another one, or there is none.
template <class Arm>
const Arm* arm_of(const ns1__EventBody* body, int kind, Arm* Arms::*arm)
{
    return body && body->__union_EventBody == kind ? body->union_EventBody.*arm : nullptr;
}

const ns1__EventActivity* activity_of(const ns1__EventBody* body)
{
    return arm_of(body, STS_EVENT_ACTIVITY, &Arms::actv);
}

void log_received(const sts_session_def_v7_t* session, const stsp_server_t& server, const ns1__Event& wire,
                  std::int64_t flags)
{
    if (!somebody_listens(session)) return;
    char hexadecimal[2 * sizeof flags + 1];
    std::snprintf(hexadecimal, sizeof hexadecimal, "%llx", static_cast<unsigned long long>(flags));
    log_message(session, STS_LOG_RECORD, "received event <", server.server_name, "> response.server <",
                wire.server, "> seqno=", wire.seqno, " flags=0x", hexadecimal, "soap_type=", wire.type);
}

// Writes the kind and the payload; false for a kind that the host's record has no room for.
bool fill_inline(sts_event_v11_t& event, const ns1__Event& wire)
{
    sts_event_payload_v11_t& payload = event.payload;
    switch (wire.type) {
    case STS_EVENT_OP:
        set_ev_op_from_soap(payload.op, arm_of(wire.body, wire.type, &Arms::op));
        break;
    case STS_EVENT_LSU_INFO:
        set_ev_lsu_info_from_soap(payload.lsuInfo, arm_of(wire.body, wire.type, &Arms::lsuInfo));
        break;
    case STS_EVENT_SRV_STAT:
        set_ev_srv_stat_from_soap(payload.srvStat, arm_of(wire.body, wire.type, &Arms::srvStat));
        break;
    case STS_EVENT_LSU_STAT:
        set_ev_lsu_stat_from_soap(payload.lsuStat, arm_of(wire.body, wire.type, &Arms::lsuStat));
        break;
    case STS_EVENT_IMG_INFO:
        set_ev_img_info_from_soap(payload.imgInfo, arm_of(wire.body, wire.type, &Arms::imgInfo));
        break;
    case STS_EVENT_ACTIVITY:
        set_ev_actv_from_soap(payload.actv, activity_of(wire.body));
        break;
    default:
        return false;
    }
    event.inline_kind = wire.type;
    return true;
}

// Writes the host's number of the kind; false for a kind that has none.
bool fill_detached(sts_event_v11_t& event, const ns1__Event& wire)
{
    switch (wire.type) {
    case kWireServerInformation:
        event.detached_kind = STS_DETACHED_SRV_INFO;
        return true;
    case kWireImageReplication:
        event.detached_kind = STS_DETACHED_IMG_REP;
        return true;
    case kWireActivity:
        event.detached_kind = STS_DETACHED_ACTIVITY;
        if (const ns1__EventActivity* activity = activity_of(wire.body)) {
            event.payload_length = activity->msgLen;
        }
        event.detached_reserved = 0;
        return true;
    default:
        return false;
    }
}

// Asks the service about an event of the host's. What the event needed on its way is given back as soon as
// the call has returned, whatever came of it.
template <class Request, class Response>
Failure send_event(ServiceCall& call, const EntryLog& log, Operation<Request, Response> operation,
                   const stsp_server_t& server, const sts_event_v11_t& event, Response& response)
{
    WireServerHandle server_handle(server.service_handle);
    ns1__Event wire_event;
    set_event_from_sts(wire_event, &event, server.session);
    Request request;
    request.serverHandle = server_handle.get();
    request.event = &wire_event;
    const int result = call.send_quietly(operation, request, response);
    cleanup_soap_event(wire_event, server.session);
    log.return_code(result);
    if (result == SOAP_OK) return std::nullopt;
    return call.status_of(result, STS_ESOAPERROR);
}

} // namespace

extern "C" int stspi_open_evchannel_v11(const sts_session_def_v7_t* session, const char* server_name,
                                        const sts_cred_t* credential, const char* interface_name,
                                        const void* /*unused*/, const void* /*unused*/, int32_t flags,
                                        int64_t evseqno, stsp_evc_t** channel)
{
    if (!session || !server_name || !channel) return STS_ENULLARG;
    const EntryLog log(session, "stspi_open_evchannel_v11");
    log.enter();
    stsp_server_t* server = nullptr;
    const int opened = stspi_open_server(session, server_name, credential, interface_name, &server);
    // A service may refuse the login with the status 0: then there is no server either.
    if (opened != STS_EOK || !server) return opened;

    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure; // the server stays open on this path
    WireSession sd(*session);
    WireCredential cred(*credential);
    _ns1__openEventChannel request;
    request.sd = sd.get();
    request.server = server_name;
    request.cred = cred.get();
    request.interface = interface_name ? interface_name : "";
    request.flags = flags;
    request.evseqno = static_cast<int>(evseqno); // the low half travels
    _ns1__openEventChannelResponse response;
    if (const Failure failure = call.send(&Service::openEventChannel, request, response)) {
        stspi_close_server(server);
        return *failure;
    }

    // Handed out ahead of the test, so that the host can close what it couldn't use.
    auto* made = new stsp_evc_t();
    *channel = made;
    made->server = server;
    made->session = session;
    const std::string* token = response.pevcHandle ? response.pevcHandle->token : nullptr;
    made->token = allocate_text(token ? *token : std::string());
    if (!token) {
        log.failure("invalid response handle or token");
        return STS_EPLUGIN;
    }
    return log.ok();
}

extern "C" int stspi_close_evchannel(stsp_evc_t* channel)
{
    if (!channel || !channel->session || !channel->server) return STS_ENULLARG;
    const EntryLog log(channel->session, "stspi_close_evchannel");
    log.enter();
    // Copies, because both records may be gone before the call is.
    const std::string endpoint = text_or_empty(channel->server->endpoint);
    WireChannel evc_handle(channel->token);
    ServiceCall call(log);
    call.set_endpoint(endpoint.c_str());
    call.set_https(channel->server->use_https);
    if (const Failure failure = call.secure()) return *failure;

    _ns1__closeEventChannel request;
    request.evcHandle = evc_handle.get();
    _ns1__closeEventChannelResponse response;
    const int result = call.send_quietly(&Service::closeEventChannel, request, response);
    log.return_code(result);

    const int closed = stspi_close_server(channel->server);
    if (closed == STS_EBUSY || closed == STS_EINUSE) {
        log_message(log.session(), STS_LOG_ANOMALY, "retry event channel internal serverhandle");
        return closed;
    }
    std::free(channel->token);
    channel->token = nullptr;
    delete channel;
    // Only now is the service's own answer looked at: the channel is gone whatever it was.
    if (result != SOAP_OK) return call.status_of(result, STS_ESOAPERROR);
    return log.ok();
}

extern "C" int stspi_get_event(stsp_evc_t* channel, sts_event_v11_t* event)
{
    if (!channel || !event) return STS_ENULLARG;
    if (!channel->server) return STS_EBADARG;
    const stsp_server_t& server = *channel->server;
    const EntryLog log(channel->session, "stspi_get_event");
    log.enter();
    if (!server.service_handle || !server.endpoint) return STS_EBADARG;
    ServiceCall call(server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireChannel evc_handle(channel->token);
    _ns1__getEvent request;
    request.evcHandle = evc_handle.get();
    _ns1__getEventResponse response;
    if (const Failure failure = call.send(&Service::getEvent, request, response)) return *failure;
    if (!response.event) return log.reply_lacks("event");
    const ns1__Event& wire = *response.event;
    event->version = kRecordVersion;
    event->seqno = wire.seqno;
    V_strlcpy(event->server, server.server_name, sizeof event->server);
    event->flags = wire.flags;
    log_received(log.session(), server, wire, event->flags);
    const bool has_payload = (wire.flags & STS_EVENT_INLINE) != 0;
    if (has_payload && !fill_inline(*event, wire)) {
        log.failure("Unrecognized inline event type");
        return STS_EBADARG;
    }
    if (!has_payload && !fill_detached(*event, wire)) {
        log.failure("Unrecognized detached event type");
        return STS_EBADARG;
    }
    return log.ok();
}

extern "C" int stspi_get_event_payload(stsp_server_t* server, sts_ev_activity_v11_t* activity,
                                       const sts_event_v11_t* event)
{
    if (!activity || !event) return STS_ENULLARG;
    if (!server) return STS_EBADARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    const EntryLog log(server->session, "stspi_get_event_payload");
    log.enter();
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    _ns1__getEventPayloadResponse response;
    if (const Failure failure = send_event(call, log, &Service::getEventPayload, *server, *event, response)) {
        return *failure;
    }
    switch (event->detached_kind) {
    case STS_DETACHED_SRV_INFO:
    case STS_DETACHED_IMG_REP:
        return log.ok();
    case STS_DETACHED_ACTIVITY_PAYLOAD:
        if (!response.payload) return log.reply_lacks("payload");
        if (!activity_of(response.payload)) return log.reply_lacks("actv");
        set_ev_actv_from_soap(*activity, activity_of(response.payload));
        return log.ok();
    default:
        // The number under which stspi_get_event announces an activity is among them.
        log.failure("Unrecognized detached event type");
        return STS_EBADARG;
    }
}

extern "C" int stspi_delete_event(stsp_server_t* server, const sts_event_v11_t* event)
{
    if (!server) return STS_EBADARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    const EntryLog log(server->session, "stspi_delete_event");
    log.enter();
    if (!event) return STS_ENULLARG;
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    _ns1__deleteEventResponse response;
    if (const Failure failure = send_event(call, log, &Service::deleteEvent, *server, *event, response)) {
        return *failure;
    }
    return log.ok();
}
