#include "operations/async_handle.h"

#include "operations/handle_text.h"

#include "soapwrapperStub.h"

namespace soapwrapper
{

int hand_out_async(const ns1__OperationID* opid, stsp_server_t* server, std::int32_t pendingflag,
                   stsp_async_t** out, const EntryLog& log)
{
    if (!opid || !opid->token) return STS_EPLUGIN;
    if (out) {
        auto* async = new stsp_async_t();
        *out = async;
        async->server = server;
        async->op_token = allocate_text(*opid->token);
        async->pendingflag = pendingflag;
    }
    return log.ok();
}

} // namespace soapwrapper
