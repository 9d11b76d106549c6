#include "operations/async_result.h"

#include "conversion/field_text.h"
#include "conversion/lsu_pair.h"
#include "plugin/status.h"

#include <algorithm>
#include <cstddef>

#include "soapwrapperStub.h"

namespace soapwrapper
{
namespace
{

// Kinds of a result that has no body, as the service numbers them.
bool is_kind_without_body(int type)
{
    return type == 0 || type == 4 || type == 5;
}

template <class Arm>
void set_topology(sts_async_snap_result_t& record, int kind, const Arm* arm)
{
    record.result_kind = kind;
    if (arm) set_text(record.body.targetTopology, arm->targetTopology);
}

template <class Arm>
void set_snapshot(sts_async_snap_result_t& record, int kind, const Arm* arm)
{
    record.result_kind = kind;
    if (!arm) return;
    set_text(record.body.snapshot.targetSnapName, arm->targetSnapName);
    set_lsu_spec_from_soap(record.body.snapshot.targetSnapLsu, arm->targetSnapLsu);
}

// The rows that the service announces, as far as it sends them: the list bounds a number that can't be right.
std::size_t count_of(const ns1__AIOResultGetSnapDiff& arm)
{
    const std::size_t sent = arm.diffObjectList ? arm.diffObjectList->item.size() : 0;
    return arm.numDiffs < 0 ? sent : std::min(static_cast<std::size_t>(arm.numDiffs), sent);
}

void set_difference(sts_async_snap_result_t& record, const ns1__AIOResultGetSnapDiff* arm)
{
    record.result_kind = STS_RESULT_DIFFERENCE;
    if (!arm) return;
    const std::size_t count = count_of(*arm);
    sts_async_difference& difference = record.body.difference;
    if (difference.numDiffs) *difference.numDiffs = static_cast<std::int32_t>(count);
    auto* rows = new sts_snap_diff_t[count]();
    for (std::size_t i = 0; i < count; ++i) {
        const ns1__DiffObjectSpecification* item = arm->diffObjectList->item[i];
        if (!item) continue;
        set_text(rows[i].objectName, item->objectName);
        rows[i].objectType = item->objectType;
        rows[i].objectState = item->objectState;
    }
    difference.diffs = rows;
}

// False if there is neither an arm nor a kind that does without one.
bool set_body(sts_async_snap_result_t& record, const ns1__AIOResultSnap& result)
{
    const auto& arm = result.union_AIOResultSnap;
    switch (result.__union_AIOResultSnap) {
    case SOAP_UNION__ns1__union_AIOResultSnap_validateSnap:
        set_topology(record, STS_RESULT_VALIDATE, arm.validateSnap);
        return true;
    case SOAP_UNION__ns1__union_AIOResultSnap_provisionTopology:
        set_topology(record, STS_RESULT_PROVISION, arm.provisionTopology);
        return true;
    case SOAP_UNION__ns1__union_AIOResultSnap_createSnap:
        set_snapshot(record, STS_RESULT_CREATE, arm.createSnap);
        return true;
    case SOAP_UNION__ns1__union_AIOResultSnap_importSnap:
        set_snapshot(record, STS_RESULT_IMPORT, arm.importSnap);
        return true;
    case SOAP_UNION__ns1__union_AIOResultSnap_copySnap:
        set_snapshot(record, STS_RESULT_COPY, arm.copySnap);
        return true;
    case SOAP_UNION__ns1__union_AIOResultSnap_getSnapDiff:
        set_difference(record, arm.getSnapDiff);
        return true;
    default:
        if (!is_kind_without_body(result.resultSnapType)) return false;
        record.result_kind = result.resultSnapType;
        return true;
    }
}

} // namespace

int set_async_result(sts_async_result_t& record, const ns1__AIOResult* result, const EntryLog& log)
{
    if (!result) return log.reply_lacks("result");
    record.aio_bytes_transferred = result->bytesTransferred;
    record.aio_error = static_cast<std::uint32_t>(result->error);
    log.record("aio_bytes_transferred = ", record.aio_bytes_transferred, " aio_error = ", record.aio_error);
    return STS_EOK;
}

int set_async_snap_result(sts_async_snap_result_t& record, const ns1__AIOResultSnap* result,
                          const EntryLog& log)
{
    if (!result) return log.reply_lacks("result");
    record.aio_error = static_cast<std::uint32_t>(result->error);
    record.retryInterval = result->retryInterval;
    if (!set_body(record, *result)) {
        log.failure("invalid resultSnapType response received");
        return STS_EPLUGIN;
    }
    record.aio_total_bytes_transferred = result->totalBytesTransferred;
    log.record("aio_total_bytes_transferred = ", record.aio_total_bytes_transferred,
               " aio_error = ", record.aio_error);
    return STS_EOK;
}

} // namespace soapwrapper
