#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scenario_error.h"
#include "simulator/scenario/scenario_reader.h"
#include "simulator/storage/long_operations.h"
#include "simulator/storage/model.h"
#include "simulator/storage/snapshot_operations.h"
#include "tests/parts/fault_of.h"

#include <gmock/gmock.h>

#include <atomic>
#include <limits>
#include <set>
#include <thread>

namespace
{

using namespace soapwrapper::simulator;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr char kServers[] = R"("servers": [{"prefix": "A", "lsus": [{"name": "home",
    "volumes": [{"device": {"devicePath": "/dev/a"}}], "files": [{"path": "f", "size": 5}]}]}])";

Scenario scenario(const std::string& operations = "{}", const std::string& time = "requests")
{
    return parse_scenario("{\"time\": \"" + time + "\", \"operations\": " + operations + ", " + kServers +
                          "}");
}

// The engine, with time that passes as the test says.
class Engine : public testing::Test
{
  protected:
    explicit Engine(const Scenario& from = scenario()) : storage_(from), operations_(from.operations) {}

    LongOperation operation(OperationKind kind, const LongOperation::Effect& effect,
                            std::int64_t bytes = 0) const
    {
        LongOperation made;
        made.kind = kind;
        made.bytes = bytes;
        made.effect = effect;
        return made;
    }
    std::string start(const LongOperation& made) { return operations_.start(made, storage_.now()); }
    void pass(int seconds)
    {
        for (int i = 0; i < seconds; ++i) storage_.request_arrived();
        operations_.end_due(storage_);
    }

    static OperationResult nothing(Storage&) { return {}; }

    Storage storage_;
    OperationRegistry operations_;
};

class UnevenEngine : public Engine
{
  protected:
    UnevenEngine() : Engine(scenario(R"({"seconds": {"create": 5, "copy": 3, "diff": 0}})")) {}
};

TEST_F(UnevenEngine, EffectsTakePlaceInTheOrderOfTheEndsAndOfTheStartsWhereTheseAreTheSame)
{
    std::vector<std::string> ended;
    const auto noting = [&](const char* name) {
        return [&ended, name](Storage&) {
            ended.push_back(name);
            return OperationResult();
        };
    };
    start(operation(OperationKind::kCreate, noting("create")));
    pass(2);
    start(operation(OperationKind::kCopy, noting("copy")));
    start(operation(OperationKind::kDiff, noting("diff")));
    EXPECT_THAT(ended, ElementsAre());
    pass(0);
    EXPECT_THAT(ended, ElementsAre("diff"));
    pass(2);
    EXPECT_THAT(ended, ElementsAre("diff"));
    pass(1);
    EXPECT_THAT(ended, ElementsAre("diff", "create", "copy"));
}

TEST_F(UnevenEngine, TheLargestNumberOfBytesGrowsEvenly)
{
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    const LongOperation& running =
        operations_.by_token(start(operation(OperationKind::kCreate, nothing, kMost)));
    EXPECT_EQ(running.bytes_moved(storage_.now()), 0);
    pass(1);
    EXPECT_EQ(running.bytes_moved(storage_.now()), kMost / 5);
    pass(3);
    EXPECT_EQ(running.bytes_moved(storage_.now()), kMost / 5 * 4 + kMost % 5 * 4 / 5);
    pass(1);
    EXPECT_EQ(running.bytes_moved(storage_.now()), kMost);
    EXPECT_FALSE(running.is_running());
}

TEST_F(Engine, AnEffectThatFindsNoMemoryMakesTheOperationFail)
{
    const std::string id =
        start(operation(OperationKind::kCreate, [](Storage&) -> OperationResult { throw std::bad_alloc(); }));
    pass(2);
    EXPECT_EQ(operations_.by_token(id).error, STS_ENOMEM);
}

TEST_F(Engine, OfTheOperationsThatEndedOnlyTheLastThousandAreKept)
{
    const std::string running = start(operation(OperationKind::kCreate, nothing));
    std::vector<std::string> ids;
    for (std::size_t i = 0; i < OperationRegistry::kMostEnded + 1; ++i) {
        ids.push_back(start(operation(OperationKind::kCopy, nothing)));
        operations_.cancel_by_token(storage_, ids.back());
    }
    EXPECT_EQ(fault_of([&] { operations_.by_token(ids[0]); }), kUnknownOperation);
    EXPECT_EQ(operations_.by_token(ids[1]).error, kCancelled);
    EXPECT_EQ(operations_.by_token(running).error, kBusy);
    pass(2);
    EXPECT_EQ(fault_of([&] { operations_.by_token(ids[1]); }), kUnknownOperation);
    EXPECT_EQ(operations_.by_token(running).error, 0);
}

TEST_F(Engine, OfLargeDifferencesTheOldestAreForgottenAndTheLastIsKept)
{
    const auto finding = [](std::size_t count) {
        return [count](Storage&) {
            OperationResult result;
            result.differences.resize(count);
            return result;
        };
    };
    const std::string first =
        start(operation(OperationKind::kDiff, finding(OperationRegistry::kMostDifferences - 1)));
    const std::string second = start(operation(OperationKind::kDiff, finding(1)));
    pass(2);
    EXPECT_EQ(operations_.by_token(first).error, 0);
    const std::string third = start(operation(OperationKind::kDiff, finding(1)));
    pass(2);
    EXPECT_EQ(fault_of([&] { operations_.by_token(first); }), kUnknownOperation);
    EXPECT_EQ(operations_.by_token(second).error, 0);
    const std::string huge =
        start(operation(OperationKind::kDiff, finding(OperationRegistry::kMostDifferences + 1)));
    pass(2);
    EXPECT_EQ(fault_of([&] { operations_.by_token(third); }), kUnknownOperation);
    EXPECT_EQ(operations_.by_token(huge).result.differences.size(), OperationRegistry::kMostDifferences + 1);
}

TEST_F(Engine, ANameThatIsUsedAgainTakesNoMoreRoomThanOne)
{
    const std::string kept = start(operation(OperationKind::kCreate, nothing));
    pass(2);
    for (std::size_t i = 0; i < OperationRegistry::kMostEnded + 1; ++i) {
        operations_.start_named("mine", operation(OperationKind::kCreate, nothing), storage_.now());
        operations_.cancel_by_name(storage_, 0, "mine");
    }
    EXPECT_EQ(operations_.by_token(kept).error, 0);
    EXPECT_EQ(operations_.by_name(0, "mine").error, kCancelled);
}

TEST_F(Engine, MoreOperationsThanThereIsRoomForAreRefused)
{
    std::string last;
    for (std::size_t i = 0; i < OperationRegistry::kMostRunning; ++i) {
        last = start(operation(OperationKind::kCreate, nothing));
    }
    const auto one_more = [&] { start(operation(OperationKind::kCreate, nothing)); };
    EXPECT_EQ(fault_of(one_more), kTooManyOpen);
    operations_.cancel_by_token(storage_, last);
    EXPECT_EQ(fault_of(one_more), 0);
}

TEST_F(Engine, AnLsuThatIsFullOfSnapshotsTakesNoMore)
{
    Snapshot snapshot;
    for (int i = 0; i < 1000; ++i) {
        snapshot.name = std::to_string(i);
        add_snapshot(storage_, {0, 0}, snapshot);
    }
    snapshot.name = "one more";
    EXPECT_EQ(fault_of([&] { add_snapshot(storage_, {0, 0}, snapshot); }), kTooManyOpen);
}

TEST_F(Engine, TheBytesInUseStopAtTheLargestNumber)
{
    Snapshot snapshot;
    snapshot.size = std::numeric_limits<std::int64_t>::max();
    for (const char* name : {"one", "two"}) {
        snapshot.name = name;
        add_snapshot(storage_, {0, 0}, snapshot);
    }
    EXPECT_EQ(lsu_at(storage_, {0, 0}).properties.used, snapshot.size);
}

TEST(ContentOfHugeFiles, HasTheLargestSizeThatThereIs)
{
    FileRecord huge;
    huge.size = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(size_of({{"one", huge}, {"two", huge}}), huge.size);
}

// The model, used by several threads at once; each request is one of theirs.
TEST(OperationsOfSeveralClients, AllEndOnceAndWithTheirEffect)
{
    constexpr int kThreads = 4;
    constexpr int kEach = 20;
    Model model(scenario(R"({"seconds": {"create": 3}})"), {}, "secret");
    const std::string session = model.use().open_server("A:host", {kCredentialType, "secret"});
    std::atomic<int> ended{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < kEach; ++i) {
                VolumeStart start;
                start.session = session;
                start.volume = {VolumeKind::kDevice, {"/dev/a", "", ""}};
                start.definition.name = std::to_string(t) + "." + std::to_string(i);
                const LongOperation made = create_operation(model, start);
                const std::string id = [&] {
                    const Model::Use storage = model.use();
                    return storage.operations().start(made, storage->now());
                }();
                int error = kBusy;
                while (error == kBusy) {
                    model.use()->request_arrived();
                    error = model.use().operations().by_token(id).error;
                }
                if (error == 0) ++ended;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(ended, kThreads * kEach);
    const Model::Use storage = model.use();
    std::set<std::string> names;
    for (const auto& entry : storage->server(0).lsus[0].snapshots) {
        names.insert(entry.second.name);
        EXPECT_EQ(entry.second.size, 5);
    }
    EXPECT_EQ(names.size(), static_cast<std::size_t>(kThreads * kEach));
}

// Whoever comes next finds what is due done, and done ahead of what comes of the request itself.
TEST(AnOperationThatIsDue, EndsAheadOfASessionThatIsOpened)
{
    Scenario one_session = scenario(R"({"seconds": {"prepare": 1}})");
    one_session.servers[0].max_sessions = 1;
    Model model(one_session, {}, "secret");
    LongOperation due;
    due.kind = OperationKind::kPrepare;
    due.effect = [](Storage&) { return OperationResult(); };
    {
        const Model::Use storage = model.use();
        storage.operations().start_named("due", due, storage->now());
        storage->request_arrived();
    }
    model.use().open_server("A:host", {kCredentialType, "secret"});
    const Model::Use storage = model.use();
    const EventLog& events = storage->server(0).events;
    const Event* ended = events.first_from(3); // behind the two of the start
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->kind(), EventKind::kOperation);
    const Event* full = events.first_from(4);
    ASSERT_TRUE(full);
    EXPECT_EQ(full->kind(), EventKind::kServerStatus);
}

TEST(SimulatedTimeByTheClock, DoesNotGoBackwards)
{
    SimulatedTime time(TimeKind::kClock);
    const Instant first = time.now();
    time.request_arrived();
    EXPECT_GE(time.now(), first);
    EXPECT_LT(time.now(), first + std::chrono::hours(1)) << "requests don't count";
}

std::string scenario_error(const std::string& members)
{
    try {
        parse_scenario("{" + members + ", " + kServers + "}");
        return "none";
    } catch (const ScenarioError& error) {
        return error.what();
    }
}

TEST(ScenarioOfOperations, WithoutAnyMemberHasTheDocumentedDefaults)
{
    const Scenario read = parse_scenario(std::string("{") + kServers + "}");
    EXPECT_EQ(read.time, TimeKind::kClock);
    EXPECT_EQ(read.operations.retry_interval, 1);
    EXPECT_THAT(read.operations.seconds.of, testing::Each(2));
}

TEST(ScenarioOfOperations, EachKindHasItsSeconds)
{
    const Scenario read =
        scenario(R"({"retryInterval": -1, "seconds": {"rollback": 0, "validate": 1, "create": 2,
        "copy": 3, "prepare": 4, "postProcess": 5, "diff": 6, "provision": 7, "import": 8, "copyImage": 86400}})");
    EXPECT_EQ(read.time, TimeKind::kRequests);
    EXPECT_EQ(read.operations.retry_interval, -1);
    EXPECT_THAT(read.operations.seconds.of, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 86400));
}

TEST(ScenarioOfOperations, WhatMakesNoSenseIsRefusedWithItsPlace)
{
    EXPECT_EQ(scenario_error(R"("time": "sun")"), "time: clock or requests is expected");
    EXPECT_EQ(scenario_error(R"("time": 1)"), "time: a string is expected, not number");
    EXPECT_EQ(scenario_error(R"("operations": {"seconds": {"copy": -1}})"),
              "operations.seconds.copy: 0 to 86400 seconds are expected");
    EXPECT_EQ(scenario_error(R"("operations": {"seconds": {"copy": 86401}})"),
              "operations.seconds.copy: 0 to 86400 seconds are expected");
    EXPECT_THAT(scenario_error(R"("operations": {"seconds": {"postprocess": 1}})"),
                HasSubstr("operations.seconds: the member \"postprocess\" is unknown"));
    EXPECT_THAT(scenario_error(R"("operations": {"retry": 1})"),
                HasSubstr("operations: the member \"retry\" is unknown"));
    EXPECT_THAT(scenario_error(R"("operations": [])"), HasSubstr("operations: an object is expected"));
}

} // namespace
