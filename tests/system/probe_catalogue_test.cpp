// What soapwrapper-probe shows of LSUs, images and snapshots, and how it tells the end of a list.
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

class ProbeLists : public ProbeCatalogueTest
{
  protected:
    ProbeLists() { answer_lists(); }
    void two_lsus()
    {
        service.answer_first("listLSU", element("lsu", "vol1"));
        service.answer_first("listLSU", element("lsu", "vol2"));
    }
};

TEST_F(ProbeLists, LsusShowsThemAllAndClosesListAndServer)
{
    two_lsus();
    const ProcessResult result = run({"lsus", kName});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_EQ(result.out, "LSU\nvol1\nvol2\n");
    EXPECT_THAT(service.operations(), ElementsAre("openServer", "openLSUList", "listLSU", "listLSU",
                                                  "listLSU", "closeLSUList", "closeServer"));
    EXPECT_THAT(asked("closeLSUList"), HasSubstr("<ns1:token>L-1</ns1:token>"));
}

TEST_F(ProbeLists, LsusPrintsJsonAndBareFields)
{
    two_lsus();
    const json expected = {
        {"schema", 1}, {"lsus", {{{"name", "vol1"}}, {{"name", "vol2"}}}}, {"complete", true}};
    EXPECT_EQ(json::parse(run({"lsus", kName, "--json"}).out), expected);
    two_lsus();
    EXPECT_EQ(run({"lsus", kName, "--separator", ";"}).out, "vol1\nvol2\n");
}

TEST_F(ProbeLists, LsusShowsAnEmptyListAsOne)
{
    const ProcessResult result = run({"lsus", kName, "--json"});
    EXPECT_EQ(result.exit_code, 0);
    const json expected = {{"schema", 1}, {"lsus", json::array()}, {"complete", true}};
    EXPECT_EQ(json::parse(result.out), expected);
}

TEST_F(ProbeLists, LsusCleansWhatTheServiceSent)
{
    service.answer_first("listLSU", element("lsu", "a&#x7F;&#x9F;b"));
    EXPECT_EQ(run({"lsus", kName}).out, "LSU\na\xEF\xBF\xBD\xEF\xBF\xBD"
                                        "b\n");
}

TEST_F(ProbeLists, ALostConnectionIsNeverShownAsAnEmptyList)
{
    service.answer_raw("listLSU", "");
    const ProcessResult result = run({"lsus", kName});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, StartsWith("STS_ESOAPERROR(2060017): "));
    EXPECT_EQ(count("closeLSUList"), 1);
    EXPECT_EQ(service.operations().back(), "closeServer");
}

TEST_F(ProbeLists, ALostConnectionShowsWhatWasReadBeforeIt)
{
    two_lsus();
    service.answer_raw("listLSU", "");
    const ProcessResult result = run({"lsus", kName, "--json"});
    EXPECT_EQ(result.exit_code, 4);
    const json document = json::parse(result.out);
    EXPECT_EQ(document.at("lsus").size(), 2U);
    EXPECT_EQ(document.at("complete"), false);
    EXPECT_EQ(document.at("error").at("status"), 2060017);
}

TEST_F(ProbeLists, AnotherStatusIsAFailureUnlessItIsNamedAsTheEnd)
{
    two_lsus();
    service.refuse("listLSU", "no more", 4711);
    const ProcessResult failed = run({"lsus", kName});
    EXPECT_EQ(failed.exit_code, 4);
    EXPECT_EQ(failed.out, "LSU\nvol1\nvol2\n");
    EXPECT_THAT(failed.err, AllOf(StartsWith("service status(4711): "), HasSubstr("no more")));
    two_lsus();
    const ProcessResult ended = run({"lsus", kName, "--end-status", "4711"});
    EXPECT_EQ(ended.exit_code, 0);
    EXPECT_EQ(ended.out, "LSU\nvol1\nvol2\n");
}

TEST_F(ProbeLists, AStatusOfFailureCannotBeNamedAsTheEnd)
{
    for (const char* status : {"0", "2060017", "2060021"}) {
        const ProcessResult result = run({"lsus", kName, "--end-status", status});
        EXPECT_EQ(result.exit_code, 2);
        EXPECT_THAT(result.err, HasSubstr("is not a status that can end a list"));
    }
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeLists, TheEndOfAListIsAFailureWhereTheListIsOpened)
{
    service.refuse("openLSUList", "no such thing", 2060013);
    const ProcessResult result = run({"lsus", kName});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_ENOENT(2060013): "));
    EXPECT_THAT(service.operations(), ElementsAre("openServer", "openLSUList", "closeServer"));
}

TEST_F(ProbeLists, AnEntryThatComesAgainAndAgainIsAnError)
{
    service.answer("listImage", "<ns1:image/>");
    const ProcessResult result = run({"images", kName, "vol1"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("endless list: the service gave the same entry more than 100 times"));
    EXPECT_EQ(count("listImage"), 102);
    EXPECT_EQ(count("closeImageList"), 1);
    EXPECT_EQ(service.operations().back(), "closeServer");
}

TEST_F(ProbeLists, OfALongerListAsManyAreShownAsWereWantedAndThatThereIsMoreIsSaid)
{
    two_lsus();
    const ProcessResult result = run({"lsus", kName, "--limit", "1"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.out, "LSU\nvol1\n");
    EXPECT_EQ(result.err, "... and more: shown are the first 1 (--limit)\n");
    EXPECT_THAT(service.operations(), ElementsAre("openServer", "openLSUList", "listLSU", "listLSU",
                                                  "closeLSUList", "closeServer"));
    two_lsus();
    const json document = json::parse(run({"lsus", kName, "--limit", "1", "--json"}).out);
    EXPECT_EQ(document.at("lsus").size(), 1U);
    EXPECT_EQ(document.at("complete"), false);
    EXPECT_EQ(document.at("limited"), true);
}

TEST_F(ProbeLists, AListThatIsNoLongerThanWantedIsComplete)
{
    two_lsus();
    const ProcessResult result = run({"lsus", kName, "--limit", "2", "--json"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(result.err, IsEmpty());
    const json document = json::parse(result.out);
    EXPECT_EQ(document.at("complete"), true);
    EXPECT_EQ(document.count("limited"), 0U);
}

TEST_F(ProbeLists, ALimitIsOneAtLeast)
{
    for (const char* limit : {"0", "-1", "many"}) {
        EXPECT_EQ(run({"lsus", kName, "--limit", limit}).exit_code, 2) << limit;
    }
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeLists, AFailureBehindAsManyAsWereWantedIsOne)
{
    two_lsus();
    service.answer_raw("listLSU", "");
    const ProcessResult result = run({"lsus", kName, "--limit", "2", "--json"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_EQ(json::parse(result.out).count("limited"), 0U);
}

TEST_F(ProbeLists, AListThatWillNotCloseIsToldAndTheServerIsClosedAllTheSame)
{
    two_lsus();
    service.refuse("closeLSUList", "stay", 2060012);
    const ProcessResult result = run({"lsus", kName});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_EQ(result.out, "LSU\nvol1\nvol2\n");
    EXPECT_THAT(result.err, AllOf(StartsWith("STS_EINUSE(2060012): "), HasSubstr("stay")));
    EXPECT_EQ(count("closeLSUList"), 1);
    EXPECT_EQ(service.operations().back(), "closeServer");
}

TEST_F(ProbeLists, AfterAFailureAFailedCloseIsAWarning)
{
    service.answer_raw("listLSU", "");
    service.refuse("closeLSUList", "stay", 2060012);
    service.refuse("closeServer", "stay too", 2060005);
    const ProcessResult result = run({"lsus", kName});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, AllOf(HasSubstr("warning: the list could not be closed\nSTS_EINUSE(2060012): "),
                                  HasSubstr("warning: the server could not be closed\nSTS_EBUSY(2060005): "),
                                  HasSubstr("STS_ESOAPERROR(2060017): ")));
}

TEST_F(ProbeLists, ImagesShowsWhatTheListHolds)
{
    service.answer_first("listImage",
                         element("image", element("basename", "backup") + element("date", "20240131") +
                                              element("policy", "daily") + element("saveas", "-1") +
                                              element("flags", "2")));
    const ProcessResult result = run({"images", kName, "vol1", "--type", "-7"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.out, "BASENAME  DATE      POLICY  SAVE AS  FLAGS\n"
                          "backup    20240131  daily        -1      2\n");
    EXPECT_THAT(asked("openImageList"),
                AllOf(HasSubstr("<ns1:lsuName>vol1</ns1:lsuName>"), HasSubstr("<ns1:type>-7</ns1:type>")));
}

TEST_F(ProbeLists, SnapshotsAreThoseOfAnLsuOrOfAVolume)
{
    const std::string snap = element("snapDef", element("snapName", "nightly.0") + element("snapType", "1") +
                                                    element("snapFlags", "-2") + element("snapSaveas", "3"));
    const std::string table = "SNAPSHOT   TYPE  FLAGS  SAVE AS\nnightly.0     1     -2        3\n";
    service.answer_first("listSnap", snap);
    EXPECT_EQ(run({"snapshots", kName, "vol1"}).out, table);
    EXPECT_THAT(asked("openSnapList"), HasSubstr("<ns1:lsuName>vol1</ns1:lsuName>"));
    service.answer_first("listSnap", snap);
    EXPECT_EQ(run({"snapshots", kName, "--volume", "ndmp:filer1:/vol/a:b"}).out, table);
    EXPECT_THAT(asked("openSnapListByVolume"),
                AllOf(HasSubstr(">filer1</ns1:exportfiler>"), HasSubstr(">/vol/a:b</ns1:exportpath>")));
    EXPECT_EQ(count("closeSnapList"), 2);
}

TEST_F(ProbeLists, SnapshotsWantsAnLsuOrAVolumeAndNotBoth)
{
    EXPECT_EQ(run({"snapshots", kName}).exit_code, 2);
    EXPECT_EQ(run({"snapshots", kName, "vol1", "--volume", "nfs:a"}).exit_code, 2);
    const ProcessResult result = run({"snapshots", kName, "--volume", "tape:a"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_THAT(result.err, HasSubstr("--volume"));
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeLists, RollbackCheckSendsTheSnapshotsToRollBackOverAndListsTheAnswer)
{
    service.answer_first("listSnap", element("snapDef", element("snapName", "met")));
    const ProcessResult result = run({"rollback", "check", kName, "vol1", "nightly.2", "--volume",
                                      "nfs:filer1:/vol/a", "--over", "one", "--over", "two", "--json"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(json::parse(result.out).at("snapshots").at(0).at("name"), "met");
    EXPECT_THAT(asked("validateRollback"),
                AllOf(HasSubstr("nightly.2"), HasSubstr("<ns1:numRollbacks>2</ns1:numRollbacks>"),
                      HasSubstr(">one<"), HasSubstr(">two<"), HasSubstr(">filer1</ns1:exportHost>")));
    EXPECT_EQ(count("closeSnapList"), 1);
}

TEST_F(ProbeCatalogueTest, LsuShowsItsProperties)
{
    service.answer("getLSUPropByName",
                   element("info", element("server", "srv") +
                                       element("def", element("name", "vol1") + element("flags", "-3")) +
                                       element("capacity", "9223372036854775807") + element("used", "-1") +
                                       element("images", "14")));
    const ProcessResult result = run({"lsu", kName, "vol1"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(result.out,
                AllOf(StartsWith("Name                 vol1\n"),
                      HasSubstr("\nCapacity             8.0 EiB\n"), HasSubstr("\nUsed                 -1\n"),
                      HasSubstr("\nLabel                -\n")));
    const json document = json::parse(run({"lsu", kName, "vol1", "--json"}).out);
    EXPECT_EQ(document.at("flags"), -3);
    EXPECT_EQ(document.at("used"), -1);
    EXPECT_EQ(document.at("capacity"), 9223372036854775807);
    EXPECT_THAT(run({"lsu", kName, "vol1", "--separator", "="}).out,
                AllOf(HasSubstr("\nimages=14\n"), HasSubstr("\ncapacity=9223372036854775807\n")));
    EXPECT_THAT(run({"lsu", kName, "vol1", "--bytes"}).out,
                HasSubstr("\nCapacity             9223372036854775807\n"));
}

TEST_F(ProbeCatalogueTest, LsuThatIsRefusedShowsNothingAndClosesTheServer)
{
    service.refuse("getLSUPropByName", "no such LSU", 2060013);
    const ProcessResult result = run({"lsu", kName, "vol9"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, HasSubstr("no such LSU"));
    EXPECT_EQ(service.operations().back(), "closeServer");
}

TEST_F(ProbeCatalogueTest, NamesThatWouldBeCutAreRefused)
{
    EXPECT_EQ(run({"lsu", kName, std::string(1024, 'x')}).exit_code, 2);
    EXPECT_EQ(run({"image", "show", kName, "vol1", "b", std::string(32, '1')}).exit_code, 2);
    EXPECT_EQ(run({"snapshot", "show", kName, "vol1", std::string(2048, 'x')}).exit_code, 2);
    EXPECT_THAT(service.operations(), IsEmpty());
}

class ProbeReplication : public ProbeCatalogueTest
{
  protected:
    ProbeReplication()
    {
        const auto partner = [](const std::string& n) {
            return element("item", element("server", "s" + n) + element("lsu", "l" + n));
        };
        service.answer("getLSUReplicationProp",
                       element("props", element("source", partner("1")) +
                                            element("target", partner("2") + partner("3"))));
    }
};

TEST_F(ProbeReplication, ShowsThePartnersThatWereAskedFor)
{
    const ProcessResult result = run({"replication", kName, "vol1", "--sources", "1", "--targets", "2"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.out,
              "ROLE    SERVER  LSU\nsource  s1      l1\ntarget  s2      l2\ntarget  s3      l3\n");
}

TEST_F(ProbeReplication, TakesTheNumbersFromThePropertiesIfNoneAreGiven)
{
    service.answer("getLSUPropByName",
                   element("info", element("def", element("repSources", "1") + element("repTargets", "2"))));
    const ProcessResult result = run({"replication", kName, "vol1", "--json"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(json::parse(result.out).at("partners").size(), 3U);
}

TEST_F(ProbeReplication, RefusesNumbersOfTheServiceThatCannotBe)
{
    for (const char* number : {"-1", "2147483647"}) {
        service.answer("getLSUPropByName", element("info", element("def", element("repSources", number))));
        const ProcessResult result = run({"replication", kName, "vol1"});
        EXPECT_EQ(result.exit_code, 4);
        EXPECT_THAT(result.err, StartsWith("replication count: "));
    }
    EXPECT_EQ(count("getLSUReplicationProp"), 0);
}

TEST_F(ProbeReplication, AnotherNumberOfPartnersIsAnError)
{
    const ProcessResult result = run({"replication", kName, "vol1", "--sources", "2", "--targets", "2"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(StartsWith("STS_EBADARG(2060022): "), HasSubstr("Number of sources")));
}

TEST_F(ProbeCatalogueTest, ImageShowShowsItsProperties)
{
    service.answer(
        "getImagePropByName",
        element("info", element("def", element("basename", "backup") + element("date", "20240131") +
                                           element("policy", "daily")) +
                            element("server", "srv") + element("lsu", "vol1") + element("size", "-3") +
                            element("status", "6")));
    const ProcessResult result = run({"image", "show", kName, "vol1", "backup", "20240131", "--json"});
    EXPECT_EQ(result.exit_code, 0);
    const json document = json::parse(result.out);
    EXPECT_EQ(document.at("basename"), "backup");
    EXPECT_EQ(document.at("policy"), "daily");
    EXPECT_EQ(document.at("size"), -3);
    EXPECT_THAT(asked("getImagePropByName"),
                AllOf(HasSubstr(">backup</ns1:basename>"), HasSubstr(">20240131</ns1:date>")));
    EXPECT_THAT(run({"image", "show", kName, "vol1", "backup", "20240131"}).out,
                StartsWith("Base name         backup\n"));
}

TEST_F(ProbeCatalogueTest, SnapshotShowShowsItsPropertiesAndItsVolume)
{
    const auto info = [](const std::string& volume) {
        return element("snapInfo", element("snapDef", element("snapName", "nightly.0")) +
                                       element("snapServer", "srv") + element("snapLsu", "vol1") +
                                       element("snapVolSpec", volume) + element("snapStatus", "-4") +
                                       element("snapSize", "5"));
    };
    service.answer("getSnapPropByName",
                   info(element("cifs", element("exportHost", "host") + element("shareName", "C:\\x"))));
    const ProcessResult result = run({"snapshot", "show", kName, "vol1", "nightly.0"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(result.out,
                AllOf(StartsWith("Snapshot  nightly.0\n"), HasSubstr("\nVolume    cifs:host:C\\:\\\\x\n"),
                      HasSubstr("\nSize      5 B\n")));
    service.answer("getSnapPropByName", info(element("device", element("devicePath", "/dev/sda"))));
    EXPECT_EQ(json::parse(run({"snapshot", "show", kName, "vol1", "nightly.0", "--json"}).out).at("volume"),
              "");
}

} // namespace
