// Paths of changed files, and all that decides how they are rewritten, come from outside. The first character
// of the input is the kind of the change. The lines behind it are: the path, the two exports, the mount path
// and the share (both empty: no mount), and then, in pairs, the target and original paths of the patterns.
#include "changelist/path_transformation.h"
#include "plugin/base/bounded_text.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>

namespace
{

// Takes the next line away from the input. The record's texts come from documents: none has a NUL.
std::string next_line(std::string& input)
{
    const std::size_t end = input.find('\n');
    std::string line = input.substr(0, end);
    input.erase(0, end == std::string::npos ? end : end + 1);
    return line.substr(0, line.find('\0'));
}

void transform(const sts_file_attr_v11_t& entry, const snapdiff_session_info& info)
{
    std::size_t longest = std::strlen(entry.name) + info.diff_export.size() + 1;
    for (const snapdiff_repl_pattern& pattern : info.repl_patterns) longest += pattern.original_path.size();
    for (const mount_path_filer_share& mount : info.parsed_isid.mpfs_vec) {
        longest += mount.mount_path.size() + mount.filer_share.size();
    }
    try {
        if (soapwrapper::transform_path(&entry, info, nullptr).size() > longest) std::abort();
    } catch (const std::out_of_range&) {
        // Only a deleted entry of a list without mounts has something to miss.
        if (entry.changetype != 1 || !info.parsed_isid.mpfs_vec.empty()) std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string input(reinterpret_cast<const char*>(data), size);
    const auto entry = std::make_unique<sts_file_attr_v11_t>();
    if (!input.empty()) {
        entry->changetype = input[0] - '0';
        input.erase(0, 1);
    }
    soapwrapper::V_strlcpy(entry->name, next_line(input).c_str(), sizeof entry->name);
    snapdiff_session_info info;
    info.diff_export = next_line(input);
    info.base_export = next_line(input);
    const std::string mount = next_line(input);
    const std::string share = next_line(input);
    if (!mount.empty() || !share.empty()) info.parsed_isid.mpfs_vec = {{mount, share}};
    while (!input.empty()) {
        const std::string target = next_line(input);
        info.repl_patterns.push_back({"", target, next_line(input)});
        info.qtree_paths.push_back(target);
    }
    transform(*entry, info);
    if (soapwrapper::convert_non_ascii(entry->name).size() > std::strlen(entry->name) + 1) std::abort();
    soapwrapper::check_if_qtree_match(entry->name, info.qtree_paths, nullptr);
    return 0;
}
