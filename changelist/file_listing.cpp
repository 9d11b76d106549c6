// The entries of a change list, one a call, with their paths as the host knows them.
#include "changelist/open_lists.h"
#include "changelist/path_transformation.h"
#include "changelist/session_registry.h"
#include "changelist/zapi_api.h"
#include "conversion/file_attributes.h"
#include "plugin/base/bounded_text.h"
#include "plugin/base/session_log.h"
#include "plugin/host/entry_points.h"
#include "service/clock.h"
#include "service/service_call.h"
#include "service/wire_session.h"

#include <cstdint>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string.h>
#include <utility>
#include <vector>

using namespace soapwrapper;

namespace
{

constexpr std::size_t kFilterSize = 1024;

// What the caller of one listing asks for.
struct Filters {
    std::uint32_t count;
    const char* rows; // kFilterSize bytes each; may be null if there are none
};

// In the host's record, because that is where a path is cut, and it is the cut path that is rewritten.
void rewrite_path(sts_file_attr_v11_t& entry, const snapdiff_session_info& info, const EntryLog& log)
{
    V_strlcpy(entry.name, transform_path(&entry, info, log.session()).c_str(), sizeof entry.name);
}

int next_from_zapi(const stsp_change_list_t& list, const Filters& filters, const snapdiff_session_info& info,
                   sts_file_attr_v11_t& entry, const EntryLog& log)
{
    do {
        const int status = api_list_file(*list.zapi_list_cell, filters.count, filters.rows, &entry);
        if (status == STS_ENOENT) log.record("STS_ENOENT");
        if (status != STS_EOK) return status;
    } while (!check_if_qtree_match(entry.name, info.qtree_paths, log.session()));
    rewrite_path(entry, info, log);
    return STS_EOK;
}

int next_from_buffer(snapdiff_session_info& info, sts_file_attr_v11_t& entry, const EntryLog& log)
{
    entry = info.entry_buffer.back();
    log_message(log.session(), STS_LOG_RECORD, "file name: ", entry.name);
    rewrite_path(entry, info, log);
    info.entry_buffer.pop_back();
    // The next batch brings a buffer of its own, and a large one may be the last for long.
    if (info.entry_buffer.empty()) info.entry_buffer.shrink_to_fit();
    log.record("Returning from buffer: STS_EOK");
    return STS_EOK;
}

// The pause that the last reply asked for, as far as it isn't over yet.
void wait_until_serviced_again(snapdiff_session_info& info, const EntryLog& log)
{
    if (info.retry_interval != 0) {
        const std::int64_t left = info.last_reply_time + info.retry_interval - now();
        if (left > 0) {
            const auto seconds = static_cast<std::uint32_t>(left);
            log.record("Sleeping for ", seconds, " seconds until list_file can be serviced again.");
            pause_for(seconds);
        }
    }
    info.retry_interval = 0;
    info.last_reply_time = 0;
}

std::vector<std::string> all_filters(const Filters& filters, const snapdiff_session_info& info)
{
    std::vector<std::string> paths;
    paths.reserve(filters.count + info.qtree_paths.size());
    for (std::size_t i = 0; i < filters.count; ++i) {
        const char* row = filters.rows + i * kFilterSize;
        paths.emplace_back(row, strnlen(row, kFilterSize));
    }
    paths.insert(paths.end(), info.qtree_paths.begin(), info.qtree_paths.end());
    return paths;
}

// Whether a reply holds all the entries that it counts: a difference that lacks files must not look complete.
bool holds_what_it_counts(const _ns1__listFileResponse& response, const EntryLog& log)
{
    const std::size_t held = response.fileAttrList ? response.fileAttrList->item.size() : 0;
    if (response.numFiles < 0 || static_cast<std::size_t>(response.numFiles) > held) {
        log.failure("the reply counts ", response.numFiles, " files and holds ", held);
        return false;
    }
    for (int i = 0; i < response.numFiles; ++i) {
        if (!response.fileAttrList->item[static_cast<std::size_t>(i)]) {
            log.failure("the reply counts ", response.numFiles, " files and file ", i + 1, " is nil");
            return false;
        }
    }
    return true;
}

// How much memory that takes, the service says.
bool make_room(std::vector<sts_file_attr_v11_t>& buffer, std::size_t count, const EntryLog& log)
{
    try {
        buffer.reserve(count);
        return true;
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    log.failure("Failed to allocate memory for ", count, " files.");
    return false;
}

int deliver_batch(const std::vector<ns1__FileAttr*>& items, std::size_t count, snapdiff_session_info& info,
                  sts_file_attr_v11_t& entry, const EntryLog& log)
{
    std::vector<sts_file_attr_v11_t> surplus;
    if (!make_room(surplus, count - 1, log)) return STS_ENOMEM;
    log_message(log.session(), STS_LOG_RECORD, "file name: ", items.front()->name);
    set_file_attr_from_soap(entry, items.front());
    rewrite_path(entry, info, log);
    for (std::size_t i = 1; i < count; ++i) {
        surplus.emplace_back();
        set_file_attr_from_soap(surplus.back(), items[i]);
    }
    info.entry_buffer = std::move(surplus);
    return log.ok();
}

int next_batch(const stsp_change_list_t& list, const Filters& filters, snapdiff_session_info& info,
               sts_file_attr_v11_t& entry, const EntryLog& log)
{
    wait_until_serviced_again(info, log);
    ServiceCall call(*list.server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireToken<ns1__FileListHandle> list_handle(list.token);
    ns1__ArrayOfString paths;
    paths.item = all_filters(filters, info);
    _ns1__listFile request;
    request.fileListHandle = list_handle.get();
    request.filterPathNum = static_cast<int>(paths.item.size());
    request.filterPathList = &paths;
    _ns1__listFileResponse response;
    const int result = call.send_quietly(&Service::listFile, request, response);
    log.record("SOAP return code = ", result, " retryInterval = ", response.retryInterval);
    if (result != SOAP_OK) return call.status_of(result, STS_ESOAPERROR);

    info.retry_interval = response.retryInterval;
    info.last_reply_time = now();
    if (response.error == STS_EBUSY) {
        log.record("STS_EBUSY received");
        return STS_EBUSY;
    }
    if (response.numFiles == 0) {
        log.record("no more entries");
        return STS_ENOENT;
    }
    if (!holds_what_it_counts(response, log)) return STS_EPLUGIN;
    return deliver_batch(response.fileAttrList->item, static_cast<std::size_t>(response.numFiles), info,
                         entry, log);
}

} // namespace

extern "C" int stspi_list_file(stsp_change_list_t* list, std::uint32_t filter_count, const char* filters,
                               sts_file_attr_v11_t* entry)
{
    if (!list || !entry) return STS_ENULLARG;
    if (!list->token) return STS_EBADARG;
    const EntryLog log(list->server->session, "stspi_list_file");
    const Listing listing(list->token);
    if (!listing.info()) {
        log_message(log.session(), STS_LOG_ANOMALY, "stspi_list_file: the list is being listed already");
        return STS_EBUSY;
    }
    snapdiff_session_info& info = *listing.info();
    const Filters asked_for{filter_count, filters};
    if (list->zapi_list_cell) return next_from_zapi(*list, asked_for, info, *entry, log);
    if (!info.entry_buffer.empty()) return next_from_buffer(info, *entry, log);
    return next_batch(*list, asked_for, info, *entry, log);
}
