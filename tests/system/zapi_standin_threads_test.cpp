#include "tests/system/zapi_standin.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{

using namespace zapi_standin;

const char* const kOlder = "/vol/projects/.snapshot/weekly.1";
const char* const kNewer = "/vol/projects/.snapshot/weekly.3";

std::vector<std::string> list_once(sts_session_def_v7_t* definition)
{
    sts_handle_s* session = nullptr;
    sts_handle_s* server = nullptr;
    sts_handle_s* list = nullptr;
    if (open_session(definition, &session) != 0 ||
        open_server(session, "ZAPI:filer1", {"admin", "simulator"}, &server) != 0 ||
        open_list(server, kOlder, kNewer, &list) != 0) {
        return {"not opened"};
    }
    std::vector<std::string> entries = rest(list);
    if (close_list(list) != 0 || close(server) != 0 || close(session) != 0) return {"not closed"};
    return entries;
}

TEST(ZapiStandInThreads, ListsOfTenThreadsAreEachWhole)
{
    kit::RecordedSession log;
    const std::vector<std::string> expected = list_once(log.get());
    ASSERT_GT(expected.size(), 5U);
    std::atomic<int> whole{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 10; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 5; ++round) {
                if (list_once(log.get()) == expected) ++whole;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(whole, 50);
    EXPECT_EQ(Library::instance().symbol<Terminate>("stsm_terminate")(), 0);
}

TEST(ZapiStandInThreads, AListThatTenThreadsShareGivesEachEntryOnce)
{
    kit::RecordedSession log;
    const std::size_t expected = list_once(log.get()).size();
    sts_handle_s* session = nullptr;
    sts_handle_s* server = nullptr;
    sts_handle_s* list = nullptr;
    ASSERT_EQ(open_session(log.get(), &session), 0);
    ASSERT_EQ(open_server(session, "ZAPI:filer1", {"admin", "simulator"}, &server), 0);
    ASSERT_EQ(open_list(server, kOlder, kNewer, &list), 0);
    std::atomic<std::size_t> entries{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 10; ++i) threads.emplace_back([&] { entries += rest(list).size(); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(entries, expected);
    EXPECT_EQ(close(session), 0) << "with the server and the list";
}

} // namespace
