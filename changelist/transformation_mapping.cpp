#include "changelist/transformation_mapping.h"

#include "changelist/isid.h"
#include "changelist/path_map.h"
#include "changelist/session_registry.h"
#include "operations/io_control.h"
#include "plugin/base/bounded_text.h"
#include "plugin/base/session_log.h"
#include "plugin/base/wipe.h"
#include "plugin/host/entry_points.h"

#include <string.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper
{
namespace
{

constexpr std::size_t kPathMapSize = 4096;

// The texts of a snapshot's export; the words are those of the log.
bool read_export(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap, std::string_view which,
                 const sts_session_def_v7_t* session, sts_snap_info_v11_t& info)
{
    if (stspi_get_snap_prop_byname(lsu, snap, &info) != STS_EOK) {
        log_message(session, STS_LOG_FAILURE, "stspi_get_snap_prop_byname failed for ", which, " ");
        return false;
    }
    if (info.snapVolSpec.volumeType != STS_VOLUME_NDMP) {
        log_message(session, STS_LOG_FAILURE, "volume must be NDMP for ", which, " export");
        return false;
    }
    return true;
}

// Asks the filer's side how the paths of a snapvault secondary lay on its primary.
bool request_path_map(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* diff,
                      const sts_session_def_v7_t* session, std::vector<snapdiff_repl_pattern>& patterns,
                      std::vector<std::string>& qtree_paths)
{
    bool more = true;
    while (more) {
        char buffer[kPathMapSize];
        V_strlcpy(buffer, diff->snapName, sizeof buffer);
        if (const int status = bounded_io_control(lsu->server, STS_GET_PATH_MAP, buffer,
                                                  STS_IOCTL_INPUT | STS_IOCTL_OUTPUT, sizeof buffer)) {
            log_message(session, STS_LOG_FAILURE, "iocontrol failed with ", status);
            return false;
        }
        if (const int result = parse_pattern_xml(buffer, patterns, qtree_paths, more, session)) {
            log_message(session, STS_LOG_FAILURE, "parse_pattern_xml returned ", result);
            return false;
        }
    }
    for (const snapdiff_repl_pattern& pattern : patterns) {
        log_message(session, STS_LOG_RECORD, "prefix: ", pattern.prefix, " input ", pattern.target_path,
                    " output ", pattern.original_path);
    }
    return true;
}

} // namespace

bool get_transformation_mapping(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* base,
                                const sts_snap_def_v11_t* diff, const sts_session_def_v7_t* session,
                                snapdiff_session_info& info)
{
    log_message(session, STS_LOG_RECORD, "Now going to invoke iocontrol to get the XML: enter");
    const std::string text(diff->isid.info, strnlen(diff->isid.info, sizeof diff->isid.info));
    log_message(session, STS_LOG_RECORD, "isid: ", text);
    isid_contents isid{};
    if (!parse_isid(text, &isid, session)) return false;

    std::vector<snapdiff_repl_pattern> patterns;
    std::vector<std::string> qtree_paths;
    // The caller's record decides, and not what was just read: it is filled only at the end.
    if (!info.parsed_isid.mpfs_vec.empty() && !request_path_map(lsu, diff, session, patterns, qtree_paths)) {
        return false;
    }

    const auto snap_info = std::make_unique<sts_snap_info_v11_t>();
    const WipeAtEnd wiped(*snap_info); // a volume may name its filer with the credentials behind it
    const char* export_path = snap_info->snapVolSpec.second;
    std::string base_export;
    if (base) {
        if (!read_export(lsu, base, "base", session, *snap_info)) return false;
        base_export = export_path;
    }
    if (!read_export(lsu, diff, "diff", session, *snap_info)) return false;
    log_message(session, STS_LOG_RECORD, "export path for base is ", base_export);
    log_message(session, STS_LOG_RECORD, "export path for diff is ", export_path);

    info.repl_patterns = std::move(patterns);
    info.qtree_paths = std::move(qtree_paths);
    info.parsed_isid = std::move(isid);
    info.base_export = std::move(base_export);
    info.diff_export = export_path;
    info.diff_export_filer = snap_info->snapVolSpec.first;
    return true;
}

} // namespace soapwrapper
