// What clients may have the simulator keep for them.
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/scenario_reader.h"
#include "simulator/service/service.h"
#include "simulator/storage/difference.h"
#include "simulator/storage/export_account.h"
#include "simulator/storage/holdings.h"
#include "simulator/storage/room_account.h"
#include "tests/parts/fault_of.h"

#include <gmock/gmock.h>

#include <optional>

namespace
{

using namespace soapwrapper::simulator;
using testing::ElementsAre;
using testing::HasSubstr;

Export export_of(const std::string& device, const std::vector<std::string>& hosts = {})
{
    return {0, 0, {VolumeKind::kDevice, {device, "", ""}}, hosts};
}

TEST(SimulatorExports, AServerThatHasAThousandTakesNoMore)
{
    ExportAccount exports;
    for (std::size_t i = 0; i < ExportAccount::kMost; ++i) exports.add(export_of(std::to_string(i)));
    EXPECT_EQ(fault_of([&] { exports.add(export_of("one more")); }), kTooManyOpen);
    exports.erase(*exports.find(export_of("7").volume));
    EXPECT_EQ(fault_of([&] { exports.add(export_of("one more")); }), 0);
}

// Most of the room of one server's names.
std::vector<std::string> most_hosts()
{
    return {std::string(ExportAccount::kMostBytes - 10 * sizeof(std::string), 'x')};
}

TEST(SimulatorExports, NamesOfHostsAreRefusedWhereThereIsNoRoomForThemAndTakeNoneOnceTheyAreGone)
{
    ExportAccount exports;
    exports.add(export_of("one", most_hosts()));
    EXPECT_EQ(fault_of([&] { exports.add(export_of("two", most_hosts())); }), kTooManyOpen);
    exports.add(export_of("two", {"a"}));
    Export& two = *exports.find(export_of("two").volume);
    EXPECT_EQ(fault_of([&] { exports.add_hosts(two, {"b", most_hosts()[0]}); }), kTooManyOpen);
    EXPECT_THAT(two.hosts, ElementsAre("a"));

    exports.remove_hosts(*exports.find(export_of("one").volume), most_hosts());
    EXPECT_EQ(fault_of([&] { exports.add_hosts(two, {"b", most_hosts()[0]}); }), 0);
    EXPECT_EQ(fault_of([&] { exports.add(export_of("three", most_hosts())); }), kTooManyOpen);
    exports.add_hosts(two, {}); // for every host
    EXPECT_EQ(fault_of([&] { exports.add(export_of("three", most_hosts())); }), 0);
    exports.erase(*exports.find(export_of("three").volume));
    EXPECT_EQ(fault_of([&] { exports.add(export_of("four", most_hosts())); }), 0);
}

TEST(SimulatorExports, AHostThatIsNamedTwiceTakesRoomOnce)
{
    ExportAccount exports;
    exports.add(export_of("one", {"a"}));
    Export& exported = *exports.find(export_of("one").volume);
    exports.add_hosts(exported, {"b", "b", "a"});
    EXPECT_THAT(exported.hosts, ElementsAre("a", "b"));
    EXPECT_EQ(fault_of([&] { exports.remove_hosts(exported, {"b", "c"}); }), kUnknownExport);
    EXPECT_THAT(exported.hosts, ElementsAre("a", "b"));
    exports.remove_hosts(exported, {"b", "b"});
    EXPECT_THAT(exported.hosts, ElementsAre("a"));
}

TEST(SimulatorRoom, WhatIsTakenIsGivenBackWithItsLastShare)
{
    RoomAccount room(10, "things");
    std::optional<RoomAccount::Share> most = room.take(9);
    EXPECT_EQ(fault_of([&] { room.take(2); }), kTooManyOpen);
    const RoomAccount::Share rest = room.take(1);
    EXPECT_EQ(fault_of([&] { room.require_room(); }), kTooManyOpen);
    std::optional<RoomAccount::Share> copy = most;
    most.reset();
    EXPECT_EQ(fault_of([&] { room.take(1); }), kTooManyOpen);
    copy.reset();
    EXPECT_EQ(fault_of([&] { room.take(9); }), 0);
}

TEST(SimulatorRoom, WhatComesAloneMayBeLargerThanAllOfIt)
{
    RoomAccount room(10, "things");
    const RoomAccount::Share large = room.take(11);
    EXPECT_EQ(fault_of([&] { room.take(0); }), kTooManyOpen);
}

constexpr char kScenario[] = R"({"time": "requests", "servers": [{"prefix": "A", "lsus": [{"name": "l",
    "volumes": [{"ndmp": {"exportfiler": "f", "exportpath": "/v"}}], "files": [{"path": "new"}], "snapshots": [
    {"name": "1", "volume": {"ndmp": {"exportfiler": "f", "exportpath": "/v/1"}}, "files": [{"path": "gone"}]},
    {"name": "2", "volume": {"ndmp": {"exportfiler": "f", "exportpath": "/v/2"}}, "files": [{"path": "new"}]}
    ]}]}]})";

class SimulatorKeeping : public testing::Test
{
  protected:
    std::string ask(const std::string& operation, const std::string& content)
    {
        const std::string name = "n:" + operation;
        Request request;
        request.method = "POST";
        request.body = "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\" "
                       "xmlns:n=\"" SERVICE_NAMESPACE "\"><e:Body><" +
                       name + ">" + content + "</" + name + "></e:Body></e:Envelope>";
        return serve_request(backend_, request).body;
    }
    std::string open_list()
    {
        return ask("openSnapChangeList",
                   "<n:lsu><n:serverHandle><n:token>" + session_ +
                       "</n:token></n:serverHandle><n:lsuName>l</n:lsuName></n:lsu><n:sourceVolSpec>"
                       "<n:volumeType>4</n:volumeType><n:ndmp><n:exportfiler>f</n:exportfiler>"
                       "<n:exportpath>/v</n:exportpath></n:ndmp></n:sourceVolSpec>"
                       "<n:baseSnapshot><n:snapName>1</n:snapName></n:baseSnapshot>"
                       "<n:diffSnapshot><n:snapName>2</n:snapName></n:diffSnapshot>");
    }

    CurrentModel current_{parse_scenario(kScenario), {}, "secret"};
    const std::shared_ptr<Model> held_ = current_.get();
    Model& model_ = *held_;
    Interference interference_;
    RequestLog log_{false};
    Recorder recorder_{"secret"};
    const Backend backend_{current_, interference_, log_, recorder_};
    const std::string session_ = model_.use().open_server("A:host", {kCredentialType, "secret"});
};

TEST_F(SimulatorKeeping, ChangeListsAreOpenedAsLongAsThereIsRoomForTheirEntries)
{
    constexpr std::size_t kMost = Storage::kMostListedChanges;
    RoomAccount::Share others = model_.use()->listed_changes.take(kMost - 3);
    const std::string first = open_list(); // two entries
    EXPECT_THAT(first, HasSubstr("fileListHandle"));
    EXPECT_THAT(open_list(), HasSubstr(">2069012<"));
    EXPECT_EQ(fault_of([&] { model_.use()->listed_changes.take(1); }), 0);
    model_.use()->close_session(session_);
    EXPECT_EQ(fault_of([&] { model_.use()->listed_changes.take(3); }), 0);
}

TEST_F(SimulatorKeeping, ADifferenceThatRunsSaysHowMuchItHolds)
{
    DifferenceStart start;
    start.session = session_;
    start.snapshot = "1";
    start.volumes = {{VolumeKind::kNdmp, {"f", "/v", ""}}};
    EXPECT_EQ(difference_operation(model_, start).found, 2U);
}

TEST_F(SimulatorKeeping, RunningDifferencesAreStartedAsLongAsThereIsRoomForThem)
{
    LongOperation running;
    running.kind = OperationKind::kDiff;
    running.effect = [](Storage&) { return OperationResult(); };
    running.found = OperationRegistry::kMostDifferences - 1;
    const auto start = [&](std::size_t found) {
        const Model::Use storage = model_.use();
        LongOperation other = running;
        other.found = found;
        return storage.operations().start(other, storage->now());
    };
    const std::string large = start(OperationRegistry::kMostDifferences - 1);
    EXPECT_EQ(fault_of([&] { start(2); }), kTooManyOpen);
    EXPECT_EQ(fault_of([&] { start(0); }), 0) << "what finds nothing takes no room";
    {
        const Model::Use storage = model_.use();
        storage.operations().cancel_by_token(*storage, large);
    }
    EXPECT_EQ(fault_of([&] { start(OperationRegistry::kMostDifferences + 1); }), 0) << "alone";
    for (int second = 0; second < 2; ++second) model_.use()->request_arrived();
    EXPECT_EQ(fault_of([&] { start(2); }), 0) << "its end has come";
}

} // namespace
