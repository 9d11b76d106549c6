// The handle of a started operation.
#ifndef SOAPWRAPPER_OPERATIONS_ASYNC_HANDLE_H
#define SOAPWRAPPER_OPERATIONS_ASYNC_HANDLE_H

#include "plugin/base/handle_records.h"
#include "plugin/base/session_log.h"
#include "plugin/host/handles.h"

#include <cstdint>

class ns1__OperationID;

namespace soapwrapper
{

// For the operations that have no such flag.
constexpr std::int32_t kNoPendingflag = 0;

// A new handle in `out` for the operation that the service named in a good reply. Where an entry doesn't test
// `out`, and there is none, that is logged and the handle lost.
int keep_async(const ns1__OperationID* opid, stsp_server_t* server, std::int32_t pendingflag,
               stsp_async_t** out, const EntryLog& log);

// What every start but one does with a good reply: the same, and the line of a success.
int hand_out_async(const ns1__OperationID* opid, stsp_server_t* server, std::int32_t pendingflag,
                   stsp_async_t** out, const EntryLog& log);

} // namespace soapwrapper

#endif
