// The host's binary interface, field by field: a change of any line here breaks every host.
#include "plugin/host/async_records.h"

#include <cstddef>

#define FIELD(record, field, offset, size)                                                                   \
    static_assert(offsetof(record, field) == (offset) && sizeof(record::field) == (size), #record "." #field)
#define RECORD(record, size) static_assert(sizeof(record) == (size), #record)

FIELD(sts_imageset_t, name, 0, 256);
RECORD(sts_imageset_t, 256);

FIELD(sts_opname_t, name, 0, 256);
RECORD(sts_opname_t, 256);

FIELD(sts_async_result_t, aio_bytes_transferred, 0, 8);
FIELD(sts_async_result_t, aio_error, 8, 4);
RECORD(sts_async_result_t, 16);

FIELD(sts_snap_diff_t, objectName, 0, 4096);
FIELD(sts_snap_diff_t, objectType, 4096, 4);
FIELD(sts_snap_diff_t, objectState, 4100, 4);
RECORD(sts_snap_diff_t, 4104);

FIELD(sts_async_snap_result_t, aio_total_bytes_transferred, 0, 8);
FIELD(sts_async_snap_result_t, aio_error, 8, 4);
FIELD(sts_async_snap_result_t, retryInterval, 12, 4);
FIELD(sts_async_snap_result_t, result_kind, 16, 4);
FIELD(sts_async_snap_result_t, body, 24, 4096);
RECORD(sts_async_snap_result_t, 4120);

// The bodies, from the beginning of the record.
#define BODY(field, offset)                                                                                  \
    static_assert(offsetof(sts_async_snap_result_t, body.field) == (offset),                                 \
                  "sts_async_snap_result_t." #field)

BODY(targetTopology, 24);
BODY(snapshot.targetSnapName, 24);
BODY(snapshot.targetSnapLsu, 2072);
BODY(difference.numDiffs, 24);
BODY(difference.diffs, 32);
FIELD(sts_async_snapshot, targetSnapName, 0, 2048);
FIELD(sts_async_snapshot, targetSnapLsu, 2048, 1536);
FIELD(sts_async_difference, numDiffs, 0, 8);
FIELD(sts_async_difference, diffs, 8, 8);
