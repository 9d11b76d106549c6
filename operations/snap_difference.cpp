#include "operations/snap_difference.h"

#include "conversion/field_text.h"
#include "plugin/base/session_log.h"
#include "plugin/host/async_records.h"
#include "plugin/host/status.h"

#include <algorithm>
#include <cstddef>
#include <new>

#include "soapwrapperStub.h"

namespace soapwrapper
{
namespace
{

bool is_whole(const ns1__AIOResultGetSnapDiff& arm, const EntryLog& log)
{
    const std::size_t sent = arm.diffObjectList ? arm.diffObjectList->item.size() : 0;
    if (arm.numDiffs < 0 || static_cast<std::size_t>(arm.numDiffs) > sent) {
        log.failure("the reply has numDiffs = ", arm.numDiffs, " and ", sent, " in its diffObjectList");
        return false;
    }
    if (arm.numDiffs == 0) return true;
    const auto first = arm.diffObjectList->item.begin();
    const auto missing = std::find(first, first + arm.numDiffs, nullptr);
    if (missing == first + arm.numDiffs) return true;
    log.failure("item ", missing - first, " of the reply's diffObjectList is nil");
    return false;
}

} // namespace

int take_difference(SnapDifference& difference, const ns1__AIOResultGetSnapDiff& arm, const EntryLog& log)
{
    if (!is_whole(arm, log)) return STS_EPLUGIN;
    const auto count = static_cast<std::size_t>(arm.numDiffs);
    difference.count = arm.numDiffs;
    difference.rows.reset(new (std::nothrow) sts_snap_diff_t[count]());
    if (!difference.rows) {
        log.failure("no memory for ", count, " differences");
        return STS_ENOMEM;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const ns1__DiffObjectSpecification& item = *arm.diffObjectList->item[i];
        set_text(difference.rows[i].objectName, item.objectName);
        difference.rows[i].objectType = item.objectType;
        difference.rows[i].objectState = item.objectState;
    }
    return STS_EOK;
}

void deliver_difference(sts_async_difference& record, SnapDifference difference, const EntryLog& log)
{
    if (record.numDiffs) {
        *record.numDiffs = difference.count;
    } else {
        log.anomaly("no place for the number of differences");
    }
    record.diffs = difference.rows.release();
}

} // namespace soapwrapper
