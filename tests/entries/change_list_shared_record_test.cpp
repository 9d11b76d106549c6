// Two lists with one token have one record between them, and the threads that list and close them know
// nothing of each other.
#include "tests/entries/change_list_zapi_fixture.h"

#include <future>
#include <stdexcept>

using namespace change_list;
using namespace kit;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace
{

const LogLine kListedAlready = anomaly("stspi_list_file: the list is being listed already");

class SharedRecord : public ZapiChangeListTest
{
  protected:
    int next(stsp_change_list_t* of, sts_file_attr_v11_t& entry)
    {
        return list_file()(of, 0, nullptr, &entry);
    }
    std::future<int> start_listing()
    {
        return std::async(std::launch::async, [this] { return next(first, *entry_); });
    }

    // For the service, which has the request by now and answers with two files once it is released.
    std::future<int> start_listing_that_waits()
    {
        const std::size_t asked = service.requests().size();
        const std::string files = file_element("/a") + file_element("/b");
        service.script({Answer::Manner::kHold, http_message(files_reply(files, 2))});
        std::future<int> listing = start_listing();
        service.wait_for_requests(asked + 1);
        return listing;
    }

    // Another thread's listing of the second list, while the first one is being listed.
    void expect_busy()
    {
        session.clear();
        const auto untouched = std::make_unique<sts_file_attr_v11_t>();
        const auto entry = std::make_unique<sts_file_attr_v11_t>();
        EXPECT_EQ(next(second, *entry), STS_EBUSY);
        EXPECT_TRUE(same_bytes(*entry, *untouched));
        EXPECT_THAT(session.lines(), ElementsAre(kListedAlready));
    }

    void open_two_at_service()
    {
        set_isid("");
        open_at_service();
        first = list;
        open_at_service();
        second = list;
    }
    void open_two_at_plugin()
    {
        open_at_plugin();
        first = list;
        open_at_plugin();
        second = list;
    }
    void close(stsp_change_list_t* of)
    {
        list = of;
        if (of->zapi_list_cell) {
            close_at_plugin();
        } else {
            close_at_service();
        }
    }
    void script_files(const std::string& items, int count, int retry = 0)
    {
        service.script(answer(files_reply(items, count, 0, retry)));
    }

    stsp_change_list_t* first = nullptr;
    stsp_change_list_t* second = nullptr;
    std::unique_ptr<sts_file_attr_v11_t> entry_ = std::make_unique<sts_file_attr_v11_t>();
};

} // namespace

TEST_F(SharedRecord, LivesThroughAPauseInWhichTheOtherListIsClosed)
{
    open_two_at_service();
    clock.set_time(1000);
    script_files(file_element(base_export + "/a", 1), 1, 30);
    ASSERT_EQ(next(first, *entry_), 0);
    clock.on_sleep([this](unsigned int) {
        std::thread([this] {
            expect_busy();
            close(second);
            EXPECT_THAT(registry(), IsEmpty());
        }).join();
        script_files(file_element(base_export + "/b", 1) + file_element("/not any more"), 2);
    });
    EXPECT_EQ(start_listing().get(), 0);
    EXPECT_EQ(entry_->name, diff_export + "/b"); // by the record that the listing began with
    EXPECT_THAT(registry(), IsEmpty());

    // What was delivered ahead of time is gone with it, as it is for any list that was closed.
    clock.on_sleep(nullptr);
    script_files(file_element("/c"), 1);
    EXPECT_EQ(start_listing().get(), 0);
    EXPECT_STREQ(entry_->name, "/c");
    EXPECT_EQ(registry().at("C1").diff_export, "");
    close(first);
}

TEST_F(SharedRecord, LivesThroughACallOfTheServiceInWhichTheOtherListIsClosed)
{
    open_two_at_service();
    std::future<int> listing = start_listing_that_waits();
    expect_busy();
    close(second);
    EXPECT_THAT(registry(), IsEmpty());
    service.release();
    EXPECT_EQ(listing.get(), 0);
    EXPECT_STREQ(entry_->name, "/a");
    close(first);
}

TEST_F(SharedRecord, LivesThroughACallOfThePluginInWhichTheOtherListIsClosed)
{
    plugin.hold({entry("/else/where"), entry("/q\\31/a")});
    open_two_at_plugin();
    registry().at(kZapiToken).qtree_paths = {"/q\\31"};
    bool closed = false;
    plugin.on_list_file([&] {
        if (std::exchange(closed, true)) return;
        std::thread([this] {
            expect_busy();
            close(second);
            EXPECT_THAT(registry(), IsEmpty());
        }).join();
    });
    EXPECT_EQ(start_listing().get(), 0);
    EXPECT_STREQ(entry_->name, "/q1/a");
    EXPECT_TRUE(closed);
    close(first);
}

TEST_F(SharedRecord, TheListingThatWasRefusedGoesOnWhereTheOtherEnds)
{
    open_two_at_service();
    std::future<int> listing = start_listing_that_waits();
    expect_busy();
    expect_busy();
    service.release();
    EXPECT_EQ(listing.get(), 0);
    EXPECT_EQ(next(second, *entry_), 0);
    EXPECT_STREQ(entry_->name, "/b"); // one record, one buffer
    close(first);
    close(second);
}

TEST_F(SharedRecord, AListingOfAnotherRecordIsNotInItsWay)
{
    open_two_at_service();
    open_at_service("C2");
    stsp_change_list_t* const third = list;
    std::future<int> listing = start_listing_that_waits();
    script_files(file_element("/c"), 1);
    const auto entry = std::make_unique<sts_file_attr_v11_t>();
    EXPECT_EQ(next(third, *entry), 0);
    expect_busy();
    service.release();
    EXPECT_EQ(listing.get(), 0);
    for (stsp_change_list_t* one : {third, second, first}) close(one);
}

TEST_F(SharedRecord, AListingThatAnExceptionEndsLetsGoOfIt)
{
    open_two_at_service();
    script_files(file_element("/x", 1), 1);
    EXPECT_THROW(next(first, *entry_), std::out_of_range);
    script_files(file_element("/b"), 1);
    EXPECT_EQ(next(second, *entry_), 0);
    EXPECT_STREQ(entry_->name, "/b");
    close(first);
    close(second);
}

TEST_F(SharedRecord, OfAListThatIsOpenedAgainMeanwhileIsANewOne)
{
    open_two_at_service();
    const std::size_t asked = service.requests().size();
    service.script({Answer::Manner::kHold, http_message(files_reply(file_element("/a"), 1))});
    std::future<int> listing = start_listing();
    service.wait_for_requests(asked + 1);
    close(second);
    open_at_service();
    second = list;
    script_files(file_element("/b"), 1, 5);
    const auto entry = std::make_unique<sts_file_attr_v11_t>();
    EXPECT_EQ(next(second, *entry), 0);
    EXPECT_STREQ(entry->name, "/b");
    service.release();
    EXPECT_EQ(listing.get(), 0);
    EXPECT_EQ(registry().at("C1").retry_interval, 5); // that of the first list's reply went elsewhere
    close(second);
    close(first);
}
