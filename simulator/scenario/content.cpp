#include "simulator/scenario/content.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/text.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

[[noreturn]] void refuse_directory(const std::string& path)
{
    const int error = errno;
    throw Fault(kUnreadableTree,
                "the directory " + printable(path) + " can't be read: " + std::strerror(error));
}

FileType type_of(mode_t mode)
{
    switch (mode & S_IFMT) {
    case S_IFDIR:
        return FileType::kDirectory;
    case S_IFBLK:
        return FileType::kBlockDevice;
    case S_IFCHR:
        return FileType::kCharacterDevice;
    case S_IFLNK:
        return FileType::kSymlink;
    case S_IFSOCK:
        return FileType::kSocket;
    case S_IFIFO:
        return FileType::kFifo;
    default:
        return FileType::kRegular;
    }
}

FileRecord record_of(const struct stat& found)
{
    FileRecord record;
    record.type = type_of(found.st_mode);
    record.modified = found.st_mtim.tv_sec;
    record.modified_nanoseconds = found.st_mtim.tv_nsec;
    record.accessed = found.st_atim.tv_sec;
    record.created = found.st_ctim.tv_sec; // the machine tells no time of birth
    record.changed = found.st_ctim.tv_sec;
    record.changed_nanoseconds = found.st_ctim.tv_nsec;
    record.size = found.st_size;
    record.owner = static_cast<int>(found.st_uid);
    record.group = static_cast<int>(found.st_gid);
    record.permissions = found.st_mode & 07777;
    record.inode = static_cast<int>(found.st_ino);
    return record;
}

// A directory of the tree, without following a link that somebody put in its place.
Directory open_below(DIR* root, const std::string& path)
{
    const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW;
    const int descriptor = openat(dirfd(root), path.empty() ? "." : path.c_str(), flags);
    if (descriptor < 0) return nullptr;
    Directory directory(fdopendir(descriptor));
    if (!directory) {
        const int error = errno;
        close(descriptor);
        errno = error;
    }
    return directory;
}

bool is_self_or_parent(const char* name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

// The entries of one directory; those that are directories themselves are kept for later in `pending`.
void read_directory(DIR* directory, const std::string& path, FileTree& files,
                    std::vector<std::string>& pending)
{
    while (const dirent* entry = readdir(directory)) {
        if (is_self_or_parent(entry->d_name)) continue;
        struct stat found = {};
        // What is gone since was not there.
        if (fstatat(dirfd(directory), entry->d_name, &found, AT_SYMLINK_NOFOLLOW) != 0) continue;
        const std::string below = path.empty() ? entry->d_name : path + "/" + entry->d_name;
        files.emplace(below, record_of(found));
        if (S_ISDIR(found.st_mode)) pending.push_back(below);
    }
}

FileTree read_tree(const std::string& root_path)
{
    const Directory root(opendir(root_path.c_str()));
    if (!root) refuse_directory(root_path);
    FileTree files;
    std::vector<std::string> pending = {""};
    while (!pending.empty()) {
        const std::string path = std::move(pending.back());
        pending.pop_back();
        const Directory directory = open_below(root.get(), path);
        if (directory) {
            read_directory(directory.get(), path, files, pending);
        } else if (path.empty() || errno != ENOENT) {
            refuse_directory(std::filesystem::path(root_path) / path);
        }
    }
    return files;
}

bool is_same(const FileRecord& one, const FileRecord& other)
{
    return one.modified == other.modified && one.modified_nanoseconds == other.modified_nanoseconds &&
           one.size == other.size && one.owner == other.owner && one.group == other.group &&
           one.permissions == other.permissions;
}

} // namespace

Content Content::of_directory(const std::string& path)
{
    Content content;
    content.directory_ = path;
    content.is_told_ = true;
    return content;
}

Content Content::of_files(FileTree files)
{
    return of_shared(std::make_shared<const FileTree>(std::move(files)));
}

Content Content::of_shared(std::shared_ptr<const FileTree> files)
{
    Content content;
    content.files_ = std::move(files);
    content.is_told_ = true;
    return content;
}

std::shared_ptr<const FileTree> Content::files() const
{
    return directory_.empty() ? files_ : std::make_shared<const FileTree>(read_tree(directory_));
}

std::vector<FileChange> changes_between(const FileTree& base, const FileTree& later)
{
    std::vector<FileChange> changes;
    auto was = base.begin();
    auto is = later.begin();
    while (was != base.end() || is != later.end()) {
        if (is == later.end() || (was != base.end() && was->first < is->first)) {
            changes.push_back({ChangeKind::kDeleted, was->first, was->second});
            ++was;
        } else if (was == base.end() || is->first < was->first) {
            changes.push_back({ChangeKind::kCreated, is->first, is->second});
            ++is;
        } else {
            if (was->second.type != is->second.type) {
                changes.push_back({ChangeKind::kDeleted, was->first, was->second});
                changes.push_back({ChangeKind::kCreated, is->first, is->second});
            } else if (!is_same(was->second, is->second)) {
                changes.push_back({ChangeKind::kChanged, is->first, is->second});
            }
            ++was;
            ++is;
        }
    }
    return changes;
}

std::int64_t size_of(const FileTree& files)
{
    std::int64_t bytes = 0;
    for (const auto& entry : files) {
        if (entry.second.type != FileType::kRegular) continue;
        if (__builtin_add_overflow(bytes, entry.second.size, &bytes)) {
            return std::numeric_limits<std::int64_t>::max();
        }
    }
    return bytes;
}

} // namespace soapwrapper::simulator
