// What a volume or a snapshot holds, and what differs between two of them.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_CONTENT_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_CONTENT_H

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// Numbered as NFS numbers them.
enum class FileType { kRegular = 1, kDirectory, kBlockDevice, kCharacterDevice, kSymlink, kSocket, kFifo };

// Times are seconds since 1970.
struct FileRecord {
    FileType type = FileType::kRegular;
    std::int64_t modified = 0;
    std::int64_t accessed = 0;
    std::int64_t created = 0;
    std::int64_t changed = 0;
    std::int64_t size = 0;
    int owner = 0;
    int group = 0;
    std::int64_t permissions = 0;
    int inode = 0;
    int generation = 0;
    // Parts of a second, so that two writes within one are told apart.
    std::int64_t modified_nanoseconds = 0;
    std::int64_t changed_nanoseconds = 0;
};

// By the path below the root, without a "/" in front; any bytes but NUL. The root itself is no entry.
using FileTree = std::map<std::string, FileRecord>;

class Content
{
  public:
    // Nothing at all.
    Content() : files_(std::make_shared<const FileTree>()) {}

    // What a directory of this machine holds each time that it is asked for.
    static Content of_directory(const std::string& path);
    static Content of_files(FileTree files);

    // Throws a Fault if the directory can't be read. Don't call it with the model's lock held: reading a
    // large directory takes its time. A copy of a Content costs next to nothing.
    std::shared_ptr<const FileTree> files() const;

    // The same, as it is now, for good.
    Content captured() const { return of_shared(files()); }

    // Empty, unless it is a directory's.
    const std::string& directory() const { return directory_; }

    // Whether anybody has said what it is, if only that it is nothing.
    bool is_told() const { return is_told_; }

  private:
    static Content of_shared(std::shared_ptr<const FileTree> files);

    std::string directory_;
    bool is_told_ = false;
    std::shared_ptr<const FileTree> files_;
};

// Numbered as a change list numbers them on the wire.
enum class ChangeKind { kCreated = 0, kDeleted = 1, kChanged = 2 };

// The record is the later one, but a deleted entry's is its last.
struct FileChange {
    ChangeKind kind = ChangeKind::kChanged;
    std::string path;
    FileRecord record;
};

// In the order of the paths. Times of access make no difference. What was replaced by a file of another type
// is deleted and created.
std::vector<FileChange> changes_between(const FileTree& base, const FileTree& later);

// The bytes of the files in it.
std::int64_t size_of(const FileTree& files);

} // namespace soapwrapper::simulator

#endif
