// How long discovery waits for an address where nobody answers.
#include "tests/entries/discovery_fixture.h"
#include "tests/entries/many_open_files.h"
#include "tests/entries/runtime_hooks.h"

using namespace kit;
using hooks::Attempt;
using hooks::DeadNetwork;
using testing::ElementsAre;

namespace hooks
{

bool operator==(const Attempt& one, const Attempt& other)
{
    return one.port == other.port && one.blocks == other.blocks && one.longest_wait == other.longest_wait;
}

void PrintTo(const Attempt& attempt, std::ostream* out)
{
    *out << "port " << attempt.port << (attempt.blocks ? " blocking" : " for ") << attempt.longest_wait;
}

} // namespace hooks

namespace
{

constexpr Attempt ten_seconds(int port)
{
    return {port, false, 10000};
}

constexpr Attempt without_end(int port)
{
    return {port, true, -1};
}

class DiscoveryTimeOut : public Discovery
{
};

} // namespace

TEST_F(DiscoveryTimeOut, IsTenSecondsInTheFirstPassAndNoneInTheSecond)
{
    const DeadNetwork network;
    EXPECT_EQ(ask(own_name("127.0.0.1")), 2060017);
    EXPECT_THAT(network.attempts(),
                ElementsAre(ten_seconds(8086), ten_seconds(8085), without_end(8086), without_end(8085)));
}

TEST_F(DiscoveryTimeOut, IsNoneForAUrlOfTheFile)
{
    const DeadNetwork network;
    EXPECT_EQ(ask_by_file(own_name(), "http://127.0.0.1:1234"), 2060017);
    EXPECT_EQ(ask_by_file(own_name(), "https://127.0.0.1:1235"), 2060017);
    EXPECT_THAT(network.attempts(), ElementsAre(without_end(1234), without_end(1235)));
}

TEST_F(DiscoveryTimeOut, IsNoneForEveryOtherCall)
{
    const DeadNetwork network;
    const ServerHandle server = make_server(session_, "http://127.0.0.1:1234");
    stsp_server_t* opened_server = nullptr;
    EXPECT_EQ(open(own_name("127.0.0.1"), &opened_server), 2060017);
    EXPECT_EQ(close_server()(server.get()), 2060017);
    EXPECT_EQ(get_server_prop()(server.get(), info_.get()), 2060026);
    EXPECT_THAT(network.attempts(), ElementsAre(without_end(8085), without_end(1234), without_end(1234)));
}

TEST_F(DiscoveryTimeOut, IsTheSameForAHostWithManyFilesOpen)
{
    const ManyOpenFiles files;
    ASSERT_TRUE(files.are_enough());
    const DeadNetwork network;
    EXPECT_EQ(ask(own_name("127.0.0.1")), 2060017);
    EXPECT_THAT(network.attempts(),
                ElementsAre(ten_seconds(8086), ten_seconds(8085), without_end(8086), without_end(8085)));
}
