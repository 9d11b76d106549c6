// Making snapshots and volumes reachable from a host, and claiming a volume.
#include "conversion/volume.h"
#include "conversion/wire_objects.h"
#include "operations/reference_checks.h"
#include "plugin/base/session_log.h"
#include "plugin/host/entry_points.h"
#include "service/service_call.h"
#include "service/wire_session.h"

using namespace soapwrapper;

extern "C" int stspi_create_export(const stsp_lsu_v7_t* lsu, const char* snap_name,
                                   const sts_host_spec_v11_t* host, sts_volume_spec_v11_t* exported)
{
    const bool has_server = lsu && lsu->server;
    const EntryLog log(has_server ? lsu->server->session : nullptr, "stspi_create_export");
    log.enter();
    if (!lsu || !snap_name || !host || !exported) return STS_ENULLARG;
    // Without a server there is nowhere to call. A service handle isn't asked for.
    if (!has_server) return STS_EBADARG;
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireLsu wire_lsu(*lsu);
    WireHostSpec wire_host(*host);
    _ns1__createExport request;
    request.lsu = wire_lsu.get();
    request.snapName = snap_name;
    request.host = wire_host.get();
    _ns1__createExportResponse response;
    if (const Failure failure = call.send(&Service::createExport, request, response)) return *failure;
    if (!response.exportedVolume) return log.reply_lacks("exportedVolume");
    set_volume_spec_from_soap(*exported, response.exportedVolume);
    return log.ok();
}

extern "C" int stspi_add_export(const stsp_lsu_v7_t* lsu, const sts_volume_spec_v11_t* source,
                                const sts_host_spec_v11_t* host, sts_volume_spec_v11_t* exported)
{
    if (!lsu || !source || !host) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_add_export");
    log.enter();
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireLsu wire_lsu(*lsu);
    WireVolume wire_source(*source);
    WireHostSpec wire_host(*host);
    _ns1__addExport request;
    request.lsu = wire_lsu.get();
    request.sourceVolSpec = wire_source.get();
    request.host = wire_host.get();
    _ns1__addExportResponse response;
    if (const Failure failure = call.send(&Service::addExport, request, response)) return *failure;
    if (!response.exportedVolume) return log.reply_lacks("exportedVolume");
    if (exported) {
        set_volume_spec_from_soap(*exported, response.exportedVolume);
    } else {
        log.anomaly("no place for the volume");
    }
    return log.ok();
}

extern "C" int stspi_delete_export(const stsp_lsu_v7_t* lsu, const sts_host_spec_v11_t* host,
                                   const sts_volume_spec_v11_t* exported)
{
    if (!lsu || !host || !exported) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_delete_export");
    log.enter();
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireLsu wire_lsu(*lsu);
    WireHostSpec wire_host(*host);
    WireVolume wire_exported(*exported);
    _ns1__deleteExport request;
    request.lsu = wire_lsu.get();
    request.host = wire_host.get();
    request.exportedVolume = wire_exported.get();
    _ns1__deleteExportResponse response;
    if (const Failure failure = call.send(&Service::deleteExport, request, response)) return *failure;
    return log.ok();
}

extern "C" int stspi_claim_volume(stsp_server_t* server, const sts_volume_spec_v11_t* volume)
{
    if (const int status = check_server(server)) return status;
    const EntryLog log(server->session, "stspi_claim_volume");
    log.enter();
    if (!volume) return STS_ENULLARG;
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireServerHandle server_handle(server->service_handle);
    WireVolume wire_volume(*volume);
    _ns1__claimVolume request;
    request.serverHandle = server_handle.get();
    request.volume = wire_volume.get();
    _ns1__claimVolumeResponse response;
    if (const Failure failure = call.send(&Service::claimVolume, request, response)) return *failure;
    return log.ok();
}
