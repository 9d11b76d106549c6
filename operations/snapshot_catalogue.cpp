// What snapshots there are on an LSU, of a volume or in the way of a rollback, what the service says of one,
// and deleting one.
#include "conversion/field_text.h"
#include "conversion/snap_definition.h"
#include "conversion/wire_objects.h"
#include "operations/list_handle.h"
#include "operations/reference_checks.h"
#include "plugin/base/session_log.h"
#include "plugin/host/entry_points.h"
#include "service/service_call.h"
#include "service/wire_session.h"

#include <cstdint>
#include <cstring>

using namespace soapwrapper;

extern "C" int stspi_open_snap_list(const stsp_lsu_v7_t* lsu, stsp_list_t** list)
{
    if (!lsu || !list) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_open_snap_list");
    log.enter();
    // The return code goes under the sister entry's name.
    const EntryLog return_code_log(lsu->server->session, "stspi_open_snap_list_by_volume");
    ServiceCall call(*lsu->server, return_code_log);
    if (const Failure failure = call.secure()) return *failure;

    WireLsu wire_lsu(*lsu);
    _ns1__openSnapList request;
    request.lsu = wire_lsu.get();
    _ns1__openSnapListResponse response;
    if (const Failure failure = call.send(&Service::openSnapList, request, response)) return *failure;
    return hand_out_list(response.snapListHandle, "snapListHandle", lsu->server, list, log);
}

extern "C" int stspi_open_snap_list_by_volume(stsp_server_t* server, const sts_volume_spec_v11_t* volume,
                                              stsp_list_t** list)
{
    if (!volume || !list) return STS_ENULLARG;
    if (const int status = check_server(server)) return status;
    const EntryLog log(server->session, "stspi_open_snap_list_by_volume");
    log.enter();
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireServerHandle server_handle(server->service_handle);
    WireVolume wire_volume(*volume);
    _ns1__openSnapListByVolume request;
    request.serverHandle = server_handle.get();
    request.volSpec = wire_volume.get();
    _ns1__openSnapListResponse response;
    if (const Failure failure = call.send(&Service::openSnapListByVolume, request, response)) return *failure;
    return hand_out_list(response.snapListHandle, "snapListHandle", server, list, log);
}

extern "C" int stspi_list_snap(stsp_list_t* list, sts_snap_def_v11_t* snap)
{
    const EntryLog log(session_of(list), "stspi_list_snap");
    log.enter();
    if (!list || !snap) return STS_ENULLARG;
    if (!list->token) return STS_EBADARG;
    ServiceCall call(*list->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireToken<ns1__SnapListHandle> list_handle(list->token);
    _ns1__listSnap request;
    request.snapListHandle = list_handle.get();
    _ns1__listSnapResponse response;
    if (const Failure failure = call.send(&Service::listSnap, request, response)) return *failure;
    if (!response.snapDef) return log.reply_lacks("snapDef");
    set_snap_def_from_soap(*snap, response.snapDef);
    log_message(log.session(), STS_LOG_RECORD, "stspi_list_snap sd_snap_name: **<", text_of(snap->snapName),
                ">**", " sd_snap_type=", snap->snapType, " sd_snap_flags=", snap->snapFlags,
                " sd_snap_saveas=", snap->snapSaveas);
    return log.ok();
}

extern "C" int stspi_close_snap_list(stsp_list_t* list)
{
    const EntryLog log(session_of(list), "stspi_close_snap_list");
    log.enter();
    if (!list) return STS_ENULLARG;
    if (!list->token) return STS_EBADARG;
    ServiceCall call(*list->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireToken<ns1__SnapListHandle> list_handle(list->token);
    _ns1__closeSnapList request;
    request.snapListHandle = list_handle.get();
    _ns1__closeSnapListResponse response;
    if (const Failure failure = call.send(&Service::closeSnapList, request, response)) return *failure;
    destroy_list(list);
    return log.ok();
}

extern "C" int stspi_get_snap_prop_byname(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap,
                                          sts_snap_info_v11_t* info)
{
    if (!lsu || !snap || !info) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_get_snap_prop_byname");
    log.enter();
    log_message(log.session(), STS_LOG_RECORD, "stspi_get_snap_prop_byname LSU:", text_of(lsu->name),
                " snapname:", text_of(snap->snapName));
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireLsu wire_lsu(*lsu);
    WireSnapDef wire_snap(*snap);
    _ns1__getSnapPropByName request;
    request.lsu = wire_lsu.get();
    request.snapDef = wire_snap.get();
    _ns1__getSnapPropByNameResponse response;
    if (const Failure failure = call.send(&Service::getSnapPropByName, request, response)) return *failure;
    if (!response.snapInfo) return log.reply_lacks("snapInfo");
    std::memset(info, 0, sizeof *info);
    set_snap_info_from_soap(*info, response.snapInfo);
    return log.ok();
}

extern "C" int stspi_delete_snap(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap)
{
    if (!lsu || !snap) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_delete_snap");
    log.enter();
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireLsu wire_lsu(*lsu);
    WireSnapDef wire_snap(*snap);
    _ns1__deleteSnap request;
    request.lsu = wire_lsu.get();
    request.snapDef = wire_snap.get();
    _ns1__deleteSnapResponse response;
    if (const Failure failure = call.send(&Service::deleteSnap, request, response)) return *failure;
    return log.ok();
}

extern "C" int stspi_validate_rollback(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap,
                                       stsp_server_t* target_server,
                                       const sts_volume_spec_v11_t* target_volume, const char* rollback_list,
                                       uint32_t num_rollbacks, stsp_list_t** list)
{
    if (!lsu || !snap || !target_volume || !rollback_list) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_validate_rollback");
    log.enter();
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireLsu wire_lsu(*lsu);
    WireSnapDef wire_snap(*snap);
    WireServerHandle target_handle(target_server ? target_server->service_handle : "");
    WireVolume wire_target(*target_volume);
    WireRollbackList wire_rollbacks(rollback_list, num_rollbacks);
    _ns1__validateRollback request;
    request.lsu = wire_lsu.get();
    request.snapDef = wire_snap.get();
    request.targetServerHandle = target_handle.get();
    request.targetVolSpec = wire_target.get();
    request.rollbackList = wire_rollbacks.get();
    request.numRollbacks = static_cast<int>(num_rollbacks);
    _ns1__validateRollbackResponse response;
    if (const Failure failure = call.send(&Service::validateRollback, request, response)) return *failure;
    return hand_out_list(response.snapListHandle, "snapListHandle", lsu->server, list, log);
}
