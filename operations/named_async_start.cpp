// Starting a long operation on snapshots under a name of the host's: nothing comes back but the status, and
// nothing is kept.
#include "conversion/field_text.h"
#include "operations/async_requests.h"
#include "operations/reference_checks.h"
#include "plugin/base/session_log.h"
#include "plugin/host/entry_points.h"
#include "service/service_call.h"

#include <cstdint>

using namespace soapwrapper;

extern "C" int stspi_named_async_create_snap_byname(stsp_server_t* server,
                                                    const sts_volume_spec_v11_t* source,
                                                    const sts_snap_def_v11_t* target,
                                                    const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                    sts_opname_t opname, sts_imageset_t imageset,
                                                    int32_t pendingflag)
{
    if (!server) return STS_EBADARG;
    const EntryLog log(server->session, "stspi_named_async_create_snap_byname");
    log.enter();
    if (!source || !target || !targets) return STS_ENULLARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    CreateSnap<_ns1__namedAsyncCreateSnapByName> start(*server, *source, *target, targets, ntargets, imageset,
                                                       pendingflag);
    start.request.opname = text_of(opname.name);
    _ns1__namedAsyncCreateSnapByNameResponse response;
    if (const Failure failure = call.send(&Service::namedAsyncCreateSnapByName, start.request, response)) {
        return *failure;
    }
    return log.ok();
}

extern "C" int stspi_named_async_prepare_snap_byname(stsp_server_t* server,
                                                     const sts_volume_spec_v11_t* source,
                                                     const sts_snap_def_v11_t* target,
                                                     const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                     sts_opname_t opname, sts_imageset_t imageset,
                                                     int32_t pendingflag)
{
    if (!server) return STS_EBADARG;
    const EntryLog log(server->session, "stspi_named_async_prepare_snap_byname");
    log.enter();
    if (!source || !target || !targets) return STS_ENULLARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    PrepareSnap<_ns1__namedAsyncPrepareSnapByName> start(*server, *source, *target, targets, ntargets,
                                                         imageset, pendingflag);
    start.request.opname = text_of(opname.name);
    _ns1__namedAsyncPrepareSnapByNameResponse response;
    if (const Failure failure = call.send(&Service::namedAsyncPrepareSnapByName, start.request, response)) {
        return *failure;
    }
    return log.ok();
}

extern "C" int stspi_named_async_copy_snap_byname(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap,
                                                  const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                  sts_opname_t opname, sts_imageset_t imageset,
                                                  int32_t pendingflag)
{
    if (!lsu || !snap || !targets) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_named_async_copy_snap_byname");
    log.enter();
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    _ns1__namedAsyncCopySnapByNameResponse response;
    int result = SOAP_OK;
    { // what was sent is given back ahead of a look at the result
        CopySnap<_ns1__namedAsyncCopySnapByName> start(*lsu, *snap, targets, ntargets, imageset, pendingflag);
        start.request.opname = text_of(opname.name);
        result = call.send_quietly(&Service::namedAsyncCopySnapByName, start.request, response);
    }
    log.return_code(result);
    if (const Failure failure = call.failure_of(result)) return *failure;
    return log.ok();
}

extern "C" int stspi_named_async_postprocess_snap_byname(const stsp_lsu_v7_t* lsu, const char* snap_name,
                                                         sts_opname_t opname)
{
    if (!lsu || !snap_name) return STS_ENULLARG;
    if (!lsu->server) return STS_EBADARG;
    EntryLog(lsu->server->session, "stspi_named_async_postprocess_snap_byname").enter();
    // Behind the first line the name is spelt so on purpose.
    const EntryLog log(lsu->server->session, "stspi_named_async_post_process_snap_byname");
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    PostProcessSnap<_ns1__namedAsyncPostProcessSnapByName> start(*lsu, snap_name);
    start.request.opname = text_of(opname.name);
    _ns1__namedAsyncPostProcessSnapByNameResponse response;
    if (const Failure failure =
            call.send(&Service::namedAsyncPostProcessSnapByName, start.request, response)) {
        return *failure;
    }
    return log.ok();
}

extern "C" int stspi_named_async_validate_snap_byname(stsp_server_t* server,
                                                      const sts_volume_spec_v11_t* source,
                                                      const sts_snap_def_v11_t* target,
                                                      const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                      const char* topology, sts_opname_t opname)
{
    if (!server) return STS_EBADARG;
    const EntryLog log(server->session, "stspi_named_async_validate_snap_byname");
    log.enter();
    if (!source || !target || !targets || !topology) return STS_ENULLARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    ValidateSnap<_ns1__namedAsyncValidateSnapByName> start(*server, *source, *target, targets, ntargets,
                                                           topology);
    start.request.opname = text_of(opname.name);
    _ns1__namedAsyncValidateSnapByNameResponse response;
    if (const Failure failure = call.send(&Service::namedAsyncValidateSnapByName, start.request, response)) {
        return *failure;
    }
    return log.ok();
}

extern "C" int stspi_named_async_import_snap_byname(stsp_server_t* server,
                                                    const sts_volume_spec_v11_t* source,
                                                    const sts_snap_def_v11_t* snap, sts_imageset_t imageset,
                                                    int32_t pendingflag, sts_opname_t opname)
{
    if (!server) return STS_EBADARG;
    // Spelt so on purpose, here alone.
    EntryLog(server->session, "stsp_named_async_import_snap_byname").enter();
    if (!source || !snap) return STS_ENULLARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    const EntryLog log(server->session, "stspi_named_async_import_snap_byname");
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    ImportSnap<_ns1__namedAsyncImportSnapByName> start(*server, *source, *snap, imageset, pendingflag);
    start.request.opname = text_of(opname.name);
    _ns1__namedAsyncImportSnapByNameResponse response;
    if (const Failure failure = call.send(&Service::namedAsyncImportSnapByName, start.request, response)) {
        return *failure;
    }
    return log.ok();
}

extern "C" int stspi_named_async_rollback_snap(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap,
                                               stsp_server_t* target_server,
                                               const sts_volume_spec_v11_t* target_volume,
                                               const char* rollback_list, uint32_t num_rollbacks,
                                               int32_t rollback_flag, sts_opname_t opname)
{
    if (!lsu || !snap || !target_volume || !rollback_list) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_named_async_rollback_snap");
    log.enter();
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    RollbackSnap<_ns1__namedAsyncRollbackSnap> start(*lsu, *snap, target_server, *target_volume,
                                                     rollback_list, num_rollbacks, rollback_flag);
    start.request.opname = text_of(opname.name);
    _ns1__namedAsyncRollbackSnapResponse response;
    if (const Failure failure = call.send(&Service::namedAsyncRollbackSnap, start.request, response)) {
        return *failure;
    }
    return log.ok();
}

extern "C" int stspi_named_async_provision_topology(stsp_server_t* server,
                                                    const sts_volume_spec_v11_t* source,
                                                    const sts_snap_def_v11_t* target,
                                                    const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                    const char* topology, sts_imageset_t imageset,
                                                    int32_t pendingflag, sts_opname_t opname)
{
    if (!server) return STS_EBADARG;
    const EntryLog log(server->session, "stspi_named_async_provision_topology");
    log.enter();
    if (!source || !target || !targets || !topology) return STS_ENULLARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    ProvisionTopology<_ns1__namedAsyncProvisionTopology> start(*server, *source, *target, targets, ntargets,
                                                               topology, imageset, pendingflag);
    start.request.opname = text_of(opname.name);
    _ns1__namedAsyncProvisionTopologyResponse response;
    if (const Failure failure = call.send(&Service::namedAsyncProvisionTopology, start.request, response)) {
        return *failure;
    }
    return log.ok();
}

extern "C" int stspi_named_async_get_snap_diff(stsp_server_t* server, const sts_snap_def_v11_t* snapshot,
                                               stsp_server_t* target_server,
                                               const sts_volume_spec_v11_t* volumes, uint32_t num_rollbacks,
                                               int32_t diff_flag, sts_opname_t opname)
{
    if (const int status = check_server(server)) return status;
    const EntryLog log(server->session, "stspi_named_async_get_snap_diff");
    log.enter();
    if (!snapshot || !volumes) return STS_ENULLARG;
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    _ns1__namedAsyncGetSnapDiffResponse response;
    int result = SOAP_OK;
    { // what was sent is given back ahead of a look at the result
        GetSnapDiff<_ns1__namedAsyncGetSnapDiff> start(*server, *snapshot, target_server, volumes,
                                                       num_rollbacks, diff_flag);
        start.request.opname = text_of(opname.name);
        result = call.send_quietly(&Service::namedAsyncGetSnapDiff, start.request, response);
    }
    log.return_code(result);
    if (const Failure failure = call.failure_of(result)) return *failure;
    return log.ok();
}
