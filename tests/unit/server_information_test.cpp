#include "conversion/server_information.h"
#include "tests/kit/log_recorder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

#include "soapwrapperH.h"

using namespace soapwrapper;
using kit::RecordedSession;
using testing::Each;
using testing::ElementsAre;

namespace
{

// What a service sends, with every member there.
struct WireInformation {
    std::string server = "the server";
    std::string ndmp_host = "the filer";
    ns1__ArrayOfString types;
    ns1__ArrayOfString interfaces;
    ns1__ArrayOfInt credentials;
    ns1__ArrayOfInt capabilities;
    ns1__ServerInformation information;

    WireInformation()
    {
        information.server = &server;
        information.ndmpHost = &ndmp_host;
        information.sth = &types;
        information.requiredInterface = &interfaces;
        information.cred = &credentials;
        information.cap = &capabilities;
    }
};

// The host's record, every byte of it a mark, on the heap and not a byte longer.
std::unique_ptr<sts_server_info_v8_t> marked_record(int mark = 0x5A)
{
    auto record = std::make_unique<sts_server_info_v8_t>();
    std::memset(record.get(), mark, sizeof *record);
    return record;
}

template <class Field>
bool is_marked(const Field& field, unsigned char mark = 0x5A)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(&field);
    return std::all_of(bytes, bytes + sizeof field, [&](unsigned char byte) { return byte == mark; });
}

void convert(sts_server_info_v8_t& record, const WireInformation& wire,
             const sts_session_def_v7_t* session = nullptr)
{
    set_server_info_from_soap(&record, &wire.information, session);
}

} // namespace

TEST(ServerInformation, CopiesEveryMember)
{
    WireInformation wire;
    wire.information.maxconnect = 100;
    wire.information.nconnect = -3;
    wire.information.flags = std::numeric_limits<int>::min();
    wire.types.item = {"t0", "t1"};
    wire.interfaces.item = {"11;1;2;http;u"};
    wire.credentials.item = {7, -8};
    wire.capabilities.item = {33};
    const auto record = marked_record(0);
    convert(*record, wire);
    EXPECT_EQ(record->maxconnect, 100);
    EXPECT_EQ(record->nconnect, -3);
    EXPECT_EQ(record->flags, std::numeric_limits<int>::min());
    EXPECT_STREQ(record->server, "the server");
    EXPECT_STREQ(record->ndmpHost, "the filer");
    EXPECT_STREQ(record->sth[0], "t0");
    EXPECT_STREQ(record->sth[1], "t1");
    EXPECT_STREQ(record->requiredInterface[0], "11;1;2;http;u");
    EXPECT_EQ(record->cred[0], 7);
    EXPECT_EQ(record->cred[1], -8);
    EXPECT_EQ(record->cap[1], 2U);
}

TEST(ServerInformation, PutsACapabilityAtItsBitOfItsWord)
{
    WireInformation wire;
    wire.capabilities.item = {0, 31, 32, 2079};
    const auto record = marked_record(0);
    convert(*record, wire);
    EXPECT_EQ(record->cap[0], 0x80000001U);
    EXPECT_EQ(record->cap[1], 1U);
    EXPECT_EQ(record->cap[64], 0x80000000U);
    EXPECT_THAT(std::vector<std::uint32_t>(record->cap + 2, record->cap + 64), Each(0U));
}

TEST(ServerInformation, OnlyEverSetsCapabilities)
{
    WireInformation wire;
    const auto record = marked_record(0);
    wire.capabilities.item = {1, 40};
    convert(*record, wire);
    wire.capabilities.item = {2};
    convert(*record, wire);
    EXPECT_EQ(record->cap[0], 6U);
    EXPECT_EQ(record->cap[1], 256U);
    wire.capabilities.item.clear();
    convert(*record, wire);
    EXPECT_EQ(record->cap[0], 6U);
}

TEST(ServerInformation, IgnoresCapabilitiesBeyondTheRecord)
{
    WireInformation wire;
    wire.capabilities.item = {2080, -1, -32, std::numeric_limits<int>::max(),
                              std::numeric_limits<int>::min()};
    const auto record = marked_record(0);
    convert(*record, wire);
    EXPECT_THAT(record->cap, Each(0U));
    EXPECT_STREQ(record->requiredInterface[0], "");
}

TEST(ServerInformation, LogsTheCapabilitiesInTheOrderReceived)
{
    WireInformation wire;
    RecordedSession session;
    const auto record = marked_record();
    wire.capabilities.item = {5, 3};
    convert(*record, wire, session.get());
    wire.capabilities.item = {2080, -1, 5, 5};
    convert(*record, wire, session.get());
    wire.capabilities.item = {0};
    convert(*record, wire, session.get());
    EXPECT_THAT(session.lines(),
                ElementsAre(kit::record("set_server_info_from_soap: capabilities = 5,3"),
                            kit::record("set_server_info_from_soap: capabilities = 2080,-1,5,5"),
                            kit::record("set_server_info_from_soap: capabilities = 0")));
}

TEST(ServerInformation, LogsNothingBehindTheSignForNoCapabilities)
{
    WireInformation wire;
    RecordedSession session;
    const auto record = marked_record();
    convert(*record, wire, session.get());
    EXPECT_THAT(session.lines(), ElementsAre(kit::record("set_server_info_from_soap: capabilities = ")));
}

TEST(ServerInformation, CutsLongTextsAndTerminatesThem)
{
    WireInformation wire;
    wire.server = std::string(512, 's');
    wire.ndmp_host = std::string(5000, 'n');
    wire.types.item = {std::string(16, 't'), std::string(15, 'u')};
    wire.interfaces.item = {std::string(512, 'i'), "next"};
    const auto record = marked_record();
    convert(*record, wire);
    EXPECT_EQ(record->server, std::string(511, 's'));
    EXPECT_EQ(record->ndmpHost, std::string(511, 'n'));
    EXPECT_EQ(record->sth[0], std::string(15, 't'));
    EXPECT_EQ(record->sth[1], std::string(15, 'u'));
    EXPECT_EQ(record->requiredInterface[0], std::string(511, 'i'));
    EXPECT_STREQ(record->requiredInterface[1], "next");
}

TEST(ServerInformation, LeavesTheNdmpHostAloneWhereItIsNil)
{
    WireInformation wire;
    wire.information.ndmpHost = nullptr;
    const auto record = marked_record(0);
    std::strcpy(record->ndmpHost, "the host's own");
    convert(*record, wire);
    EXPECT_STREQ(record->ndmpHost, "the host's own");
}

TEST(ServerInformation, LeavesAloneWhatTheListsDontReach)
{
    WireInformation wire;
    wire.types.item = {"t"};
    wire.interfaces.item = {"i", "j"};
    wire.credentials.item = {1, 2, 3};
    const auto record = marked_record();
    convert(*record, wire);
    EXPECT_TRUE(is_marked(record->sth[1]));
    EXPECT_TRUE(is_marked(record->sth[31]));
    EXPECT_TRUE(is_marked(record->requiredInterface[2]));
    EXPECT_TRUE(is_marked(record->requiredInterface[31]));
    EXPECT_TRUE(is_marked(record->cred[3]));
    EXPECT_TRUE(is_marked(record->cred[7]));
    EXPECT_TRUE(is_marked(record->cap));
}

TEST(ServerInformation, OverwritesInASecondConversionOnlyAsFarAsTheListsReach)
{
    WireInformation wire;
    const auto record = marked_record(0);
    wire.types.item = {"a", "b", "c"};
    wire.credentials.item = {1, 2, 3};
    convert(*record, wire);
    wire.types.item = {"x"};
    wire.credentials.item = {9};
    convert(*record, wire);
    EXPECT_STREQ(record->sth[0], "x");
    EXPECT_STREQ(record->sth[1], "b");
    EXPECT_STREQ(record->sth[2], "c");
    EXPECT_THAT(std::vector<int>(record->cred, record->cred + 4), ElementsAre(9, 2, 3, 0));
}

TEST(ServerInformation, FillsAsMuchAsTheRecordHoldsAndIgnoresTheRest)
{
    WireInformation wire;
    for (int i = 0; i < 100; ++i) {
        wire.types.item.push_back("t" + std::to_string(i));
        wire.interfaces.item.push_back("i" + std::to_string(i));
        wire.credentials.item.push_back(i);
    }
    const auto record = marked_record(0);
    convert(*record, wire);
    EXPECT_STREQ(record->sth[31], "t31");
    EXPECT_STREQ(record->requiredInterface[31], "i31");
    EXPECT_EQ(record->cred[7], 7);
    // What stands behind each array is what belongs there.
    EXPECT_EQ(record->flags, 0);
    EXPECT_STREQ(record->ndmpHost, "the filer");
    EXPECT_EQ(record->cred[0], 0);
}

TEST(ServerInformation, LeavesAloneWhatIsMissingAltogether)
{
    WireInformation wire;
    wire.information.server = nullptr;
    wire.information.sth = nullptr;
    wire.information.requiredInterface = nullptr;
    wire.information.cred = nullptr;
    wire.information.cap = nullptr;
    wire.information.flags = 5;
    const auto record = marked_record();
    RecordedSession session;
    convert(*record, wire, session.get());
    EXPECT_TRUE(is_marked(record->server));
    EXPECT_TRUE(is_marked(record->sth));
    EXPECT_TRUE(is_marked(record->requiredInterface));
    EXPECT_TRUE(is_marked(record->cred));
    EXPECT_TRUE(is_marked(record->cap));
    EXPECT_EQ(record->flags, 5);
    EXPECT_STREQ(record->ndmpHost, "the filer");
    EXPECT_THAT(session.texts(), ElementsAre("set_server_info_from_soap: capabilities = "));
}

TEST(ServerInformation, CopiesAnEmptyText)
{
    WireInformation wire;
    wire.server.clear();
    wire.types.item = {""};
    const auto record = marked_record();
    convert(*record, wire);
    EXPECT_STREQ(record->server, "");
    EXPECT_STREQ(record->sth[0], "");
}
