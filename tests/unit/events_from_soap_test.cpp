#include "conversion/events_from_soap.h"
#include "tests/unit/canary.h"

#include <gmock/gmock.h>

#include <limits>
#include <memory>
#include <string>

#include "soapwrapperStub.h"

using namespace soapwrapper;

namespace
{

constexpr LONG64 kMin64 = std::numeric_limits<LONG64>::min();
constexpr LONG64 kMax64 = std::numeric_limits<LONG64>::max();
constexpr int kMin32 = std::numeric_limits<int>::min();
constexpr int kMax32 = std::numeric_limits<int>::max();

// A record as the host may have left it, and what it is to be afterwards. On the heap, so that a sanitizer
// sees a step beyond it.
template <class Record>
struct Pair {
    std::unique_ptr<Record> record = std::make_unique<Record>();
    std::unique_ptr<Record> expected = std::make_unique<Record>();

    Pair()
    {
        fill_with_canary(*record);
        fill_with_canary(*expected);
    }
    void expect_cleared() { std::memset(expected.get(), 0, sizeof(Record)); }
    testing::AssertionResult as_expected() const { return same_bytes(*record, *expected); }
};

// Image information with every element set.
struct WireImage {
    std::string basename = "backup", date = "20240131", fulldate = "full", policy = "daily", format = "tar";
    std::string server = "image server", lsu = "image lsu", mount = "/mnt";
    ns1__ImageDefinition def;
    ns1__Export exported;
    ns1__ArrayOfExport exports;
    ns1__ImageInformation info;

    WireImage()
    {
        def.version = 70;
        def.basename = &basename;
        def.date = &date;
        def.fulldate = &fulldate;
        def.policy = &policy;
        def.saveas = 71;
        def.flags = 72;
        def.format = &format;
        exported.fstype = 73;
        exported.mount = &mount;
        exports.item.push_back(&exported);
        info.version = 74;
        info.def = &def;
        info.server = &server;
        info.lsu = &lsu;
        info.size = kMin64;
        info.blockSize = 75;
        info.exports = &exports;
        info.status = -76;
    }
};

// What is brought back of it: not the definition's version, full date, format and supplier, nor the exports.
void put_image(sts_image_info_v10_t& info)
{
    info.version = 74;
    put(info.def.basename, "backup");
    put(info.def.date, "20240131");
    put(info.def.policy, "daily");
    info.def.saveas = 71;
    info.def.flags = 72;
    put(info.server, "image server");
    put(info.lsu, "image lsu");
    info.size = kMin64;
    info.blockSize = 75;
    info.status = -76;
}

} // namespace

TEST(EventOperation, IsFilledFromTheNameAndTheResult)
{
    ns1__ImageHandle image;
    ns1__AIOResult result;
    result.image = &image;
    result.bytesTransferred = kMin64;
    result.error = -5;
    result.delayInSeconds = 9;
    ns1__OperationStatus wire;
    wire.name = "operation-1";
    wire.result = &result;
    Pair<sts_ev_op_v11_t> op;
    set_ev_op_from_soap(*op.record, &wire);
    put(op.expected->name, "operation-1");
    op.expected->bytesTransferred = kMin64;
    op.expected->error = -5;
    EXPECT_TRUE(op.as_expected());
}

TEST(EventOperation, CutsANameAt255Characters)
{
    for (const std::size_t length : {254u, 255u, 256u, 257u, 5000u}) {
        ns1__OperationStatus wire;
        wire.name = long_text(length);
        Pair<sts_ev_op_v11_t> op;
        set_ev_op_from_soap(*op.record, &wire);
        put(op.expected->name, long_text(length));
        EXPECT_TRUE(op.as_expected()) << length;
        EXPECT_EQ(std::strlen(op.record->name), std::min<std::size_t>(length, 255));
    }
}

TEST(EventOperation, WithoutAResultKeepsTheRecordsBytesAndError)
{
    ns1__OperationStatus wire;
    wire.name = "operation-2";
    Pair<sts_ev_op_v11_t> op;
    set_ev_op_from_soap(*op.record, &wire);
    put(op.expected->name, "operation-2");
    EXPECT_TRUE(op.as_expected());
}

TEST(EventOperation, IsLeftAloneByANullObject)
{
    Pair<sts_ev_op_v11_t> op;
    set_ev_op_from_soap(*op.record, nullptr);
    EXPECT_TRUE(op.as_expected());
}

TEST(EventServerStatus, IsFilledWithActionAndName)
{
    for (const std::size_t length : {0u, 10u, 511u, 512u, 5000u}) {
        ns1__ServerStatus wire;
        wire.action = kMin32;
        wire.name = long_text(length);
        Pair<sts_ev_srv_stat_v11_t> status;
        set_ev_srv_stat_from_soap(*status.record, &wire);
        status.expected->action = kMin32;
        put(status.expected->name, long_text(length));
        EXPECT_TRUE(status.as_expected()) << length;
    }
}

TEST(EventServerStatus, IsLeftAloneByANullObject)
{
    Pair<sts_ev_srv_stat_v11_t> status;
    set_ev_srv_stat_from_soap(*status.record, nullptr);
    EXPECT_TRUE(status.as_expected());
}

TEST(EventLsuStatus, IsFilledWithActionAndName)
{
    for (const std::size_t length : {0u, 10u, 1023u, 1024u, 5000u}) {
        ns1__LSUStatus wire;
        wire.action = kMax32;
        wire.name = long_text(length);
        Pair<sts_ev_lsu_stat_v11_t> status;
        set_ev_lsu_stat_from_soap(*status.record, &wire);
        status.expected->action = kMax32;
        put(status.expected->name, long_text(length));
        EXPECT_TRUE(status.as_expected()) << length;
    }
}

TEST(EventLsuStatus, IsLeftAloneByANullObject)
{
    Pair<sts_ev_lsu_stat_v11_t> status;
    set_ev_lsu_stat_from_soap(*status.record, nullptr);
    EXPECT_TRUE(status.as_expected());
}

TEST(EventImageInformation, IsFilledWithTheFieldsAndTheImageAndIsNotClearedFirst)
{
    WireImage image;
    ns1__EventImageInformation wire;
    wire.fields = kMin64;
    wire.imgInfo = &image.info;
    Pair<sts_ev_img_info_v11_t> info;
    set_ev_img_info_from_soap(*info.record, &wire);
    info.expected->fields = kMin64;
    put_image(info.expected->imgInfo);
    EXPECT_TRUE(info.as_expected());
}

TEST(EventImageInformation, WithoutAnImageWritesTheFieldsAlone)
{
    ns1__EventImageInformation wire;
    wire.fields = 3;
    Pair<sts_ev_img_info_v11_t> info;
    set_ev_img_info_from_soap(*info.record, &wire);
    info.expected->fields = 3;
    EXPECT_TRUE(info.as_expected());
}

TEST(EventImageInformation, IsLeftAloneByANullObject)
{
    Pair<sts_ev_img_info_v11_t> info;
    set_ev_img_info_from_soap(*info.record, nullptr);
    EXPECT_TRUE(info.as_expected());
}

TEST(EventLsuInformation, IsClearedAndThenFilled)
{
    std::string name = "lsu", description = "text", config = "config", label = long_text(64);
    ns1__LSUDefinition def;
    def.version = 50; // never brought back
    def.name = &name;
    def.alloc = 51;
    def.storage = 52;
    def.description = &description;
    def.config = &config;
    def.flags = 53;
    def.saveas = 54;
    def.maxTransfer = 55;
    def.blockSize = 56;
    def.allocSize = 57;
    def.label = &label;
    def.repSources = 58;
    def.repTargets = 59;
    ns1__LSUInformation info;
    info.version = 60;
    info.server = long_text(600);
    info.def = &def;
    info.capacity = kMax64;
    info.capacityPhys = kMin64;
    info.used = 61;
    info.usedPhys = 62;
    info.images = -63;
    ns1__EventLSUInformation wire;
    wire.fields = kMax64;
    wire.lsuInfo = &info;
    Pair<sts_ev_lsu_info_v11_t> event;
    set_ev_lsu_info_from_soap(*event.record, &wire);

    event.expect_cleared();
    event.expected->fields = kMax64;
    sts_lsu_info_v11_t& expected = event.expected->lsuInfo;
    expected.version = 60;
    put(expected.server, long_text(600));
    put(expected.def.name, "lsu");
    expected.def.alloc = 51;
    expected.def.storage = 52;
    put(expected.def.description, "text");
    put(expected.def.config, "config");
    expected.def.flags = 53;
    expected.def.saveas = 54;
    expected.def.maxTransfer = 55;
    expected.def.blockSize = 56;
    expected.def.allocSize = 57;
    put(expected.def.label, long_text(64));
    expected.def.repSources = 58;
    expected.def.repTargets = 59;
    expected.capacity = kMax64;
    expected.capacityPhys = kMin64;
    expected.used = 61;
    expected.usedPhys = 62;
    expected.images = -63;
    EXPECT_TRUE(event.as_expected());
}

TEST(EventLsuInformation, WithoutAnLsuIsAllZeroButTheFields)
{
    ns1__EventLSUInformation wire;
    wire.fields = -1;
    Pair<sts_ev_lsu_info_v11_t> event;
    set_ev_lsu_info_from_soap(*event.record, &wire);
    event.expect_cleared();
    event.expected->fields = -1;
    EXPECT_TRUE(event.as_expected());
}

TEST(EventLsuInformation, IsAllZeroFromANullObject)
{
    Pair<sts_ev_lsu_info_v11_t> event;
    set_ev_lsu_info_from_soap(*event.record, nullptr);
    event.expect_cleared();
    EXPECT_TRUE(event.as_expected());
}

TEST(EventActivity, IsClearedAndThenFilledInAllItsFields)
{
    WireImage image;
    std::string eventset = "set", vendor_type = "vendor", lsu_name = "lsu", dpaid = "dpa", dpaver = "9.1";
    int dpaext = -4;
    ns1__EventActivity wire;
    wire.version = 99; // the record's version is told by nobody but the plug-in
    wire.action = -1;
    wire.eventset = &eventset;
    wire.time = -2;
    wire.sev = -3;
    wire.vendorType = &vendor_type;
    wire.lsuName = &lsu_name;
    wire.imgInfo = &image.info;
    wire.dpaid = &dpaid;
    wire.dpaver = &dpaver;
    wire.dpaext = &dpaext;
    wire.msgLen = -5;
    wire.msg = "a message";
    Pair<sts_ev_activity_v11_t> activity;
    set_ev_actv_from_soap(*activity.record, &wire);

    activity.expect_cleared();
    sts_ev_activity_v11_t& expected = *activity.expected;
    expected.version = 11;
    expected.action = -1;
    put(expected.eventset, "set");
    expected.time = -2;
    expected.sev = -3;
    put(expected.vendorType, "vendor");
    put(expected.lsuName, "lsu");
    put_image(expected.imgInfo);
    put(expected.dpaid, "dpa");
    put(expected.dpaver, "9.1");
    expected.dpaext = -4;
    expected.msgLen = -5;
    put(expected.msg, "a message");
    EXPECT_TRUE(activity.as_expected());
}

TEST(EventActivity, WidensItsNumbersWithTheirSign)
{
    for (const int number : {kMin32, -1, 0, 1, kMax32}) {
        int dpaext = number;
        ns1__EventActivity wire;
        wire.time = number;
        wire.dpaext = &dpaext;
        wire.msgLen = number;
        Pair<sts_ev_activity_v11_t> activity;
        set_ev_actv_from_soap(*activity.record, &wire);
        EXPECT_EQ(activity.record->time, std::int64_t{number});
        EXPECT_EQ(activity.record->dpaext, std::int64_t{number});
        EXPECT_EQ(activity.record->msgLen, std::int64_t{number});
    }
}

TEST(EventActivity, CutsEachTextOneBelowItsBound)
{
    for (const std::size_t beyond : {0u, 1u, 3000u}) {
        std::string eventset = long_text(256 + beyond), vendor_type = long_text(256 + beyond);
        std::string lsu_name = long_text(1024 + beyond), dpaid = long_text(64 + beyond);
        std::string dpaver = long_text(32 + beyond);
        ns1__EventActivity wire;
        wire.eventset = &eventset;
        wire.vendorType = &vendor_type;
        wire.lsuName = &lsu_name;
        wire.dpaid = &dpaid;
        wire.dpaver = &dpaver;
        wire.msg = long_text(2048 + beyond);
        Pair<sts_ev_activity_v11_t> activity;
        set_ev_actv_from_soap(*activity.record, &wire);
        activity.expect_cleared();
        activity.expected->version = 11;
        put(activity.expected->eventset, long_text(255));
        put(activity.expected->vendorType, long_text(255));
        put(activity.expected->lsuName, long_text(1023));
        put(activity.expected->dpaid, long_text(63));
        put(activity.expected->dpaver, long_text(31));
        put(activity.expected->msg, long_text(2047));
        EXPECT_TRUE(activity.as_expected()) << beyond;
    }
}

TEST(EventActivity, WithEveryPointerNilIsZeroButVersionAndNumbers)
{
    ns1__EventActivity wire;
    wire.action = 1;
    wire.time = 2;
    wire.sev = 3;
    wire.msgLen = 4;
    Pair<sts_ev_activity_v11_t> activity;
    set_ev_actv_from_soap(*activity.record, &wire);
    activity.expect_cleared();
    activity.expected->version = 11;
    activity.expected->action = 1;
    activity.expected->time = 2;
    activity.expected->sev = 3;
    activity.expected->msgLen = 4;
    EXPECT_TRUE(activity.as_expected());
}

TEST(EventActivity, IsAllZeroFromANullObjectItsVersionToo)
{
    Pair<sts_ev_activity_v11_t> activity;
    set_ev_actv_from_soap(*activity.record, nullptr);
    activity.expect_cleared();
    EXPECT_TRUE(activity.as_expected());
}
