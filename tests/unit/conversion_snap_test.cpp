#include "conversion/snap_definition.h"
#include "tests/unit/canary.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>

#include "soapwrapperStub.h"

using namespace soapwrapper;

namespace
{

// What a name of `length` characters leaves ahead of the LSU's name, then that name.
sts_snap_info_v11_t record_after(std::size_t server_length, const std::string& lsu)
{
    sts_snap_info_v11_t expected;
    fill_with_canary(expected);
    char* bytes = reinterpret_cast<char*>(&expected) + offsetof(sts_snap_info_v11_t, snapServer);
    const std::string server = long_text(server_length);
    std::memcpy(bytes, server.c_str(), server.size() + 1);
    put(expected.snapLsu, lsu);
    expected.snapStatus = 0;
    expected.snapSize = 0;
    return expected;
}

} // namespace

TEST(SnapDefinition, FromTheServiceWritesAllButTheSupplierId)
{
    for (const int beyond : {-1, 0, 1}) {
        ns1__IndependentSupplierId isid;
        isid.version = 3;
        ns1__SnapDefinition wire;
        wire.snapName = long_text(static_cast<std::size_t>(2048 + beyond));
        wire.snapType = 1;
        wire.snapFlags = std::numeric_limits<int>::min();
        wire.snapSaveas = -3;
        wire.isid = &isid;
        sts_snap_def_v11_t record;
        sts_snap_def_v11_t expected;
        fill_with_canary(record);
        fill_with_canary(expected);
        set_snap_def_from_soap(record, &wire);
        put(expected.snapName, long_text(2047));
        expected.snapType = 1;
        expected.snapFlags = std::numeric_limits<int>::min();
        expected.snapSaveas = -3;
        EXPECT_TRUE(same_bytes(record, expected)) << beyond;
    }
}

TEST(SnapDefinition, OfNothingLeavesTheRecordAsItStood)
{
    sts_snap_def_v11_t record;
    sts_snap_def_v11_t before;
    fill_with_canary(record);
    fill_with_canary(before);
    set_snap_def_from_soap(record, nullptr);
    EXPECT_TRUE(same_bytes(record, before));
}

TEST(SnapDefinition, FromTheHostCarriesTheWholeRecord)
{
    sts_snap_def_v11_t def;
    fill_with_canary(def);
    put(def.snapName, "snap1");
    def.snapType = -1;
    def.snapFlags = 2;
    def.snapSaveas = 3;
    def.isid.version = std::numeric_limits<std::int64_t>::max();
    put(def.isid.dpaid, "dpa");
    put(def.isid.dpaver, "1");
    put(def.isid.info, "");
    ns1__SnapDefinition wire;
    set_snap_def_from_sts(wire, &def);
    EXPECT_EQ(wire.snapName, "snap1");
    EXPECT_EQ(wire.snapType, -1);
    EXPECT_EQ(wire.snapFlags, 2);
    EXPECT_EQ(wire.snapSaveas, 3);
    ASSERT_NE(wire.isid, nullptr);
    EXPECT_EQ(wire.isid->version, std::numeric_limits<LONG64>::max());
    EXPECT_EQ(*wire.isid->dpaid, "dpa");
    EXPECT_EQ(*wire.isid->dpaver, "1");
    EXPECT_EQ(static_cast<const void*>(wire.isid->info->__ptr), def.isid.info);
    EXPECT_EQ(wire.isid->info->__size, 0);
    cleanup_snap_def(wire);
    EXPECT_EQ(wire.isid, nullptr);
    EXPECT_EQ(wire.snapName, "snap1");
    cleanup_snap_def(wire);
    EXPECT_EQ(wire.isid, nullptr);
}

TEST(SnapInformation, FromTheServiceIsFilledInEveryField)
{
    ns1__SnapDefinition def;
    def.snapName = "snap1";
    def.snapType = 1;
    def.snapFlags = 2;
    def.snapSaveas = 3;
    ns1__NDMPVolumeSpecification ndmp;
    ndmp.exportfiler = "filer";
    ndmp.exportpath = "/vol/a";
    ns1__VolumeSpecification volume;
    volume.__union_VolumeSpecification = 5;
    volume.union_VolumeSpecification.ndmp = &ndmp;
    ns1__SnapInformation wire;
    wire.snapDef = &def;
    wire.snapServer = "server";
    wire.snapLsu = long_text(1024);
    wire.snapVolSpec = &volume;
    wire.snapStatus = -4;
    wire.snapSize = std::numeric_limits<LONG64>::min();
    sts_snap_info_v11_t record;
    sts_snap_info_v11_t expected;
    fill_with_canary(record);
    fill_with_canary(expected);
    set_snap_info_from_soap(record, &wire);
    put(expected.snapDef.snapName, "snap1");
    expected.snapDef.snapType = 1;
    expected.snapDef.snapFlags = 2;
    expected.snapDef.snapSaveas = 3;
    put(expected.snapServer, "server");
    put(expected.snapLsu, long_text(1023));
    put(expected.snapVolSpec.first, "filer");
    put(expected.snapVolSpec.second, "/vol/a");
    expected.snapVolSpec.volumeType = STS_VOLUME_NDMP;
    expected.snapStatus = -4;
    expected.snapSize = std::numeric_limits<std::int64_t>::min();
    EXPECT_TRUE(same_bytes(record, expected));
}

TEST(SnapInformation, LetsALongServerNameRunIntoTheLsusFieldAndCoversItThere)
{
    for (const std::size_t length : {511u, 512u, 513u, 1023u}) {
        ns1__SnapInformation wire;
        wire.snapServer = long_text(length);
        wire.snapLsu = "lsu1";
        sts_snap_info_v11_t record;
        fill_with_canary(record);
        set_snap_info_from_soap(record, &wire);
        EXPECT_TRUE(same_bytes(record, record_after(length, "lsu1"))) << length;
        EXPECT_STREQ(record.snapLsu, "lsu1");
    }
}

TEST(SnapInformation, CutsTheServerNameAtTheWiderBound)
{
    ns1__SnapInformation wire;
    wire.snapServer = long_text(5000);
    sts_snap_info_v11_t record;
    fill_with_canary(record);
    set_snap_info_from_soap(record, &wire);
    EXPECT_TRUE(same_bytes(record, record_after(1023, "")));
}

TEST(SnapInformation, KeepsTheDefinitionAndTheVolumeThatAreNil)
{
    const ns1__SnapInformation wire;
    sts_snap_info_v11_t record;
    fill_with_canary(record);
    set_snap_info_from_soap(record, &wire);
    EXPECT_TRUE(same_bytes(record, record_after(0, "")));
    set_snap_info_from_soap(record, nullptr);
    EXPECT_TRUE(same_bytes(record, record_after(0, "")));
}
