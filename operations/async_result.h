// What a wait brings, in the host's records.
#ifndef SOAPWRAPPER_OPERATIONS_ASYNC_RESULT_H
#define SOAPWRAPPER_OPERATIONS_ASYNC_RESULT_H

#include "plugin/base/session_log.h"
#include "plugin/host/async_records.h"

class ns1__AIOResult;
class ns1__AIOResultSnap;

namespace soapwrapper
{

// Fills the record and logs what it says. A reply without a result is a failure, and the record stays as it
// was.
int set_async_result(sts_async_result_t& record, const ns1__AIOResult* result, const EntryLog& log);

// The same. A difference that isn't whole, or that there is no memory for, leaves the record as it was too. A
// result of no kind that can be told is a failure, for which the record already holds the error and the retry
// interval.
int set_async_snap_result(sts_async_snap_result_t& record, const ns1__AIOResultSnap* result,
                          const EntryLog& log);

} // namespace soapwrapper

#endif
