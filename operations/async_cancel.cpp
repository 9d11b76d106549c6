// Stopping a long operation that has an id. Neither the beginning nor the good end is logged.
#include "operations/reference_checks.h"
#include "plugin/base/handle_records.h"
#include "plugin/base/session_log.h"
#include "plugin/host/entry_points.h"
#include "service/service_call.h"
#include "service/wire_session.h"

using namespace soapwrapper;

extern "C" int stspi_async_cancel(const sts_session_def_v7_t* session, stsp_async_t* async)
{
    if (!session) return STS_ENULLARG;
    if (const int status = check_server(async ? async->server : nullptr)) return status;
    const EntryLog log(async->server->session, "stspi_async_cancel");
    ServiceCall call(*async->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireSession sd(*session);
    WireToken<ns1__OperationID> opid(async->op_token);
    _ns1__asyncCancel request;
    request.sd = sd.get();
    request.opid = opid.get();
    _ns1__asyncCancelResponse response;
    if (const Failure failure = call.send(&Service::asyncCancel, request, response)) return *failure;
    return STS_EOK;
}
