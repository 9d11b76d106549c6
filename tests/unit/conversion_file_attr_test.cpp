#include "conversion/file_attributes.h"
#include "tests/unit/canary.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "soapwrapperStub.h"

using namespace soapwrapper;

TEST(FileAttributes, AreFilledInEveryField)
{
    for (const int beyond : {-1, 0, 1}) {
        int numbers[] = {1, -2, 3, -4, 5, std::numeric_limits<int>::min()};
        LONG64 wide[] = {std::numeric_limits<LONG64>::min(), -2, 3, 4, std::numeric_limits<LONG64>::max(), 6};
        ns1__FileAttr wire;
        wire.name = long_text(static_cast<std::size_t>(4096 + beyond));
        wire.ftype = &numbers[0];
        wire.changetype = &numbers[1];
        wire.modtime = &wide[0];
        wire.accesstime = &wide[1];
        wire.createtime = &wide[2];
        wire.changetime = &wide[3];
        wire.size = &wide[4];
        wire.ownerid = &numbers[2];
        wire.groupid = &numbers[3];
        wire.permissions = &wide[5];
        wire.inode = &numbers[4];
        wire.gnum = &numbers[5];
        sts_file_attr_v11_t record;
        sts_file_attr_v11_t expected;
        fill_with_canary(record);
        fill_with_canary(expected);
        set_file_attr_from_soap(record, &wire);
        put(expected.name, long_text(4095));
        expected.ftype = 1;
        expected.changetype = -2;
        expected.modtime = std::numeric_limits<std::int64_t>::min();
        expected.accesstime = -2;
        expected.createtime = 3;
        expected.changetime = 4;
        expected.size = std::numeric_limits<std::int64_t>::max();
        expected.ownerid = 3;
        expected.groupid = -4;
        expected.permissions = 6;
        expected.inode = 5;
        expected.gnum = std::numeric_limits<std::int32_t>::min();
        EXPECT_TRUE(same_bytes(record, expected)) << beyond;
    }
}

TEST(FileAttributes, ThatAreNilAreZeroWhateverStoodThereBefore)
{
    const ns1__FileAttr wire;
    sts_file_attr_v11_t record;
    sts_file_attr_v11_t expected = {};
    fill_with_canary(record);
    std::memcpy(expected.name, record.name, sizeof expected.name); // behind its terminator it keeps its bytes
    put(expected.name, "");
    set_file_attr_from_soap(record, &wire);
    EXPECT_TRUE(same_bytes(record, expected));
}

TEST(FileAttributes, OfNoFileLeaveTheRecordAsItStands)
{
    sts_file_attr_v11_t record;
    sts_file_attr_v11_t expected;
    fill_with_canary(record);
    fill_with_canary(expected);
    set_file_attr_from_soap(record, nullptr);
    EXPECT_TRUE(same_bytes(record, expected));
}
