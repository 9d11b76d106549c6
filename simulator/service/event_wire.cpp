#include "simulator/service/event_wire.h"

#include "simulator/scenario/records.h"
#include "simulator/service/call.h"
#include "simulator/service/images.h"
#include "simulator/service/lsus.h"
#include "simulator/service/sessions.h"
#include "simulator/service/snapshots.h"
#include "simulator/service/wire.h"
#include "simulator/storage/event_records.h"
#include "simulator/storage/model.h"
#include "simulator/storage/storage_server.h"

#include <string>
#include <variant>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr int kRecordVersion = 11;
constexpr int kInformation = 1; // severity
constexpr int kNoDelay = -1;

// One bit for each element of the record: all of them are valid.
constexpr LONG64 kAllOfLsu = 0xff;
constexpr LONG64 kAllOfImage = 0xff;
constexpr LONG64 kAllOfServer = 0x1ff;

ns1__EventBody* new_body(const Call& call, EventKind kind)
{
    ns1__EventBody* body = call.make(soap_new_ns1__EventBody);
    body->__union_EventBody = static_cast<int>(kind);
    return body;
}

ns1__EventBody* body_of(const Call& call, const OperationEnded& ended, const std::string&)
{
    ns1__OperationStatus* op = call.make(soap_new_ns1__OperationStatus);
    op->name = ended.name;
    op->result = call.make(soap_new_ns1__AIOResult);
    op->result->bytesTransferred = ended.bytes_transferred;
    op->result->error = ended.error;
    op->result->delayInSeconds = kNoDelay;
    ns1__EventBody* body = new_body(call, EventKind::kOperation);
    body->union_EventBody.op = op;
    return body;
}

ns1__EventBody* body_of(const Call& call, const LsuChanged& changed, const std::string& server_name)
{
    ns1__EventLSUInformation* info = call.make(soap_new_ns1__EventLSUInformation);
    info->fields = kAllOfLsu;
    info->lsuInfo = wire_lsu(call, changed.properties, changed.images, server_name);
    ns1__EventBody* body = new_body(call, EventKind::kLsuInfo);
    body->union_EventBody.lsuInfo = info;
    return body;
}

ns1__EventBody* body_of(const Call& call, const ServerStatus& status, const std::string& server_name)
{
    ns1__ServerStatus* wire = call.make(soap_new_ns1__ServerStatus);
    wire->action = static_cast<int>(status.action);
    wire->name = server_name;
    ns1__EventBody* body = new_body(call, EventKind::kServerStatus);
    body->union_EventBody.srvStat = wire;
    return body;
}

ns1__EventBody* body_of(const Call& call, const LsuStatus& status, const std::string&)
{
    ns1__LSUStatus* wire = call.make(soap_new_ns1__LSUStatus);
    wire->action = static_cast<int>(status.action);
    wire->name = status.name;
    ns1__EventBody* body = new_body(call, EventKind::kLsuStatus);
    body->union_EventBody.lsuStat = wire;
    return body;
}

ns1__EventBody* body_of(const Call& call, const ImageGone& gone, const std::string& server_name)
{
    ns1__EventImageInformation* info = call.make(soap_new_ns1__EventImageInformation);
    info->fields = kAllOfImage;
    info->imgInfo = wire_image(call, gone.image, server_name, gone.lsu);
    ns1__EventBody* body = new_body(call, EventKind::kImageInfo);
    body->union_EventBody.imgInfo = info;
    return body;
}

ns1__HostSpecification* wire_hosts(const Call& call, const std::vector<std::string>& hosts)
{
    ns1__HostSpecification* wire = call.make(soap_new_ns1__HostSpecification);
    wire->hostname = call.make(soap_new_ns1__ArrayOfString);
    wire->hostname->item = hosts;
    wire->port = call.make(soap_new_ns1__ArrayOfString);
    return wire;
}

// What is told of an activity ahead of its message.
ns1__EventActivity* announced(const Call& call, const Activity& activity)
{
    ns1__EventActivity* wire = call.make(soap_new_ns1__EventActivity);
    wire->version = kRecordVersion;
    wire->action = static_cast<int>(activity.action);
    wire->eventset = call.text(activity.event_set);
    wire->time = static_cast<int>(activity.time); // the low half travels
    wire->sev = kInformation;
    wire->vendorType = call.text("soapwrapper-sim");
    wire->lsuName = call.text(activity.lsu);
    wire->msgLen = static_cast<int>(activity.message.size());
    return wire;
}

// Which application a snapshot belongs to.
void tell_supplier(const Call& call, const SupplierId& isid, ns1__EventActivity& wire)
{
    wire.dpaid = call.text(isid.dpaid);
    wire.dpaver = call.text(isid.dpaver);
    wire.dpaext = call.make(soap_new_int);
    *wire.dpaext = static_cast<int>(isid.version); // the low half travels
}

ns1__EventBody* body_of(const Call& call, const Activity& activity, const std::string& server_name)
{
    ns1__EventActivity* wire = announced(call, activity);
    wire->msg = activity.message;
    if (activity.snapshot) {
        wire->snapInfo = wire_snapshot(call, *activity.snapshot, server_name, activity.lsu);
        if (activity.snapshot->isid) tell_supplier(call, *activity.snapshot->isid, *wire);
    }
    if (activity.volume) wire->volSpec = wire_volume(call, *activity.volume);
    if (!activity.hosts.empty()) wire->hostSpec = wire_hosts(call, activity.hosts);
    ns1__EventBody* body = new_body(call, EventKind::kActivity);
    body->union_EventBody.actv = wire;
    return body;
}

ns1__EventBody* body_of(const Call& call, const ServerInformed&, const std::string&)
{
    return call.make(soap_new_ns1__EventBody);
}

ns1__EventBody* body_of(const Call& call, const ImageReplicated& replicated, const std::string& server_name)
{
    ns1__EventImageReplication* wire = call.make(soap_new_ns1__EventImageReplication);
    wire->lsu = replicated.lsu;
    wire->name = wire_image_definition(call, replicated.image);
    wire->origServer = replicated.origin_server + ":" + host_of(server_name);
    wire->origLsu = replicated.origin_lsu;
    wire->origName = wire_image_definition(call, replicated.origin);
    ns1__EventBody* body = new_body(call, EventKind::kImageReplication);
    body->union_EventBody.imgRep = wire;
    return body;
}

} // namespace

ns1__EventBody* wire_payload(const Call& call, const EventPayload& payload, const std::string& server_name)
{
    return std::visit([&](const auto& told) { return body_of(call, told, server_name); }, payload);
}

ns1__EventBody* wire_server_payload(const Call& call, const ServerProperties& properties)
{
    ns1__EventServerInformation* info = call.make(soap_new_ns1__EventServerInformation);
    info->fields = kAllOfServer;
    info->srvInfo = wire_server(call, properties);
    ns1__EventBody* body = new_body(call, EventKind::kServerInfo);
    body->union_EventBody.srvInfo = info;
    return body;
}

ns1__EventBody* wire_announcement(const Call& call, const EventPayload& payload)
{
    const auto* activity = std::get_if<Activity>(&payload);
    if (!activity) return nullptr;
    ns1__EventBody* body = new_body(call, EventKind::kActivity);
    body->union_EventBody.actv = announced(call, *activity);
    return body;
}

} // namespace soapwrapper::simulator
