#include "simulator/scenario/change_list.h"

#include "simulator/scenario/content.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/text.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

std::string_view without_slashes_around(std::string_view path)
{
    while (!path.empty() && path.front() == '/') path.remove_prefix(1);
    while (!path.empty() && path.back() == '/') path.remove_suffix(1);
    return path;
}

} // namespace

SnapshotView view_of(const Snapshot& snapshot)
{
    if (snapshot.volume.kind != VolumeKind::kNdmp) {
        throw Fault(kBadValue, "the snapshot \"" + printable(snapshot.name) + "\" is of no NDMP volume");
    }
    return {snapshot.volume.texts[1], snapshot.content};
}

std::string escaped_path(std::string_view path)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string escaped;
    escaped.reserve(path.size());
    for (const char c : path) {
        if (c >= ' ' && c <= '~' && c != '\\') {
            escaped += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            escaped += {'\\', kDigits[byte >> 4], kDigits[byte & 15]};
        }
    }
    return escaped;
}

PathFilters::PathFilters(const std::vector<std::string>& paths) : admits_all_(paths.empty())
{
    for (const std::string& path : paths) {
        const std::string_view filter = without_slashes_around(path);
        if (filter.empty()) admits_all_ = true;
        paths_.emplace(filter);
    }
}

bool PathFilters::admit(std::string_view path, std::string_view name) const
{
    return admits_all_ || holds_part_of(path) || holds_part_of(escaped_path(path)) ||
           holds_part_of(without_slashes_around(name));
}

// One look-up for each directory on the way: the number of filters makes no difference, which a client could
// use to keep the simulator busy.
bool PathFilters::holds_part_of(std::string_view path) const
{
    std::size_t end = path.find('/');
    while (end != std::string_view::npos) {
        if (paths_.count(std::string(path.substr(0, end))) != 0) return true;
        end = path.find('/', end + 1);
    }
    return paths_.count(std::string(path)) != 0;
}

ChangeList::ChangeList(const std::optional<SnapshotView>& base, const SnapshotView& diff)
    : base_export_(base ? base->export_path : ""), diff_export_(diff.export_path),
      changes_(changes_between(base ? *base->content.files() : FileTree(), *diff.content.files()))
{
    changes_.shrink_to_fit(); // a list may be open for long
}

std::optional<ListedChange> ChangeList::next(const PathFilters& filters)
{
    while (next_ < changes_.size()) {
        const FileChange& change = changes_[next_++];
        const std::string& place = change.kind == ChangeKind::kDeleted ? base_export_ : diff_export_;
        std::string name = place + "/" + escaped_path(change.path);
        if (filters.admit(change.path, name))
            return ListedChange{change.kind, std::move(name), change.record};
    }
    return std::nullopt;
}

} // namespace soapwrapper::simulator
