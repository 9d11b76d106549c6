#include "changelist/path_transformation.h"
#include "tests/kit/log_recorder.h"
#include "tests/unit/allocation_counter.h"
#include "tests/unit/canary.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace soapwrapper;
using testing::ElementsAre;

namespace
{

sts_file_attr_v11_t entry(std::string_view path, int change)
{
    sts_file_attr_v11_t entry = {};
    put(entry.name, path);
    entry.changetype = change;
    return entry;
}

std::string transform(std::string_view path, int change, const snapdiff_session_info& info)
{
    const sts_file_attr_v11_t record = entry(path, change);
    const sts_file_attr_v11_t before = record;
    const std::string result = transform_path(&record, info, nullptr);
    EXPECT_TRUE(same_bytes(record, before));
    return result;
}

snapdiff_session_info without_mounts(const std::string& diff_export = "/vol/v/.snapshot/new")
{
    snapdiff_session_info info;
    info.base_export = "/vol/v/.snapshot/old";
    info.diff_export = diff_export;
    return info;
}

snapdiff_session_info with_mount(const std::string& path = "/mnt/s1", const std::string& share = "f:/share")
{
    snapdiff_session_info info;
    info.parsed_isid.mpfs_vec = {{path, share}, {"/second", "/second"}};
    info.base_export = "/vol/v/.snapshot/a";
    info.diff_export = "/vol/v/.snapshot/bb";
    return info;
}

std::string with_nul(const char* before, const char* behind)
{
    return std::string(before) + '\0' + behind;
}

// The part of `path` behind what a pattern matched, and the replacement.
std::pair<std::string, std::string> replaced(const char* path,
                                             const std::vector<snapdiff_repl_pattern>& patterns)
{
    const char* position = nullptr;
    const std::string_view found = get_qtree_repl(path, patterns, position);
    return {std::string(found), position ? position : "untouched"};
}

} // namespace

TEST(Escapes, AreABackslashAndTwoHexadecimalDigits)
{
    EXPECT_EQ(convert_non_ascii(""), "");
    EXPECT_EQ(convert_non_ascii("/plain/path"), "/plain/path");
    EXPECT_EQ(convert_non_ascii("a\\20b"), "a b");
    EXPECT_EQ(convert_non_ascii("\\c3\\A4"), "\xc3\xa4");
    EXPECT_EQ(convert_non_ascii("\\2f2f"), "/2f");
}

TEST(Escapes, MayStandForAnyByteTheTerminatorIncluded)
{
    EXPECT_EQ(convert_non_ascii("a\\00b"), with_nul("a", "b"));
    EXPECT_EQ(convert_non_ascii("\\ff"), "\xff");
}

TEST(Escapes, StopAtTheFirstNonDigitAndTakeThreeCharactersAllTheSame)
{
    EXPECT_EQ(convert_non_ascii("x\\zzy"), with_nul("x", "y"));
    EXPECT_EQ(convert_non_ascii("\\4zy"), "\x04y");
    EXPECT_EQ(convert_non_ascii("\\0xy"), with_nul("", "y"));
    EXPECT_EQ(convert_non_ascii("\\-1y"), "\xffy");
    EXPECT_EQ(convert_non_ascii("\\ 1y"), "\x01y");
}

TEST(Escapes, HaveNoneForABackslashItself)
{
    EXPECT_EQ(convert_non_ascii("\\\\41"), with_nul("", "1"));
    EXPECT_EQ(convert_non_ascii("\\5c41"), "\\41"); // what comes out is not read again
}

TEST(Escapes, CutShortByTheEndAreReadAsFarAsTheyGo)
{
    EXPECT_EQ(convert_non_ascii("a\\"), with_nul("a", ""));
    EXPECT_EQ(convert_non_ascii("a\\4"), "a\x04");
}

TEST(Escapes, AreConvertedInTheLongestPath)
{
    EXPECT_EQ(convert_non_ascii((long_text(4092) + "\\41").c_str()), long_text(4092) + "A");
}

TEST(QtreeReplacement, MatchesWholeComponentsOnly)
{
    const std::vector<snapdiff_repl_pattern> patterns = {{"/p/", "q1", "/src"}};
    EXPECT_EQ(replaced("q1", patterns), std::pair(std::string("/src"), std::string()));
    EXPECT_EQ(replaced("q1/a", patterns), std::pair(std::string("/src"), std::string("/a")));
    EXPECT_EQ(replaced("q10/a", patterns), std::pair(std::string(), std::string("untouched")));
    EXPECT_EQ(replaced("q", patterns), std::pair(std::string(), std::string("untouched")));
    EXPECT_EQ(replaced("/p/q1", patterns), std::pair(std::string(), std::string("untouched")));
    EXPECT_EQ(replaced("Q1", patterns), std::pair(std::string(), std::string("untouched")));
}

TEST(QtreeReplacement, TakesTheFirstPatternThatMatchesAndNotTheLongest)
{
    const std::vector<snapdiff_repl_pattern> patterns = {
        {"", "q1/d", "/one"}, {"", "q1", "/two"}, {"", "q1/e", "/three"}, {"", "q1", "/four"}};
    EXPECT_EQ(replaced("q1/d/x", patterns).first, "/one");
    EXPECT_EQ(replaced("q1/e/x", patterns), std::pair(std::string("/two"), std::string("/e/x")));
}

TEST(QtreeReplacement, AnEmptyTargetMatchesTheEmptyPathAndWhatBeginsWithASlash)
{
    const std::vector<snapdiff_repl_pattern> patterns = {{"", "", "/all"}};
    EXPECT_EQ(replaced("", patterns), std::pair(std::string("/all"), std::string()));
    EXPECT_EQ(replaced("/a", patterns), std::pair(std::string("/all"), std::string("/a")));
    EXPECT_EQ(replaced("a", patterns), std::pair(std::string(), std::string("untouched")));
    EXPECT_EQ(replaced("a", {}), std::pair(std::string(), std::string("untouched")));
}

TEST(QtreeFilter, PassesEverythingWhereThereIsNone)
{
    EXPECT_TRUE(check_if_qtree_match("/any", {}, nullptr));
    EXPECT_TRUE(check_if_qtree_match("", {}, nullptr));
}

TEST(QtreeFilter, PassesAPathAndWhatLiesBelowIt)
{
    const std::vector<std::string> paths = {"/vol/b", "/vol/a/q1"};
    EXPECT_TRUE(check_if_qtree_match("/vol/a/q1", paths, nullptr));
    EXPECT_TRUE(check_if_qtree_match("/vol/a/q1/x", paths, nullptr));
    EXPECT_TRUE(check_if_qtree_match("/vol/b/", paths, nullptr));
    EXPECT_FALSE(check_if_qtree_match("/vol/a/q10", paths, nullptr));
    EXPECT_FALSE(check_if_qtree_match("/vol/a", paths, nullptr));
    EXPECT_FALSE(check_if_qtree_match("/VOL/B", paths, nullptr));
    EXPECT_FALSE(check_if_qtree_match("", paths, nullptr));
}

TEST(QtreeFilter, AnEmptyOnePassesTheEmptyPathAndAbsoluteOnes)
{
    EXPECT_TRUE(check_if_qtree_match("", {""}, nullptr));
    EXPECT_TRUE(check_if_qtree_match("/a", {""}, nullptr));
    EXPECT_FALSE(check_if_qtree_match("a", {""}, nullptr));
}

TEST(WithoutMounts, ADeletedEntryIsLookedForInTheNewerSnapshot)
{
    const snapdiff_session_info info = without_mounts();
    EXPECT_EQ(transform("/vol/v/.snapshot/old/d/f\\20x", 1, info), "/vol/v/.snapshot/new/d/f x");
    EXPECT_EQ(transform("/vol/v/.snapshot/old/f", 1, info), "/vol/v/.snapshot/new/f");
    EXPECT_EQ(transform("/vol/v/.snapshot/old/", 1, info), "/vol/v/.snapshot/new/");
    EXPECT_EQ(transform("/x/.snapshot/o/.snapshot/p/f", 1, info), "/x/.snapshot/new/.snapshot/p/f");
    EXPECT_EQ(transform("/v/.snapshot//f", 1, info), "/v/.snapshot/new/f");
}

TEST(WithoutMounts, TheNewNameEndsWithItsComponentOrItsText)
{
    EXPECT_EQ(transform("/v/.snapshot/old/f", 1, without_mounts("/v/.snapshot/new/deeper")),
              "/v/.snapshot/new/f");
    EXPECT_EQ(transform("/v/.snapshot/old/f", 1, without_mounts("/v/.snapshot/")), "/v/.snapshot//f");
}

TEST(WithoutMounts, EveryOtherEntryKeepsItsPathAndLosesItsEscapes)
{
    for (const int change : {0, 2, 3, -1}) {
        EXPECT_EQ(transform("/vol/v/.snapshot/old/f\\20x", change, without_mounts()),
                  "/vol/v/.snapshot/old/f x");
        EXPECT_EQ(transform("no snapshot", change, without_mounts("")), "no snapshot");
    }
}

TEST(WithoutMounts, AnEmptyPathStaysEmptyWhateverHappenedToIt)
{
    for (const int change : {0, 1, 2, 3}) EXPECT_EQ(transform("", change, without_mounts("")), "");
}

TEST(WithoutMounts, ADeletedPathWithoutASnapshotIsSearchedFromItsNinthPosition)
{
    EXPECT_EQ(transform("/12345678/rest", 1, without_mounts()), "/12345678new/rest");
    EXPECT_EQ(transform("/123456789abc/rest", 1, without_mounts()), "/12345678new/rest");
    EXPECT_THROW(transform("/1234567/rest", 1, without_mounts()), std::out_of_range);
    EXPECT_THROW(transform("/a", 1, without_mounts()), std::out_of_range);
    EXPECT_THROW(transform("/v/.snapshot/old", 1, without_mounts()), std::out_of_range);
}

TEST(WithoutMounts, ADiffExportWithoutASnapshotIsReadFromItsNinthPosition)
{
    EXPECT_EQ(transform("/v/.snapshot/old/f", 1, without_mounts("/12345678name/x")), "/v/.snapshot/name/f");
    EXPECT_EQ(transform("/v/.snapshot/old/f", 1, without_mounts("/12345678")), "/v/.snapshot//f");
    EXPECT_THROW(transform("/v/.snapshot/old/f", 1, without_mounts("/1234567")), std::out_of_range);
    EXPECT_THROW(transform("/v/.snapshot/old/f", 1, without_mounts("")), std::out_of_range);
}

TEST(WithoutMounts, TheExceptionSaysWhereItCameFrom)
{
    const std::string good = "/v/.snapshot/old/f";
    for (const auto& [path, export_path] :
         std::vector<std::pair<std::string, std::string>>{{"/a", "/v/.snapshot/new"},
                                                          {"/v/.snapshot/old", "/v/.snapshot/new"},
                                                          {good, "/1234567"},
                                                          {good, ""}}) {
        try {
            transform(path, 1, without_mounts(export_path));
            FAIL() << path << " in " << export_path;
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "basic_string::substr") << path << " in " << export_path;
        }
    }
}

TEST(WithoutMounts, OnlyADeletedEntryIsLoggedAnEmptyOneToo)
{
    kit::RecordedSession session;
    const snapdiff_session_info info = without_mounts();
    for (const int change : {0, 1, 2, 3}) {
        const sts_file_attr_v11_t record = entry("/v/.snapshot/old/f\\20x", change);
        transform_path(&record, info, session.get());
    }
    const sts_file_attr_v11_t empty = entry("", 1);
    transform_path(&empty, info, session.get());
    EXPECT_THAT(session.lines(),
                ElementsAre(kit::record("stspi_list_file: deleted entry /v/.snapshot/old/f\\20x"),
                            kit::record("stspi_list_file: deleted entry ")));
}

TEST(WithAMount, TheMountStandsForTheExportOfTheEntrysSnapshot)
{
    const snapdiff_session_info info = with_mount();
    EXPECT_EQ(transform("/vol/v/.snapshot/bb/d/f\\20x", 0, info), "/mnt/s1/d/f x");
    EXPECT_EQ(transform("/vol/v/.snapshot/bb/d", 2, info), "/mnt/s1/d");
    EXPECT_EQ(transform("/vol/v/.snapshot/bb", 0, info), "/mnt/s1");
    for (const int change : {1, 3, -1}) {
        EXPECT_EQ(transform("/vol/v/.snapshot/a/d", change, info), "/mnt/s1/d");
        EXPECT_EQ(transform("/vol/v/.snapshot/bb/d", change, info), "/vol/v/.snapshot/bb/d");
    }
}

TEST(WithAMount, APathOutsideTheExportOnlyLosesItsEscapes)
{
    EXPECT_EQ(transform("/else/f\\41", 0, with_mount()), "/else/fA");
    EXPECT_EQ(transform("", 0, with_mount()), "");
    EXPECT_EQ(transform("", 1, with_mount()), "");
}

TEST(WithAMount, AnExportWithinThePathTakesItsLengthFromTheBeginning)
{
    snapdiff_session_info info = with_mount();
    info.diff_export = "/exp";
    EXPECT_EQ(transform("/abc/exp/f", 0, info), "/mnt/s1/exp/f");
    EXPECT_EQ(transform("xy/exp", 2, info), "/mnt/s1xp");
}

TEST(WithAMount, AnEmptyExportIsFoundInEveryPath)
{
    snapdiff_session_info info = with_mount();
    info.base_export = "";
    EXPECT_EQ(transform("/d", 1, info), "/mnt/s1/d");
    EXPECT_EQ(transform("", 1, info), "/mnt/s1");
}

TEST(WithAMount, AnNdmpMountGivesItsShare)
{
    EXPECT_EQ(transform("/vol/v/.snapshot/bb/d", 0, with_mount("NDMP:x", "f:/vol")), "f:/vol/d");
    EXPECT_EQ(transform("/vol/v/.snapshot/a/d", 1, with_mount("NDMP:", "f:/vol")), "f:/vol/d");
    EXPECT_EQ(transform("/vol/v/.snapshot/bb/d", 0, with_mount("ndmp:x", "f:/vol")), "ndmp:x/d");
    EXPECT_EQ(transform("/vol/v/.snapshot/bb/d", 0, with_mount("NDMP", "f:/vol")), "NDMP/d");
}

TEST(WithAMount, AQtreeGoesBackToWhereItWas)
{
    snapdiff_session_info info = with_mount();
    info.repl_patterns = {{"", "q1", "/src/data"}, {"", "q2", "flat"}, {"", "q3", ""}, {"", "else", "E"}};
    EXPECT_EQ(transform("/vol/v/.snapshot/bb/q1/a\\20b", 0, info), "/mnt/s1//src/data/a b");
    EXPECT_EQ(transform("/vol/v/.snapshot/bb/q1", 0, info), "/mnt/s1//src/data");
    EXPECT_EQ(transform("/vol/v/.snapshot/a/q2/f", 1, info), "/mnt/s1/flat/f");
    EXPECT_EQ(transform("/vol/v/.snapshot/bb/q3/f", 0, info), "/mnt/s1/f"); // gone, with nothing in its place
    EXPECT_EQ(transform("/vol/v/.snapshot/bb/q10/f", 0, info), "/mnt/s1/q10/f");
    EXPECT_EQ(transform("/vol/v/.snapshot/bb//q1/f", 0, info), "/mnt/s1//q1/f"); // only one slash is passed
    EXPECT_EQ(transform("else/f", 0, info), "/E/f");
}

TEST(WithAMount, ReplacementsAreNotReadForEscapes)
{
    snapdiff_session_info info = with_mount("/m\\41", "s");
    info.repl_patterns = {{"", "q\\31", "/o\\42"}};
    EXPECT_EQ(transform("/vol/v/.snapshot/bb/q\\31/\\43", 0, info), "/m\\41//o\\42/C");
}

TEST(WithAMount, LogsWhatItDoesWithNewAndChangedEntriesOnly)
{
    kit::RecordedSession session;
    const snapdiff_session_info info = with_mount();
    for (const char* path : {"/vol/v/.snapshot/bb/f", "/else"}) {
        for (const int change : {0, 1, 2, 3}) {
            const sts_file_attr_v11_t record = entry(path, change);
            transform_path(&record, info, session.get());
        }
    }
    const kit::LogLine inside = kit::record("transform: /vol/v/.snapshot/bb/f /vol/v/.snapshot/bb");
    const kit::LogLine mount = kit::record("info.parsed_isid.mpfs_vec[0].mount_path /mnt/s1");
    const kit::LogLine outside = kit::record("transform: /else /vol/v/.snapshot/bb");
    EXPECT_THAT(session.lines(), ElementsAre(inside, mount, inside, mount, outside, outside));
}

TEST(TransformPath, TakesAtMostOneBlockFromTheHeapBesideItsResult)
{
    const std::string tail = "/" + long_text(100) + "\\20" + long_text(100);
    snapdiff_session_info mounted = with_mount("/mnt/" + long_text(100));
    mounted.repl_patterns = {{"", long_text(100), "/src/" + long_text(100)}};
    const struct {
        sts_file_attr_v11_t entry;
        snapdiff_session_info info;
        std::size_t most;
    } cases[] = {
        {entry("/vol/v/.snapshot/old" + tail, 0), without_mounts(), 1},
        {entry("/vol/v/.snapshot/old" + tail, 1), without_mounts("/vol/v/.snapshot/" + long_text(100)), 2},
        {entry("/vol/v/.snapshot/bb" + tail, 0), mounted, 1},
        {entry("/vol/v/.snapshot/bb/" + long_text(100) + tail, 2), mounted, 1},
        {entry("/vol/v/.snapshot/a" + tail, 1), mounted, 1},
    };
    for (const auto& one : cases) {
        const std::size_t before = allocations();
        const std::string result = transform_path(&one.entry, one.info, nullptr);
        EXPECT_LE(allocations() - before, one.most) << one.entry.name;
        EXPECT_GT(result.size(), 200u);
    }
}
