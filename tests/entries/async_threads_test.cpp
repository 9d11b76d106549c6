// Waits for copies on one handle from several threads, while discovery writes what they look up.
#include "tests/entries/async_wait_snap_fixture.h"

#include <thread>

using namespace kit;

namespace
{

class ConcurrentWaits : public AsyncWaitSnapTest
{
  protected:
    ConcurrentWaits() : AsyncWaitSnapTest(Family::kById) {}
};

} // namespace

TEST_F(ConcurrentWaits, LookUpTheServerWhileDiscoveryChangesIt)
{
    constexpr int kWaiters = 3;
    constexpr int kRounds = 5;
    for (int i = 0; i < kWaiters * kRounds; ++i) {
        service_.script(result({77, 0, 0, 3, snapshot_arm("copySnap")}));
    }
    ScriptedService registry;
    for (int i = 0; i < kRounds; ++i) registry.script(discovered({"11;1;2;http;" + service_.url()}));
    const std::string name = server_.server_name;
    host().write_configuration(name.substr(name.find(':') + 1) + "=" + registry.url() + "\n");

    std::vector<std::thread> threads;
    for (int waiter = 0; waiter < kWaiters; ++waiter) {
        threads.emplace_back([this] {
            for (int i = 0; i < kRounds; ++i) {
                sts_async_snap_result_t record{};
                EXPECT_EQ(snapshot_slot<decltype(stspi_async_wait_snap)>(8)(caller_.get(), async_.get(), 1,
                                                                            &record),
                          0);
                EXPECT_TRUE(record.aio_total_bytes_transferred == 0 ||
                            record.aio_total_bytes_transferred == 77);
                EXPECT_EQ(record.result_kind, 3);
            }
        });
    }
    threads.emplace_back([&] {
        const auto info = std::make_unique<sts_server_info_v8_t>();
        for (int i = 0; i < kRounds; ++i) {
            *info = {};
            EXPECT_EQ(get_server_prop_byname()(session_.get(), name.c_str(), info.get()), 0);
        }
    });
    for (std::thread& thread : threads) thread.join();

    service_.script(result({77, 0, 0, 3, snapshot_arm("copySnap")}));
    EXPECT_EQ(wait(1), 0);
    EXPECT_EQ(record_.aio_total_bytes_transferred, 77);
}
