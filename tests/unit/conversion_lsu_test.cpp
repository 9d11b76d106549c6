#include "conversion/lsu_definition.h"
#include "conversion/lsu_pair.h"
#include "tests/unit/canary.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <vector>

#include "soapwrapperStub.h"

using namespace soapwrapper;

namespace
{

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

// A definition with a value of its own in each element.
struct Definition {
    std::string name = "lsu1";
    std::string description = "free text";
    std::string config = "a=b";
    std::string label = "blue";
    ns1__LSUDefinition wire;

    Definition()
    {
        wire.version = 77;
        wire.name = &name;
        wire.alloc = -1;
        wire.storage = 2;
        wire.description = &description;
        wire.config = &config;
        wire.flags = 3;
        wire.saveas = 4;
        wire.maxTransfer = kLowest;
        wire.blockSize = kHighest;
        wire.allocSize = -6;
        wire.label = &label;
        wire.repSources = 8;
        wire.repTargets = -9;
    }
};

template <class Record>
Record common_fields()
{
    Record record;
    fill_with_canary(record);
    put(record.name, "lsu1");
    record.alloc = -1;
    record.storage = 2;
    put(record.description, "free text");
    put(record.config, "a=b");
    record.flags = 3;
    record.saveas = 4;
    record.maxTransfer = kLowest;
    record.blockSize = kHighest;
    record.allocSize = -6;
    put(record.label, "blue");
    return record;
}

template <class Record>
void keep_numbers_of(const ns1__LSUDefinition& wire, Record& expected)
{
    expected.alloc = wire.alloc;
    expected.storage = wire.storage;
    expected.flags = wire.flags;
    expected.saveas = wire.saveas;
    expected.maxTransfer = wire.maxTransfer;
    expected.blockSize = wire.blockSize;
    expected.allocSize = wire.allocSize;
}

} // namespace

TEST(LsuDefinitionV10, IsFilledInEveryField)
{
    Definition definition;
    sts_lsu_def_v9_t record;
    fill_with_canary(record);
    set_lsu_def_from_soap_v10(record, &definition.wire);
    EXPECT_TRUE(same_bytes(record, common_fields<sts_lsu_def_v9_t>()));
}

TEST(LsuDefinitionV11, IsFilledInEveryFieldButTheVersion)
{
    Definition definition;
    sts_lsu_def_v11_t record;
    fill_with_canary(record);
    set_lsu_def_from_soap_v11(record, &definition.wire);
    auto expected = common_fields<sts_lsu_def_v11_t>();
    expected.repSources = 8;
    expected.repTargets = -9;
    EXPECT_TRUE(same_bytes(record, expected));
}

TEST(LsuDefinitionV10, KeepsEachTextThatIsNil)
{
    ns1__LSUDefinition wire;
    sts_lsu_def_v9_t record;
    sts_lsu_def_v9_t expected;
    fill_with_canary(record);
    fill_with_canary(expected);
    set_lsu_def_from_soap_v10(record, &wire);
    keep_numbers_of(wire, expected);
    EXPECT_TRUE(same_bytes(record, expected));
}

TEST(LsuDefinitionV11, EmptiesTheLabelForANilOneAndKeepsTheOtherTexts)
{
    ns1__LSUDefinition wire;
    sts_lsu_def_v11_t record;
    sts_lsu_def_v11_t expected;
    fill_with_canary(record);
    fill_with_canary(expected);
    set_lsu_def_from_soap_v11(record, &wire);
    keep_numbers_of(wire, expected);
    expected.repSources = 0;
    expected.repTargets = 0;
    put(expected.label, "");
    EXPECT_TRUE(same_bytes(record, expected));
}

TEST(LsuDefinitionV10, CutsEachTextAtItsOwnBound)
{
    for (const int beyond : {-1, 0, 1, 5000}) {
        Definition definition;
        definition.name = long_text(static_cast<std::size_t>(1024 + beyond));
        definition.description = long_text(static_cast<std::size_t>(1024 + beyond));
        definition.config = long_text(static_cast<std::size_t>(2048 + beyond));
        definition.label = long_text(static_cast<std::size_t>(64 + beyond));
        sts_lsu_def_v9_t record;
        fill_with_canary(record);
        set_lsu_def_from_soap_v10(record, &definition.wire);
        auto expected = common_fields<sts_lsu_def_v9_t>();
        put(expected.name, long_text(1023));
        put(expected.description, long_text(1023));
        put(expected.config, long_text(2047));
        put(expected.label, long_text(63));
        EXPECT_TRUE(same_bytes(record, expected)) << beyond;
    }
}

TEST(LsuDefinition, OfNothingLeavesBothRecordsAsTheyStood)
{
    sts_lsu_def_v9_t older;
    sts_lsu_def_v9_t older_before;
    fill_with_canary(older);
    fill_with_canary(older_before);
    set_lsu_def_from_soap_v10(older, nullptr);
    EXPECT_TRUE(same_bytes(older, older_before));

    sts_lsu_def_v11_t record;
    sts_lsu_def_v11_t before;
    fill_with_canary(record);
    fill_with_canary(before);
    set_lsu_def_from_soap_v11(record, nullptr);
    EXPECT_TRUE(same_bytes(record, before));
}

TEST(LsuInformation, BringsBackTheVersionTheDefinitionAndTheCounters)
{
    Definition definition;
    ns1__LSUInformation wire;
    wire.version = kLowest;
    wire.server = long_text(600);
    wire.def = &definition.wire;
    wire.capacity = -1;
    wire.capacityPhys = kHighest;
    wire.used = 3;
    wire.usedPhys = kLowest;
    wire.images = 5;
    sts_lsu_info_v11_t record;
    sts_lsu_info_v11_t expected;
    fill_with_canary(record);
    fill_with_canary(expected);
    set_lsu_info_from_soap(record, &wire);
    expected.version = kLowest;
    put(expected.server, long_text(511));
    expected.def = common_fields<sts_lsu_def_v11_t>();
    expected.def.repSources = 8;
    expected.def.repTargets = -9;
    expected.capacity = -1;
    expected.capacityPhys = kHighest;
    expected.used = 3;
    expected.usedPhys = kLowest;
    expected.images = 5;
    EXPECT_TRUE(same_bytes(record, expected));
}

TEST(LsuInformation, WithoutADefinitionLeavesTheRecordsDefinition)
{
    ns1__LSUInformation wire;
    sts_lsu_info_v11_t record;
    sts_lsu_def_v11_t before;
    fill_with_canary(record);
    fill_with_canary(before);
    set_lsu_info_from_soap(record, &wire);
    EXPECT_TRUE(same_bytes(record.def, before));
    EXPECT_EQ(record.images, 0);
    set_lsu_info_from_soap(record, nullptr);
    EXPECT_TRUE(same_bytes(record.def, before));
}

TEST(LsuSpecification, CutsServerAndLsuAtTheirBounds)
{
    ns1__LSUSpecification wire;
    wire.server = long_text(512);
    wire.lsu = long_text(1024);
    sts_lsu_spec_v11_t record;
    sts_lsu_spec_v11_t expected;
    fill_with_canary(record);
    fill_with_canary(expected);
    set_lsu_spec_from_soap(record, &wire);
    put(expected.server, long_text(511));
    put(expected.lsu, long_text(1023));
    EXPECT_TRUE(same_bytes(record, expected));
}

TEST(LsuSpecificationArray, FromTheServiceFillsAsManyEntriesAsItHolds)
{
    ns1__LSUSpecification first;
    first.server = "s1";
    first.lsu = "l1";
    ns1__LSUSpecification third;
    third.server = "s3";
    third.lsu = "l3";
    ns1__ArrayOfLSUSpecification wire;
    wire.item = {&first, nullptr, &third};
    sts_lsu_spec_v11_t records[4];
    sts_lsu_spec_v11_t expected[4];
    fill_with_canary(records);
    fill_with_canary(expected);
    set_lsu_spec_array_from_soap(records, &wire);
    put(expected[0].server, "s1");
    put(expected[0].lsu, "l1");
    put(expected[2].server, "s3");
    put(expected[2].lsu, "l3");
    EXPECT_TRUE(same_bytes(records, expected));
}

TEST(LsuSpecificationArray, FromTheServiceEmptyOrMissingWritesNothing)
{
    const ns1__ArrayOfLSUSpecification empty;
    set_lsu_spec_array_from_soap(nullptr, &empty);
    sts_lsu_spec_v11_t record;
    sts_lsu_spec_v11_t before;
    fill_with_canary(record);
    fill_with_canary(before);
    set_lsu_spec_array_from_soap(&record, nullptr);
    EXPECT_TRUE(same_bytes(record, before));
}

TEST(LsuSpecificationArray, FromTheHostAppendsInOrder)
{
    sts_lsu_spec_v11_t specs[2] = {};
    put(specs[0].server, "s1");
    put(specs[0].lsu, "l1");
    std::memset(&specs[1], 'x', sizeof specs[1]); // no terminator anywhere
    ns1__LSUSpecification already;
    ns1__ArrayOfLSUSpecification wire;
    wire.item.push_back(&already);
    set_lsu_spec_array_from_sts(wire, specs, 2);
    ASSERT_EQ(wire.item.size(), 3u);
    EXPECT_EQ(wire.item[0], &already);
    EXPECT_EQ(wire.item[1]->server, "s1");
    EXPECT_EQ(wire.item[1]->lsu, "l1");
    EXPECT_EQ(wire.item[2]->server, std::string(512, 'x'));
    EXPECT_EQ(wire.item[2]->lsu, std::string(1024, 'x'));
    wire.item.erase(wire.item.begin());
    cleanup_lsu_spec_array(wire);
    EXPECT_THAT(wire.item, testing::IsEmpty());
}

TEST(LsuSpecificationArray, FromTheHostOfCountZeroDoesNothing)
{
    ns1__ArrayOfLSUSpecification wire;
    set_lsu_spec_array_from_sts(wire, nullptr, 0);
    EXPECT_THAT(wire.item, testing::IsEmpty());
}
