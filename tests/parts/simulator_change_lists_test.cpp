#include "simulator/scenario/change_list.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scenario_error.h"
#include "simulator/scenario/scenario_reader.h"

#include <gmock/gmock.h>

namespace
{

using namespace soapwrapper::simulator;
using testing::HasSubstr;

TEST(EscapedPath, AnythingButPrintableAsciiAndAnyBackslashIsABackslashAndTwoDigits)
{
    EXPECT_EQ(escaped_path("plain name (1)~!/x"), "plain name (1)~!/x");
    EXPECT_EQ(escaped_path("a\\b"), "a\\5cb");
    EXPECT_EQ(escaped_path("\x01\t\n\x7f\x80\xff"), "\\01\\09\\0a\\7f\\80\\ff");
    EXPECT_EQ(escaped_path(""), "");
}

TEST(PathFilters, WithoutAPathEverythingPasses)
{
    EXPECT_TRUE(PathFilters().admit("a", "/e/a"));
    EXPECT_TRUE(PathFilters(std::vector<std::string>{}).admit("a", "/e/a"));
}

TEST(PathFilters, APathOnDiskAndItsEscapedFormFitAlike)
{
    const std::string path = "d\xc3/f\\";
    const std::string name = "/e/" + escaped_path(path);
    for (const std::string& filter : {path, escaped_path(path), name, std::string("d\xc3")}) {
        EXPECT_TRUE(PathFilters({filter}).admit(path, name)) << filter;
    }
    EXPECT_FALSE(PathFilters({"d"}).admit(path, name));
    EXPECT_FALSE(PathFilters({"d\xc3/f"}).admit(path, name));
}

SnapshotView view(const std::string& path, FileTree files)
{
    return {path, Content::of_files(std::move(files))};
}

FileRecord of_size(std::int64_t size)
{
    FileRecord record;
    record.size = size;
    return record;
}

TEST(ChangeList, WithoutABaseAllIsCreated)
{
    ChangeList list(std::nullopt, view("/d", {{"a", of_size(1)}, {"b", of_size(2)}}));
    EXPECT_EQ(list.size(), 2U);
    for (const char* name : {"/d/a", "/d/b"}) {
        const std::optional<ListedChange> change = list.next(PathFilters());
        ASSERT_TRUE(change);
        EXPECT_EQ(change->name, name);
        EXPECT_EQ(change->kind, ChangeKind::kCreated);
    }
    EXPECT_TRUE(list.at_end());
    EXPECT_FALSE(list.next(PathFilters()));
    EXPECT_FALSE(list.next(PathFilters()));
}

TEST(ChangeList, AnExportPathStaysAsItIs)
{
    ChangeList list(view("/b\xc3\\", {{"x\xc3", of_size(1)}}), view("/d\xa4", {{"y\xa4", of_size(2)}}));
    EXPECT_EQ(list.next(PathFilters())->name, "/b\xc3\\/x\\c3");
    EXPECT_EQ(list.next(PathFilters())->name, "/d\xa4/y\\a4");
}

TEST(ChangeList, ASnapshotThatIsNotReadByNdmpHasNoView)
{
    Snapshot snapshot;
    snapshot.volume.kind = VolumeKind::kCifs;
    EXPECT_THROW(view_of(snapshot), Fault);
    snapshot.volume = {VolumeKind::kNdmp, {"filer", "/vol/a", ""}};
    EXPECT_EQ(view_of(snapshot).export_path, "/vol/a");
}

ChangeListSettings settings_in(const std::string& json)
{
    return parse_scenario(R"({"servers": [{"prefix": "P"}], "changeLists": )" + json + "}").change_lists;
}

TEST(ChangeListSettings, WhatIsNotToldIsAsUsual)
{
    const ChangeListSettings settings = settings_in("{}");
    EXPECT_EQ(settings.batch, 1000);
    EXPECT_EQ(settings.busy, 0);
    EXPECT_EQ(settings.retry_interval, 0);
    EXPECT_EQ(settings.pace, 0);
    EXPECT_EQ(settings.start_busy, 0);
}

TEST(ChangeListSettings, AllMembersAreRead)
{
    const ChangeListSettings settings =
        settings_in(R"({"batch": 1, "busy": 2, "retryInterval": 3, "pace": 4, "startBusy": 5})");
    EXPECT_EQ(settings.batch, 1);
    EXPECT_EQ(settings.busy, 2);
    EXPECT_EQ(settings.retry_interval, 3);
    EXPECT_EQ(settings.pace, 4);
    EXPECT_EQ(settings.start_busy, 5);
}

TEST(ChangeListSettings, WhatMakesNoSenseIsRefusedWithItsPlace)
{
    const auto refusal = [](const std::string& json) {
        try {
            settings_in(json);
        } catch (const ScenarioError& error) {
            return std::string(error.what());
        }
        return std::string("accepted");
    };
    EXPECT_THAT(refusal("[]"), HasSubstr("changeLists: an object is expected"));
    EXPECT_THAT(refusal(R"({"batches": 3})"), HasSubstr("the member \"batches\" is unknown"));
    EXPECT_THAT(refusal(R"({"batch": 0})"), HasSubstr("changeLists.batch: a number from 1 to 100000"));
    EXPECT_THAT(refusal(R"({"batch": 100001})"), HasSubstr("changeLists.batch: "));
    EXPECT_THAT(refusal(R"({"batch": "many"})"), HasSubstr("changeLists.batch: a whole number is expected"));
    for (const char* member : {"busy", "retryInterval", "pace", "startBusy"}) {
        EXPECT_THAT(refusal("{\"" + std::string(member) + "\": -1}"),
                    HasSubstr("changeLists." + std::string(member) + ": 0 or more is expected"));
    }
}

} // namespace
