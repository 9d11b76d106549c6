// From a path as the filer sees it, within a snapshot's export and with odd bytes escaped, to one that the
// host can open.
#ifndef SOAPWRAPPER_CHANGELIST_PATH_TRANSFORMATION_H
#define SOAPWRAPPER_CHANGELIST_PATH_TRANSFORMATION_H

#include "changelist/session_registry.h"
#include "plugin/host/host_records.h"

#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper
{

// The host's path of an entry; the entry itself is not written. Throws std::out_of_range for a deleted entry
// of a listing without mounts whose path, or whose diff export, names no snapshot folder.
std::string transform_path(const sts_file_attr_v11_t* entry, const snapdiff_session_info& info,
                           const sts_session_def_v7_t* session);

// Each backslash and the two characters behind it are one byte, in hexadecimal. The result may hold any byte.
std::string convert_non_ascii(const char* text);

// The original path of the first pattern whose target path `path` begins with, as whole components; then
// `position` points behind that beginning. Without one the result is empty and `position` stays.
// The result is a view of the pattern.
std::string_view get_qtree_repl(const char* path, const std::vector<snapdiff_repl_pattern>& patterns,
                                const char*& position);

// Whether the path is one of `qtree_paths` or lies below one. With none of them, every path passes.
bool check_if_qtree_match(const char* path, const std::vector<std::string>& qtree_paths,
                          const sts_session_def_v7_t* session);

} // namespace soapwrapper

#endif
