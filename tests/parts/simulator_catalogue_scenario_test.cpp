#include "simulator/scenario/default_scenario.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scenario_error.h"
#include "simulator/scenario/scenario_reader.h"
#include "simulator/storage/storage.h"
#include "tests/parts/fault_of.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <set>
#include <string>

namespace
{

using namespace soapwrapper::simulator;
using testing::HasSubstr;
using testing::StartsWith;

// What is said of a scenario; empty if it is good.
std::string complaint(const std::string& json)
{
    try {
        parse_scenario(json);
        return {};
    } catch (const ScenarioError& error) {
        return error.what();
    }
}

std::string server_with(const std::string& members)
{
    return R"({"servers": [{"prefix": "P", )" + members + "}]}";
}

std::string lsu_with(const std::string& members)
{
    return server_with(R"("lsus": [{"name": "l", )" + members + "}]");
}

std::string snapshot_with(const std::string& volume)
{
    return lsu_with(R"("snapshots": [{"name": "s", "volume": )" + volume + "}]");
}

TEST(SimulatorScenario, TheBuiltInOneHasEachKindOfVolumeAndReplication)
{
    const Scenario scenario = default_scenario();
    ASSERT_EQ(scenario.servers.size(), 2U);
    std::set<VolumeKind> kinds;
    bool replicates = false;
    for (const LsuScenario& lsu : scenario.servers[0].lsus) {
        for (const Snapshot& snapshot : lsu.snapshots) kinds.insert(snapshot.volume.kind);
        replicates = replicates || !lsu.properties.targets.empty();
    }
    EXPECT_EQ(kinds.size(), 5U);
    EXPECT_TRUE(replicates);
}

// Whoever replicates somewhere is known there, and the other way round.
TEST(SimulatorScenario, TheBuiltInOneAgreesWithItselfAboutReplication)
{
    std::set<std::string> to;
    std::set<std::string> from;
    for (const ServerScenario& server : default_scenario().servers) {
        for (const LsuScenario& lsu : server.lsus) {
            const std::string here = server.prefix + "/" + lsu.properties.name;
            for (const ReplicationPartner& partner : lsu.properties.targets) {
                to.insert(here + " " + partner.server + "/" + partner.lsu);
            }
            for (const ReplicationPartner& partner : lsu.properties.sources) {
                from.insert(partner.server + "/" + partner.lsu + " " + here);
            }
        }
    }
    EXPECT_EQ(to, from);
    EXPECT_EQ(to.size(), 4U);
}

TEST(SimulatorScenario, AServerNeedsNoMoreThanItsPrefix)
{
    const Scenario scenario = parse_scenario(R"({"servers": [{"prefix": "P"}]})");
    ASSERT_EQ(scenario.servers.size(), 1U);
    EXPECT_EQ(scenario.servers[0].prefix, "P");
    EXPECT_EQ(scenario.servers[0].max_sessions, 1024);
    EXPECT_TRUE(scenario.servers[0].lsus.empty());
}

TEST(SimulatorScenario, MembersAreReadIntoTheirPlaces)
{
    const Scenario scenario = parse_scenario(lsu_with(
        R"("capacity": 9223372036854775807, "flags": -2147483648, "snapshots": [{"name": "s", "size": -1,
           "volume": {"scsi": {"lunWWNN": "w", "lunSerial": "n"}},
           "pathMap": [{"prefix": "p", "originalPath": "o", "targetPath": "t"}],
           "isid": {"info": "use_zapi=1"}}])"));
    const LsuScenario& lsu = scenario.servers.at(0).lsus.at(0);
    EXPECT_EQ(lsu.properties.capacity, INT64_MAX);
    EXPECT_EQ(lsu.properties.flags, INT32_MIN);
    const Snapshot& snapshot = lsu.snapshots.at(0);
    EXPECT_EQ(snapshot.size, -1);
    EXPECT_EQ(snapshot.volume.kind, VolumeKind::kScsi);
    EXPECT_EQ(snapshot.volume.texts[1], "n");
    EXPECT_EQ(snapshot.path_map.at(0).target_path, "t");
    ASSERT_TRUE(snapshot.isid);
    EXPECT_EQ(snapshot.isid->info, "use_zapi=1");
}

TEST(SimulatorScenario, BrokenJsonIsToldByLineAndColumn)
{
    EXPECT_THAT(complaint("{"), StartsWith("line 1, column 2: "));
    EXPECT_THAT(complaint("{\n\n  \"servers\" [\n"), StartsWith("line 3, column 13: syntax error"));
    EXPECT_THAT(complaint(""), StartsWith("line 1, column 1: "));
    EXPECT_THAT(complaint("{\"servers\": \"\xff\"}"), StartsWith("line 1, column 14: "));
    EXPECT_THAT(complaint("{} {}"), StartsWith("line 1, column 4: "));
    EXPECT_THAT(complaint(std::string(100000, '[')), StartsWith("line 1, column 100001: "));
}

TEST(SimulatorScenario, WhatIsMissingIsNamed)
{
    EXPECT_EQ(complaint("{}"), "the document: the member \"servers\" is missing");
    EXPECT_EQ(complaint(R"({"servers": []})"), "servers: it holds no server");
    EXPECT_EQ(complaint(R"({"servers": [{}]})"), "servers[0]: the member \"prefix\" is missing");
    EXPECT_EQ(complaint(server_with(R"("lsus": [{}])")),
              "servers[0].lsus[0]: the member \"name\" is missing");
    EXPECT_EQ(complaint(lsu_with(R"("snapshots": [{"name": "s"}])")),
              "servers[0].lsus[0].snapshots[0]: the member \"volume\" is missing");
    EXPECT_EQ(complaint(lsu_with(R"("images": [{"basename": ""}])")),
              "servers[0].lsus[0].images[0].basename: it may not be empty");
}

TEST(SimulatorScenario, AnUnknownMemberIsRefusedWithThoseThatThereAre)
{
    EXPECT_EQ(complaint(R"({"servers": [{"prefix": "P"}], "extra": 1})"),
              "the document: the member \"extra\" is unknown; there are changeLists, operations, "
              "servers, time");
    EXPECT_EQ(complaint(lsu_with(R"("replicationTargets": [{"server": "s", "lsu": "l", "x": 1}])")),
              "servers[0].lsus[0].replicationTargets[0]: the member \"x\" is unknown; there are lsu, server");
}

TEST(SimulatorScenario, AWrongTypeIsToldWithTheOneExpected)
{
    EXPECT_EQ(complaint("[]"), "the document: an object is expected, not array");
    EXPECT_EQ(complaint(R"({"servers": {}})"), "servers: an array is expected, not object");
    EXPECT_EQ(complaint(server_with(R"("capabilities": [0, "1"])")),
              "servers[0].capabilities[1]: a whole number is expected, not string");
    EXPECT_EQ(complaint(lsu_with(R"("capacity": 1.5)")),
              "servers[0].lsus[0].capacity: a whole number is expected, not a fraction");
    EXPECT_EQ(complaint(lsu_with(R"("label": null)")),
              "servers[0].lsus[0].label: a string is expected, not null");
}

TEST(SimulatorScenario, AValueOutOfItsRangeIsRefused)
{
    EXPECT_EQ(complaint(lsu_with(R"("flags": 2147483648)")),
              "servers[0].lsus[0].flags: the number doesn't fit 32 bits");
    EXPECT_EQ(complaint(lsu_with(R"("capacity": 9223372036854775808)")),
              "servers[0].lsus[0].capacity: the number doesn't fit 64 bits");
    EXPECT_EQ(complaint(server_with(R"("maxSessions": 0)")), "servers[0].maxSessions: 1 or more is expected");
    EXPECT_THAT(complaint(R"({"servers": [{"prefix": "P:"}]})"), StartsWith("servers[0].prefix: "));
    EXPECT_EQ(complaint(lsu_with(R"("label": "a\u0001b")")),
              "servers[0].lsus[0].label: a control character can't be sent");
}

TEST(SimulatorScenario, NamesThatWouldBeTakenAreRefused)
{
    EXPECT_EQ(complaint(R"({"servers": [{"prefix": "P"}, {"prefix": "P"}]})"),
              "servers[1].prefix: an earlier one has that name already");
    EXPECT_EQ(complaint(server_with(R"("lsus": [{"name": "l"}, {"name": "l"}])")),
              "servers[0].lsus[1].name: an earlier one has that name already");
    EXPECT_EQ(complaint(server_with(R"("lsus": [{"name": ""}])")),
              "servers[0].lsus[0].name: it may not be empty");
}

TEST(SimulatorScenario, AVolumeIsOfExactlyOneKindWithAllOfItsTexts)
{
    EXPECT_EQ(complaint(snapshot_with(R"({"device": {"devicePath": "/dev/x"}})")), "");
    const std::string at = "servers[0].lsus[0].snapshots[0].volume";
    for (const char* wrong : {"{}", R"({"iscsi": {}})", "7", R"({"nfs": {}, "cifs": {}})"}) {
        EXPECT_EQ(complaint(snapshot_with(wrong)),
                  at + ": an object with one member is expected: nfs, cifs, scsi, device or ndmp");
    }
    EXPECT_EQ(complaint(snapshot_with(R"({"scsi": {"lunWWNN": ""}})")),
              at + ".scsi: the member \"lunSerial\" is missing");
    EXPECT_THAT(complaint(snapshot_with(R"({"device": {"devicePath": "", "exportPath": ""}})")),
                HasSubstr(at + ".device: the member \"exportPath\" is unknown"));
}

int code_of_an_open(Storage& storage, const std::string& session)
{
    return fault_of([&] { storage.snapshot_lists.open({session, 0, {}, 0}); });
}

TEST(SimulatorStorage, ListsThatNobodyClosesAreBoundedAndEndWithTheirSession)
{
    Storage storage(default_scenario());
    const std::string forgetful = storage.open_session("Network_NTAP:a");
    const std::string other = storage.open_session("Network_NTAP:b");
    for (int i = 0; i < 10000; ++i) storage.snapshot_lists.open({forgetful, 0, {}, 0});
    EXPECT_EQ(code_of_an_open(storage, other), kTooManyOpen);
    storage.close_session(forgetful);
    EXPECT_EQ(code_of_an_open(storage, other), 0);
}

TEST(SimulatorStorage, DeletedBytesAreNeverMoreThanWereUsed)
{
    Lsu lsu;
    lsu.properties.used = 100;
    lsu.properties.used_phys = 10;
    lsu.release(60);
    EXPECT_EQ(lsu.properties.used, 40);
    EXPECT_EQ(lsu.properties.used_phys, 0);
    lsu.release(INT64_MIN);
    lsu.release(INT64_MAX);
    EXPECT_EQ(lsu.properties.used, 0);
}

} // namespace
