#include "tests/system/simulator_catalogue.h"

namespace
{

using namespace simulator_catalogue;

std::string filter(const std::string& name, const std::string& label)
{
    return element("lsudef", element("version", "0") + name + element("alloc", "0") +
                                 element("storage", "0") + element("description") + element("config") +
                                 element("flags", "0") + element("saveas", "0") +
                                 element("maxTransfer", "0") + element("blockSize", "0") +
                                 element("allocSize", "0") + label + element("repSources", "0") +
                                 element("repTargets", "0"));
}

class SimulatorLsus : public Client
{
  protected:
    std::vector<std::string> listed(const std::string& wanted) const
    {
        return rest(kLsus, open("openLSUList", server_handle(server_) + wanted));
    }
    HttpReply partners(const std::string& name, int sources, int targets) const
    {
        return ask("getLSUReplicationProp", lsu(server_, name) + element("nsource", std::to_string(sources)) +
                                                element("ntarget", std::to_string(targets)));
    }

    const std::string server_ = open_server();
};

TEST_F(SimulatorLsus, AListWithoutAFilterNamesAllOfTheServerAndEndsWithAFault)
{
    EXPECT_THAT(listed(nil("lsudef")), ElementsAre("home", "database", "archive", "projects", kEnd));
    EXPECT_THAT(listed(filter(element("name"), element("label"))),
                ElementsAre("home", "database", "archive", "projects", kEnd));
    EXPECT_THAT(listed(filter(nil("name"), nil("label"))),
                ElementsAre("home", "database", "archive", "projects", kEnd));
    const std::string vault = open_server("Network_VAULT:filer");
    EXPECT_THAT(rest(kLsus, open("openLSUList", server_handle(vault) + nil("lsudef"))),
                ElementsAre("vault_home", "vault_database", "vault_far", kEnd));
}

TEST_F(SimulatorLsus, AFilterKeepsTheNameAndTheLabelThatItSets)
{
    EXPECT_THAT(listed(filter(element("name", "archive"), element("label"))), ElementsAre("archive", kEnd));
    EXPECT_THAT(listed(filter(nil("name"), element("label", "Database"))), ElementsAre("database", kEnd));
    EXPECT_THAT(listed(filter(element("name", "home"), element("label", "Database"))), ElementsAre(kEnd));
    EXPECT_THAT(listed(filter(element("name", "hom"), nil("label"))), ElementsAre(kEnd));
}

TEST_F(SimulatorLsus, AListAtItsEndStaysThereAndCanBeClosed)
{
    const std::string list = open("openLSUList", server_handle(server_) + nil("lsudef"));
    EXPECT_EQ(rest(kLsus, list).size(), 5U);
    EXPECT_THAT(rest(kLsus, list), ElementsAre(kEnd));
    expect_a_list_is_closed_once(kLsus, list);
}

TEST_F(SimulatorLsus, TwoListsHaveAPositionEach)
{
    const std::string first = open("openLSUList", server_handle(server_) + nil("lsudef"));
    EXPECT_EQ(text_of(next(kLsus, first).body, "lsu"), "home");
    const std::string second = open("openLSUList", server_handle(server_) + nil("lsudef"));
    EXPECT_EQ(text_of(next(kLsus, second).body, "lsu"), "home");
    EXPECT_EQ(text_of(next(kLsus, first).body, "lsu"), "database");
}

TEST_F(SimulatorLsus, AListNeedsAnOpenServerAndEndsWithItsSession)
{
    EXPECT_EQ(fault("openLSUList", server_handle("nope") + nil("lsudef")), kBadHandle);
    EXPECT_EQ(fault("openLSUList", nil("serverHandle") + nil("lsudef")), kMissingElement);
    const std::string other = open_server();
    const std::string list = open("openLSUList", server_handle(server_) + nil("lsudef"));
    const std::string others = open("openLSUList", server_handle(other) + nil("lsudef"));
    EXPECT_EQ(ask("closeServer", server_handle(server_)).status, 200);
    EXPECT_EQ(fault_code(next(kLsus, list)), kBadHandle);
    EXPECT_EQ(text_of(next(kLsus, others).body, "lsu"), "home");
}

TEST_F(SimulatorLsus, TheTokenOfAnotherKindOfListIsABadHandle)
{
    const std::string list = open("openLSUList", server_handle(server_) + nil("lsudef"));
    EXPECT_EQ(fault_code(next(kImages, list)), kBadHandle);
    EXPECT_EQ(fault_code(next(kSnapshots, list)), kBadHandle);
    EXPECT_EQ(fault_code(next(kLsus, server_)), kBadHandle);
}

TEST_F(SimulatorLsus, PropertiesByNameTellTheWholeLsu)
{
    const HttpReply reply = ask("getLSUPropByName", lsu(server_, "home"));
    EXPECT_EQ(reply.status, 200);
    const std::string definition =
        element("version", "11") + element("name", "home") + element("alloc", "1") + element("storage", "2") +
        element("description", "Home directories, over NFS and CIFS") +
        element("config", "aggregate=aggr1,raid=dp") + element("flags", "3") + element("saveas", "1") +
        element("maxTransfer", "1048576") + element("blockSize", "4096") + element("allocSize", "65536") +
        element("label", "Home directories") + element("repSources", "0") + element("repTargets", "2");
    EXPECT_EQ(reply.body,
              element("getLSUPropByNameResponse",
                      element("info", element("version", "11") + element("server", "Network_NTAP:filer") +
                                          element("def", definition) + element("capacity", "1099511627776") +
                                          element("capacityPhys", "549755813888") +
                                          element("used", "418759311360") +
                                          element("usedPhys", "209379655680") + element("images", "3"))));
}

TEST_F(SimulatorLsus, AnUnknownLsuIsToldByACodeOfItsOwn)
{
    EXPECT_EQ(fault("getLSUPropByName", lsu(server_, "vault_home")), kUnknownLsu);
    EXPECT_EQ(fault("getLSUPropByName", lsu(server_, "")), kUnknownLsu);
    EXPECT_EQ(fault_code(partners("nope", 0, 0)), kUnknownLsu);
    EXPECT_EQ(fault("labelLSU", lsu(server_, "nope") + element("lsuLabel", "x")), kUnknownLsu);
    EXPECT_EQ(fault("getLSUPropByName", nil("lsu")), kMissingElement);
    EXPECT_EQ(fault("getLSUPropByName", lsu("nope", "home")), kBadHandle);
}

TEST_F(SimulatorLsus, ReplicationPartnersAreOnTheMachineThatTheClientReached)
{
    const HttpReply reply = partners("home", 0, 2);
    EXPECT_EQ(reply.status, 200);
    const auto partner = [](const std::string& name) {
        return element("item", element("server", "Network_VAULT:filer") + element("lsu", name));
    };
    EXPECT_EQ(text_of(reply.body, "props"),
              element("source") + element("target", partner("vault_home") + partner("vault_far")));
}

TEST_F(SimulatorLsus, ReplicationPartnersAreAllToldWhateverNumberIsAskedFor)
{
    const std::string right = partners("home", 0, 2).body;
    EXPECT_THAT(right, HasSubstr("vault_far"));
    EXPECT_EQ(partners("home", 0, 0).body, right);
    EXPECT_EQ(partners("home", 7, -1).body, right);
    EXPECT_EQ(text_of(partners("archive", 0, 0).body, "props"), element("source") + element("target"));
}

TEST_F(SimulatorLsus, ALabelIsKeptAndFoundByTheFilter)
{
    const std::string longest(63, 'x');
    EXPECT_EQ(ask("labelLSU", lsu(server_, "archive") + element("lsuLabel", longest)).status, 200);
    EXPECT_EQ(text_of(ask("getLSUPropByName", lsu(server_, "archive")).body, "label"), longest);
    EXPECT_THAT(listed(filter(nil("name"), element("label", longest))), ElementsAre("archive", kEnd));
    EXPECT_EQ(fault("labelLSU", lsu(server_, "archive") + element("lsuLabel", longest + "x")), kBadValue);
    EXPECT_EQ(text_of(ask("getLSUPropByName", lsu(server_, "archive")).body, "label"), longest);
}

} // namespace
