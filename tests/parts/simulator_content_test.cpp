#include "simulator/scenario/content.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scenario_error.h"
#include "simulator/scenario/scenario_reader.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace
{

using namespace soapwrapper::simulator;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::Pair;
namespace fs = std::filesystem;

class Folder
{
  public:
    Folder()
    {
        std::string name = (fs::temp_directory_path() / "simulator-content-XXXXXX").string();
        if (!mkdtemp(name.data())) throw std::runtime_error("no folder for the test");
        path_ = name;
    }
    ~Folder() { fs::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string path() const { return path_.string(); }
    void write(const std::string& name, const std::string& text) const
    {
        fs::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name, std::ios::binary) << text;
    }
    fs::path operator/(const std::string& name) const { return path_ / name; }

  private:
    fs::path path_;
};

FileRecord file_of(std::int64_t size, std::int64_t modified)
{
    FileRecord record;
    record.size = size;
    record.modified = modified;
    return record;
}

std::vector<std::pair<ChangeKind, std::string>> kinds_of(const std::vector<FileChange>& changes)
{
    std::vector<std::pair<ChangeKind, std::string>> kinds;
    for (const FileChange& change : changes) kinds.emplace_back(change.kind, change.path);
    return kinds;
}

TEST(SimulatorContent, OfADirectoryIsWhatStandsInItAtEachQuestion)
{
    const Folder folder;
    folder.write("a/b.txt", "12345");
    const Content content = Content::of_directory(folder.path());
    ASSERT_EQ(content.files()->size(), 2U);
    EXPECT_EQ(content.files()->at("a").type, FileType::kDirectory);
    EXPECT_EQ(content.files()->at("a/b.txt").size, 5);
    folder.write("c", "");
    EXPECT_EQ(content.files()->count("c"), 1U);
}

TEST(SimulatorContent, CapturedStaysAsItWas)
{
    const Folder folder;
    folder.write("a", "1");
    const Content captured = Content::of_directory(folder.path()).captured();
    folder.write("b", "1");
    EXPECT_EQ(captured.files()->size(), 1U);
    EXPECT_THAT(captured.directory(), IsEmpty());
}

TEST(SimulatorContent, OfADirectoryTellsTheFilesOwnAttributes)
{
    const Folder folder;
    folder.write("a", "123");
    ASSERT_EQ(chmod((folder / "a").c_str(), 0640), 0);
    struct stat found = {};
    ASSERT_EQ(stat((folder / "a").c_str(), &found), 0);
    const FileRecord record = Content::of_directory(folder.path()).files()->at("a");
    EXPECT_EQ(record.type, FileType::kRegular);
    EXPECT_EQ(record.modified, found.st_mtim.tv_sec);
    EXPECT_EQ(record.accessed, found.st_atim.tv_sec);
    EXPECT_EQ(record.changed, found.st_ctim.tv_sec);
    EXPECT_EQ(record.size, 3);
    EXPECT_EQ(record.owner, static_cast<int>(found.st_uid));
    EXPECT_EQ(record.group, static_cast<int>(found.st_gid));
    EXPECT_EQ(record.permissions, 0640);
    EXPECT_EQ(record.inode, static_cast<int>(found.st_ino));
}

TEST(SimulatorContent, OfADirectoryShowsALinkAndDoesNotFollowIt)
{
    const Folder folder;
    const Folder elsewhere;
    elsewhere.write("secret", "1");
    fs::create_directory_symlink(elsewhere.path(), folder / "link");
    const auto files = Content::of_directory(folder.path()).files();
    ASSERT_EQ(files->size(), 1U);
    EXPECT_EQ(files->at("link").type, FileType::kSymlink);
}

TEST(SimulatorContent, OfADirectoryThatIsNotThereIsAFault)
{
    const Folder folder;
    const Content content = Content::of_directory(folder.path() + "/none");
    try {
        content.files();
        FAIL() << "no fault";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.code(), kUnreadableTree);
        EXPECT_THAT(fault.what(), EndsWith("can't be read: No such file or directory"));
    }
}

TEST(SimulatorContent, ChangesAreWhatWasCreatedDeletedAndChangedInTheOrderOfThePaths)
{
    const FileTree base = {{"a", file_of(1, 1)}, {"b", file_of(1, 1)}, {"c", file_of(1, 1)}};
    const FileTree later = {{"a", file_of(1, 1)}, {"b", file_of(2, 9)}, {"bb", file_of(3, 1)}};
    const std::vector<FileChange> changes = changes_between(base, later);
    EXPECT_THAT(kinds_of(changes),
                ElementsAre(Pair(ChangeKind::kChanged, "b"), Pair(ChangeKind::kCreated, "bb"),
                            Pair(ChangeKind::kDeleted, "c")));
    EXPECT_EQ(changes[0].record.size, 2);
    EXPECT_EQ(changes[2].record.size, 1);
    EXPECT_THAT(changes_between(base, base), IsEmpty());
}

TEST(SimulatorContent, AChangeIsSeenWithinOneSecondTooButNoMereAccess)
{
    FileRecord written = file_of(1, 1);
    written.modified_nanoseconds = 1;
    FileRecord looked_at = file_of(1, 1);
    looked_at.accessed = 5;
    const FileTree base = {{"a", file_of(1, 1)}, {"b", file_of(1, 1)}};
    const FileTree later = {{"a", written}, {"b", looked_at}};
    EXPECT_THAT(kinds_of(changes_between(base, later)), ElementsAre(Pair(ChangeKind::kChanged, "a")));
}

TEST(SimulatorContent, WhatIsReplacedByAnotherTypeIsDeletedAndCreated)
{
    FileRecord directory = file_of(1, 1);
    directory.type = FileType::kDirectory;
    EXPECT_THAT(kinds_of(changes_between({{"a", file_of(1, 1)}}, {{"a", directory}})),
                ElementsAre(Pair(ChangeKind::kDeleted, "a"), Pair(ChangeKind::kCreated, "a")));
}

TEST(SimulatorContent, ItsSizeIsThatOfItsRegularFiles)
{
    FileRecord directory = file_of(4096, 1);
    directory.type = FileType::kDirectory;
    EXPECT_EQ(size_of({{"a", directory}, {"a/b", file_of(5, 1)}, {"a/c", file_of(6, 1)}}), 11);
}

TEST(SimulatorScenario, ATreeIsSeenFromTheScenarioFilesPlace)
{
    const Folder folder;
    folder.write("trees/now/a", "1");
    folder.write("trees/then/b", "1");
    folder.write("scenario.json", R"({"servers": [{"prefix": "P", "lsus": [{"name": "l", "tree": "trees/now",
        "snapshots": [{"name": "s", "tree": "trees/then", "volume": {"device": {"devicePath": "d"}}}]}]}]})");
    const LsuScenario lsu = load_scenario((folder / "scenario.json").string()).servers[0].lsus[0];
    EXPECT_EQ(lsu.properties.content.files()->count("a"), 1U);
    EXPECT_EQ(lsu.snapshots[0].content.files()->count("b"), 1U);
}

TEST(SimulatorScenario, ListedFilesAreTheContent)
{
    const Scenario scenario = parse_scenario(R"({"servers": [{"prefix": "P", "lsus": [{"name": "l", "files": [
        {"path": "docs", "type": "directory", "permissions": 493},
        {"path": "docs/a", "size": 7, "modified": 100, "owner": 1, "group": 2, "inode": 3, "generation": 4},
        {"path": "link", "type": "symlink"}]}]}]})");
    const auto files = scenario.servers[0].lsus[0].properties.content.files();
    ASSERT_EQ(files->size(), 3U);
    const FileRecord& listed = files->at("docs/a");
    EXPECT_EQ(listed.type, FileType::kRegular);
    EXPECT_EQ(listed.size, 7);
    EXPECT_EQ(listed.modified, 100);
    EXPECT_EQ(listed.changed, 100);
    EXPECT_EQ(listed.owner, 1);
    EXPECT_EQ(listed.group, 2);
    EXPECT_EQ(listed.inode, 3);
    EXPECT_EQ(listed.generation, 4);
    EXPECT_EQ(listed.permissions, 0644);
    EXPECT_EQ(files->at("docs").type, FileType::kDirectory);
    EXPECT_EQ(files->at("docs").permissions, 0755);
    EXPECT_EQ(files->at("link").type, FileType::kSymlink);
}

std::string complaint_about(const std::string& content)
{
    try {
        parse_scenario(R"({"servers": [{"prefix": "P", "lsus": [{"name": "l", )" + content + "}]}]}");
        return {};
    } catch (const ScenarioError& error) {
        return error.what();
    }
}

TEST(SimulatorScenario, ContentThatMakesNoSenseIsRefusedWithItsPlace)
{
    EXPECT_EQ(complaint_about(R"("files": [{"path": "/a"}])"),
              "servers[0].lsus[0].files[0].path: it begins below the root and may not be empty");
    EXPECT_EQ(complaint_about(R"("files": [{"path": ""}])"),
              "servers[0].lsus[0].files[0].path: it begins below the root and may not be empty");
    EXPECT_EQ(complaint_about(R"("files": [{"path": "a", "type": "door"}])"),
              "servers[0].lsus[0].files[0].type: file, directory or symlink is expected");
    EXPECT_EQ(complaint_about(R"("files": [{"path": "a"}, {"path": "a"}])"),
              "servers[0].lsus[0].files: \"a\" stands in it twice");
    EXPECT_EQ(complaint_about(R"("tree": "t", "files": [{"path": "a"}])"),
              "servers[0].lsus[0].tree: it excludes files: only one of them can tell the content");
}

} // namespace
