/* The host's event records, under the rules of the other records: fixed-size plain data, allocated and owned
 * by the host, the order of the fields and their widths binding, every text NUL-terminated within its array.
 *
 * An event comes in one of two shapes, told apart by a bit of `flags`. An inline one has its payload in the
 * record. A detached one has only a kind, and its payload is asked for by a second call. */
#ifndef SOAPWRAPPER_PLUGIN_HOST_EVENT_RECORDS_H
#define SOAPWRAPPER_PLUGIN_HOST_EVENT_RECORDS_H

#include "host_records.h"

#include <stdint.h>

enum {
    STS_EVENT_NAME_SIZE = 256, /* operations, event sets, vendor types */
    STS_EVENT_MESSAGE_SIZE = 2048
};

/* The bit of `flags` that an inline event has and a detached one lacks. */
enum { STS_EVENT_INLINE = 2 };

/* The kinds of an inline event: the arm of `payload` that holds it. */
enum {
    STS_EVENT_OP = 1,
    STS_EVENT_LSU_INFO = 2,
    STS_EVENT_SRV_STAT = 3,
    STS_EVENT_LSU_STAT = 4,
    STS_EVENT_IMG_INFO = 5,
    STS_EVENT_ACTIVITY = 6
};

/* The kinds of a detached event. stspi_get_event announces an activity as the first of the last two, and
 * stspi_get_event_payload fetches one for the second alone. */
enum {
    STS_DETACHED_SRV_INFO = 0,
    STS_DETACHED_IMG_REP = 1,
    STS_DETACHED_ACTIVITY = 2,
    STS_DETACHED_ACTIVITY_PAYLOAD = 6
};

/* The result of an operation. */
typedef struct sts_ev_op_v11 {
    char name[STS_EVENT_NAME_SIZE];
    int64_t bytesTransferred;
    int32_t error;
} sts_ev_op_v11_t;

typedef struct sts_ev_lsu_info_v11 {
    int64_t fields; /* which fields are valid */
    sts_lsu_info_v11_t lsuInfo;
} sts_ev_lsu_info_v11_t;

/* The status of a server. */
typedef struct sts_ev_srv_stat_v11 {
    int32_t action;
    char name[STS_SERVER_NAME_SIZE];
} sts_ev_srv_stat_v11_t;

/* The status of an LSU. */
typedef struct sts_ev_lsu_stat_v11 {
    int32_t action;
    char name[STS_LSU_NAME_SIZE];
} sts_ev_lsu_stat_v11_t;

typedef struct sts_ev_img_info_v11 {
    int64_t fields; /* which fields are valid */
    sts_image_info_v10_t imgInfo;
} sts_ev_img_info_v11_t;

typedef struct sts_ev_activity_v11 {
    int64_t version; /* 11 wherever the plug-in fills the record */
    int32_t action;
    char eventset[STS_EVENT_NAME_SIZE];
    int64_t time;
    int32_t sev;
    char vendorType[STS_EVENT_NAME_SIZE];
    char lsuName[STS_LSU_NAME_SIZE];
    sts_image_info_v10_t imgInfo;
    char dpaid[64];
    char dpaver[32];
    int64_t dpaext;
    int64_t msgLen;
    char msg[STS_EVENT_MESSAGE_SIZE];
} sts_ev_activity_v11_t;

typedef union sts_event_payload_v11 {
    sts_ev_op_v11_t op;
    sts_ev_lsu_info_v11_t lsuInfo;
    sts_ev_srv_stat_v11_t srvStat;
    sts_ev_lsu_stat_v11_t lsuStat;
    sts_ev_img_info_v11_t imgInfo;
    sts_ev_activity_v11_t actv;
} sts_event_payload_v11_t;

typedef struct sts_event_v11 {
    int64_t version; /* 11 wherever the plug-in fills the record */
    int64_t seqno;
    char server[STS_SERVER_NAME_SIZE]; /* the channel's server, whatever the service calls it */
    int64_t flags;
    /* One slot of 64 bits. Its upper half isn't touched where only the kind is written. */
    __extension__ union {
        int32_t inline_kind;    /* inline: the low half */
        int64_t payload_length; /* detached: bytes */
    };
    int32_t detached_kind;
    int32_t detached_reserved; /* 0 for a detached activity */
    sts_event_payload_v11_t payload;
} sts_event_v11_t;

#endif
