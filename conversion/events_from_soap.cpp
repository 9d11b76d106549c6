#include "conversion/events_from_soap.h"

#include "conversion/field_text.h"
#include "conversion/image_definition.h"
#include "conversion/lsu_definition.h"
#include "plugin/host/event_records.h"

#include <cstdint>
#include <cstring>

#include "soapwrapperStub.h"

namespace soapwrapper
{
namespace
{

constexpr std::int64_t kRecordVersion = 11;

} // namespace

void set_ev_op_from_soap(sts_ev_op_v11_t& op, const ns1__OperationStatus* wire)
{
    if (!wire) return;
    set_text(op.name, wire->name);
    if (!wire->result) return;
    op.bytesTransferred = wire->result->bytesTransferred;
    op.error = wire->result->error;
}

void set_ev_lsu_info_from_soap(sts_ev_lsu_info_v11_t& lsu_info, const ns1__EventLSUInformation* wire)
{
    std::memset(&lsu_info, 0, sizeof lsu_info);
    if (!wire) return;
    lsu_info.fields = wire->fields;
    set_lsu_info_from_soap(lsu_info.lsuInfo, wire->lsuInfo);
}

void set_ev_srv_stat_from_soap(sts_ev_srv_stat_v11_t& srv_stat, const ns1__ServerStatus* wire)
{
    if (!wire) return;
    srv_stat.action = wire->action;
    set_text(srv_stat.name, wire->name);
}

void set_ev_lsu_stat_from_soap(sts_ev_lsu_stat_v11_t& lsu_stat, const ns1__LSUStatus* wire)
{
    if (!wire) return;
    lsu_stat.action = wire->action;
    set_text(lsu_stat.name, wire->name);
}

void set_ev_img_info_from_soap(sts_ev_img_info_v11_t& img_info, const ns1__EventImageInformation* wire)
{
    if (!wire) return;
    img_info.fields = wire->fields;
    set_image_info_from_soap(img_info.imgInfo, wire->imgInfo);
}

void set_ev_actv_from_soap(sts_ev_activity_v11_t& activity, const ns1__EventActivity* wire)
{
    std::memset(&activity, 0, sizeof activity);
    if (!wire) return;
    activity.version = kRecordVersion;
    activity.action = wire->action;
    set_text(activity.eventset, wire->eventset);
    activity.time = wire->time;
    activity.sev = wire->sev;
    set_text(activity.lsuName, wire->lsuName);
    set_image_info_from_soap(activity.imgInfo, wire->imgInfo);
    set_text(activity.vendorType, wire->vendorType);
    set_text(activity.dpaid, wire->dpaid);
    set_text(activity.dpaver, wire->dpaver);
    if (wire->dpaext) activity.dpaext = *wire->dpaext;
    activity.msgLen = wire->msgLen;
    set_text(activity.msg, wire->msg);
}

} // namespace soapwrapper
