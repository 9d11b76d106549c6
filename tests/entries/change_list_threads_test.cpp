// Ten lists on ten server handles, each driven by a thread of its own, by both routes at once.
#include "tests/entries/change_list_zapi_fixture.h"

#include <thread>

using namespace change_list;
using namespace kit;

namespace
{

constexpr int kThreads = 10;
constexpr int kRounds = 3;
constexpr int kFiles = 20;

// One thread's own service, server handle and snapshots.
class Lister : public ChangeListTest
{
  public:
    explicit Lister(int number) : number_(number)
    {
        put(server.server_name, "Network_NTAP:filer");
        put(volume->second, "/vol/" + std::to_string(number));
        set_isid(number % 2 == 0 ? "use_zapi=1" : "");
    }

    void run()
    {
        for (int round = 0; round < kRounds; ++round) {
            script_mapping();
            if (number_ % 2 == 0) {
                script("ioControlResponse", element("args") + element("len", "0"));
            } else {
                script_list("C" + std::to_string(number_));
                std::string items;
                for (int i = 0; i < kFiles; ++i) items += file_element("/f" + std::to_string(i));
                service.script(answer(files_reply(items, kFiles)));
                service.script(answer(files_reply("", 0)));
            }
            ASSERT_EQ(open(), 0);
            EXPECT_EQ(list_all(), kFiles);
            if (number_ % 2 == 0) {
                script("ioControlResponse", element("args") + element("len", "0"));
            } else {
                script("closeSnapChangeListResponse");
            }
            EXPECT_EQ(close_list()(list), 0);
        }
    }

  private:
    void TestBody() override {}

    int list_all() const
    {
        const auto entry = std::make_unique<sts_file_attr_v11_t>();
        int count = 0;
        while (list_file()(list, 0, nullptr, entry.get()) == 0) ++count;
        return count;
    }

    int number_;
};

} // namespace

TEST(ChangeListThreads, TenListsGoTheirOwnWaysAndThePluginIsStartedOnce)
{
    SecondPlugin plugin;
    plugin.hold(std::vector<sts_file_attr_v11_t>(kFiles, entry("/f")));
    const Clock clock;
    std::vector<std::unique_ptr<Lister>> listers;
    for (int i = 0; i < kThreads; ++i) listers.push_back(std::make_unique<Lister>(i));
    std::vector<std::thread> threads;
    for (const auto& lister : listers) threads.emplace_back([&lister] { lister->run(); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(plugin_manager().starts, 1);
    EXPECT_EQ(plugin.open_handles(), 0u);
    EXPECT_TRUE(registry().empty());
}
