#include "tests/system/simulator_catalogue.h"

namespace
{

using namespace simulator_catalogue;

class SimulatorSnapshots : public Client
{
  protected:
    HttpReply properties(const std::string& of, const std::string& name) const
    {
        return ask("getSnapPropByName", lsu(server_, of) + snapshot(name));
    }
    std::vector<std::string> by_volume(const std::string& volume) const
    {
        return rest(kSnapshots,
                    open("openSnapListByVolume", server_handle(server_) + element("volSpec", volume)));
    }

    // A validation's request, from the target's handle on as given.
    std::string rollback(const std::string& name, const std::string& target_token, const std::string& volume,
                         const std::vector<std::string>& names = {}, int count = -1) const
    {
        std::string items;
        for (const std::string& each : names) items += element("item", each);
        return lsu(server_, "home") + snapshot(name) +
               element("targetServerHandle", element("token", target_token)) +
               element("targetVolSpec", volume) + element("rollbackList", items) +
               element("numRollbacks", std::to_string(count < 0 ? static_cast<int>(names.size()) : count));
    }
    std::vector<std::string> in_the_way(const std::string& request) const
    {
        return rest(kSnapshots, open("validateRollback", request));
    }

    const std::string server_ = open_server();
};

TEST_F(SimulatorSnapshots, AListByLsuGivesItsSnapshotsOldestFirst)
{
    EXPECT_THAT(rest(kSnapshots, open("openSnapList", lsu(server_, "home"))),
                ElementsAre("nightly.0105", "nightly.0106", "nightly.0107", "before-cleanup", kEnd));
    EXPECT_EQ(fault("openSnapList", lsu(server_, "nope")), kUnknownLsu);
}

TEST_F(SimulatorSnapshots, AListIsClosedOnce)
{
    expect_a_list_is_closed_once(kSnapshots, open("openSnapList", lsu(server_, "home")));
}

TEST_F(SimulatorSnapshots, AListByVolumeIsAnsweredLikeTheOneByLsu)
{
    const HttpReply reply =
        ask("openSnapListByVolume", server_handle(server_) + element("volSpec", home_volume()));
    EXPECT_THAT(reply.body, StartsWith("<ns1:openSnapListResponse><ns1:snapListHandle><ns1:token>"));
}

TEST_F(SimulatorSnapshots, AListByVolumeFindsTheSnapshotsOfEachKindOfVolume)
{
    EXPECT_THAT(by_volume(home_volume()), ElementsAre("nightly.0105", "nightly.0106", "nightly.0107", kEnd));
    EXPECT_THAT(by_volume(element("cifs", element("exportHost", "filer1") + element("shareName", "home$") +
                                              element("exportPath", "/vol/home")) +
                          element("volumeType", "1")),
                ElementsAre("before-cleanup", kEnd));
    EXPECT_THAT(by_volume(element("scsi", element("lunWWNN", "50:0a:09:80:00:00:00:01") +
                                              element("lunSerial", "P3aBcDeFgHiJ")) +
                          element("volumeType", "2")),
                ElementsAre("log-switch.1", kEnd));
    EXPECT_THAT(by_volume(element("device", element("devicePath", "/dev/mapper/database")) +
                          element("volumeType", "3")),
                ElementsAre("device.1", kEnd));
    EXPECT_THAT(
        by_volume(element("ndmp", element("exportfiler", "filer1") + element("exportpath", "/vol/archive")) +
                  element("volumeType", "4")),
        ElementsAre("yearly.2025", kEnd));
}

TEST_F(SimulatorSnapshots, AVolumeThatIsUnknownOrOfNoKindIsRefused)
{
    const auto code = [&](const std::string& volume) {
        return fault("openSnapListByVolume", server_handle(server_) + element("volSpec", volume));
    };
    EXPECT_EQ(code(nfs("filer1", "/vol/nope", "")), kUnknownVolume);
    EXPECT_EQ(code(nfs("filer1", "/vol/home", "/elsewhere")), kUnknownVolume);
    EXPECT_EQ(code(nfs("vault1", "/vol/vault_home", "")), kUnknownVolume);
    EXPECT_EQ(code(element("volumeType", "0")), kMissingElement);
    EXPECT_EQ(fault("openSnapListByVolume", server_handle(server_) + nil("volSpec")), kMissingElement);
    EXPECT_EQ(fault("openSnapListByVolume", server_handle("nope") + element("volSpec", home_volume())),
              kBadHandle);
}

TEST_F(SimulatorSnapshots, PropertiesByNameTellTheWholeSnapshot)
{
    const HttpReply reply = properties("home", "nightly.0107");
    EXPECT_EQ(reply.status, 200);
    const std::string info =
        element("snapDef", element("snapName", "nightly.0107") + element("snapType", "1") +
                               element("snapFlags", "0") + element("snapSaveas", "1") + nil("isid")) +
        element("snapServer", "Network_NTAP:filer") + element("snapLsu", "home") +
        element("snapVolSpec", nfs("filer1", "/vol/home", "/vol/home")) + element("snapStatus", "0") +
        element("snapSize", "536870912");
    EXPECT_EQ(reply.body, element("getSnapPropByNameResponse", element("snapInfo", info)));
}

TEST_F(SimulatorSnapshots, PropertiesByNameTellTheVolumeInItsKind)
{
    const auto volume = [&](const std::string& of, const std::string& name) {
        return text_of(properties(of, name).body, "snapVolSpec");
    };
    EXPECT_THAT(volume("home", "before-cleanup"), StartsWith("<ns1:cifs><ns1:exportHost>filer1<"));
    EXPECT_THAT(volume("database", "log-switch.1"), StartsWith("<ns1:scsi><ns1:lunWWNN>50:0a:"));
    EXPECT_THAT(volume("database", "device.1"), StartsWith("<ns1:device><ns1:devicePath>/dev/mapper/"));
    EXPECT_THAT(volume("archive", "yearly.2025"), StartsWith("<ns1:ndmp><ns1:exportfiler>filer1<"));
    EXPECT_EQ(text_of(volume("archive", "yearly.2025"), "volumeType"), "4");
}

TEST_F(SimulatorSnapshots, AnUnknownSnapshotIsToldByACodeOfItsOwn)
{
    EXPECT_EQ(fault_code(properties("home", "nope")), kUnknownSnapshot);
    EXPECT_EQ(fault_code(properties("database", "nightly.0105")), kUnknownSnapshot);
    EXPECT_EQ(fault("deleteSnap", lsu(server_, "home") + snapshot("nope")), kUnknownSnapshot);
    EXPECT_EQ(fault("getSnapPropByName", lsu(server_, "home") + nil("snapDef")), kMissingElement);
}

TEST_F(SimulatorSnapshots, ADeletedSnapshotIsGoneFromTheListThatIsOpen)
{
    const std::string list = open("openSnapList", lsu(server_, "home"));
    EXPECT_EQ(text_of(next(kSnapshots, list).body, "snapName"), "nightly.0105");
    for (const char* name : {"nightly.0106", "before-cleanup"}) {
        EXPECT_EQ(ask("deleteSnap", lsu(server_, "home") + snapshot(name)).status, 200);
        EXPECT_EQ(fault_code(properties("home", name)), kUnknownSnapshot);
    }
    EXPECT_THAT(rest(kSnapshots, list), ElementsAre("nightly.0107", kEnd));
}

TEST_F(SimulatorSnapshots, ARollbackOfAVolumeToItsOwnSnapshotFindsTheNewerOnesInTheWay)
{
    EXPECT_THAT(in_the_way(rollback("nightly.0105", "", home_volume())),
                ElementsAre("nightly.0106", "nightly.0107", kEnd));
    EXPECT_THAT(in_the_way(rollback("nightly.0107", server_, home_volume())), ElementsAre(kEnd));
}

TEST_F(SimulatorSnapshots, ARollbackLeavesOutWhatTheClientIsReadyToLose)
{
    EXPECT_THAT(in_the_way(rollback("nightly.0105", "", home_volume(), {"nightly.0107", "nope"})),
                ElementsAre("nightly.0106", kEnd));
}

TEST_F(SimulatorSnapshots, ARollbackOntoAnotherVolumeFindsAllOfItsSnapshotsInTheWay)
{
    const std::string vault = open_server("Network_VAULT:filer");
    EXPECT_THAT(in_the_way(rollback("nightly.0107", vault, nfs("vault1", "/vol/vault_home", ""))),
                ElementsAre("vault.0105", kEnd));
}

TEST_F(SimulatorSnapshots, ARollbackThatMakesNoSenseIsRefused)
{
    EXPECT_EQ(fault("validateRollback", rollback("nope", "", home_volume())), kUnknownSnapshot);
    EXPECT_EQ(fault("validateRollback", rollback("nightly.0105", "nope", home_volume())), kBadHandle);
    EXPECT_EQ(fault("validateRollback", rollback("nightly.0105", "", nfs("a", "b", "c"))), kUnknownVolume);
    EXPECT_EQ(fault("validateRollback", rollback("nightly.0105", "", home_volume(), {"a"}, 2)), kBadValue);
}

class SimulatorExports : public SimulatorSnapshots
{
  protected:
    HttpReply create(const std::string& name, const std::vector<std::string>& names) const
    {
        return ask("createExport", lsu(server_, "home") + element("snapName", name) + hosts(names));
    }
    HttpReply add(const std::string& volume, const std::vector<std::string>& names) const
    {
        return ask("addExport", lsu(server_, "home") + element("sourceVolSpec", volume) + hosts(names));
    }
    HttpReply remove(const std::string& volume, const std::vector<std::string>& names) const
    {
        return ask("deleteExport", lsu(server_, "home") + hosts(names) + element("exportedVolume", volume));
    }
    static std::string exported(const HttpReply& reply) { return text_of(reply.body, "exportedVolume"); }
};

TEST_F(SimulatorExports, AnExportedSnapshotIsReachedThroughTheServersHostUnderANameOfItsOwn)
{
    const std::string first = exported(create("nightly.0105", {"client1"}));
    EXPECT_THAT(first, StartsWith("<ns1:nfs><ns1:exportHost>filer</ns1:exportHost>"
                                  "<ns1:exportName>/export/nightly.0105."));
    EXPECT_EQ(text_of(first, "exportPath"), "/vol/home");
    EXPECT_NE(exported(create("nightly.0105", {"client1"})), first);
    EXPECT_THAT(exported(create("before-cleanup", {})), StartsWith("<ns1:cifs><ns1:exportHost>filer<"));
    EXPECT_EQ(fault_code(create("nope", {"client1"})), kUnknownSnapshot);
}

TEST_F(SimulatorExports, AnExportedSnapshotIsNotDeletedUntilItsExportIs)
{
    const std::string volume = exported(create("nightly.0105", {"client1"}));
    const std::string request = lsu(server_, "home") + snapshot("nightly.0105");
    EXPECT_EQ(fault("deleteSnap", request), kInUse);
    EXPECT_EQ(remove(volume, {"client1"}).status, 200);
    EXPECT_EQ(fault_code(remove(volume, {"client1"})), kUnknownExport);
    EXPECT_EQ(ask("deleteSnap", request).status, 200);
}

TEST_F(SimulatorExports, AnExportEndsWithItsLastHost)
{
    const std::string volume = exported(create("nightly.0105", {"client1"}));
    EXPECT_EQ(exported(add(volume, {"client2", "client1"})), volume);
    EXPECT_EQ(fault_code(remove(volume, {"client3"})), kUnknownExport);
    EXPECT_EQ(remove(volume, {"client1"}).status, 200);
    EXPECT_EQ(fault_code(remove(volume, {"client1"})), kUnknownExport);
    EXPECT_EQ(remove(volume, {"client2"}).status, 200);
    EXPECT_EQ(fault_code(remove(volume, {})), kUnknownExport);
}

TEST_F(SimulatorExports, AnExportForAnyHostIsTakenAwayAsAWhole)
{
    const std::string volume = exported(add(home_volume(), {}));
    EXPECT_THAT(volume, HasSubstr("/export/volume."));
    EXPECT_EQ(fault_code(remove(volume, {"client1"})), kUnknownExport);
    EXPECT_EQ(remove(volume, {}).status, 200);
}

TEST_F(SimulatorExports, OnlyAVolumeOfTheLsuCanBeExported)
{
    EXPECT_EQ(fault_code(add(nfs("filer1", "/vol/nope", ""), {"client1"})), kUnknownVolume);
    EXPECT_EQ(fault("addExport",
                    lsu(server_, "database") + element("sourceVolSpec", home_volume()) + hosts({"client1"})),
              kUnknownVolume);
    EXPECT_EQ(fault_code(remove(home_volume(), {})), kUnknownExport);
    EXPECT_EQ(
        fault("addExport", lsu(server_, "home") + element("sourceVolSpec", home_volume()) + nil("host")),
        kMissingElement);
}

TEST_F(SimulatorExports, AClaimedVolumeIsTheSessionsUntilItCloses)
{
    const std::string other = open_server();
    const auto claim = [](const std::string& token) {
        return server_handle(token) + element("volume", home_volume());
    };
    EXPECT_EQ(ask("claimVolume", claim(server_)).status, 200);
    EXPECT_EQ(ask("claimVolume", claim(server_)).status, 200);
    EXPECT_EQ(fault("claimVolume", claim(other)), kInUse);
    EXPECT_EQ(ask("closeServer", server_handle(server_)).status, 200);
    EXPECT_EQ(ask("claimVolume", claim(other)).status, 200);
    EXPECT_EQ(fault("claimVolume", claim(server_)), kBadHandle);
    EXPECT_EQ(fault("claimVolume", server_handle(other) + element("volume", nfs("a", "b", "c"))),
              kUnknownVolume);
    EXPECT_EQ(fault("claimVolume", server_handle(other) + nil("volume")), kMissingElement);
}

TEST_F(SimulatorExports, AnExportedVolumeCanBeClaimed)
{
    const std::string volume = exported(create("nightly.0105", {"client1"}));
    EXPECT_EQ(ask("claimVolume", server_handle(server_) + element("volume", volume)).status, 200);
}

} // namespace
