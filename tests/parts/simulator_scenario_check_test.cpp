#include "simulator/scenario/default_scenario.h"
#include "simulator/scenario/findings.h"
#include "simulator/scenario/scenario_check.h"
#include "simulator/scenario/scenario_error.h"
#include "simulator/scenario/scenario_finding.h"
#include "simulator/scenario/scenario_reader.h"
#include "tests/system/probe_process.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

using namespace soapwrapper::simulator;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
namespace fs = std::filesystem;

// Errors as they are, warnings with a mark.
std::vector<std::string> findings(const std::string& json, const fs::path& folder = {})
{
    std::vector<std::string> found;
    for (const ScenarioFinding& finding : check_scenario(json, folder)) {
        found.push_back((finding.is_error ? "" : "? ") + to_string(finding));
    }
    return found;
}

std::string with_lsus(const std::string& lsus, const std::string& members = "")
{
    return R"({"servers": [{"prefix": "Network_A", )" + members + R"("lsus": [)" + lsus + "]}]}";
}

std::string with_lsu(const std::string& members)
{
    return with_lsus(R"({"name": "l", )" + members + "}");
}

const std::string kAtLsu = "servers[0].lsus[0]";

std::string snapshot(const std::string& name, const std::string& path, const std::string& content = "")
{
    return R"({"name": ")" + name + R"(", "volume": {"ndmp": {"exportfiler": "f", "exportpath": ")" + path +
           "\"}}" + content + "}";
}

TEST(ScenarioCheck, FindsNothingInTheBuiltInScenario)
{
    EXPECT_THAT(findings(std::string(default_scenario_text())), IsEmpty());
}

TEST(ScenarioCheck, TellsEachErrorAndReadsOnBehindIt)
{
    EXPECT_THAT(
        findings(
            R"({"time": "sun", "operations": {"retryInterval": "soon", "seconds": {"copy": -1, "diff": 86401}},
            "servers": [7, {"capabilities": [0, "1", 2147483648], "maxSessions": 0, "lsus": [
              {"name": "", "label": 1, "used": 9223372036854775808},
              {"name": "l", "images": [{}], "snapshots": {}, "volumes": [{"nfs": 1}, {}]}, {"name": "l"}]}],
            "changeLists": {"batch": 0, "busy": -1, "pace": null}, "extra": 1, "more": 2})"),
        ElementsAre(
            "time: clock or requests is expected",
            "operations.retryInterval: a whole number is expected, not string",
            "operations.seconds.copy: 0 to 86400 seconds are expected",
            "operations.seconds.diff: 0 to 86400 seconds are expected",
            "servers[0]: an object is expected, not number", "servers[1]: the member \"prefix\" is missing",
            "servers[1].capabilities[1]: a whole number is expected, not string",
            "servers[1].capabilities[2]: the number doesn't fit 32 bits",
            "servers[1].maxSessions: 1 or more is expected", "servers[1].lsus[0].name: it may not be empty",
            "servers[1].lsus[0].label: a string is expected, not number",
            "servers[1].lsus[0].used: the number doesn't fit 64 bits",
            "servers[1].lsus[1].volumes[0].nfs: an object is expected, not number",
            "servers[1].lsus[1].volumes[1]: an object with one member is expected: nfs, cifs, scsi, "
            "device or ndmp",
            "servers[1].lsus[1].images[0]: the member \"basename\" is missing",
            "servers[1].lsus[1].snapshots: an array is expected, not object",
            "servers[1].lsus[2].name: an earlier one has that name already",
            "changeLists.batch: a number from 1 to 100000 is expected",
            "changeLists.busy: 0 or more is expected",
            "changeLists.pace: a whole number is expected, not null",
            "the document: the member \"extra\" is unknown; there are changeLists, operations, servers, "
            "time",
            "the document: the member \"more\" is unknown; there are changeLists, operations, servers, "
            "time"));
}

TEST(ScenarioCheck, TellsEachErrorInListedFiles)
{
    EXPECT_THAT(findings(with_lsu(
                    R"("files": [{"path": "/a"}, {"path": "a", "type": "door", "size": "1"}, {"path": "a"},
                          {"type": 7}, {}])")),
                ElementsAre(kAtLsu + ".files[0].path: it begins below the root and may not be empty",
                            kAtLsu + ".files[1].type: file, directory or symlink is expected",
                            kAtLsu + ".files[1].size: a whole number is expected, not string",
                            kAtLsu + ".files[3]: the member \"path\" is missing",
                            kAtLsu + ".files[3].type: a string is expected, not number",
                            kAtLsu + ".files[4]: the member \"path\" is missing",
                            kAtLsu + ".files: \"a\" stands in it twice"));
}

TEST(ScenarioCheck, ReadingThrowsAllErrorsALineEachUpToAHundred)
{
    const auto thrown = [](const std::string& json) {
        try {
            parse_scenario(json);
            return std::string();
        } catch (const ScenarioError& error) {
            return std::string(error.what());
        }
    };
    EXPECT_EQ(thrown(R"({"servers": [{"prefix": 1}, {"prefix": 2}]})"),
              "servers[0].prefix: a string is expected, not number\n"
              "servers[1].prefix: a string is expected, not number");
    std::string many = "0";
    for (int i = 1; i < 150; ++i) many += ", 0";
    EXPECT_THAT(thrown(R"({"servers": [)" + many + "]}"),
                EndsWith("\nservers[99]: an object is expected, not number\nand 50 more"));
}

TEST(ScenarioCheck, KeepsAThousandFindingsAndCountsTheRest)
{
    std::string wrong = "0";
    for (int i = 1; i < 5000; ++i) wrong += ",0";
    const std::vector<std::string> found = findings(R"({"servers": [)" + wrong + "]}");
    ASSERT_THAT(found, SizeIs(1001));
    EXPECT_EQ(found.back(), "and 4000 more");
}

TEST(ScenarioCheck, TellsASyntaxErrorAloneByLineAndColumn)
{
    EXPECT_THAT(findings("{\n \"servers\": [,] }"),
                ElementsAre(StartsWith("line 2, column 14: syntax error")));
    EXPECT_THAT(findings("[1e999]"), ElementsAre("line 1, column 6: number overflow parsing '1e999'"));
}

TEST(ScenarioCheck, ShowsNoByteOfTheScenarioThatATerminalWouldObey)
{
    const std::string hostile = "\\u001b]0;x\\u0007\xc2\x9b\x7f";
    const std::vector<std::string> texts = {
        R"({")" + hostile + R"(": 1})",
        R"({"servers": [{"prefix": "P:)" + hostile + R"("}]})",
        with_lsu(R"("files": [{"path": "\u009b\u007f"}, {"path": "\u009b\u007f"}])"),
        with_lsu(R"("replicationTargets": [{"server": "\u009b\n", "lsu": "\u009b"}])"),
        with_lsu(R"("tree": "\u009b\n")"),
        "{\"\x1b\x9b\": 1}",
        "[\"a\x9b\"]",
        "\x9b\x1b",
    };
    for (const std::string& json : texts) {
        const std::vector<std::string> found = findings(json);
        EXPECT_THAT(found, Not(IsEmpty())) << json;
        for (const std::string& line : found) {
            for (const char c : line) EXPECT_TRUE(c >= ' ' && c <= '~') << line;
        }
    }
}

TEST(ScenarioCheck, RefusesADocumentThatIsNestedTooDeepWithoutReadingItIn)
{
    const auto nested = [](std::size_t levels) {
        return R"({"a": )" + std::string(levels - 1, '[') + std::string(levels - 1, ']') + "}";
    };
    EXPECT_THAT(findings(nested(64)), Contains(HasSubstr("the member \"a\" is unknown")));
    EXPECT_THAT(findings(nested(65)),
                ElementsAre("the document: no more than 64 levels of nesting are expected"));
    EXPECT_THAT(findings(nested(1000000)), SizeIs(1));
    EXPECT_THAT(findings(std::string(100000, '[')), ElementsAre(StartsWith("line 1, column 100001: ")));
}

TEST(ScenarioCheck, WarnsOfAMemberThatStandsThereTwice)
{
    EXPECT_THAT(
        findings(with_lsu(R"("used": 1, "volumes": [], "used": 2)")),
        ElementsAre("? servers[0].lsus[0].used: an earlier member has that name already, and counts for "
                    "nothing"));
    EXPECT_THAT(findings(with_lsus(R"({"name": "a", "flags": 1}, {"name": "b", "flags": 1})")), IsEmpty());
}

TEST(ScenarioCheck, WarnsOfAPrefixThatTheLibraryDoesNotClaim)
{
    EXPECT_THAT(
        findings(R"({"servers": [{"prefix": "Network_"}, {"prefix": "network_A"}, {"prefix": "A"}]})"),
        ElementsAre(StartsWith("? servers[1].prefix: the library claims no server whose name"),
                    StartsWith("? servers[2].prefix: ")));
}

TEST(ScenarioCheck, WarnsOfATreeThatCannotBeRead)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "there");
    folder.write("file", "");
    const std::string json =
        with_lsu(R"("tree": "there", "snapshots": [)" + snapshot("a", "/a", R"(, "tree": "not")") + ", " +
                 snapshot("b", "/b", R"(, "tree": "file")") + "]");
    const std::string at = (folder / "").string();
    EXPECT_THAT(findings(json, folder / ""),
                ElementsAre("? " + kAtLsu + ".snapshots[0].tree: the directory " + at +
                                "not can't be read: No such file or directory",
                            "? " + kAtLsu + ".snapshots[1].tree: the directory " + at +
                                "file can't be read: Not a directory"));
}

TEST(ScenarioCheck, WarnsOfAPartnerThatIsNotThere)
{
    EXPECT_THAT(
        findings(with_lsu(R"("replicationSources": [{"server": "Network_A", "lsu": "l"},
                                      {"server": "Network_A", "lsu": "m"}],
                                     "replicationTargets": [{"server": "Network_B", "lsu": "l"},
                                      {"server": "Network_B:far", "lsu": "l"}])")),
        ElementsAre("? " + kAtLsu + ".replicationSources[1].lsu: the server Network_A has no LSU \"m\"",
                    "? " + kAtLsu +
                        ".replicationTargets[0].server: there is no server with the prefix "
                        "\"Network_B\""));
}

TEST(ScenarioCheck, WarnsOfNoPartnerWhileAnErrorMayHideIt)
{
    EXPECT_THAT(
        findings(with_lsus(R"({"name": "l", "replicationTargets": [{"server": "Network_A", "lsu": "m"}]},
                                      {"name": 7})")),
        ElementsAre("servers[0].lsus[1].name: a string is expected, not number"));
}

TEST(ScenarioCheck, WarnsOfSizesBeyondACapacityThatIsTold)
{
    const std::string used = R"("used": 11, "usedPhys": 6, "images": [{"basename": "i", "size": 11}],
        "snapshots": [{"name": "s", "size": 11, "volume": {"device": {"devicePath": "d"}}}])";
    EXPECT_THAT(findings(with_lsu(R"("capacity": 10, "capacityPhys": 5, )" + used)),
                ElementsAre("? " + kAtLsu + ".used: it is more than the capacity",
                            "? " + kAtLsu + ".usedPhys: it is more than capacityPhys",
                            "? " + kAtLsu + ".images[0].size: it is more than the LSU's capacity",
                            "? " + kAtLsu + ".snapshots[0].size: it is more than the LSU's capacity"));
    EXPECT_THAT(findings(with_lsu(R"("capacity": 11, "capacityPhys": 6, )" + used)), IsEmpty());
    EXPECT_THAT(findings(with_lsu(used)), IsEmpty());
}

TEST(ScenarioCheck, WarnsOfImagesThatNoDefinitionTellsApart)
{
    EXPECT_THAT(
        findings(with_lsu(R"("images": [{"basename": "i", "date": "1"}, {"basename": "i", "date": "2"},
                                     {"basename": "i", "date": "1", "size": 7}])")),
        ElementsAre("? " + kAtLsu + ".images[2]: " + kAtLsu +
                    ".images[0] has the same basename, date, fulldate and policy: a host can't name one of "
                    "them alone"));
}

TEST(ScenarioCheck, WarnsOfSnapshotsThatAFilerShowsAtTheSamePath)
{
    EXPECT_THAT(findings(with_lsus(R"({"name": "a", "snapshots": [)" + snapshot("1", "/v/1") + R"(]},
                                      {"name": "b", "snapshots": [)" +
                                   snapshot("2", "/v/2") + ", " + snapshot("1", "/v/1") + "]}")),
                ElementsAre("? servers[0].lsus[1].snapshots[1].volume: the filer shows "
                            "servers[0].lsus[0].snapshots[0] at that exportpath"));
}

TEST(ScenarioCheck, WarnsOfAVolumeThatTwoLsusHave)
{
    const auto volume = [](const std::string& path) {
        return R"({"nfs": {"exportHost": "f", "exportName": "/v", "exportPath": ")" + path + "\"}}";
    };
    EXPECT_THAT(findings(with_lsus(R"({"name": "a", "volumes": [)" + volume("/1") + ", " + volume("/2") +
                                   R"(]}, {"name": "b", "volumes": [)" + volume("/3") + "]}")),
                ElementsAre("? servers[0].lsus[1].volumes[0]: servers[0].lsus[0] has that volume too"));
}

TEST(ScenarioCheck, WarnsOfASnapshotWithoutContentBesideOneThatHasSome)
{
    const std::string told = snapshot("1", "/1", R"(, "files": [])");
    const std::string untold = snapshot("2", "/2");
    EXPECT_THAT(
        findings(with_lsu(R"("snapshots": [)" + told + ", " + untold + "]")),
        ElementsAre("? " + kAtLsu +
                    ".snapshots[1]: it has no tree and no files, so all that others hold differs from it"));
    EXPECT_THAT(findings(with_lsu(R"("snapshots": [)" + untold + "]")), IsEmpty());
}

TEST(ScenarioCheck, WarnsOfListedPathsThatNoDirectoryCouldHave)
{
    EXPECT_THAT(
        findings(with_lsu(R"("files": [{"path": "a"}, {"path": "a-"}, {"path": "a/b"}, {"path": "d//e"},
        {"path": "d/../f"}, {"path": "g/"}, {"path": "h", "type": "directory"}, {"path": "h/.i/..j"}])")),
        ElementsAre("? " + kAtLsu + ".files: \"a/b\" lies below \"a\", which is no directory",
                    "? " + kAtLsu + ".files: \"d/../f\" has a step that is empty, \".\" or \"..\"",
                    "? " + kAtLsu + ".files: \"d//e\" has a step that is empty, \".\" or \"..\"",
                    "? " + kAtLsu + ".files: \"g/\" has a step that is empty, \".\" or \"..\""));
}

TEST(ScenarioCheck, WarnsOfTextsThatAHostsRecordCutsAndOfNoneThatFits)
{
    const auto scenario = [](std::size_t more) {
        const auto text = [&](std::size_t longest) { return "\"" + std::string(longest + more, 'x') + "\""; };
        const std::string isid = R"("isid": {"dpaid": )" + text(63) + R"(, "dpaver": )" + text(31) +
                                 R"(, "info": )" + text(4095) + "}";
        return with_lsus(R"({"name": )" + text(1023) + R"(, "label": )" + text(63) + R"(, "description": )" +
                             text(1023) + R"(, "config": )" + text(2047) +
                             R"(, "volumes": [{"device": {"devicePath": )" + text(1023) +
                             R"(}}], "images": [{"basename": )" + text(1023) + R"(, "date": )" + text(31) +
                             R"(, "fulldate": )" + text(31) + R"(, "policy": )" + text(1023) +
                             R"(, "format": )" + text(23) + ", " + isid + R"(, "exports": [{"mount": )" +
                             text(1023) + R"(}]}], "snapshots": [{"name": )" + text(2047) + ", " + isid +
                             R"(, "volume": {"ndmp": {"exportfiler": )" + text(1023) +
                             R"(, "exportpath": "/v"}}, "files": [{"path": )" + text(4092) + "}]}]}",
                         R"("types": [)" + text(15) + "], ");
    };
    EXPECT_THAT(findings(scenario(0)), IsEmpty());
    const std::vector<std::string> found = findings(scenario(1));
    EXPECT_THAT(found, SizeIs(21));
    EXPECT_THAT(found, Contains("? servers[0].types[0]: it has 16 bytes, and a host's record holds 15"));
    EXPECT_THAT(found, Contains("? " + kAtLsu + ".label: it has 64 bytes, and a host's record holds 63"));
    EXPECT_THAT(found,
                Contains(StartsWith("? " + kAtLsu + ".images[0].exports[0].mount: it has 1024 bytes")));
    EXPECT_THAT(found, Contains(StartsWith("? " + kAtLsu + ".snapshots[0].isid.info: it has 4096 bytes")));
    EXPECT_THAT(found, Contains(StartsWith("? " + kAtLsu + ".snapshots[0].volume.ndmp.exportfiler: ")));
    EXPECT_THAT(found, Contains(HasSubstr("has a longer name in a change list than the 4095 bytes")));
}

TEST(ScenarioCheck, WarnsOfRowsAndCapabilitiesThatAHostsRecordLacks)
{
    std::string types = "\"x\"";
    for (int i = 0; i < 32; ++i) types += ", \"x\"";
    EXPECT_THAT(findings(with_lsus(R"({"name": "l", "images": [{"basename": "i", "exports": [{"mount": "1"},
                    {"mount": "2"}, {"mount": "3"}, {"mount": "4"}, {"mount": "5"}]}]})",
                                   R"("capabilities": [-1, 0, 2079, 2080], "types": [)" + types + "], ")),
                ElementsAre("? servers[0].types: there are 33, and a host's record holds 32",
                            "? servers[0].capabilities[0]: the library knows the capabilities 0 to 2079",
                            "? servers[0].capabilities[3]: the library knows the capabilities 0 to 2079",
                            "? " + kAtLsu + ".images[0].exports: there are 5, and a host's record holds 4"));
}

} // namespace
