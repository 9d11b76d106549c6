// The list of what differs between two snapshots, as a filer tells it. The service and the stand-in for the
// second plug-in list the same.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_CHANGE_LIST_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_CHANGE_LIST_H

#include "simulator/scenario/content.h"
#include "simulator/scenario/records.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace soapwrapper::simulator
{

// A snapshot as a filer shows it: what it holds, and where.
struct SnapshotView {
    std::string export_path;
    Content content;
};

// Only a volume that is read by NDMP has an export path; of any other, the fault that tells so.
SnapshotView view_of(const Snapshot& snapshot);

// A backslash and two hexadecimal digits stand for every byte that isn't printable ASCII, and for every
// backslash.
std::string escaped_path(std::string_view path);

// What a listing is restricted to.
class PathFilters
{
  public:
    // None: everything passes.
    PathFilters() = default;
    // Paths from the volume's root, as they are on disk or escaped, and whole names. A "/" at either end
    // makes no difference; what is left of an empty one is the root.
    explicit PathFilters(const std::vector<std::string>& paths);

    // Whether one of the paths is the entry's, or that of a directory above it. `path` is the one below the
    // root as it is on disk, `name` the whole name as it is listed.
    bool admit(std::string_view path, std::string_view name) const;

  private:
    bool holds_part_of(std::string_view path) const;

    bool admits_all_ = true;
    std::unordered_set<std::string> paths_; // without a "/" at either end
};

struct ListedChange {
    ChangeKind kind = ChangeKind::kChanged;
    // Below the export path of the snapshot that holds it. That path is as it is, the rest is escaped.
    std::string name;
    FileRecord record;
};

// Not guarded.
class ChangeList
{
  public:
    // Reads what the two hold, or throws the fault that it can't be read. Without a base, all is created.
    ChangeList(const std::optional<SnapshotView>& base, const SnapshotView& diff);

    // The next entry that passes. What is kept back is passed over for good. None: the end, for good too.
    std::optional<ListedChange> next(const PathFilters& filters);

    bool at_end() const { return next_ == changes_.size(); }
    std::size_t size() const { return changes_.size(); }
    // How many were taken or passed over.
    std::size_t position() const { return next_; }

  private:
    std::string base_export_;
    std::string diff_export_;
    std::vector<FileChange> changes_;
    std::size_t next_ = 0;
};

} // namespace soapwrapper::simulator

#endif
