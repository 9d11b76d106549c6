// Entries run on the host's threads, several at once, on one handle and on one name.
#include "tests/entries/server_fixture.h"

#include <algorithm>
#include <thread>

using namespace kit;

namespace
{

constexpr int kThreads = 4;
constexpr int kCallsPerThread = 25;

class Threads : public ServerTest
{
  protected:
    template <class Work>
    void run_together(Work work)
    {
        std::vector<std::thread> threads;
        for (int number = 0; number < kThreads; ++number) threads.emplace_back([=] { work(number); });
        for (std::thread& thread : threads) thread.join();
    }

    void script_for_all(const Answer& answer)
    {
        for (int i = 0; i < kThreads * kCallsPerThread; ++i) service_.script(answer);
    }

    std::size_t count_of(const std::string& text)
    {
        const std::vector<std::string> texts = session_.texts();
        return static_cast<std::size_t>(std::count(texts.begin(), texts.end(), text));
    }
};

} // namespace

TEST_F(Threads, MayShareAHandle)
{
    const ServerHandle server = make_server(session_, service_.url());
    script_for_all(answer(reply("getServerPropResponse", information(interfaces({"11;1;2;http;u"})))));
    run_together([&](int) {
        const auto info = std::make_unique<sts_server_info_v8_t>();
        for (int i = 0; i < kCallsPerThread; ++i) {
            EXPECT_EQ(get_server_prop()(server.get(), info.get()), 0);
            EXPECT_STREQ(info->server, "the server");
        }
    });
    EXPECT_EQ(count_of("stspi_get_server_prop: STS_EOK"), std::size_t{kThreads * kCallsPerThread});
}

TEST_F(Threads, MayShareATlsHandle)
{
    const ServerHandle server = make_server(session_, service_.tls_url(), true);
    script_for_all(fault_answer(fault(2060005)));
    run_together([&](int) {
        const auto info = std::make_unique<sts_server_info_v8_t>();
        for (int i = 0; i < kCallsPerThread; ++i) {
            EXPECT_EQ(get_server_prop()(server.get(), info.get()), 2060005);
        }
    });
    EXPECT_EQ(count_of(rendered_fault(2060005)), std::size_t{kThreads * kCallsPerThread});
}

TEST_F(Threads, MayDiscoverAndOpenOneNameTogether)
{
    ScriptedService discovery;
    const std::string name = own_name("127.0.0.1:" + std::to_string(discovery.port()) + "/x");
    const auto url_number = [&](int number) { return service_.url() + "/" + std::to_string(number); };
    discover(name, {"11;1;2;http;" + url_number(0)}); // so that every open finds something
    for (int i = 0; i < kThreads / 2 * kCallsPerThread; ++i) {
        discovery.script(discovered({"11;1;2;http;" + url_number(i % 2)}));
        service_.script(opened());
    }
    run_together([&](int number) {
        for (int i = 0; i < kCallsPerThread; ++i) {
            if (number % 2 == 0) {
                const auto info = std::make_unique<sts_server_info_v8_t>();
                EXPECT_EQ(get_server_prop_byname()(session_.get(), name.c_str(), info.get()), 0);
            } else {
                stsp_server_t* server = nullptr;
                EXPECT_EQ(open(name, &server), 0);
                const ServerHandle owner(server);
                EXPECT_TRUE(owner && (owner->endpoint == url_number(0) || owner->endpoint == url_number(1)));
            }
        }
    });
    EXPECT_EQ(service_.requests().size(), std::size_t{kThreads / 2 * kCallsPerThread});
}
