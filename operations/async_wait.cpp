// How a long operation stands: waiting for one with an id or with a name, and asking after one with a name.
#include "conversion/field_text.h"
#include "operations/async_result.h"
#include "operations/busy_loop.h"
#include "operations/reference_checks.h"
#include "plugin/base/handle_records.h"
#include "plugin/base/plugin_globals.h"
#include "plugin/base/session_log.h"
#include "plugin/host/entry_points.h"
#include "service/discovery.h"
#include "service/service_call.h"
#include "service/wire_session.h"

#include <cstdint>

using namespace soapwrapper;

namespace
{

bool was_discovered(const stsp_server_t& server)
{
    const MutexLock lock(gMutex);
    return gServerEndPointMap.count(server.server_name) != 0;
}

// A copy has moved no bytes as far as the host is concerned, unless it asked for that or the server's service
// is one that discovery chose.
void settle_bytes_of_copy(ns1__AIOResultSnap* result, const stsp_async_t& async)
{
    if (!result || result->__union_AIOResultSnap != SOAP_UNION__ns1__union_AIOResultSnap_copySnap) return;
    if (!was_discovered(*async.server) && async.pendingflag == 0) result->totalBytesTransferred = 0;
}

} // namespace

extern "C" int stspi_async_wait(const sts_session_def_v7_t* session, stsp_async_t* async, int32_t blockflag,
                                sts_async_result_t* record)
{
    if (!session || !record) return STS_ENULLARG;
    const EntryLog log(session, "stspi_async_wait");
    log.record("enter, blockflag = ", blockflag);
    if (const int status = check_server(async ? async->server : nullptr)) return status;
    ServiceCall call(*async->server, log);
    if (const Failure failure = call.secure(async->server->session)) return *failure;

    WireSession sd(*session);
    WireToken<ns1__OperationID> opid(async->op_token);
    _ns1__asyncWait request;
    request.sd = sd.get();
    request.opid = opid.get();
    _ns1__asyncWaitResponse response;
    const BusyLoop<ns1__AIOResult> loop{&ns1__AIOResult::delayInSeconds, "delayInSeconds", log, log, &log};
    const int result = ask(loop, call, &Service::asyncWait, request, response, blockflag);
    if (const Failure failure = call.failure_of(result)) return *failure;
    if (const int status = set_async_result(*record, response.result, log)) return status;
    return log.ok();
}

extern "C" int stspi_async_wait_snap(const sts_session_def_v7_t* session, stsp_async_t* async,
                                     int32_t blockflag, sts_async_snap_result_t* record)
{
    if (!session || !record) return STS_ENULLARG;
    const EntryLog log(session, "stspi_async_wait_snap");
    log.enter();
    if (const int status = check_server(async ? async->server : nullptr)) return status;
    ServiceCall call(*async->server, log);
    if (const Failure failure = call.secure(async->server->session)) return *failure;

    WireSession sd(*session);
    WireToken<ns1__OperationID> opid(async->op_token);
    _ns1__asyncWaitSnap request;
    request.sd = sd.get();
    request.opid = opid.get();
    _ns1__asyncWaitSnapResponse response;
    const BusyLoop<ns1__AIOResultSnap> loop{&ns1__AIOResultSnap::retryInterval, "retryInterval", log, log,
                                            nullptr};
    const int result = ask(loop, call, &Service::asyncWaitSnap, request, response, blockflag);
    if (const Failure failure = call.failure_of(result)) return *failure;
    settle_bytes_of_copy(response.result, *async);
    if (const int status = set_async_snap_result(*record, response.result, log)) return status;
    return log.ok();
}

// There is no handle here, and so the service's total is the host's in all cases.
extern "C" int stspi_named_async_wait_snap(stsp_server_t* server, int32_t blockflag,
                                           sts_async_snap_result_t* record, sts_opname_t opname)
{
    if (!record) return STS_ENULLARG;
    if (!server) return STS_EBADARG;
    const EntryLog log(server->session, "stspi_named_async_wait_snap");
    log.enter();
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireServerHandle server_handle(server->service_handle);
    _ns1__namedAsyncWaitSnap request;
    request.serverHandle = server_handle.get();
    request.opname = text_of(opname.name);
    _ns1__namedAsyncWaitSnapResponse response;
    // The return code goes under a name that is spelt so on purpose.
    const EntryLog return_code_log(server->session, "stspi_named_aysnc_wait_snap");
    const BusyLoop<ns1__AIOResultSnap> loop{&ns1__AIOResultSnap::retryInterval, "retryInterval", log,
                                            return_code_log, nullptr};
    const int result = ask(loop, call, &Service::namedAsyncWaitSnap, request, response, blockflag);
    if (const Failure failure = call.failure_of(result)) return *failure;
    if (const int status = set_async_snap_result(*record, response.result, log)) return status;
    return log.ok();
}

extern "C" int stspi_named_async_status(stsp_server_t* server, sts_opname_t opname)
{
    if (!server) return STS_EBADARG;
    const EntryLog log(server->session, "stspi_named_async_status");
    log.enter();
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireServerHandle server_handle(server->service_handle);
    _ns1__namedAsyncStatus request;
    request.serverHandle = server_handle.get();
    request.opname = text_of(opname.name);
    _ns1__namedAsyncStatusResponse response;
    if (const Failure failure = call.send(&Service::namedAsyncStatus, request, response)) return *failure;
    return log.ok();
}
