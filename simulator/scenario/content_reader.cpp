#include "simulator/scenario/content_reader.h"

#include "simulator/scenario/content.h"
#include "simulator/scenario/json_members.h"
#include "simulator/scenario/text.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
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

std::optional<FileType> file_type_of(const std::string& name)
{
    const auto found = std::find_if(std::begin(kFileTypes), std::end(kFileTypes),
                                    [&](const FileTypeName& each) { return name == each.name; });
    return found == std::end(kFileTypes) ? std::nullopt : std::optional(found->type);
}

void read_json(const Json& value, const JsonPlace& place, ListedFile& file)
{
    JsonMembers members(value, place);
    std::string type = "file";
    FileRecord& record = file.record;
    record.permissions = kUsualPermissions;
    if (members.required("path", file.path) && (file.path.empty() || file.path.front() == '/')) {
        members.refuse("path", "it begins below the root and may not be empty");
        file.path.clear();
    }
    const std::optional<FileType> known = members.optional("type", type) ? file_type_of(type) : record.type;
    if (known) {
        record.type = *known;
    } else {
        members.refuse("type", "file, directory or symlink is expected");
    }
    members.optional("size", record.size);
    members.optional("modified", record.modified);
    members.optional("owner", record.owner);
    members.optional("group", record.group);
    members.optional("permissions", record.permissions);
    members.optional("inode", record.inode);
    members.optional("generation", record.generation);
    members.finish();
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
        members.refuse("tree", "it excludes files: only one of them can tell the content");
    }
    if (!tree.empty()) {
        content = Content::of_directory(tree);
        return;
    }
    if (!members.has("files")) return;
    FileTree files;
    for (const ListedFile& file : listed) {
        if (file.path.empty()) continue; // refused already
        if (!files.emplace(file.path, file.record).second) {
            members.refuse("files", "\"" + printable(file.path) + "\" stands in it twice");
        }
    }
    content = Content::of_files(std::move(files));
}

} // namespace soapwrapper::simulator
