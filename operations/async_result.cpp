#include "operations/async_result.h"

#include "conversion/field_text.h"
#include "conversion/lsu_pair.h"
#include "operations/snap_difference.h"
#include "plugin/base/session_log.h"
#include "plugin/host/async_records.h"
#include "plugin/host/status.h"
#include <cstdint>
#include <utility>

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

// The difference in a result; null if there is none.
const ns1__AIOResultGetSnapDiff* difference_of(const ns1__AIOResultSnap& result)
{
    const bool is_there = result.__union_AIOResultSnap == SOAP_UNION__ns1__union_AIOResultSnap_getSnapDiff;
    return is_there ? result.union_AIOResultSnap.getSnapDiff : nullptr;
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
        record.result_kind = STS_RESULT_DIFFERENCE;
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
    const ns1__AIOResultGetSnapDiff* arm = difference_of(*result);
    // Made ahead of the first write, because a failure here leaves the whole record alone.
    SnapDifference difference;
    if (arm) {
        if (const int status = take_difference(difference, *arm, log)) return status;
    }
    record.aio_error = static_cast<std::uint32_t>(result->error);
    record.retryInterval = result->retryInterval;
    if (!set_body(record, *result)) {
        log.failure("invalid resultSnapType response received");
        return STS_EPLUGIN;
    }
    if (arm) deliver_difference(record.body.difference, std::move(difference), log);
    record.aio_total_bytes_transferred = result->totalBytesTransferred;
    log.record("aio_total_bytes_transferred = ", record.aio_total_bytes_transferred,
               " aio_error = ", record.aio_error);
    return STS_EOK;
}

} // namespace soapwrapper
