#include "tests/system/simulator_operations.h"

#include <fstream>

namespace
{

using namespace simulator_operations;

class SimulatorTopologies : public OperationsClient
{
  protected:
    std::string validated(const std::string& text, const Targets& at) const
    {
        return end(start("asyncValidateSnapByName", topology(text, at)));
    }
    std::string partners(const std::string& token, const std::string& of) const
    {
        return text_of(
            ask("getLSUReplicationProp", lsu(token, of) + number("nsource", 0) + number("ntarget", 0)).body,
            "props");
    }
};

TEST_F(SimulatorTopologies, AValidationGivesBackTheTextOrMakesOneOfTheTargets)
{
    const std::string given = validated("mine", {{"", "side"}});
    EXPECT_THAT(given, HasSubstr(number("resultSnapType", 1) +
                                 element("validateSnap", element("targetTopology", "mine"))));
    EXPECT_EQ(text_of(validated("", {{"Far:there", "vault"}, {"", "side"}}), "targetTopology"),
              "Near:filer/home&gt;Far:there/vault;Near:filer/home&gt;Near:filer/side");
    EXPECT_EQ(text_of(validated("", {}), "targetTopology"), "");
}

TEST_F(SimulatorTopologies, ATextOrATargetThatCannotBeIsRefused)
{
    EXPECT_EQ(fault("asyncValidateSnapByName", topology(std::string(4096, 't'), {})), kBadValue);
    EXPECT_EQ(fault("asyncValidateSnapByName", topology("", {{"", "nope"}})), kUnknownLsu);
    EXPECT_EQ(fault("asyncValidateSnapByName", topology("", {{std::string(512, 's'), "side"}})), kBadValue);
}

TEST_F(SimulatorTopologies, AProvisionMakesThePartnersOnBothSidesAtItsEnd)
{
    const std::string request = topology("", {{"Far:there", "vault"}}) + kSet;
    const std::string id = start("asyncProvisionTopology", request);
    EXPECT_THAT(partners(near_, "home"), Not(HasSubstr("vault")));
    EXPECT_EQ(error_of(wait(id)), kBusy);
    const std::string result = text_of(wait(id).body, "result");
    EXPECT_THAT(result, HasSubstr(number("resultSnapType", 7) +
                                  element("provisionTopology",
                                          element("targetTopology", "Near:filer/home&gt;Far:there/vault"))));
    const std::string target = element("item", element("server", "Far:filer") + element("lsu", "vault"));
    const std::string source = element("item", element("server", "Near:else") + element("lsu", "home"));
    EXPECT_EQ(text_of(partners(near_, "home"), "target"), target);
    EXPECT_EQ(text_of(partners(far_, "vault"), "source"), source);
    end(start("asyncProvisionTopology", request));
    EXPECT_EQ(text_of(partners(near_, "home"), "target"), target) << "a partner is told once";
}

class SimulatorDifferences : public OperationsClient
{
};

TEST_F(SimulatorDifferences, ADifferenceTellsWhatIsCreatedDeletedAndChangedSinceTheSnapshot)
{
    const std::string result = end(start("asyncGetSnapDiff", diff("old")));
    EXPECT_EQ(text_of(result, "numDiffs"), "3");
    EXPECT_EQ(text_of(result, "resultSnapType"), "6");
    EXPECT_THAT(rows(result), ElementsAre("a 1 1", "b 1 2", "d 2 0"));
}

TEST_F(SimulatorDifferences, ADifferenceToNamedVolumesLooksAtEachOfTheirLsusOnce)
{
    EXPECT_THAT(rows(end(start("asyncGetSnapDiff", diff("old", {home_volume(), home_volume()})))),
                ElementsAre("a 1 1", "b 1 2", "d 2 0"));
    EXPECT_THAT(rows(end(start("asyncGetSnapDiff", diff("old", {vault()}, far_)))),
                ElementsAre("a 1 1", "b 1 1", "c 1 1"));
}

TEST_F(SimulatorDifferences, ADifferenceOfNothingHasNoRows)
{
    end(start("asyncCreateSnapByName", create("fresh")));
    const std::string result = end(start("asyncGetSnapDiff", diff("fresh")));
    EXPECT_EQ(text_of(result, "numDiffs"), "0");
    EXPECT_THAT(rows(result), IsEmpty());
}

TEST_F(SimulatorDifferences, AnUnknownSnapshotVolumeOrServerIsRefused)
{
    EXPECT_EQ(fault("asyncGetSnapDiff", diff("nope")), kUnknownSnapshot);
    EXPECT_EQ(fault("asyncGetSnapDiff", diff("old", {vault()})), kUnknownVolume);
    EXPECT_EQ(fault("asyncGetSnapDiff", diff("old", {}, "nope")), kBadHandle);
    EXPECT_EQ(fault("asyncGetSnapDiff", diff("old", {element("volumeType", "0")})), kMissingElement);
}

class SimulatorWithItsOwnScenario : public OperationsClient
{
  protected:
    SimulatorWithItsOwnScenario() : OperationsClient(with_settings()) {}

  private:
    static std::string with_settings()
    {
        const std::string text = run_process(SIMULATOR_PROGRAM, {"--print-scenario"}).out;
        return "{" + settings() + ", " + text.substr(text.find('"'));
    }
};

TEST_F(SimulatorWithItsOwnScenario, HomesSnapshotsShowHowItsFilesCameToBe)
{
    const std::string server = open_server();
    const auto difference = [&](const std::string& name) {
        return rows(end(start("asyncGetSnapDiff", server_handle(server) + definition("snapshot", name) +
                                                      element("targetServerHandle", element("token")) +
                                                      nil("rollbackList") + number("numRollbacks", 0) +
                                                      number("diffFlag", 0))));
    };
    EXPECT_THAT(difference("nightly.0105"),
                ElementsAre("alice 2 2", "alice/draft.odt 1 1", "alice/report.odt 1 2", "bob 2 2",
                            "bob/latest 5 0", "bob/photos.tar 1 0"));
    EXPECT_THAT(difference("nightly.0106"),
                ElementsAre("alice 2 2", "alice/draft.odt 1 1", "alice/report.odt 1 2", "bob/latest 5 0"));
    EXPECT_THAT(difference("nightly.0107"),
                ElementsAre("alice 2 2", "alice/draft.odt 1 1", "alice/report.odt 1 2"));
}

class SimulatorWithATree : public OperationsClient
{
  protected:
    SimulatorWithATree() : SimulatorWithATree(new TemporaryFolder()) {}

    void write(const std::string& name) const { std::ofstream(*folder_ / "tree" / name) << "12345"; }

    const std::unique_ptr<const TemporaryFolder> folder_;

  private:
    // The simulator reads the scenario at its start and the tree later.
    explicit SimulatorWithATree(const TemporaryFolder* folder)
        : OperationsClient(with_tree(*folder), scenario("", R"("servers": [{"prefix": "Near", "lsus": [
              {"name": "home", "tree": "tree", "volumes": [
                {"nfs": {"exportHost": "filer1", "exportName": "/vol/home", "exportPath": ""}}]}]},
              {"prefix": "Far"}])")),
          folder_(folder)
    {
    }
    static const TemporaryFolder& with_tree(const TemporaryFolder& folder)
    {
        std::filesystem::create_directory(folder / "tree");
        return folder;
    }
};

TEST_F(SimulatorWithATree, ASnapshotShowsTheDirectoryAsItWasAtTheStartOfTheOperation)
{
    write("early");
    const std::string id = start("asyncCreateSnapByName", create("fresh"));
    write("late\x01");
    end(id);
    EXPECT_EQ(text_of(properties(near_, "home", "fresh"), "snapSize"), "5");
    EXPECT_THAT(rows(end(start("asyncGetSnapDiff", diff("fresh")))), ElementsAre("late\\01 1 0"));
}

TEST_F(SimulatorWithATree, ADirectoryThatIsGoneRefusesTheStart)
{
    std::filesystem::remove_all(*folder_ / "tree");
    EXPECT_EQ(fault("asyncCreateSnapByName", create("fresh")), kUnreadableTree);
}

} // namespace
