// What differs between two snapshots, as a wait brings it.
#ifndef SOAPWRAPPER_OPERATIONS_SNAP_DIFFERENCE_H
#define SOAPWRAPPER_OPERATIONS_SNAP_DIFFERENCE_H

#include "plugin/base/session_log.h"
#include "plugin/host/async_records.h"

#include <cstdint>
#include <memory>

class ns1__AIOResultGetSnapDiff;

namespace soapwrapper
{

// Rows that are whole and that the host doesn't have yet.
struct SnapDifference {
    std::int32_t count = 0;
    std::unique_ptr<sts_snap_diff_t[]> rows;
};

// Takes as many rows as the service announces. It must have sent them all: a backup goes by this list, and
// one that lacks objects must not look complete. A failure is logged, and its status returned.
int take_difference(SnapDifference& difference, const ns1__AIOResultGetSnapDiff& arm, const EntryLog& log);

// Hands the rows over to the host. Its record may have no place for their number; then that is logged.
void deliver_difference(sts_async_difference& record, SnapDifference difference, const EntryLog& log);

} // namespace soapwrapper

#endif
