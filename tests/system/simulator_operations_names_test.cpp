#include "tests/system/simulator_operations.h"

namespace
{

using namespace simulator_operations;

class SimulatorOperationNames : public OperationsClient
{
  protected:
    long status(const std::string& name) const
    {
        const HttpReply reply = ask("namedAsyncStatus", by_name(name));
        if (reply.body == element("namedAsyncStatusResponse")) return 0;
        return fault_code(reply);
    }
    HttpReply start_named(const std::string& name, const std::string& snapshot_name = "fresh") const
    {
        return ask("namedAsyncCreateSnapByName", create(snapshot_name) + opname(name));
    }
};

TEST_F(SimulatorOperationNames, ANamedOperationIsFollowedByItsName)
{
    EXPECT_EQ(start_named("mine").body, element("namedAsyncCreateSnapByNameResponse"));
    EXPECT_EQ(status("mine"), kBusy);
    const std::string busy = text_of(ask("namedAsyncWaitSnap", by_name("mine")).body, "result");
    EXPECT_THAT(busy, StartsWith(number("totalBytesTransferred", 200) + number("error", kBusy) +
                                 number("retryInterval", 7)));
    EXPECT_EQ(status("mine"), 0);
    const std::string ended = text_of(ask("namedAsyncWaitSnap", by_name("mine")).body, "result");
    EXPECT_EQ(text_of(ended, "targetSnapName"), "fresh");
    EXPECT_EQ(text_of(ended, "retryInterval"), "0");
}

TEST_F(SimulatorOperationNames, EveryKindCanBeNamed)
{
    const std::vector<std::pair<const char*, std::string>> starts = {
        {"namedAsyncCreateSnapByName", create("a")},
        {"namedAsyncPrepareSnapByName", create("b")},
        {"namedAsyncValidateSnapByName", topology("t", {})},
        {"namedAsyncCopySnapByName", copy("old", {{"", "side"}})},
        {"namedAsyncImportSnapByName", import("c")},
        {"namedAsyncPostProcessSnapByName", post_process("old")},
        {"namedAsyncProvisionTopology", topology("t", {}) + kSet},
        {"namedAsyncGetSnapDiff", diff("new")},
        {"namedAsyncRollbackSnap", rollback("new", {"a", "c"}, far_, vault())}};
    for (const auto& [operation, content] : starts) {
        const bool is_rollback = std::string(operation) == "namedAsyncRollbackSnap";
        const HttpReply reply =
            ask(operation,
                (is_rollback ? rollback("new", {"kept"}, far_, vault()) : content) + opname(operation));
        EXPECT_EQ(reply.body, element(std::string(operation) + "Response"));
    }
    status("none");
    status("none");
    for (const auto& each : starts) EXPECT_EQ(status(each.first), 0) << each.first;
}

TEST_F(SimulatorOperationNames, ANameInUseIsRefusedUntilItsOperationHasEnded)
{
    start_named("mine");
    EXPECT_EQ(fault_code(start_named("mine", "other")), kInUse);
    EXPECT_EQ(status("mine"), kBusy);
    EXPECT_EQ(status("mine"), 0);
    EXPECT_EQ(start_named("mine", "other").status, 200);
    EXPECT_EQ(status("mine"), kBusy) << "the new operation's status";
    EXPECT_EQ(status("mine"), kBusy);
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old", "new", "fresh", "other"));
}

TEST_F(SimulatorOperationNames, ANameIsOneServersAlone)
{
    start_named("mine");
    EXPECT_EQ(fault("namedAsyncStatus", server_handle(far_) + opname("mine")), kUnknownOperation);
    const std::string far_create = server_handle(far_) + element("sourceVolSpec", vault()) +
                                   definition("targetSnapDef", "fresh") + targets({}) + kSet;
    EXPECT_EQ(ask("namedAsyncCreateSnapByName", far_create + opname("mine")).status, 200);
    const std::string other_session = open_server("Near:else");
    EXPECT_EQ(ask("namedAsyncStatus", server_handle(other_session) + opname("mine")).status, 200);
}

TEST_F(SimulatorOperationNames, ANameThatIsEmptyOrTooLongIsRefused)
{
    EXPECT_EQ(fault_code(start_named("")), kBadValue);
    EXPECT_EQ(fault_code(start_named(std::string(256, 'n'))), kBadValue);
    EXPECT_EQ(start_named(std::string(255, 'n')).status, 200);
}

TEST_F(SimulatorOperationNames, AFailedOperationTellsItsCodeAsAFault)
{
    start_named("first");
    start_named("second");
    EXPECT_EQ(status("second"), kBusy);
    EXPECT_EQ(status("first"), 0);
    EXPECT_EQ(status("second"), kInUse);
    EXPECT_EQ(error_of(ask("namedAsyncWaitSnap", by_name("second"))), kInUse);
}

TEST_F(SimulatorOperationNames, ACancelledOperationHasNoEffectAndAStatusOfItsOwn)
{
    start_named("mine");
    EXPECT_EQ(ask("namedAsyncCancel", by_name("mine")).body, element("namedAsyncCancelResponse"));
    EXPECT_EQ(status("mine"), kCancelled);
    EXPECT_EQ(status("mine"), kCancelled);
    const std::string result = text_of(ask("namedAsyncWaitSnap", by_name("mine")).body, "result");
    EXPECT_EQ(result, number("totalBytesTransferred", 100) + number("error", kCancelled) +
                          number("retryInterval", 0) + number("resultSnapType", 0));
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old", "new"));
    EXPECT_EQ(start_named("mine").status, 200) << "the name is free again";
}

TEST_F(SimulatorOperationNames, ACancelByItsIdStopsAnOperationThatRunsAndNoOther)
{
    const std::string id = start("asyncCreateSnapByName", create("fresh"));
    EXPECT_EQ(ask("asyncCancel", by_id(id)).body, element("asyncCancelResponse"));
    EXPECT_EQ(error_of(wait(id)), kCancelled);
    EXPECT_EQ(ask("asyncCancel", by_id(id)).status, 200);

    const std::string other = start("asyncCreateSnapByName", create("fresh"));
    end(other);
    EXPECT_EQ(ask("asyncCancel", by_id(other)).status, 200);
    EXPECT_EQ(error_of(wait(other)), 0);
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old", "new", "fresh"));
}

TEST_F(SimulatorOperationNames, AnIdOrNameThatNobodyKnowsIsToldByACodeOfItsOwn)
{
    const std::string unknown = by_id("0123456789abcdef0123456789abcdef");
    for (const char* operation : {"asyncWait", "asyncWaitSnap", "asyncCancel"}) {
        EXPECT_EQ(fault(operation, unknown), kUnknownOperation) << operation;
    }
    for (const char* operation :
         {"namedAsyncWait", "namedAsyncWaitSnap", "namedAsyncStatus", "namedAsyncCancel"}) {
        EXPECT_EQ(fault(operation, by_name("nope")), kUnknownOperation) << operation;
        EXPECT_EQ(fault(operation, server_handle("nope") + opname("nope")), kBadHandle) << operation;
    }
    EXPECT_EQ(fault("asyncWaitSnap", by_id("mine")), kUnknownOperation) << "a name is no id";
}

TEST_F(SimulatorOperationNames, AWaitByIdNeedsASessionsDefinitionAndAnId)
{
    const std::string id = start("asyncCreateSnapByName", create("fresh"));
    for (const char* operation : {"asyncWait", "asyncWaitSnap", "asyncCancel"}) {
        EXPECT_EQ(fault(operation, nil("sd") + element("opid", element("token", id))), kMissingElement);
        EXPECT_EQ(fault(operation, element("sd") + nil("opid")), kMissingElement);
        EXPECT_EQ(fault(operation, element("sd") + element("opid", nil("token"))), kMissingElement);
    }
    EXPECT_EQ(error_of(wait(id)), 0);
}

TEST_F(SimulatorOperationNames, ThePlainWaitsAnswerForSnapshotsToo)
{
    const std::string id = start("asyncCreateSnapByName", create("fresh"));
    EXPECT_EQ(text_of(ask("asyncWait", by_id(id)).body, "result"),
              nil("image") + number("bytesTransferred", 100) + number("error", kBusy) +
                  number("delayInSeconds", 7));
    start_named("mine", "other");
    EXPECT_EQ(text_of(ask("namedAsyncWait", by_name("mine")).body, "result"),
              nil("image") + number("bytesTransferred", 100) + number("error", kBusy) +
                  number("delayInSeconds", 7));
    EXPECT_EQ(text_of(ask("asyncWait", by_id(id)).body, "result"),
              nil("image") + number("bytesTransferred", 300) + number("error", 0) +
                  number("delayInSeconds", 0));
}

TEST_F(SimulatorOperationNames, AnOperationOutlivesTheSessionThatStartedIt)
{
    const std::string id = start("asyncCreateSnapByName", create("fresh"));
    ask("closeServer", server_handle(near_));
    EXPECT_EQ(error_of(wait(id)), kBusy);
    EXPECT_EQ(error_of(wait(id)), 0);
    EXPECT_THAT(snapshots(open_server("Near:else"), "home"), ElementsAre("old", "new", "fresh"));
}

} // namespace
