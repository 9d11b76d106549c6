// What soapwrapper-probe deletes, exports, claims and passes on.
#include "probe_catalogue_fixture.h"

#include <nlohmann/json.hpp>

namespace
{

using nlohmann::json;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using ::testing::StartsWith;

using ProbeChanges = ProbeCatalogueTest;

const std::vector<std::vector<std::string>> kDeletions = {
    {"image", "delete", "Network_store:filer", "vol1", "backup", "20240131"},
    {"snapshot", "delete", "Network_store:filer", "vol1", "nightly.0"},
    {"export", "delete", "Network_store:filer", "vol1", "--volume", "nfs:a:b", "--host", "h"}};

TEST_F(ProbeChanges, DeletionsWithoutATerminalNeedAYes)
{
    for (const auto& deletion : kDeletions) {
        const ProcessResult result = run(deletion);
        EXPECT_EQ(result.exit_code, 2);
        EXPECT_EQ(
            result.err,
            "soapwrapper-probe: usage: nothing was deleted: there is no terminal to ask on; say --yes\n");
    }
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeChanges, DeletionsWithAYesAreCarriedOut)
{
    const char* operations[] = {"deleteImage", "deleteSnap", "deleteExport"};
    for (std::size_t i = 0; i < kDeletions.size(); ++i) {
        service.answer(operations[i], "");
        std::vector<std::string> arguments = kDeletions[i];
        arguments.emplace_back("--yes");
        const ProcessResult result = run(arguments);
        EXPECT_EQ(result.exit_code, 0) << result.err;
        EXPECT_THAT(result.out, StartsWith("Deleted "));
        EXPECT_EQ(count(operations[i]), 1);
        EXPECT_EQ(service.operations().back(), "closeServer");
    }
    EXPECT_THAT(asked("deleteImage"),
                AllOf(HasSubstr(">backup</ns1:basename>"), HasSubstr(">20240131</ns1:date>"),
                      HasSubstr("<ns1:asyncFlag>0</ns1:asyncFlag>")));
    EXPECT_THAT(asked("deleteSnap"), HasSubstr(">nightly.0</ns1:snapName>"));
    EXPECT_THAT(asked("deleteExport"), HasSubstr(">a</ns1:exportHost>"));
}

TEST_F(ProbeChanges, DeletionsThatAreRefusedDoNotClaimToHaveHappened)
{
    service.refuse("deleteSnap", "in use", 2060012);
    const ProcessResult result = run({"snapshot", "delete", kName, "vol1", "nightly.0", "--yes", "--json"});
    EXPECT_EQ(result.exit_code, 4);
    const json document = json::parse(result.out);
    EXPECT_EQ(document.count("deleted_snapshot"), 0U);
    EXPECT_EQ(document.at("error").at("name"), "STS_EINUSE");
    EXPECT_EQ(service.operations().back(), "closeServer");
}

TEST_F(ProbeChanges, ImageDeleteSendsItsFlag)
{
    service.answer("deleteImage", "");
    run({"image", "delete", kName, "vol1", "b", "1", "--async", "-2", "--yes"});
    EXPECT_THAT(asked("deleteImage"), HasSubstr("<ns1:asyncFlag>-2</ns1:asyncFlag>"));
}

TEST_F(ProbeChanges, ExportCreateSendsTheHostsAndShowsTheVolume)
{
    service.answer("createExport",
                   element("exportedVolume",
                           element("nfs", element("exportHost", "filer") + element("exportName", "/vol/x"))));
    const ProcessResult result = run({"export", "create", "--host", "h1", "--host", "h2", "--port", "p1",
                                      "--flags", "5", kName, "vol1", "nightly.0"});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(result.out, "Exported volume  nfs:filer:/vol/x\n");
    EXPECT_THAT(asked("createExport"),
                AllOf(HasSubstr(">nightly.0</ns1:snapName>"), HasSubstr(">h1<"), HasSubstr(">h2<"),
                      HasSubstr(">p1<"), HasSubstr("<ns1:flags>5</ns1:flags>")));
}

TEST_F(ProbeChanges, ExportAddOfADeviceBringsNoVolumeBack)
{
    service.answer("addExport",
                   element("exportedVolume", element("device", element("devicePath", "/dev/sda"))));
    const ProcessResult result =
        run({"export", "add", kName, "vol1", "--volume", "device:/dev/a:b", "--host", "h1", "--json"});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(json::parse(result.out).at("exported_volume"), "");
    EXPECT_EQ(count("addExport"), 1);
}

TEST_F(ProbeChanges, ExportsTakeAtMostSixteenHosts)
{
    std::vector<std::string> arguments = {"export", "create", kName, "vol1", "nightly.0"};
    for (int i = 0; i < 17; ++i) arguments.insert(arguments.end(), {"--host", "h" + std::to_string(i)});
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_THAT(result.err, StartsWith("soapwrapper-probe: usage: an export has at most 16 hosts"));
    EXPECT_EQ(run({"export", "create", kName, "vol1", "nightly.0"}).exit_code, 2);
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeChanges, ClaimSendsTheVolume)
{
    service.answer("claimVolume", "");
    const ProcessResult result = run({"claim", kName, "--volume", "scsi:50\\:0a:serial"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.out, "Claimed volume  scsi:50\\:0a:serial\n");
    EXPECT_THAT(asked("claimVolume"),
                AllOf(HasSubstr(">50:0a</ns1:lunWWNN>"), HasSubstr(">serial</ns1:lunSerial>")));
    EXPECT_THAT(service.operations(), ElementsAre("openServer", "claimVolume", "closeServer"));
}

TEST_F(ProbeChanges, IoctlSendsItsTextAndShowsTheAnswer)
{
    service.answer("ioControl", element("args", "\none\n\ntwo") + element("len", "0"));
    const ProcessResult result = run({"ioctl", kName, "10104", "--args", "nightly.0", "--output"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.out, " \none\n \ntwo\n");
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_THAT(asked("ioControl"),
                AllOf(HasSubstr("<ns1:command>10104</ns1:command>"), HasSubstr(">nightly.0</ns1:args>"),
                      HasSubstr("<ns1:ioflag>3</ns1:ioflag>")));
    const json document = json::parse(run({"ioctl", kName, "7", "--output", "--json"}).out);
    EXPECT_EQ(document.at("answer"), "\none\n\ntwo");
    EXPECT_EQ(document.at("fills_buffer"), false);
}

TEST_F(ProbeChanges, IoctlWithoutOutputShowsNothing)
{
    service.answer("ioControl", element("args", "unasked") + element("len", "0"));
    const ProcessResult result = run({"ioctl", kName, "7"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(asked("ioControl"), HasSubstr("<ns1:ioflag>0</ns1:ioflag>"));
}

TEST_F(ProbeChanges, IoctlSurvivesAnAnswerFarLongerThanTheBuffer)
{
    service.answer("ioControl", element("args", std::string(300000, 'x')) + element("len", "0"));
    const ProcessResult result = run({"ioctl", kName, "7", "--output", "--size", "8"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.out, "xxxxxx\n");
    EXPECT_EQ(result.err, "warning: the answer fills the buffer and may be cut; raise --size\n");
}

TEST_F(ProbeChanges, IoctlRefusesATextThatDoesNotFitItsBuffer)
{
    EXPECT_EQ(run({"ioctl", kName, "7", "--args", "12345678", "--size", "8"}).exit_code, 2);
    EXPECT_EQ(run({"ioctl", kName, "7", "--size", "2"}).exit_code, 2);
    EXPECT_EQ(run({"ioctl", kName, "seven"}).exit_code, 2);
    EXPECT_THAT(service.operations(), IsEmpty());
}

} // namespace
