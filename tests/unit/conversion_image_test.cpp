#include "conversion/image_definition.h"
#include "tests/unit/canary.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

#include "soapwrapperStub.h"

using namespace soapwrapper;

namespace
{

struct LogLine {
    std::string text;
    int level;
};

std::vector<LogLine> g_lines;

int keep_line(const char* /*session_id*/, const char* message, int level)
{
    g_lines.push_back({message, level});
    return 0;
}

// A definition with a value of its own in each field.
sts_image_def_v10_t full_definition()
{
    sts_image_def_v10_t def;
    fill_with_canary(def);
    def.version = std::numeric_limits<std::int64_t>::min();
    put(def.basename, "backup");
    put(def.date, "20240131");
    put(def.fulldate, "20240131T101500");
    put(def.policy, "daily");
    def.saveas = -2;
    def.flags = 3;
    put(def.format, "tar");
    def.isid.version = -4;
    put(def.isid.dpaid, "dpa");
    put(def.isid.dpaver, "9.1");
    put(def.isid.info, "mount=/a");
    return def;
}

void expect_full_definition(const ns1__ImageDefinition& wire, const sts_image_def_v10_t& def)
{
    EXPECT_EQ(wire.version, std::numeric_limits<LONG64>::min());
    EXPECT_EQ(*wire.basename, "backup");
    EXPECT_EQ(*wire.date, "20240131");
    EXPECT_EQ(*wire.fulldate, "20240131T101500");
    EXPECT_EQ(*wire.policy, "daily");
    EXPECT_EQ(wire.saveas, -2);
    EXPECT_EQ(wire.flags, 3);
    EXPECT_EQ(*wire.format, "tar");
    ASSERT_NE(wire.isid, nullptr);
    EXPECT_EQ(wire.isid->version, -4);
    EXPECT_EQ(*wire.isid->dpaid, "dpa");
    EXPECT_EQ(*wire.isid->dpaver, "9.1");
    EXPECT_EQ(static_cast<const void*>(wire.isid->info->__ptr), def.isid.info);
    EXPECT_EQ(wire.isid->info->__size, 8);
    EXPECT_EQ(wire.isid->info->id, nullptr);
    EXPECT_EQ(wire.isid->info->type, nullptr);
    EXPECT_EQ(wire.isid->info->options, nullptr);
}

} // namespace

TEST(ImageDefinition, FromTheServiceWritesFiveFieldsAndLeavesTheRest)
{
    for (const int beyond : {-1, 0, 1}) {
        std::string basename = long_text(static_cast<std::size_t>(1024 + beyond));
        std::string date = long_text(static_cast<std::size_t>(32 + beyond));
        std::string policy = long_text(static_cast<std::size_t>(1024 + beyond));
        std::string other = "not brought back";
        ns1__IndependentSupplierId isid;
        isid.dpaid = &other;
        ns1__ImageDefinition wire;
        wire.version = 7;
        wire.basename = &basename;
        wire.date = &date;
        wire.fulldate = &other;
        wire.policy = &policy;
        wire.saveas = -8;
        wire.flags = 9;
        wire.format = &other;
        wire.isid = &isid;
        sts_image_def_v10_t record;
        sts_image_def_v10_t expected;
        fill_with_canary(record);
        fill_with_canary(expected);
        set_image_def_from_soap(record, &wire);
        put(expected.basename, long_text(1023));
        put(expected.date, long_text(31));
        put(expected.policy, long_text(1023));
        expected.saveas = -8;
        expected.flags = 9;
        EXPECT_TRUE(same_bytes(record, expected)) << beyond;
    }
}

TEST(ImageDefinition, FromTheServiceKeepsEachTextThatIsNil)
{
    const ns1__ImageDefinition wire;
    sts_image_def_v10_t record;
    sts_image_def_v10_t expected;
    fill_with_canary(record);
    fill_with_canary(expected);
    set_image_def_from_soap(record, &wire);
    expected.saveas = 0;
    expected.flags = 0;
    EXPECT_TRUE(same_bytes(record, expected));
    set_image_def_from_soap(record, nullptr);
    EXPECT_TRUE(same_bytes(record, expected));
}

TEST(ImageDefinition, FromTheHostCarriesTheWholeRecord)
{
    const sts_image_def_v10_t def = full_definition();
    ns1__ImageDefinition wire;
    set_image_def_from_sts(wire, &def);
    expect_full_definition(wire, def);
    release_image_def(wire);
}

TEST(ImageDefinition, FromTheHostPointsAtAnEmptySupplierTextToo)
{
    const sts_image_def_v10_t def = {};
    ns1__ImageDefinition wire;
    set_image_def_from_sts(wire, &def);
    EXPECT_EQ(static_cast<const void*>(wire.isid->info->__ptr), def.isid.info);
    EXPECT_EQ(wire.isid->info->__size, 0);
    EXPECT_EQ(*wire.basename, "");
    EXPECT_EQ(*wire.format, "");
    release_image_def(wire);
}

TEST(ImageDefinition, FromTheHostEndsAFieldWithoutATerminatorAtItsBound)
{
    sts_image_def_v10_t def;
    fill_with_canary(def);
    ns1__ImageDefinition wire;
    set_image_def_from_sts(wire, &def);
    EXPECT_EQ(wire.basename->size(), 1024u);
    EXPECT_EQ(wire.date->size(), 32u);
    EXPECT_EQ(wire.fulldate->size(), 32u);
    EXPECT_EQ(wire.policy->size(), 1024u);
    EXPECT_EQ(wire.format->size(), 24u);
    EXPECT_EQ(wire.isid->dpaid->size(), 64u);
    EXPECT_EQ(wire.isid->dpaver->size(), 32u);
    EXPECT_EQ(wire.isid->info->__size, 4096);
    release_image_def(wire);
}

TEST(CleanupImageDef, FreesTheSupplierIdAndLeavesTheTexts)
{
    const sts_image_def_v10_t def = full_definition();
    sts_image_def_v10_t before = def;
    ns1__ImageDefinition wire;
    set_image_def_from_sts(wire, &def);
    cleanup_image_def(wire);
    EXPECT_EQ(wire.isid, nullptr);
    EXPECT_EQ(*wire.basename, "backup");
    EXPECT_EQ(*wire.format, "tar");
    EXPECT_TRUE(same_bytes(def, before));
    cleanup_image_def(wire); // there is nothing left to free, and nothing to trip over
    release_image_def(wire);
    EXPECT_EQ(wire.basename, nullptr);
    EXPECT_EQ(wire.date, nullptr);
    EXPECT_EQ(wire.fulldate, nullptr);
    EXPECT_EQ(wire.policy, nullptr);
    EXPECT_EQ(wire.format, nullptr);
}

TEST(ImageInformation, FromTheServiceBringsAllButTheExports)
{
    std::string basename = "b";
    std::string server = long_text(512);
    std::string lsu = long_text(1024);
    ns1__ImageDefinition def;
    def.basename = &basename;
    def.saveas = 1;
    def.flags = 2;
    ns1__Export exported;
    ns1__ArrayOfExport exports;
    exports.item.push_back(&exported);
    ns1__ImageInformation wire;
    wire.version = -3;
    wire.def = &def;
    wire.server = &server;
    wire.lsu = &lsu;
    wire.size = std::numeric_limits<LONG64>::max();
    wire.blockSize = std::numeric_limits<LONG64>::min();
    wire.exports = &exports;
    wire.status = -4;
    sts_image_info_v10_t record;
    sts_image_info_v10_t expected;
    fill_with_canary(record);
    fill_with_canary(expected);
    set_image_info_from_soap(record, &wire);
    expected.version = -3;
    put(expected.def.basename, "b");
    expected.def.saveas = 1;
    expected.def.flags = 2;
    put(expected.server, long_text(511));
    put(expected.lsu, long_text(1023));
    expected.size = std::numeric_limits<std::int64_t>::max();
    expected.blockSize = std::numeric_limits<std::int64_t>::min();
    expected.status = -4;
    EXPECT_TRUE(same_bytes(record, expected));
}

TEST(ImageInformation, FromTheServiceKeepsWhatIsNil)
{
    const ns1__ImageInformation wire;
    sts_image_info_v10_t record;
    sts_image_info_v10_t expected;
    fill_with_canary(record);
    fill_with_canary(expected);
    set_image_info_from_soap(record, &wire);
    expected.version = 0;
    expected.size = 0;
    expected.blockSize = 0;
    expected.status = 0;
    EXPECT_TRUE(same_bytes(record, expected));
    set_image_info_from_soap(record, nullptr);
    EXPECT_TRUE(same_bytes(record, expected));
}

TEST(ImageInformation, FromTheHostSendsFourExportsFilledOrNot)
{
    sts_image_info_v10_t info;
    std::memset(&info, 0, sizeof info);
    info.version = 11;
    info.def = full_definition();
    put(info.server, "srv");
    put(info.lsu, "lsu1");
    info.size = -5;
    info.blockSize = 6;
    info.exports[1].fstype = 7;
    put(info.exports[1].mount, "/mnt");
    info.status = 8;
    ns1__ArrayOfExport exports;
    ns1__ImageInformation wire;
    wire.exports = &exports;
    set_image_info_from_sts(wire, &info);
    EXPECT_EQ(wire.version, 11);
    ASSERT_NE(wire.def, nullptr);
    expect_full_definition(*wire.def, info.def);
    EXPECT_EQ(*wire.server, "srv");
    EXPECT_EQ(*wire.lsu, "lsu1");
    EXPECT_EQ(wire.size, -5);
    EXPECT_EQ(wire.blockSize, 6);
    EXPECT_EQ(wire.status, 8);
    ASSERT_EQ(exports.item.size(), 4u);
    EXPECT_EQ(exports.item[0]->fstype, 0);
    EXPECT_EQ(*exports.item[0]->mount, "");
    EXPECT_EQ(exports.item[1]->fstype, 7);
    EXPECT_EQ(*exports.item[1]->mount, "/mnt");
    EXPECT_EQ(*exports.item[3]->mount, "");
    release_image_info(wire);
    EXPECT_EQ(wire.def, nullptr);
    EXPECT_EQ(wire.server, nullptr);
    EXPECT_EQ(wire.lsu, nullptr);
    EXPECT_THAT(exports.item, testing::IsEmpty());
}

TEST(ImageInformation, FromTheHostWithoutAnArrayForTheExportsGoesWithout)
{
    sts_image_info_v10_t info;
    std::memset(&info, 0, sizeof info);
    ns1__ImageInformation wire;
    set_image_info_from_sts(wire, &info);
    EXPECT_EQ(wire.exports, nullptr);
    release_image_info(wire);
}

class Exports : public testing::Test
{
  protected:
    void SetUp() override { g_lines.clear(); }

    // `count` exports, number n of type n and mounted at "/n".
    void make(int count)
    {
        items_.resize(static_cast<std::size_t>(count));
        mounts_.resize(items_.size());
        for (int i = 0; i < count; ++i) {
            const auto at = static_cast<std::size_t>(i);
            mounts_[at] = "/" + std::to_string(i);
            items_[at].fstype = i;
            items_[at].mount = &mounts_[at];
            wire_.item.push_back(&items_[at]);
        }
    }

    static sts_session_def_v7_t session()
    {
        sts_session_def_v7_t session = {};
        session.log_callback = &keep_line;
        return session;
    }

    std::vector<ns1__Export> items_;
    std::vector<std::string> mounts_;
    ns1__ArrayOfExport wire_;
};

TEST_F(Exports, UpToFourAreFilledSilently)
{
    make(4);
    mounts_[2] = long_text(1024);
    items_[3].mount = nullptr;
    sts_export_v7_t records[5];
    sts_export_v7_t expected[5];
    fill_with_canary(records);
    fill_with_canary(expected);
    const sts_session_def_v7_t log = session();
    set_exports_from_soap(records, &wire_, &log);
    for (int i = 0; i < 4; ++i) expected[i].fstype = i;
    put(expected[0].mount, "/0");
    put(expected[1].mount, "/1");
    put(expected[2].mount, long_text(1023));
    EXPECT_TRUE(same_bytes(records, expected));
    EXPECT_THAT(g_lines, testing::IsEmpty());
}

TEST_F(Exports, FiveAreReportedAsAnAnomalyAndAllWritten)
{
    make(5);
    sts_export_v7_t records[6];
    sts_export_v7_t expected[6];
    fill_with_canary(records);
    fill_with_canary(expected);
    const sts_session_def_v7_t log = session();
    set_exports_from_soap(records, &wire_, &log);
    for (int i = 0; i < 5; ++i) {
        expected[i].fstype = i;
        put(expected[i].mount, "/" + std::to_string(i));
    }
    EXPECT_TRUE(same_bytes(records, expected));
    ASSERT_EQ(g_lines.size(), 1u);
    EXPECT_EQ(g_lines[0].text, "set_exports_from_soap: Export limit exceeded");
    EXPECT_EQ(g_lines[0].level, STS_LOG_ANOMALY);
}

TEST_F(Exports, FiveWithoutASessionAreWrittenAllTheSame)
{
    make(5);
    sts_export_v7_t records[5] = {};
    set_exports_from_soap(records, &wire_, nullptr);
    EXPECT_STREQ(records[4].mount, "/4");
}

TEST_F(Exports, ANilEntryKeepsItsPlace)
{
    make(2);
    wire_.item[0] = nullptr;
    sts_export_v7_t records[2];
    sts_export_v7_t expected[2];
    fill_with_canary(records);
    fill_with_canary(expected);
    set_exports_from_soap(records, &wire_, nullptr);
    expected[1].fstype = 1;
    put(expected[1].mount, "/1");
    EXPECT_TRUE(same_bytes(records, expected));
    set_exports_from_soap(records, nullptr, nullptr);
    EXPECT_TRUE(same_bytes(records, expected));
}
