// What a batch of the service's must hold to be delivered, and what becomes of one that doesn't.
#include "tests/entries/change_list_listing_fixture.h"

#include <limits>

using namespace change_list;
using namespace kit;
using testing::ElementsAre;
using testing::SizeIs;

namespace
{

constexpr std::int64_t kNow = 1000;
constexpr int kPause = 9;

class Batches : public ListingTest
{
  protected:
    Batches() { clock.set_time(kNow); }

    // Nothing of the reply reaches the host but its pause, and the next reply is as good as ever.
    void expect_refused(const std::string& items, int count, const std::string& why)
    {
        SCOPED_TRACE(why);
        session.clear();
        clock.set_time(*clock.time() + kPause); // none is left of the last one
        script_files(items, count, 0, kPause);
        expect_next_refused(why);
    }

    void expect_next_refused(const std::string& why)
    {
        fill_with_canary(*entry);
        const auto before = std::make_unique<sts_file_attr_v11_t>(*entry);
        EXPECT_EQ(next(), STS_EPLUGIN);
        EXPECT_TRUE(same_bytes(*entry, *before));
        EXPECT_THAT(info().entry_buffer, SizeIs(0));
        EXPECT_EQ(info().retry_interval, kPause);
        EXPECT_EQ(info().last_reply_time, *clock.time());
        EXPECT_THAT(session.lines(), ElementsAre(code(0, kPause), failure("stspi_list_file: " + why)));
    }
};

} // namespace

TEST_F(Batches, ThatHoldFewerFilesThanTheyCountAreRefusedWhole)
{
    const std::string two = file_element("/A") + file_element("/B");
    expect_refused(two, 3, "the reply counts 3 files and holds 2");
    expect_refused(two, std::numeric_limits<int>::max(), "the reply counts 2147483647 files and holds 2");
    expect_refused("", 1, "the reply counts 1 files and holds 0");
    clock.set_time(*clock.time() + kPause);
    script_files(two, 2);
    EXPECT_EQ(next_path(), "/A");
    EXPECT_EQ(next_path(), "/B");
}

TEST_F(Batches, ThatCountLessThanNothingAreRefusedWhole)
{
    expect_refused(file_element("/A"), -1, "the reply counts -1 files and holds 1");
    expect_refused("", std::numeric_limits<int>::min(), "the reply counts -2147483648 files and holds 0");
}

TEST_F(Batches, WithoutAListAreRefusedWhole)
{
    service.script(answer(reply("listFileResponse", nil("fileAttrList") + element("numFiles", "2") +
                                                        element("error", "0") +
                                                        element("retryInterval", std::to_string(kPause)))));
    expect_next_refused("the reply counts 2 files and holds 0");
}

TEST_F(Batches, WithANilFileWithinTheirCountAreRefusedWhole)
{
    expect_refused(nil("item") + file_element("/A"), 2, "the reply counts 2 files and file 1 is nil");
    expect_refused(file_element("/A") + file_element("/B") + nil("item"), 3,
                   "the reply counts 3 files and file 3 is nil");
}

TEST_F(Batches, MayHoldAnythingBehindTheirCount)
{
    script_files(file_element("/A") + nil("item") + file_element("/C"), 1);
    EXPECT_EQ(next_path(), "/A");
    EXPECT_THAT(info().entry_buffer, SizeIs(0));
    script_files(nil("item"), 0);
    EXPECT_EQ(next(), STS_ENOENT);
}

TEST_F(Batches, OfABusyServiceAreNotLookedAt)
{
    script_files("", -1, STS_EBUSY);
    EXPECT_EQ(next(), STS_EBUSY);
    EXPECT_EQ(session.lines().back(), record("stspi_list_file: STS_EBUSY received"));
}

TEST_F(Batches, HandsOutNoMoreThanTheReplyCounts)
{
    script_files(file_element("/A") + file_element("/B") + file_element("/C"), 2);
    EXPECT_EQ(next_path(), "/A");
    EXPECT_EQ(next_path(), "/B");
    EXPECT_THAT(info().entry_buffer, SizeIs(0));
}

TEST_F(Batches, AFileWithoutItsNumbersHasNoughtsWhereverItStands)
{
    const std::string numbered = element("item", element("name", "/B") + element("changetype", "1"));
    script_files(element("item", element("name", "/A") + nil("ftype")) + numbered +
                     element("item", element("name", "/C") + nil("changetype")),
                 3);
    for (const char* path : {"/A", "/C"}) {
        fill_with_canary(*entry);
        ASSERT_EQ(next(), 0);
        EXPECT_STREQ(entry->name, path);
        EXPECT_EQ(entry->ftype, 0);
        EXPECT_EQ(entry->changetype, 0);
        EXPECT_EQ(entry->modtime, 0);
        EXPECT_EQ(entry->accesstime, 0);
        EXPECT_EQ(entry->createtime, 0);
        EXPECT_EQ(entry->changetime, 0);
        EXPECT_EQ(entry->size, 0);
        EXPECT_EQ(entry->ownerid, 0);
        EXPECT_EQ(entry->groupid, 0);
        EXPECT_EQ(entry->permissions, 0);
        EXPECT_EQ(entry->inode, 0);
        EXPECT_EQ(entry->gnum, 0);
    }
    info().entry_buffer.clear();
}

TEST_F(Batches, AFileWithoutAKindOfChangeDoesNotTakeThatOfTheOneBefore)
{
    script_files(
        file_element(base_export + "/gone", 1) + element("item", element("name", base_export + "/there")), 2);
    EXPECT_EQ(next_path(), diff_export + "/gone");
    EXPECT_EQ(next_path(), base_export + "/there"); // not looked for where a deleted file would be
}

TEST_F(Batches, OfAHundredAndTwentyThousandFilesAreListedWhole)
{
    constexpr int kFiles = 120000;
    std::string items;
    for (int i = 0; i < kFiles; ++i) {
        items += "<ns1:item><ns1:name>" + std::to_string(i) + "</ns1:name></ns1:item>";
    }
    script_files(items, kFiles);
    server.session = nullptr; // nobody needs the log of this
    ASSERT_EQ(next_path(), "0");
    for (int i = kFiles - 1; i > 0; --i) ASSERT_EQ(next_path(), std::to_string(i));
    EXPECT_EQ(info().entry_buffer.capacity(), 0u); // half a gigabyte isn't kept for nothing
    script_files("", 0);
    EXPECT_EQ(next(), STS_ENOENT);
}
