// The events of the host's binary interface, field by field: a change of any line here breaks every host.
#include "plugin/host/event_records.h"

#include <cstddef>

#define FIELD(record, field, offset, size)                                                                   \
    static_assert(offsetof(record, field) == (offset) && sizeof(record::field) == (size), #record "." #field)
#define RECORD(record, size) static_assert(sizeof(record) == (size), #record)

FIELD(sts_ev_op_v11_t, name, 0, 256);
FIELD(sts_ev_op_v11_t, bytesTransferred, 256, 8);
FIELD(sts_ev_op_v11_t, error, 264, 4);
RECORD(sts_ev_op_v11_t, 272);

FIELD(sts_ev_lsu_info_v11_t, fields, 0, 8);
FIELD(sts_ev_lsu_info_v11_t, lsuInfo, 8, 4776);
RECORD(sts_ev_lsu_info_v11_t, 4784);

FIELD(sts_ev_srv_stat_v11_t, action, 0, 4);
FIELD(sts_ev_srv_stat_v11_t, name, 4, 512);
RECORD(sts_ev_srv_stat_v11_t, 516);

FIELD(sts_ev_lsu_stat_v11_t, action, 0, 4);
FIELD(sts_ev_lsu_stat_v11_t, name, 4, 1024);
RECORD(sts_ev_lsu_stat_v11_t, 1028);

FIELD(sts_ev_img_info_v11_t, fields, 0, 8);
FIELD(sts_ev_img_info_v11_t, imgInfo, 8, 12048);
RECORD(sts_ev_img_info_v11_t, 12056);

FIELD(sts_ev_activity_v11_t, version, 0, 8);
FIELD(sts_ev_activity_v11_t, action, 8, 4);
FIELD(sts_ev_activity_v11_t, eventset, 12, 256);
FIELD(sts_ev_activity_v11_t, time, 272, 8);
FIELD(sts_ev_activity_v11_t, sev, 280, 4);
FIELD(sts_ev_activity_v11_t, vendorType, 284, 256);
FIELD(sts_ev_activity_v11_t, lsuName, 540, 1024);
FIELD(sts_ev_activity_v11_t, imgInfo, 1568, 12048);
FIELD(sts_ev_activity_v11_t, dpaid, 13616, 64);
FIELD(sts_ev_activity_v11_t, dpaver, 13680, 32);
FIELD(sts_ev_activity_v11_t, dpaext, 13712, 8);
FIELD(sts_ev_activity_v11_t, msgLen, 13720, 8);
FIELD(sts_ev_activity_v11_t, msg, 13728, 2048);
RECORD(sts_ev_activity_v11_t, 15776);

// The activity is the largest arm and sets the size of the union.
FIELD(sts_event_payload_v11_t, op, 0, 272);
FIELD(sts_event_payload_v11_t, lsuInfo, 0, 4784);
FIELD(sts_event_payload_v11_t, srvStat, 0, 516);
FIELD(sts_event_payload_v11_t, lsuStat, 0, 1028);
FIELD(sts_event_payload_v11_t, imgInfo, 0, 12056);
FIELD(sts_event_payload_v11_t, actv, 0, 15776);
RECORD(sts_event_payload_v11_t, sizeof(sts_ev_activity_v11_t));

FIELD(sts_event_v11_t, version, 0, 8);
FIELD(sts_event_v11_t, seqno, 8, 8);
FIELD(sts_event_v11_t, server, 16, 512);
FIELD(sts_event_v11_t, flags, 528, 8);
FIELD(sts_event_v11_t, inline_kind, 536, 4); // the low half of the slot
FIELD(sts_event_v11_t, payload_length, 536, 8);
FIELD(sts_event_v11_t, detached_kind, 544, 4);
FIELD(sts_event_v11_t, detached_reserved, 548, 4);
FIELD(sts_event_v11_t, payload, 552, 15776);
RECORD(sts_event_v11_t, 16328);
