#include "changelist/path_transformation.h"

#include "changelist/session_registry.h"
#include "plugin/base/session_log.h"
#include "plugin/host/host_records.h"

#include <string.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper
{
namespace
{

constexpr std::string_view kSnapshotFolder = ".snapshot/";
constexpr std::string_view kNdmpMount = "NDMP:";
constexpr std::int32_t kCreated = 0;
constexpr std::int32_t kDeleted = 1;
constexpr std::int32_t kChanged = 2;

void append_converted(std::string& result, const char* text)
{
    while (const char* backslash = std::strchr(text, '\\')) {
        result.append(text, backslash);
        char digits[3] = {};
        std::memcpy(digits, backslash + 1, strnlen(backslash + 1, 2));
        result.push_back(static_cast<char>(std::strtol(digits, nullptr, 16)));
        text = backslash + 1 + std::strlen(digits);
    }
    result.append(text);
}

// Whether `path` begins with `start` and the component ends there too.
bool begins_with_components(const char* path, const std::string& start)
{
    if (std::strncmp(path, start.c_str(), start.size()) != 0) return false;
    const char next = path[start.size()];
    return next == '\0' || next == '/';
}

// Where the snapshot's name begins, just behind the folder. A text without the folder wraps to position 9.
std::size_t snapshot_name(std::string_view text)
{
    return text.find(kSnapshotFolder) + kSnapshotFolder.size();
}

// The parent of a deleted file is looked for in the newer snapshot: its name replaces the older one's.
std::string path_in_diff_snapshot(std::string_view path, std::string_view diff_export)
{
    const std::size_t old_name = snapshot_name(path);
    const std::size_t behind_old_name = path.find('/', old_name);
    const std::size_t new_name = snapshot_name(diff_export);
    if (behind_old_name == std::string_view::npos || new_name > diff_export.size()) {
        throw std::out_of_range("basic_string::substr");
    }
    const std::string_view from_new_name = diff_export.substr(new_name);
    const std::string_view name = from_new_name.substr(0, from_new_name.find('/'));
    std::string result;
    result.reserve(path.size() + name.size());
    result.append(path, 0, old_name).append(name).append(path, behind_old_name);
    return result;
}

std::string transform_without_mounts(const sts_file_attr_v11_t& entry, const snapdiff_session_info& info,
                                     const sts_session_def_v7_t* session)
{
    if (entry.changetype != kDeleted) return convert_non_ascii(entry.name);
    log_message(session, STS_LOG_RECORD, "stspi_list_file: deleted entry ", entry.name);
    if (entry.name[0] == '\0') return {};
    return convert_non_ascii(path_in_diff_snapshot(entry.name, info.diff_export).c_str());
}

std::string transform_with_mount(const sts_file_attr_v11_t& entry, const snapdiff_session_info& info,
                                 const sts_session_def_v7_t* session)
{
    const mount_path_filer_share& mount = info.parsed_isid.mpfs_vec.front();
    const bool in_diff = entry.changetype == kCreated || entry.changetype == kChanged;
    const std::string& snapshot_export = in_diff ? info.diff_export : info.base_export;
    if (in_diff) log_message(session, STS_LOG_RECORD, "transform: ", entry.name, " ", snapshot_export);

    std::string_view prefix;
    const char* rest = entry.name;
    if (std::strstr(entry.name, snapshot_export.c_str())) {
        if (in_diff) {
            log_message(session, STS_LOG_RECORD, "info.parsed_isid.mpfs_vec[0].mount_path ",
                        mount.mount_path);
        }
        const bool ndmp = mount.mount_path.compare(0, kNdmpMount.size(), kNdmpMount) == 0;
        prefix = ndmp ? mount.filer_share : mount.mount_path;
        // Counted from the first byte, wherever the export was found.
        rest += snapshot_export.size();
    }
    const char* probe = *rest == '/' ? rest + 1 : rest;
    const std::string_view replacement = get_qtree_repl(probe, info.repl_patterns, rest);

    std::string result;
    result.reserve(prefix.size() + 1 + replacement.size() + std::strlen(rest));
    result += prefix;
    if (!replacement.empty()) result += '/';
    result += replacement;
    append_converted(result, rest);
    return result;
}

} // namespace

std::string convert_non_ascii(const char* text)
{
    std::string result;
    result.reserve(std::strlen(text));
    append_converted(result, text);
    return result;
}

std::string_view get_qtree_repl(const char* path, const std::vector<snapdiff_repl_pattern>& patterns,
                                const char*& position)
{
    for (const snapdiff_repl_pattern& pattern : patterns) {
        if (!begins_with_components(path, pattern.target_path)) continue;
        position = path + pattern.target_path.size();
        return pattern.original_path;
    }
    return {};
}

std::string transform_path(const sts_file_attr_v11_t* entry, const snapdiff_session_info& info,
                           const sts_session_def_v7_t* session)
{
    if (info.parsed_isid.mpfs_vec.empty()) return transform_without_mounts(*entry, info, session);
    return transform_with_mount(*entry, info, session);
}

bool check_if_qtree_match(const char* path, const std::vector<std::string>& qtree_paths,
                          const sts_session_def_v7_t* /*session*/)
{
    if (qtree_paths.empty()) return true;
    for (const std::string& start : qtree_paths) {
        if (begins_with_components(path, start)) return true;
    }
    return false;
}

} // namespace soapwrapper
