// The payloads of events, from the service into the host's records. A field whose element is nil stays as it
// stood. A null object fills nothing, but an LSU information and an activity are cleared to zero first.
#ifndef SOAPWRAPPER_CONVERSION_EVENTS_FROM_SOAP_H
#define SOAPWRAPPER_CONVERSION_EVENTS_FROM_SOAP_H

#include "plugin/host/event_records.h"

class ns1__EventActivity;
class ns1__EventImageInformation;
class ns1__EventLSUInformation;
class ns1__LSUStatus;
class ns1__OperationStatus;
class ns1__ServerStatus;

namespace soapwrapper
{

void set_ev_op_from_soap(sts_ev_op_v11_t& op, const ns1__OperationStatus* wire);
void set_ev_lsu_info_from_soap(sts_ev_lsu_info_v11_t& lsu_info, const ns1__EventLSUInformation* wire);
void set_ev_srv_stat_from_soap(sts_ev_srv_stat_v11_t& srv_stat, const ns1__ServerStatus* wire);
void set_ev_lsu_stat_from_soap(sts_ev_lsu_stat_v11_t& lsu_stat, const ns1__LSUStatus* wire);
void set_ev_img_info_from_soap(sts_ev_img_info_v11_t& img_info, const ns1__EventImageInformation* wire);

// The record's version is 11, whatever the service says. 32-bit numbers are widened with their sign.
void set_ev_actv_from_soap(sts_ev_activity_v11_t& activity, const ns1__EventActivity* wire);

} // namespace soapwrapper

#endif
