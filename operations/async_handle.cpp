#include "operations/async_handle.h"

#include "operations/handle_text.h"
#include "operations/reply_handle.h"
#include "plugin/base/session_log.h"
#include "plugin/host/handles.h"
#include "plugin/host/status.h"
#include <cstdint>

#include "soapwrapperStub.h"

namespace soapwrapper
{

int keep_async(const ns1__OperationID* opid, stsp_server_t* server, std::int32_t pendingflag,
               stsp_async_t** out, const EntryLog& log)
{
    if (const char* missing = missing_of(opid, "opid")) return log.reply_lacks(missing);
    if (out) {
        auto* async = new stsp_async_t();
        *out = async;
        async->server = server;
        async->op_token = allocate_text(*opid->token);
        async->pendingflag = pendingflag;
    } else {
        log.anomaly("no place for the handle");
    }
    return STS_EOK;
}

int hand_out_async(const ns1__OperationID* opid, stsp_server_t* server, std::int32_t pendingflag,
                   stsp_async_t** out, const EntryLog& log)
{
    if (const int status = keep_async(opid, server, pendingflag, out, log)) return status;
    return log.ok();
}

} // namespace soapwrapper
