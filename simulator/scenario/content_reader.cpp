#include "simulator/scenario/content_reader.h"

#include "simulator/scenario/content.h"
#include "simulator/scenario/json_members.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr std::int64_t kUsualPermissions = 0644;

struct ListedFile {
    std::string path;
    FileRecord record;
};

struct FileTypeName {
    const char* name;
    FileType type;
};
constexpr FileTypeName kFileTypes[] = {
    {"file", FileType::kRegular}, {"directory", FileType::kDirectory}, {"symlink", FileType::kSymlink}};

FileType file_type_of(const std::string& name, const std::string& path)
{
    const auto found = std::find_if(std::begin(kFileTypes), std::end(kFileTypes),
                                    [&](const FileTypeName& each) { return name == each.name; });
    if (found == std::end(kFileTypes)) refuse_json(path, "file, directory or symlink is expected");
    return found->type;
}

void read_json(const Json& value, const std::string& path, ListedFile& file)
{
    JsonMembers members(value, path);
    std::string type = "file";
    FileRecord& record = file.record;
    record.permissions = kUsualPermissions;
    members.required("path", file.path);
    members.optional("type", type);
    members.optional("size", record.size);
    members.optional("modified", record.modified);
    members.optional("owner", record.owner);
    members.optional("group", record.group);
    members.optional("permissions", record.permissions);
    members.optional("inode", record.inode);
    members.optional("generation", record.generation);
    members.finish();
    if (file.path.empty() || file.path.front() == '/') {
        refuse_json(members.path_of("path"), "it begins below the root and may not be empty");
    }
    record.type = file_type_of(type, members.path_of("type"));
    record.accessed = record.created = record.changed = record.modified;
}

} // namespace

void read_content(JsonMembers& members, Content& content)
{
    std::string tree;
    std::vector<ListedFile> listed;
    members.optional("tree", tree);
    members.optional("files", listed);
    if (!tree.empty() && !listed.empty()) {
        refuse_json(members.path_of("tree"), "it excludes files: only one of them can tell the content");
    }
    if (!tree.empty()) {
        content = Content::of_directory(tree);
        return;
    }
    FileTree files;
    for (const ListedFile& file : listed) {
        if (!files.emplace(file.path, file.record).second) {
            refuse_json(members.path_of("files"), "\"" + file.path + "\" stands in it twice");
        }
    }
    content = Content::of_files(std::move(files));
}

} // namespace soapwrapper::simulator
