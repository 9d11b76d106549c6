#include "conversion/events_from_sts.h"

#include "conversion/field_text.h"
#include "conversion/image_definition.h"
#include "plugin/base/session_log.h"
#include "plugin/host/event_records.h"
#include "plugin/host/host_records.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "soapwrapperStub.h"

namespace soapwrapper
{
namespace
{

constexpr int kNoDelay = -1;

std::string* new_text(std::string_view text)
{
    return new std::string(text);
}

// The host's numbers are wider than the wire's: their low halves travel.
int low_half(std::int64_t number)
{
    return static_cast<int>(number);
}

bool is_inline(std::int64_t flags)
{
    return (flags & STS_EVENT_INLINE) != 0;
}

ns1__OperationStatus* new_op(const sts_ev_op_v11_t& op)
{
    auto* wire = new ns1__OperationStatus();
    wire->name = text_of(op.name);
    wire->result = new ns1__AIOResult();
    wire->result->image = nullptr;
    wire->result->bytesTransferred = op.bytesTransferred;
    wire->result->error = op.error;
    wire->result->delayInSeconds = kNoDelay;
    return wire;
}

void delete_op(const ns1__OperationStatus* wire)
{
    if (!wire) return;
    delete wire->result;
    delete wire;
}

ns1__LSUDefinition* new_lsu_definition(const sts_lsu_def_v11_t& def)
{
    auto* wire = new ns1__LSUDefinition();
    wire->version = def.version;
    wire->name = new_text(text_of(def.name));
    wire->alloc = def.alloc;
    wire->storage = def.storage;
    wire->description = new_text(text_of(def.description));
    wire->config = new_text(text_of(def.config));
    wire->flags = def.flags;
    wire->saveas = def.saveas;
    wire->maxTransfer = def.maxTransfer;
    wire->blockSize = def.blockSize;
    wire->allocSize = def.allocSize;
    wire->label = new_text(text_of(def.label));
    wire->repSources = def.repSources;
    wire->repTargets = def.repTargets;
    return wire;
}

ns1__EventLSUInformation* new_lsu_info(const sts_ev_lsu_info_v11_t& lsu_info)
{
    const sts_lsu_info_v11_t& info = lsu_info.lsuInfo;
    auto* wire = new ns1__EventLSUInformation();
    wire->fields = lsu_info.fields;
    wire->lsuInfo = new ns1__LSUInformation();
    wire->lsuInfo->version = info.version;
    wire->lsuInfo->server = text_of(info.server);
    wire->lsuInfo->def = new_lsu_definition(info.def);
    wire->lsuInfo->capacity = info.capacity;
    wire->lsuInfo->capacityPhys = info.capacityPhys;
    wire->lsuInfo->used = info.used;
    wire->lsuInfo->usedPhys = info.usedPhys;
    wire->lsuInfo->images = info.images;
    return wire;
}

void delete_lsu_info(const ns1__EventLSUInformation* wire)
{
    if (!wire) return;
    if (const ns1__LSUInformation* info = wire->lsuInfo) {
        if (const ns1__LSUDefinition* def = info->def) {
            delete def->name;
            delete def->description;
            delete def->config;
            delete def->label;
            delete def;
        }
        delete info;
    }
    delete wire;
}

// A server's status or an LSU's.
template <class Status, class Record>
Status* new_status(const Record& status)
{
    auto* wire = new Status();
    wire->action = status.action;
    wire->name = text_of(status.name);
    return wire;
}

ns1__ImageInformation* new_image_info(const sts_image_info_v10_t& info)
{
    auto* wire = new ns1__ImageInformation();
    wire->exports = new ns1__ArrayOfExport();
    set_image_info_from_sts(*wire, &info);
    return wire;
}

void delete_image_info(ns1__ImageInformation* wire)
{
    if (!wire) return;
    release_image_info(*wire);
    delete wire->exports;
    delete wire;
}

ns1__EventImageInformation* new_img_info(const sts_ev_img_info_v11_t& img_info)
{
    auto* wire = new ns1__EventImageInformation();
    wire->fields = img_info.fields;
    wire->imgInfo = new_image_info(img_info.imgInfo);
    return wire;
}

void delete_img_info(const ns1__EventImageInformation* wire)
{
    if (!wire) return;
    delete_image_info(wire->imgInfo);
    delete wire;
}

ns1__EventActivity* new_activity(const sts_ev_activity_v11_t& activity)
{
    auto* wire = new ns1__EventActivity();
    wire->version = activity.version;
    wire->action = activity.action;
    wire->eventset = new_text(text_of(activity.eventset));
    wire->vendorType = new_text(text_of(activity.vendorType));
    wire->lsuName = new_text(text_of(activity.lsuName));
    wire->dpaid = new_text(text_of(activity.dpaid));
    wire->dpaver = new_text(text_of(activity.dpaver));
    wire->time = low_half(activity.time);
    wire->sev = activity.sev;
    wire->imgInfo = new_image_info(activity.imgInfo);
    wire->dpaext = new int(low_half(activity.dpaext));
    wire->msgLen = low_half(activity.msgLen);
    wire->msg = text_of(activity.msg);
    return wire;
}

void delete_activity(const ns1__EventActivity* wire)
{
    if (!wire) return;
    delete wire->eventset;
    delete wire->vendorType;
    delete wire->lsuName;
    delete wire->dpaid;
    delete wire->dpaver;
    delete_image_info(wire->imgInfo);
    delete wire->dpaext;
    delete wire;
}

// The body of an inline event.
ns1__EventBody* new_body(const sts_event_v11_t& event, const sts_session_def_v7_t* session)
{
    auto* body = new ns1__EventBody();
    auto& arm = body->union_EventBody;
    arm.actv = nullptr;
    switch (event.inline_kind) {
    case STS_EVENT_OP:
        body->__union_EventBody = SOAP_UNION__ns1__union_EventBody_op;
        arm.op = new_op(event.payload.op);
        break;
    case STS_EVENT_LSU_INFO:
        body->__union_EventBody = SOAP_UNION__ns1__union_EventBody_lsuInfo;
        arm.lsuInfo = new_lsu_info(event.payload.lsuInfo);
        break;
    case STS_EVENT_SRV_STAT:
        body->__union_EventBody = SOAP_UNION__ns1__union_EventBody_srvStat;
        arm.srvStat = new_status<ns1__ServerStatus>(event.payload.srvStat);
        break;
    case STS_EVENT_LSU_STAT:
        body->__union_EventBody = SOAP_UNION__ns1__union_EventBody_lsuStat;
        arm.lsuStat = new_status<ns1__LSUStatus>(event.payload.lsuStat);
        break;
    case STS_EVENT_IMG_INFO:
        body->__union_EventBody = SOAP_UNION__ns1__union_EventBody_imgInfo;
        arm.imgInfo = new_img_info(event.payload.imgInfo);
        break;
    case STS_EVENT_ACTIVITY:
        // Built in full, and yet no choice is named: the service gets an empty body, as it expects.
        arm.actv = new_activity(event.payload.actv);
        break;
    default:
        log_message(session, STS_LOG_ANOMALY, "set_event_from_sts: Unrecognized inline event type");
        break;
    }
    return body;
}

} // namespace

void set_event_from_sts(ns1__Event& wire, const sts_event_v11_t* event, const sts_session_def_v7_t* session)
{
    const bool has_payload = is_inline(event->flags);
    wire.seqno = low_half(event->seqno);
    wire.server = text_of(event->server);
    wire.flags = low_half(event->flags);
    wire.type = has_payload ? event->inline_kind : event->detached_kind;
    wire.body = has_payload ? new_body(*event, session) : nullptr;
}

void cleanup_soap_event(ns1__Event& wire, const sts_session_def_v7_t* session)
{
    if (!is_inline(wire.flags)) return;
    const ns1__EventBody* body = std::exchange(wire.body, nullptr);
    const _ns1__union_EventBody arm = body ? body->union_EventBody : _ns1__union_EventBody{};
    switch (wire.type) {
    case STS_EVENT_OP:
        delete_op(arm.op);
        break;
    case STS_EVENT_LSU_INFO:
        delete_lsu_info(arm.lsuInfo);
        break;
    case STS_EVENT_SRV_STAT:
        delete arm.srvStat;
        break;
    case STS_EVENT_LSU_STAT:
        delete arm.lsuStat;
        break;
    case STS_EVENT_IMG_INFO:
        delete_img_info(arm.imgInfo);
        break;
    case STS_EVENT_ACTIVITY:
        delete_activity(arm.actv);
        break;
    default:
        log_message(session, STS_LOG_ANOMALY, "cleanup_soap_event: Unrecognized inline event type");
        break;
    }
    delete body;
}

} // namespace soapwrapper
