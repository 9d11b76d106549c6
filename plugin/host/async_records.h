/* The host's records of the long operations on snapshots: how one is named, and how it went. */
#ifndef SOAPWRAPPER_PLUGIN_HOST_ASYNC_RECORDS_H
#define SOAPWRAPPER_PLUGIN_HOST_ASYNC_RECORDS_H

#include "host_records.h"

#include <stdint.h>

enum { STS_ASYNC_NAME_SIZE = 256, STS_TOPOLOGY_SIZE = 4096 };

/* Two names that are passed by value, as 256 bytes among the arguments: of an image set, and of an operation
 * that the host has named itself. Either may be empty. */
typedef struct sts_imageset {
    char name[STS_ASYNC_NAME_SIZE];
} sts_imageset_t;

typedef struct sts_opname {
    char name[STS_ASYNC_NAME_SIZE];
} sts_opname_t;

/* How an operation stands, as stspi_async_wait says it. */
typedef struct sts_async_result {
    int64_t aio_bytes_transferred;
    uint32_t aio_error; /* the operation's own status; STS_EBUSY while it runs */
} sts_async_result_t;

/* One object that differs between two snapshots. */
typedef struct sts_snap_diff {
    char objectName[STS_PATH_SIZE];
    int32_t objectType;
    int32_t objectState;
} sts_snap_diff_t;

/* What an operation on a snapshot has brought, and with it which body of the record counts. 0, 4 and 5 come
 * from the service as they are and have no body. */
enum {
    STS_RESULT_VALIDATE = 1,   /* topology */
    STS_RESULT_CREATE = 2,     /* snapshot */
    STS_RESULT_COPY = 3,       /* snapshot */
    STS_RESULT_DIFFERENCE = 6, /* difference */
    STS_RESULT_PROVISION = 7,  /* topology */
    STS_RESULT_IMPORT = 8      /* snapshot */
};

struct sts_async_snapshot {
    char targetSnapName[STS_SNAP_NAME_SIZE];
    sts_lsu_spec_v11_t targetSnapLsu;
};

/* `numDiffs` is the host's and set by it ahead of the call, where a difference is waited for. `diffs` is set
 * by the plug-in: *numDiffs rows, from operator new[], and the host's from then on. Neither is written where
 * the service announces a number that its list doesn't hold. */
struct sts_async_difference {
    int32_t* numDiffs;
    sts_snap_diff_t* diffs;
};

/* How an operation on a snapshot stands. */
typedef struct sts_async_snap_result {
    int64_t aio_total_bytes_transferred;
    uint32_t aio_error;    /* the operation's own status; STS_EBUSY while it runs */
    int32_t retryInterval; /* in seconds, how long the service would like to be left alone */
    int32_t result_kind;
    union {
        char targetTopology[STS_TOPOLOGY_SIZE];
        struct sts_async_snapshot snapshot;
        struct sts_async_difference difference;
    } body;
} sts_async_snap_result_t;

#endif
