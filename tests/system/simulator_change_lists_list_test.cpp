#include "tests/system/simulator_change_lists.h"

namespace
{

using namespace simulator_change_lists;

const std::string kOlder = "/vol/projects/.snapshot/weekly.1/";
const std::string kNewer = "/vol/projects/.snapshot/weekly.2/";

class SimulatorChangeLists : public Lister
{
};

TEST_F(SimulatorChangeLists, EntriesStandBelowTheSnapshotThatHoldsThemAndAreEscaped)
{
    const Batch batch = next(open_changes("weekly.1", "weekly.2"));
    EXPECT_THAT(batch.names,
                ElementsAre(kNewer + "bridge", kNewer + "bridge/L\\c3\\a4ngsschnitt.pdf",
                            kNewer + "bridge/plan.dwg", kNewer + "tunnel", kOlder + "tunnel/old notes.txt"));
    EXPECT_THAT(batch.changes, ElementsAre("2", "0", "2", "2", "1"));
    EXPECT_EQ(batch.count, "5");
    EXPECT_EQ(batch.error, "0");
    EXPECT_EQ(batch.retry_interval, "0");
    EXPECT_THAT(names(open_changes("weekly.2", "weekly.3")),
                testing::Contains("/vol/projects/.snapshot/weekly.3/tunnel/back\\5cslash.txt"));
}

TEST_F(SimulatorChangeLists, AnEntryTellsAllItsAttributes)
{
    const std::string body = list(open_changes("weekly.2", "weekly.3"), {"latest"}).body;
    const std::string time = "1768780800";
    EXPECT_EQ(text_of(body, "item"),
              element("name", "/vol/projects/.snapshot/weekly.3/latest") + element("ftype", "5") +
                  element("changetype", "0") + element("modtime", time) + element("accesstime", time) +
                  element("createtime", time) + element("changetime", time) + element("size", "6") +
                  element("ownerid", "0") + element("groupid", "0") + element("permissions", "511") +
                  element("inode", "72") + element("gnum", "0"));
}

TEST_F(SimulatorChangeLists, TheSameSnapshotTwiceDiffersInNothing)
{
    EXPECT_THAT(names(open_changes("weekly.2", "weekly.2")), IsEmpty());
}

TEST_F(SimulatorChangeLists, TheEndIsNoEntriesAsOftenAsItIsAskedFor)
{
    const std::string token = open_changes("weekly.1", "weekly.2");
    EXPECT_EQ(names(token).size(), 5U);
    for (int i = 0; i < 3; ++i) {
        const Batch batch = next(token);
        EXPECT_EQ(batch.count, "0");
        EXPECT_EQ(batch.error, "0");
        EXPECT_THAT(batch.names, IsEmpty());
    }
}

TEST_F(SimulatorChangeLists, AListThatIsClosedIsKnownNoMore)
{
    const std::string token = open_changes("weekly.1", "weekly.2");
    EXPECT_EQ(ask("closeSnapChangeList", handle(token)).status, 200);
    EXPECT_EQ(fault_code(list(token)), kBadHandle);
    EXPECT_EQ(fault("closeSnapChangeList", handle(token)), kBadHandle);
    EXPECT_EQ(fault_code(list("0123456789abcdef0123456789abcdef")), kBadHandle);
    EXPECT_EQ(fault("listFile", nil("fileListHandle")), kMissingElement);
    EXPECT_EQ(fault("closeSnapChangeList", element("fileListHandle", nil("token"))), kMissingElement);
}

TEST_F(SimulatorChangeLists, ASessionThatEndsTakesItsListsAlongAndNoOthers)
{
    const std::string other = open_server();
    const std::string mine = open_changes("weekly.1", "weekly.2");
    const std::string theirs =
        open("openSnapChangeList", lsu(other, "projects") + definition("baseSnapshot", "weekly.1") +
                                       definition("diffSnapshot", "weekly.2") +
                                       element("sourceVolSpec", ndmp("filer1", "/vol/projects")) +
                                       element("diffFlag", "0"));
    EXPECT_EQ(ask("closeServer", server_handle(server_)).status, 200);
    EXPECT_EQ(fault_code(list(mine)), kBadHandle);
    EXPECT_EQ(names(theirs).size(), 5U);
}

TEST_F(SimulatorChangeLists, AnOpenThatMakesNoSenseIsRefused)
{
    const auto refused = [this](const std::string& content) { return fault("openSnapChangeList", content); };
    EXPECT_EQ(refused(request("nope", "weekly.2")), kUnknownSnapshot);
    EXPECT_EQ(refused(request("weekly.1", "nope")), kUnknownSnapshot);
    EXPECT_EQ(refused(request("weekly.1", "weekly.2", ndmp("filer1", "/vol/nope"))), kUnknownVolume);
    EXPECT_EQ(refused(request("weekly.1", "weekly.2", ndmp("filer2", "/vol/projects"))), kUnknownVolume);
    EXPECT_EQ(refused(request("weekly.1", "weekly.2", element("volumeType", "4"))), kMissingElement);
    EXPECT_EQ(refused(request("weekly.1", "weekly.2", home_volume(), "nope")), kUnknownLsu);
    // No snapshot of an NFS volume has an export path of its own.
    EXPECT_EQ(refused(request("nightly.0105", "nightly.0106", home_volume(), "home")), kBadValue);
    EXPECT_EQ(refused(lsu(server_, "projects") + nil("baseSnapshot") +
                      definition("diffSnapshot", "weekly.2") +
                      element("sourceVolSpec", ndmp("filer1", "/vol/projects")) + element("diffFlag", "0")),
              kMissingElement);
    EXPECT_EQ(refused(lsu("nope", "projects") + definition("baseSnapshot", "weekly.1") +
                      definition("diffSnapshot", "weekly.2") +
                      element("sourceVolSpec", ndmp("filer1", "/vol/projects")) + element("diffFlag", "0")),
              kBadHandle);
}

TEST_F(SimulatorChangeLists, TheSourceVolumeMayBeTheLsusOrOneOfItsSnapshots)
{
    for (const std::string& volume :
         {ndmp("filer1", "/vol/projects"), ndmp("filer1", "/vol/projects/.snapshot/weekly.3"),
          nfs("filer1", "/vol/projects", "")}) {
        EXPECT_EQ(names(open("openSnapChangeList", request("weekly.1", "weekly.2", volume))).size(), 5U);
    }
}

TEST_F(SimulatorChangeLists, AFilterLetsPassWhatLiesAtOrBelowAPathOfWholeComponents)
{
    const auto passed = [this](const std::vector<std::string>& filters) {
        return names(open_changes("weekly.1", "weekly.2"), filters);
    };
    const std::vector<std::string> tunnel = {kNewer + "tunnel", kOlder + "tunnel/old notes.txt"};
    EXPECT_EQ(passed({"tunnel"}), tunnel);
    EXPECT_EQ(passed({"/tunnel/"}), tunnel);
    EXPECT_THAT(passed({"tunn"}), IsEmpty());
    EXPECT_THAT(passed({"tunnel/old"}), IsEmpty());
    EXPECT_THAT(passed({"tunnel/../bridge"}), IsEmpty());
    EXPECT_THAT(passed({"nope", "/tunnel/old notes.txt"}), ElementsAre(kOlder + "tunnel/old notes.txt"));
    // The whole name, of the one snapshot or of the other.
    EXPECT_THAT(passed({kNewer + "tunnel"}), ElementsAre(kNewer + "tunnel"));
    EXPECT_THAT(passed({kOlder + "tunnel"}), ElementsAre(kOlder + "tunnel/old notes.txt"));
    EXPECT_THAT(passed({"bridge/L\\c3\\a4ngsschnitt.pdf"}),
                ElementsAre(kNewer + "bridge/L\\c3\\a4ngsschnitt.pdf"));
    EXPECT_THAT(passed({"bridge/L&#xc3;&#xa4;ngsschnitt.pdf"}),
                ElementsAre(kNewer + "bridge/L\\c3\\a4ngsschnitt.pdf"));
    for (const char* all : {"", "/", "///", "/vol", "/vol/projects"}) {
        EXPECT_EQ(passed({all}).size(), 5U) << all;
    }
}

TEST_F(SimulatorChangeLists, FiltersOfManyKindsAreTakenAsTheyAre)
{
    std::vector<std::string> many(5000, std::string(100, 'x'));
    for (std::size_t i = 0; i < many.size(); ++i) many[i] += std::to_string(i) + "/%s%n/&lt;&amp;../*?[]";
    EXPECT_THAT(names(open_changes("weekly.1", "weekly.2"), many), IsEmpty());
    many.emplace_back("tunnel");
    EXPECT_EQ(names(open_changes("weekly.1", "weekly.2"), many).size(), 2U);
    EXPECT_THAT(names(open_changes("weekly.1", "weekly.2"), {std::string(500000, '/') + "x"}), IsEmpty());
}

TEST_F(SimulatorChangeLists, ACountThatIsNotThatOfTheFiltersIsRefusedAndLosesNothing)
{
    const std::string token = open_changes("weekly.1", "weekly.2");
    for (const int count : {0, 2, -1, 2147483647}) {
        EXPECT_EQ(fault("listFile", filtered(token, {"tunnel"}, count)), kBadValue) << count;
    }
    EXPECT_EQ(fault("listFile", handle(token) + element("filterPathNum", "1") + nil("filterPathList")),
              kBadValue);
    EXPECT_EQ(
        text_of(ask("listFile", handle(token) + element("filterPathNum", "0") + nil("filterPathList")).body,
                "numFiles"),
        "5");
}

class SimulatorWithSmallBatches : public ScenarioLister
{
  protected:
    SimulatorWithSmallBatches() : ScenarioLister(std::string(R"({"batch": 2, "pace": 7})")) {}
};

TEST_F(SimulatorWithSmallBatches, AListComesInBatchesWithAPauseAheadOfEachButTheFirst)
{
    const std::string token = open_pair();
    const std::string at = "/vol/data/.snapshot/b/file";
    Batch batch = next(token);
    EXPECT_THAT(batch.names, ElementsAre(at + "0", at + "1"));
    EXPECT_EQ(batch.retry_interval, "7");
    EXPECT_EQ(batch.error, "0");
    batch = next(token);
    EXPECT_THAT(batch.names, ElementsAre(at + "2", at + "3"));
    EXPECT_EQ(batch.retry_interval, "7");
    batch = next(token);
    EXPECT_THAT(batch.names, ElementsAre(at + "4"));
    EXPECT_EQ(batch.retry_interval, "0");
    EXPECT_EQ(next(token).count, "0");
}

TEST_F(SimulatorWithSmallBatches, FiltersThatChangeCountForTheirCallAndFillABatch)
{
    const std::string token = open_pair();
    const std::string at = "/vol/data/.snapshot/b/file";
    EXPECT_THAT(next(token, {"file1", "file2"}).names, ElementsAre(at + "1", at + "2"));
    EXPECT_THAT(names(token), ElementsAre(at + "3", at + "4"));
}

TEST_F(SimulatorWithSmallBatches, RequestsThatComeToNothingInBetweenLoseAndDoubleNothing)
{
    const std::string token = open_pair();
    std::vector<std::string> all = next(token).names;
    {
        ClientSocket gone(simulator_.http_port());
        const std::string whole = post_text(filtered(token, {}, 0));
        gone.send(whole.substr(0, whole.size() / 2));
    }
    EXPECT_EQ(fault("listFile", filtered(token, {"x"}, 3)), kBadValue);
    for (const std::string& name : names(token)) all.push_back(name);
    const std::string at = "/vol/data/.snapshot/b/file";
    EXPECT_THAT(all, ElementsAre(at + "0", at + "1", at + "2", at + "3", at + "4"));
}

class SimulatorThatIsBusyAtFirst : public ScenarioLister
{
  protected:
    SimulatorThatIsBusyAtFirst() : ScenarioLister(std::string(R"({"busy": 2, "retryInterval": 30})")) {}
};

TEST_F(SimulatorThatIsBusyAtFirst, EachListIsPutOffAheadOfItsFirstBatch)
{
    for (int list = 0; list < 2; ++list) {
        const std::string token = open_pair();
        for (int i = 0; i < 2; ++i) {
            const Batch batch = next(token);
            EXPECT_EQ(batch.error, std::to_string(kBusy));
            EXPECT_EQ(batch.retry_interval, "30");
            EXPECT_EQ(batch.count, "0");
        }
        const Batch batch = next(token);
        EXPECT_EQ(batch.error, "0");
        EXPECT_EQ(batch.retry_interval, "0");
        EXPECT_EQ(batch.count, "5");
    }
}

class SimulatorOverDirectories : public ScenarioLister
{
  protected:
    SimulatorOverDirectories()
        : ScenarioLister(std::string("{}"), std::string(R"("tree": "a")"), std::string(R"("tree": "b")"))
    {
        std::filesystem::create_directories(place("a"));
        std::filesystem::create_directories(place("b/sub"));
        std::ofstream(place("b/sub/new")) << "12345";
    }
};

TEST_F(SimulatorOverDirectories, ATreeIsReadWhenAListIsOpenedAndNotAgain)
{
    const std::string token = open_pair();
    std::filesystem::remove_all(place("b/sub"));
    EXPECT_THAT(names(token), ElementsAre("/vol/data/.snapshot/b/sub", "/vol/data/.snapshot/b/sub/new"));
    EXPECT_THAT(names(open_pair()), IsEmpty());
}

TEST_F(SimulatorOverDirectories, ATreeThatCannotBeReadFailsTheOpenUntilItCan)
{
    std::filesystem::rename(place("b"), place("gone"));
    EXPECT_EQ(fault("openSnapChangeList", pair()), kUnreadableTree);
    std::filesystem::create_symlink("nowhere", place("b"));
    EXPECT_EQ(fault("openSnapChangeList", pair()), kUnreadableTree);
    std::filesystem::remove(place("b"));
    std::filesystem::rename(place("gone"), place("b"));
    EXPECT_EQ(names(open_pair()).size(), 2U);
}

} // namespace
