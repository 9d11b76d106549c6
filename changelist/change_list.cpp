// Opening and closing the list of what differs between two snapshots of a volume. The list comes from the
// second plug-in, which asks the filer itself, or from the service.
#include "changelist/open_lists.h"
#include "changelist/session_registry.h"
#include "changelist/start_request.h"
#include "changelist/transformation_mapping.h"
#include "changelist/zapi_api.h"
#include "changelist/zapi_cells.h"
#include "changelist/zapi_connection.h"
#include "conversion/field_text.h"
#include "conversion/wire_objects.h"
#include "operations/handle_text.h"
#include "operations/reference_checks.h"
#include "plugin/base/bounded_text.h"
#include "plugin/base/session_log.h"
#include "plugin/base/wipe.h"
#include "plugin/host/entry_points.h"
#include "service/service_call.h"
#include "service/wire_session.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>

using namespace soapwrapper;

namespace
{

// What one open is about, and what it has learnt.
struct Opening {
    const stsp_lsu_v7_t& lsu;
    const sts_snap_def_v11_t* base; // may be null
    const sts_snap_def_v11_t& diff;
    sts_volume_spec_v11_t& volume;
    std::uint32_t flags;
    stsp_change_list_t** out;
    const EntryLog& log;
    snapdiff_session_info info{};
};

// With mounts the volume decides, and without them the text.
bool route_is_zapi(const snapdiff_session_info& info, const sts_volume_spec_v11_t& volume)
{
    if (!info.parsed_isid.mpfs_vec.empty()) return volume.volumeType == STS_VOLUME_NDMP;
    return info.parsed_isid.use_zapi == 1;
}

// A snapshot as the second plug-in is told of it: by its export path alone.
std::unique_ptr<sts_snap_def_v11_t> snapshot_by_export(const std::string& export_path)
{
    auto snap = std::make_unique<sts_snap_def_v11_t>();
    V_strlcpy(snap->snapName, export_path.c_str(), sizeof snap->snapName);
    return snap;
}

int out_of_memory(const Opening& opening, const char* what)
{
    opening.log.failure("Failed to allocate memory for ", what, ".");
    return STS_ENOMEM;
}

// There is no sequence number: two lists on one volume have one name.
char* make_zapi_token(const sts_volume_spec_v11_t& volume)
{
    const std::size_t size = std::strlen(volume.first) + std::strlen(volume.second) + 13;
    auto* token = static_cast<char*>(std::malloc(size));
    if (token) std::snprintf(token, size, "%s_%s_%s", "ZAPI_TOKEN", volume.first, volume.second);
    return token;
}

sts_volume_spec_v11_t* copy_volume(const sts_volume_spec_v11_t& volume)
{
    auto* copy = static_cast<sts_volume_spec_v11_t*>(std::malloc(sizeof volume));
    if (copy) *copy = volume;
    return copy;
}

// A record that lacks something has no token: that is how the close knows it.
int make_zapi_record(Opening& opening, ZapiCells& cells)
{
    auto* record = new (std::nothrow) stsp_change_list_t();
    if (!record) return out_of_memory(opening, "the list");
    record->server = opening.lsu.server;
    *opening.out = record;
    record->token = make_zapi_token(opening.volume);
    if (!record->token) return out_of_memory(opening, "tokenname");
    record->volume_copy = copy_volume(opening.volume);
    if (!record->volume_copy) {
        wipe_and_free(std::exchange(record->token, nullptr));
        return out_of_memory(opening, "the volume");
    }
    cells.hand_over(*record);
    register_list(record->token, std::move(opening.info));
    return STS_EOK;
}

// Has the second plug-in open the list on a connection that stands.
int open_zapi_list(Opening& opening, ZapiCells& cells)
{
    stsp_lsu_v7_t lsu{};
    lsu.server = reinterpret_cast<stsp_server_t*>(*cells.server());
    const auto base = opening.base ? snapshot_by_export(opening.info.base_export) : nullptr;
    const auto diff = snapshot_by_export(opening.info.diff_export);
    int status =
        api_open_snap_change_list(&lsu, base.get(), diff.get(), &opening.volume, opening.flags, cells.list());
    if (status == STS_EOK) status = make_zapi_record(opening, cells);
    if (status != STS_EOK) {
        api_close_snap_change_list(*cells.list());
        opening.log.record("ZAPI failed with return value = ", status);
    }
    return status;
}

// The outcome of a route: a status for the end of the open, or one to return at once.
struct Outcome {
    int status;
    bool at_once = false;
};

Outcome open_through_zapi(Opening& opening)
{
    ZapiCells cells;
    if (!cells.complete()) return {out_of_memory(opening, "the handles"), true};
    if (const int status = open_zapi_connection(text_of(opening.volume.first), opening.log.session(),
                                                cells.session(), cells.server())) {
        opening.log.record("failed to open zapi connection");
        return {status, true};
    }
    opening.log.record("succeed to open zapi connection");
    if (const int status = start_snapdiff(*opening.lsu.server, opening.volume, opening.log)) {
        close_zapi_connection(*cells.session(), *cells.server(), nullptr);
        return {status};
    }
    return {open_zapi_list(opening, cells)};
}

// What stands behind the first blank is the filer's credentials. The commands that start and stop a
// difference send them, because the filer's side needs them; this request doesn't, and the caller's text ends
// there too.
void cut_at_first_blank(char (&text)[STS_VOLUME_TEXT_SIZE])
{
    const std::size_t blank = text_of(text).find(' ');
    if (blank != std::string_view::npos) text[blank] = '\0';
}

Outcome make_service_record(Opening& opening, const std::string& token)
{
    std::unique_ptr<stsp_change_list_t> record(new (std::nothrow) stsp_change_list_t());
    if (!record) return {out_of_memory(opening, "the list"), true};
    record->server = opening.lsu.server;
    record->token = allocate_text(token);
    if (!record->token) return {out_of_memory(opening, "tokenname"), true};
    delete *opening.out; // one that the second plug-in's route left half-made
    *opening.out = record.release();
    register_list((*opening.out)->token, std::move(opening.info));
    return {STS_EOK};
}

Outcome open_at_service(Opening& opening)
{
    stsp_server_t& server = *opening.lsu.server;
    ServiceCall call(server, opening.log);
    if (const Failure failure = call.secure()) return {*failure, true};

    WireLsu lsu(opening.lsu);
    WireSnapDef base(*opening.base);
    WireSnapDef diff(opening.diff);
    cut_at_first_blank(opening.volume.first);
    WireVolume volume(opening.volume);
    _ns1__openSnapChangeList request;
    request.lsu = lsu.get();
    request.baseSnapshot = base.get();
    request.diffSnapshot = diff.get();
    request.sourceVolSpec = volume.get();
    request.diffFlag = static_cast<int>(opening.flags);
    _ns1__openSnapChangeListResponse response;
    const int result = call.send_quietly(&Service::openSnapChangeList, request, response);
    opening.log.return_code(result);
    if (result != SOAP_OK) {
        const bool at_once = call.is_service_fault(result); // asked first, because rendering makes a fault
        return {call.status_of(result, STS_ESOAPERROR), at_once};
    }
    if (!response.fileListHandle) return {opening.log.reply_lacks("fileListHandle"), true};
    if (!response.fileListHandle->token) return {opening.log.reply_lacks("token"), true};
    return make_service_record(opening, *response.fileListHandle->token);
}

// Nobody has a list: says so. A filer that stayed busy is the one reason that reaches the host.
int status_without_list(int status, const sts_session_def_v7_t* session)
{
    if (status == STS_ETIMEDOUT) {
        log_message(session, STS_LOG_FAILURE,
                    "Filer is unable to service snapdiff requests, even after retries.");
        return status;
    }
    log_message(session, STS_LOG_FAILURE, "Unable to open file list handle using zapi or THUPlugin");
    return STS_ESOAPERROR;
}

sts_handle_s* held_in(sts_handle_s* const* cell)
{
    return cell ? *cell : nullptr;
}

int close_zapi_list(stsp_change_list_t* list, const EntryLog& log)
{
    if (const int status = api_close_snap_change_list(*list->zapi_list_cell)) {
        log.record("API failed in zapi plugin.", status);
        return status;
    }
    // Sent whatever the server's name is, and also when no start was.
    if (list->volume_copy) stop_snapdiff(*list->server, *list->volume_copy);
    unregister_list(list->token);
    const int status = close_zapi_connection(held_in(list->zapi_session_cell),
                                             held_in(list->zapi_server_cell), log.session());
    wipe_and_free(list->volume_copy);
    std::free(list->zapi_session_cell);
    std::free(list->zapi_server_cell);
    std::free(list->zapi_list_cell);
    wipe_and_free(list->token);
    delete list;
    if (status != STS_EOK) {
        log.record("FAILED to close zapi connection");
        return STS_EPLUGIN;
    }
    return log.ok();
}

int close_service_list(stsp_change_list_t* list, const EntryLog& log)
{
    ServiceCall call(*list->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireToken<ns1__FileListHandle> list_handle(list->token);
    _ns1__closeSnapChangeList request;
    request.fileListHandle = list_handle.get();
    _ns1__closeSnapChangeListResponse response;
    const int result = call.send_quietly(&Service::closeSnapChangeList, request, response);
    // Whatever the service says: a list that it wouldn't close is not listed on with what was known of it.
    unregister_list(list->token);
    log.return_code(result);
    if (result != SOAP_OK) return call.status_of(result, STS_ESOAPERROR);
    std::free(list->token);
    delete list;
    return log.ok();
}

} // namespace

extern "C" int stspi_open_snap_change_list(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* base,
                                           const sts_snap_def_v11_t* diff, sts_volume_spec_v11_t* volume,
                                           std::uint32_t flags, stsp_change_list_t** out)
{
    if (!lsu) return STS_ENULLARG;
    if (!out) {
        log_message(lsu->server ? lsu->server->session : nullptr, STS_LOG_ANOMALY,
                    "stspi_open_snap_change_list: no place for the list");
        return STS_ENULLARG;
    }
    *out = nullptr;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_open_snap_change_list");
    log.enter();
    if (!diff || !volume) return STS_ENULLARG;

    Opening opening{*lsu, base, *diff, *volume, flags, out, log};
    const WipeAtEnd wiped(opening.info.diff_export_filer);
    if (!get_transformation_mapping(lsu, base, diff, log.session(), opening.info)) {
        log_message(log.session(), STS_LOG_FAILURE, "get_transformation_mapping failed");
        return STS_ESOAPERROR;
    }

    Outcome outcome{STS_EOK};
    bool opened = false;
    if (route_is_zapi(opening.info, *volume)) {
        outcome = open_through_zapi(opening);
        if (outcome.at_once) return outcome.status;
        opened = *out && outcome.status == STS_EOK;
    }
    // The service is asked only for a difference between two snapshots.
    if (!opened && base) {
        outcome = open_at_service(opening);
        if (outcome.at_once) return outcome.status;
    }
    if (!*out) outcome.status = status_without_list(outcome.status, log.session());
    log.record(outcome.status);
    return outcome.status;
}

extern "C" int stspi_close_snap_change_list(stsp_change_list_t* list)
{
    const EntryLog log(list ? list->server->session : nullptr, "stspi_close_snap_change_list");
    log.enter();
    if (!list) return STS_ENULLARG;
    if (!list->token) return STS_EBADARG;
    return list->zapi_list_cell ? close_zapi_list(list, log) : close_service_list(list, log);
}
