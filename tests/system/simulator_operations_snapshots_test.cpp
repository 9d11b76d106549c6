#include "tests/system/simulator_operations.h"

namespace
{

using namespace simulator_operations;

class SimulatorOperations : public OperationsClient
{
};

std::string state(long bytes, long error, long interval, long type, const std::string& arm = "")
{
    return number("totalBytesTransferred", bytes) + number("error", error) +
           number("retryInterval", interval) + number("resultSnapType", type) + arm;
}

std::string made(const std::string& arm, const std::string& name, const std::string& server,
                 const std::string& of)
{
    return element(arm, element("targetSnapName", name) +
                            element("targetSnapLsu", element("server", server) + element("lsu", of)));
}

TEST_F(SimulatorOperations, ACreationMovesItsBytesInTimeAndTellsWhatItMadeAtItsEnd)
{
    const std::string id = start("asyncCreateSnapByName", create("fresh"));
    EXPECT_EQ(id.size(), 32U);
    const auto result = [&] { return text_of(wait(id).body, "result"); };
    EXPECT_EQ(result(), state(100, kBusy, 7, 0));
    EXPECT_EQ(result(), state(200, kBusy, 7, 0));
    const std::string ended = state(300, 0, 0, 2, made("createSnap", "fresh", "Near:filer", "home"));
    EXPECT_EQ(result(), ended);
    EXPECT_EQ(result(), ended);
}

TEST_F(SimulatorOperations, ACreatedSnapshotAppearsAtTheEndAndNotBefore)
{
    const std::string list = open("openSnapList", lsu(near_, "home"));
    start("asyncCreateSnapByName", create("fresh"));
    EXPECT_EQ(properties(near_, "home", "fresh"), "");
    EXPECT_EQ(used(), "1000");
    EXPECT_EQ(properties(near_, "home", "fresh"),
              definition("snapDef", "fresh") + element("snapServer", "Near:filer") +
                  element("snapLsu", "home") +
                  element("snapVolSpec", nfs("filer1", "/vol/home", "/vol/home")) + number("snapStatus", 0) +
                  number("snapSize", 300));
    EXPECT_EQ(used(), "1300");
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old", "new", "fresh"));
    EXPECT_THAT(rest(kSnapshots, list), ElementsAre("old", "new", kEnd));
    EXPECT_EQ(ask("deleteSnap", lsu(near_, "home") + snapshot("fresh")).status, 200);
    EXPECT_EQ(used(), "1000");
}

TEST_F(SimulatorOperations, ACreationWithTargetsLiesAtThemAndTellsTheFirst)
{
    const std::string result =
        end(start("asyncCreateSnapByName", create("fresh", {{"Far:there", "vault"}, {"", "side"}})));
    EXPECT_THAT(result, HasSubstr(made("createSnap", "fresh", "Far:there", "vault")));
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old", "new"));
    EXPECT_THAT(text_of(properties(near_, "side", "fresh"), "exportHost"), "filer1");
    EXPECT_THAT(text_of(properties(far_, "vault", "fresh"), "exportHost"), "vault1");
}

TEST_F(SimulatorOperations, ACopyAppearsOnTheServerThatItsTargetNames)
{
    const std::string id =
        start("asyncCopySnapByName", copy("old", {{"Far:there", "spare"}, {"Far:there", "vault"}}));
    EXPECT_EQ(properties(far_, "spare", "old"), "");
    EXPECT_EQ(text_of(wait(id).body, "result"), state(2000, kBusy, 7, 0));
    EXPECT_EQ(text_of(wait(id).body, "result"),
              state(3000, 0, 0, 3, made("copySnap", "old", "Far:there", "spare")));
    const std::string copied = properties(far_, "spare", "old");
    EXPECT_EQ(text_of(copied, "snapType") + text_of(copied, "snapFlags") + text_of(copied, "snapSaveas"),
              "456");
    EXPECT_EQ(text_of(copied, "snapSize"), "3000");
    EXPECT_EQ(text_of(copied, "exportHost"), "filer1") << "where the LSU has no volume, it is the source's";
    EXPECT_THAT(snapshots(far_, "vault"), ElementsAre("kept", "old"));
}

TEST_F(SimulatorOperations, ACopyHoldsWhatItsSourceHeld)
{
    end(start("asyncCopySnapByName", copy("old", {{"", "side"}})));
    ask("deleteSnap", lsu(near_, "home") + snapshot("old"));
    EXPECT_THAT(rows(end(start("asyncGetSnapDiff", diff("old", {home_volume()})))),
                ElementsAre("a 1 1", "b 1 2", "d 2 0"));
}

TEST_F(SimulatorOperations, AnImportMakesASnapshotKnownWithoutMovingAByte)
{
    const std::string id = start("asyncImportSnapByName", import("found"));
    EXPECT_EQ(end(id), state(0, 0, 0, 8, made("importSnap", "found", "Near:filer", "home")));
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old", "new", "found"));
    EXPECT_EQ(text_of(properties(near_, "home", "found"), "snapSaveas"), "3");
}

TEST_F(SimulatorOperations, APreparationChangesNothingAndHasNoResult)
{
    EXPECT_EQ(end(start("asyncPrepareSnapByName", create("fresh"))), state(0, 0, 0, 4));
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old", "new"));
    EXPECT_EQ(fault("asyncPrepareSnapByName", create("old")), kInUse);
}

TEST_F(SimulatorOperations, APostProcessingChangesTheSnapshotsStatusAtItsEnd)
{
    const std::string id = start("asyncPostProcessSnapByName", post_process("old"));
    EXPECT_EQ(text_of(properties(near_, "home", "old"), "snapStatus"), "0");
    EXPECT_EQ(error_of(wait(id)), kBusy);
    EXPECT_EQ(text_of(properties(near_, "home", "old"), "snapStatus"), "1");
    EXPECT_EQ(text_of(wait(id).body, "result"), state(0, 0, 0, 5));
}

TEST_F(SimulatorOperations, AStartThatMakesNoSenseIsRefusedAtOnce)
{
    const auto code = [&](const std::string& content) { return fault("asyncCreateSnapByName", content); };
    EXPECT_EQ(code(create("old")), kInUse);
    EXPECT_EQ(code(create("")), kBadValue);
    EXPECT_EQ(code(create(std::string(2048, 'n'))), kBadValue);
    EXPECT_EQ(code(create("fresh", {{"Far:there", "nope"}})), kUnknownLsu);
    EXPECT_EQ(code(create("fresh", {{"Nowhere:there", "vault"}})), kUnknownServer);
    EXPECT_EQ(code(create("fresh", {{"Far:a", "vault"}, {"Far:b", "vault"}})), kBadValue);
    EXPECT_EQ(code(server_handle(near_) + element("sourceVolSpec", vault()) +
                   definition("targetSnapDef", "fresh") + targets({}) + kSet),
              kUnknownVolume);
    EXPECT_EQ(code(server_handle(near_) + element("sourceVolSpec", home_volume()) +
                   definition("targetSnapDef", "fresh") + nil("targetLSUSpecs") + number("ntargets", 1) +
                   kSet),
              kBadValue);
    EXPECT_EQ(code(server_handle(near_) + element("sourceVolSpec", home_volume()) + nil("targetSnapDef") +
                   targets({}) + kSet),
              kMissingElement);
    EXPECT_EQ(fault("asyncCopySnapByName", copy("nope", {{"", "side"}})), kUnknownSnapshot);
    EXPECT_EQ(fault("asyncCopySnapByName", copy("old", {})), kBadValue);
    EXPECT_EQ(fault("asyncCopySnapByName", copy("old", {{"", "home"}})), kInUse);
    EXPECT_EQ(fault("asyncPostProcessSnapByName", post_process("nope")), kUnknownSnapshot);
    EXPECT_EQ(fault("asyncImportSnapByName", import("new")), kInUse);
}

TEST_F(SimulatorOperations, ANameThatIsTakenMeanwhileMakesTheOperationFailAtItsEnd)
{
    const std::string first = start("asyncCreateSnapByName", create("fresh"));
    const std::string second = start("asyncCreateSnapByName", create("fresh", {{"", "side"}, {"", "home"}}));
    EXPECT_EQ(error_of(wait(first)), kBusy);
    EXPECT_EQ(error_of(wait(first)), 0);
    EXPECT_EQ(text_of(wait(second).body, "result"), state(300, kInUse, 0, 0));
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old", "new", "fresh"));
    EXPECT_THAT(snapshots(near_, "side"), IsEmpty()) << "at all targets or at none";
}

TEST_F(SimulatorOperations, ASnapshotThatIsDeletedMeanwhileMakesTheOperationFailAtItsEnd)
{
    const std::string copying = start("asyncCopySnapByName", copy("new", {{"", "side"}}));
    ask("deleteSnap", lsu(near_, "home") + snapshot("new"));
    EXPECT_EQ(error_of(wait(copying)), kBusy);
    EXPECT_EQ(error_of(wait(copying)), kUnknownSnapshot);
    EXPECT_THAT(snapshots(near_, "side"), IsEmpty());

    const std::string processing = start("asyncPostProcessSnapByName", post_process("old"));
    const std::string comparing = start("asyncGetSnapDiff", diff("old"));
    ask("deleteSnap", lsu(near_, "home") + snapshot("old"));
    EXPECT_EQ(error_of(wait(processing)), kUnknownSnapshot);
    EXPECT_EQ(error_of(wait(comparing)), kUnknownSnapshot);
}

class SimulatorRollbacks : public OperationsClient
{
};

TEST_F(SimulatorRollbacks, ARollbackTakesNewerSnapshotsAwayAndBringsTheOldContentBack)
{
    EXPECT_EQ(fault("asyncRollbackSnap", rollback("old")), kSnapshotsInTheWay);
    const std::string id = start("asyncRollbackSnap", rollback("old", {"new", "nope"}));
    EXPECT_EQ(text_of(properties(near_, "home", "new"), "snapSize"), "10");
    EXPECT_EQ(text_of(wait(id).body, "result"), state(2000, kBusy, 7, 0));
    EXPECT_EQ(text_of(wait(id).body, "result"), state(3000, 0, 0, 0));
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old"));
    const std::string differences = end(start("asyncGetSnapDiff", diff("old")));
    EXPECT_EQ(text_of(differences, "numDiffs"), "0");
    EXPECT_EQ(used(), "990");
}

TEST_F(SimulatorRollbacks, ARollbackOfAnotherServersVolumeOverwritesIt)
{
    EXPECT_EQ(fault("asyncRollbackSnap", rollback("new", {}, far_, vault())), kSnapshotsInTheWay);
    EXPECT_EQ(fault("asyncRollbackSnap", rollback("new", {}, far_)), kUnknownVolume);
    end(start("asyncRollbackSnap", rollback("old", {"kept"}, far_, vault())));
    EXPECT_THAT(snapshots(far_, "vault"), IsEmpty());
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old", "new"));
    EXPECT_THAT(rows(end(start("asyncGetSnapDiff", diff("old", {vault()}, far_)))), IsEmpty());
}

TEST_F(SimulatorRollbacks, ASnapshotMadeMeanwhileIsInTheWay)
{
    start("asyncCreateSnapByName", create("fresh"));
    const std::string id = start("asyncRollbackSnap", rollback("old", {"new"}));
    EXPECT_EQ(failure(id), kSnapshotsInTheWay);
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old", "new", "fresh"));
    EXPECT_THAT(rows(end(start("asyncGetSnapDiff", diff("old")))), Not(IsEmpty()));
}

TEST_F(SimulatorRollbacks, AnExportedSnapshotIsNotTakenAway)
{
    const std::string id = start("asyncRollbackSnap", rollback("old", {"new"}));
    ask("createExport", lsu(near_, "home") + element("snapName", "new") + hosts({"client1"}));
    EXPECT_EQ(fault("asyncRollbackSnap", rollback("old", {"new"})), kInUse);
    EXPECT_EQ(error_of(wait(id)), kInUse);
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old", "new"));
}

class SimulatorWithQuickOperations : public OperationsClient
{
  protected:
    SimulatorWithQuickOperations() : OperationsClient(scenario(R"("create": 0, "copy": 1)")) {}
};

TEST_F(SimulatorWithQuickOperations, AnOperationOfNoTimeHasEndedAtTheNextRequest)
{
    const std::string id = start("asyncCreateSnapByName", create("fresh"));
    EXPECT_EQ(text_of(wait(id).body, "result"),
              state(300, 0, 0, 2, made("createSnap", "fresh", "Near:filer", "home")));
}

TEST_F(SimulatorWithQuickOperations, OperationsEndInTheOrderOfTheirEnds)
{
    const std::string preparing = start("asyncPrepareSnapByName", create("second"));
    start("asyncCopySnapByName", copy("old", {{"", "side"}}));
    start("asyncCreateSnapByName", create("second"));
    EXPECT_EQ(error_of(wait(preparing)), kInUse) << "the later start ended earlier";
}

} // namespace
