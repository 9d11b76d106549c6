// Starting a long operation on snapshots: the service answers with an id, which becomes the host's handle.
// What the entries test, and in which order, differs from one to the next.
#include "operations/async_handle.h"
#include "operations/async_requests.h"
#include "operations/reference_checks.h"
#include "plugin/base/session_log.h"
#include "plugin/host/entry_points.h"
#include "service/service_call.h"

#include <cstdint>

using namespace soapwrapper;

extern "C" int stspi_async_create_snap_byname(stsp_server_t* server, const sts_volume_spec_v11_t* source,
                                              const sts_snap_def_v11_t* target,
                                              const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                              stsp_async_t** async, sts_imageset_t imageset,
                                              int32_t pendingflag)
{
    if (!server) return STS_EBADARG;
    const EntryLog log(server->session, "stspi_async_create_snap_byname");
    log.enter();
    if (!source || !target || !targets) return STS_ENULLARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    CreateSnap<_ns1__asyncCreateSnapByName> start(*server, *source, *target, targets, ntargets, imageset,
                                                  pendingflag);
    _ns1__asyncCreateSnapByNameResponse response;
    if (const Failure failure = call.send(&Service::asyncCreateSnapByName, start.request, response)) {
        return *failure;
    }
    return hand_out_async(response.opid, server, pendingflag, async, log);
}

extern "C" int stspi_async_prepare_snap_byname(stsp_server_t* server, const sts_volume_spec_v11_t* source,
                                               const sts_snap_def_v11_t* target,
                                               const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                               stsp_async_t** async, sts_imageset_t imageset,
                                               int32_t pendingflag)
{
    if (!server) return STS_EBADARG;
    const EntryLog log(server->session, "stspi_async_prepare_snap_byname");
    log.enter();
    if (!source || !target || !targets || !async) return STS_ENULLARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    PrepareSnap<_ns1__asyncPrepareSnapByName> start(*server, *source, *target, targets, ntargets, imageset,
                                                    pendingflag);
    _ns1__asyncPrepareSnapByNameResponse response;
    if (const Failure failure = call.send(&Service::asyncPrepareSnapByName, start.request, response)) {
        return *failure;
    }
    return hand_out_async(response.opid, server, pendingflag, async, log);
}

extern "C" int stspi_async_copy_snap_byname(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap,
                                            const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                            stsp_async_t** async, sts_imageset_t imageset,
                                            int32_t pendingflag)
{
    if (!lsu || !snap || !targets) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_async_copy_snap_byname");
    log.enter();
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    _ns1__asyncCopySnapByNameResponse response;
    int result = SOAP_OK;
    { // what was sent is given back ahead of a look at the result
        CopySnap<_ns1__asyncCopySnapByName> start(*lsu, *snap, targets, ntargets, imageset, pendingflag);
        result = call.send_quietly(&Service::asyncCopySnapByName, start.request, response);
    }
    log.return_code(result);
    if (const Failure failure = call.failure_of(result)) return *failure;
    return hand_out_async(response.opid, lsu->server, pendingflag, async, log);
}

extern "C" int stspi_async_postprocess_snap_byname(const stsp_lsu_v7_t* lsu, const char* snap_name,
                                                   stsp_async_t** async)
{
    if (!lsu || !snap_name) return STS_ENULLARG;
    if (!lsu->server) return STS_EBADARG;
    const EntryLog log(lsu->server->session, "stspi_async_postprocess_snap_byname");
    log.enter();
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    PostProcessSnap<_ns1__asyncPostProcessSnapByName> start(*lsu, snap_name);
    _ns1__asyncPostProcessSnapByNameResponse response;
    if (const Failure failure = call.send(&Service::asyncPostProcessSnapByName, start.request, response)) {
        return *failure;
    }
    if (const int status = keep_async(response.opid, lsu->server, kNoPendingflag, async, log)) return status;
    // The name is spelt so on purpose, here alone.
    return EntryLog(lsu->server->session, "stspi_async_post_process_snap_byname").ok();
}

extern "C" int stspi_async_validate_snap_byname(stsp_server_t* server, const sts_volume_spec_v11_t* source,
                                                const sts_snap_def_v11_t* target,
                                                const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                const char* topology, stsp_async_t** async)
{
    if (!server) return STS_EBADARG;
    const EntryLog log(server->session, "stspi_async_validate_snap_byname");
    log.enter();
    if (!source || !target || !targets || !topology || !async) return STS_ENULLARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    ValidateSnap<_ns1__asyncValidateSnapByName> start(*server, *source, *target, targets, ntargets, topology);
    _ns1__asyncValidateSnapByNameResponse response;
    if (const Failure failure = call.send(&Service::asyncValidateSnapByName, start.request, response)) {
        return *failure;
    }
    return hand_out_async(response.opid, server, kNoPendingflag, async, log);
}

extern "C" int stspi_async_import_snap_byname(stsp_server_t* server, const sts_volume_spec_v11_t* source,
                                              const sts_snap_def_v11_t* snap, sts_imageset_t imageset,
                                              int32_t pendingflag, stsp_async_t** async)
{
    if (!server) return STS_EBADARG;
    EntryLog(server->session, "stsp_async_import_snap_byname").enter(); // spelt so on purpose, here alone
    if (!source || !snap) return STS_ENULLARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    const EntryLog log(server->session, "stspi_async_import_snap_byname");
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    ImportSnap<_ns1__asyncImportSnapByName> start(*server, *source, *snap, imageset, pendingflag);
    _ns1__asyncImportSnapByNameResponse response;
    if (const Failure failure = call.send(&Service::asyncImportSnapByName, start.request, response)) {
        return *failure;
    }
    return hand_out_async(response.opid, server, pendingflag, async, log);
}

extern "C" int stspi_async_rollback_snap(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap,
                                         stsp_server_t* target_server,
                                         const sts_volume_spec_v11_t* target_volume,
                                         const char* rollback_list, uint32_t num_rollbacks,
                                         int32_t rollback_flag, stsp_async_t** async)
{
    if (!lsu || !snap || !target_volume || !rollback_list) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_async_rollback_snap");
    log.enter();
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    RollbackSnap<_ns1__asyncRollbackSnap> start(*lsu, *snap, target_server, *target_volume, rollback_list,
                                                num_rollbacks, rollback_flag);
    _ns1__asyncRollbackSnapResponse response;
    if (const Failure failure = call.send(&Service::asyncRollbackSnap, start.request, response)) {
        return *failure;
    }
    return hand_out_async(response.opid, lsu->server, kNoPendingflag, async, log);
}

extern "C" int stspi_async_provision_topology(stsp_server_t* server, const sts_volume_spec_v11_t* source,
                                              const sts_snap_def_v11_t* target,
                                              const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                              const char* topology, sts_imageset_t imageset,
                                              int32_t pendingflag, stsp_async_t** async)
{
    if (!server) return STS_EBADARG;
    const EntryLog log(server->session, "stspi_async_provision_topology");
    log.enter();
    if (!source || !target || !targets || !topology || !async) return STS_ENULLARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    ProvisionTopology<_ns1__asyncProvisionTopology> start(*server, *source, *target, targets, ntargets,
                                                          topology, imageset, pendingflag);
    _ns1__asyncProvisionTopologyResponse response;
    if (const Failure failure = call.send(&Service::asyncProvisionTopology, start.request, response)) {
        return *failure;
    }
    return hand_out_async(response.opid, server, pendingflag, async, log);
}

extern "C" int stspi_async_get_snap_diff(stsp_server_t* server, const sts_snap_def_v11_t* snapshot,
                                         stsp_server_t* target_server, const sts_volume_spec_v11_t* volumes,
                                         uint32_t num_rollbacks, int32_t diff_flag, stsp_async_t** async)
{
    if (const int status = check_server(server)) return status;
    const EntryLog log(server->session, "stspi_async_get_snap_diff");
    log.enter();
    if (!snapshot || !volumes) return STS_ENULLARG;
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    _ns1__asyncGetSnapDiffResponse response;
    int result = SOAP_OK;
    { // what was sent is given back ahead of a look at the result
        GetSnapDiff<_ns1__asyncGetSnapDiff> start(*server, *snapshot, target_server, volumes, num_rollbacks,
                                                  diff_flag);
        result = call.send_quietly(&Service::asyncGetSnapDiff, start.request, response);
    }
    log.return_code(result);
    if (const Failure failure = call.failure_of(result)) return *failure;
    return hand_out_async(response.opid, server, kNoPendingflag, async, log);
}
