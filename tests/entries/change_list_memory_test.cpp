// Memory that runs out half-way: what the entries return, and that what they leave behind is of no harm.
#include "tests/entries/change_list_zapi_fixture.h"
#include "tests/entries/heap_hooks.h"

using namespace change_list;
using namespace kit;
using hooks::Allocator;
using hooks::NoMemory;
using testing::Contains;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace
{

constexpr std::size_t kVolumeSize = sizeof(sts_volume_spec_v11_t);
constexpr std::size_t kFileSize = sizeof(sts_file_attr_v11_t);

LogLine no_memory_for(const std::string& what)
{
    return failure("stspi_open_snap_change_list: Failed to allocate memory for " + what + ".");
}

class OpenWithoutMemory : public ZapiChangeListTest
{
  protected:
    // The second plug-in's list is given up, and the connection stays, as where it refuses the list itself.
    Lines given_up(const std::string& what) const
    {
        return connected() + no_settings() +
               Lines{no_memory_for(what),
                     record("stspi_open_snap_change_list: ZAPI failed with return value = 2060002")};
    }

    // With no base snapshot the service can't help. What is left is closed without harm.
    void expect_half_made(Allocator allocator, std::size_t size, const std::string& what)
    {
        SCOPED_TRACE(what);
        left_open += 2;
        base.reset();
        script_export(diff_export);
        {
            const NoMemory none(allocator, size);
            EXPECT_EQ(open(), STS_ENOMEM);
            EXPECT_EQ(none.refusals(), 1u);
        }
        EXPECT_THAT(session.lines(), testing::IsSupersetOf(given_up(what) + Lines{opened(STS_ENOMEM)}));
        EXPECT_THAT(registry(), IsEmpty());
        ASSERT_NE(list, nullptr);
        session.clear();
        EXPECT_EQ(close_list()(list), STS_EBADARG);
        EXPECT_EQ(list_file()(list, 0, nullptr, entry_.get()), STS_EBADARG);
        EXPECT_THAT(session.lines(), testing::ElementsAre(record("stspi_close_snap_change_list: enter")));
        EXPECT_EQ(list->volume_copy, nullptr);
        EXPECT_EQ(list->zapi_session_cell, nullptr);
        EXPECT_EQ(list->zapi_server_cell, nullptr);
        delete list; // no entry can end it
    }

    std::unique_ptr<sts_file_attr_v11_t> entry_ = std::make_unique<sts_file_attr_v11_t>();
};

class ListWithoutMemory : public ChangeListTest
{
  protected:
    Clock clock;
    std::unique_ptr<sts_file_attr_v11_t> entry = std::make_unique<sts_file_attr_v11_t>();
};

} // namespace

TEST_F(OpenWithoutMemory, ForAHandlesCellFailsAheadOfTheConnection)
{
    for (std::size_t cell = 0; cell < 3; ++cell) {
        script_mapping();
        list = reinterpret_cast<stsp_change_list_t*>(this);
        session.clear();
        const NoMemory none(Allocator::kCalloc, sizeof(void*), cell);
        EXPECT_EQ(open(), STS_ENOMEM);
        EXPECT_GE(none.refusals(), 1u);
        EXPECT_EQ(list, nullptr);
        EXPECT_THAT(session.lines(),
                    ElementsAreArray(mapping_log("1") + Lines{no_memory_for("the handles")}));
        EXPECT_THAT(plugin.calls(), IsEmpty());
    }
}

TEST_F(OpenWithoutMemory, ForTheTokenLeavesAHandleThatTheCloseRefuses)
{
    expect_half_made(Allocator::kMalloc, sizeof kZapiToken, "tokenname");
}

TEST_F(OpenWithoutMemory, ForTheVolumeLeavesAHandleThatTheCloseRefuses)
{
    expect_half_made(Allocator::kMalloc, kVolumeSize, "the volume");
}

TEST_F(OpenWithoutMemory, ForTheListLeavesNone)
{
    left_open = 2;
    base.reset();
    script_export(diff_export);
    const NoMemory none(Allocator::kOperatorNewNothrow, sizeof(stsp_change_list));
    EXPECT_EQ(open(), STS_ESOAPERROR);
    EXPECT_EQ(none.refusals(), 1u);
    EXPECT_EQ(list, nullptr);
    EXPECT_THAT(session.lines(), testing::IsSupersetOf(given_up("the list")));
}

TEST_F(OpenWithoutMemory, FallsBackToTheService)
{
    left_open = 2;
    script_mapping();
    script_list("C1");
    {
        const NoMemory none(Allocator::kMalloc, sizeof kZapiToken);
        ASSERT_EQ(open(), 0);
        EXPECT_EQ(none.refusals(), 1u);
    }
    EXPECT_STREQ(list->token, "C1");
    EXPECT_EQ(list->volume_copy, nullptr);
    close_at_service();
}

TEST_F(OpenWithoutMemory, AListThatLacksItsVolumeAndItsConnectionIsClosedAllTheSame)
{
    open_at_plugin();
    std::free(std::exchange(list->volume_copy, nullptr));
    std::free(std::exchange(list->zapi_session_cell, nullptr));
    std::free(std::exchange(list->zapi_server_cell, nullptr));
    left_open = 2;
    EXPECT_EQ(close_list()(list), 0);
    EXPECT_THAT(plugin.calls(), testing::ElementsAre("close_list list1"));
    EXPECT_EQ(service.connections(), 2u); // there is nothing to tell the filer
}

TEST_F(ListWithoutMemory, OpensNoListOfTheServicesWithoutItsRecordOrItsToken)
{
    const std::string token(100, 'T');
    const std::tuple<Allocator, std::size_t, const char*> cases[] = {
        {Allocator::kOperatorNewNothrow, sizeof(stsp_change_list), "the list"},
        {Allocator::kMalloc, token.size() + 1, "tokenname"},
    };
    for (const auto& [allocator, size, what] : cases) {
        session.clear();
        script_mapping();
        script_list(token);
        const NoMemory none(allocator, size);
        EXPECT_EQ(open(), STS_ENOMEM);
        EXPECT_EQ(none.refusals(), 1u);
        EXPECT_EQ(list, nullptr);
        EXPECT_EQ(session.lines().back(), no_memory_for(what));
        EXPECT_THAT(registry(), IsEmpty());
    }
}

TEST_F(ListWithoutMemory, DeliversNothingOfABatchThatItHasNoRoomFor)
{
    open_at_service();
    const std::string files = file_element("/A") + file_element("/B") + file_element("/C");
    clock.set_time(1000);
    service.script(answer(files_reply(files, 3, 0, 7)));
    fill_with_canary(*entry);
    const auto before = std::make_unique<sts_file_attr_v11_t>(*entry);
    {
        const NoMemory none(Allocator::kOperatorNew, 2 * kFileSize);
        EXPECT_EQ(list_file()(list, 0, nullptr, entry.get()), STS_ENOMEM);
        EXPECT_EQ(none.refusals(), 1u);
    }
    EXPECT_TRUE(same_bytes(*entry, *before));
    EXPECT_EQ(registry().at("C1").entry_buffer.capacity(), 0u);
    EXPECT_EQ(registry().at("C1").retry_interval, 7);
    EXPECT_EQ(registry().at("C1").last_reply_time, 1000);
    EXPECT_THAT(session.lines(),
                testing::ElementsAre(record("stspi_list_file: SOAP return code = 0 retryInterval = 7"),
                                     failure("stspi_list_file: Failed to allocate memory for 2 files.")));

    service.script(answer(files_reply(files, 3)));
    EXPECT_EQ(list_file()(list, 0, nullptr, entry.get()), 0);
    EXPECT_STREQ(entry->name, "/A");
    close_at_service();
}
