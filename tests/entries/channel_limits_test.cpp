// What soapwrapper.conf may limit: how long a connection may take, and how long a peer may be silent.
#include "tests/entries/channel_fixture.h"
#include "tests/entries/runtime_hooks.h"

using namespace kit;
using hooks::DeadNetwork;
using hooks::PassedLimits;
using Manner = Answer::Manner;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace
{

struct Tried {
    int port;
    int longest_wait;

    bool operator==(const Tried& other) const
    {
        return port == other.port && longest_wait == other.longest_wait;
    }
};

class ConnectTimeout : public Channel
{
  protected:
    static std::vector<Tried> tried(const DeadNetwork& network)
    {
        std::vector<Tried> all;
        for (const hooks::Attempt& attempt : network.attempts()) {
            all.push_back({attempt.port, attempt.longest_wait});
        }
        return all;
    }

    // Of an entry that the contract sets no limit for.
    int limit_of_a_close()
    {
        const DeadNetwork network;
        EXPECT_EQ(close("http://127.0.0.1:1234", false), 2060017);
        return network.attempts().at(0).longest_wait;
    }
};

class ReplyTimeout : public Channel, public testing::WithParamInterface<bool>
{
  protected:
    ReplyTimeout()
    {
        configure("reply_timeout = 7\n");
        // Its tickets come with the handshake: later ones would keep a close from waiting.
        service_.set_tls_context(up_to_tls12(make_tls_server_context()));
    }

    bool tls() const { return GetParam(); }
    std::string url() const { return tls() ? service_.tls_url() : service_.url(); }

    // A call with a credential of this size, at a service that is silent in this manner.
    int call(Manner manner, std::size_t size)
    {
        service_.script({manner, ""});
        const ServerHandle source = make_server(session_, url(), tls());
        const Credential credential(std::string(size, 'c'));
        stsp_server_t* target = nullptr;
        const int status = open_target_server()(source.get(), "t", credential.get(), "", &target);
        EXPECT_EQ(target, nullptr);
        service_.release();
        return status;
    }
};

} // namespace

TEST_F(ConnectTimeout, LimitsTheCallsThatHaveNoLimitOfTheirOwn)
{
    configure("connect_timeout = 3\n");
    EXPECT_EQ(limit_of_a_close(), 3000);
    EXPECT_THAT(session_.lines().back().text,
                HasSubstr("\"Timeout\"\nDetail: connect failed in tcp_connect()"));
}

TEST_F(ConnectTimeout, LeavesDiscoveryItsTenSecondsAndLimitsItsSecondPass)
{
    configure("connect_timeout = 3\n");
    const DeadNetwork network;
    const auto info = std::make_unique<sts_server_info_v8_t>();
    EXPECT_EQ(get_server_prop_byname()(session_.get(), own_name("127.0.0.1").c_str(), info.get()), 2060017);
    EXPECT_EQ(tried(network), (std::vector<Tried>{{8086, 10000}, {8085, 10000}, {8086, 3000}, {8085, 3000}}));
}

TEST_F(ConnectTimeout, MayBeHexadecimal)
{
    configure("connect_timeout = 0x10\n");
    EXPECT_EQ(limit_of_a_close(), 16000);
}

TEST_F(ConnectTimeout, IsNoneWhereItIsNoNumberOfSecondsThatCanBeWaitedFor)
{
    for (const char* value : {"0", "-1", "", "soon", "3s", "1.5", "2147484", "4294967297",
                              "99999999999999999999999", "0x", "-99999999999999999999999"}) {
        SCOPED_TRACE(value);
        configure("connect_timeout = " + std::string(value) + "\n");
        EXPECT_EQ(limit_of_a_close(), -1);
    }
}

TEST_F(ConnectTimeout, MayBeAsLongAsMillisecondsCanBeCounted)
{
    configure("connect_timeout = 2147483\n");
    EXPECT_EQ(limit_of_a_close(), 2147483000);
}

TEST_F(ConnectTimeout, LimitsTheTlsHandshakeToo)
{
    configure("connect_timeout = 3\n");
    service_.script({Manner::kLateHandshake, ""});
    const PassedLimits limits;
    EXPECT_EQ(close_over_tls(), 2060017);
    EXPECT_THAT(limits.limits(), testing::ElementsAre(3000));
    EXPECT_THAT(session_.lines().back().text, HasSubstr("\"Timeout\"\nDetail: SSL_connect() failed"));
    service_.release();
}

TEST_P(ReplyTimeout, EndsACallWhoseReplyDoesntCome)
{
    const PassedLimits limits;
    EXPECT_EQ(call(Manner::kHold, 3), 2060017);
    EXPECT_THAT(limits.limits(), testing::ElementsAre(7000)) << "and the close waits for nobody";
    const std::vector<LogLine> lines = session_.lines();
    EXPECT_EQ(lines.at(1), record("stspi_open_target_server: SOAP return code = -1"));
    EXPECT_EQ(lines.at(2).level, 4);
    EXPECT_THAT(lines.at(2).text, HasSubstr("timed out"));
}

TEST_P(ReplyTimeout, EndsACallWhoseRequestNobodyReads)
{
    const PassedLimits limits;
    EXPECT_EQ(call(Manner::kLateRead, 16 << 20), 2060017);
    EXPECT_THAT(limits.limits(), testing::ElementsAre(7000));
    EXPECT_EQ(session_.lines().at(1), record("stspi_open_target_server: SOAP return code = -1"));
}

TEST_P(ReplyTimeout, LetsACallPassThatIsAnswered)
{
    for (int i = 0; i < 3; ++i) {
        service_.script(closed());
        EXPECT_EQ(close(url(), tls()), 0);
    }
}

TEST_P(ReplyTimeout, LetsALargeRequestAndALargeReplyPass)
{
    const std::string large(8 << 20, 'x');
    service_.script(
        answer(reply("openTargetServerResponse", element("targetServerHandle", element("token", large)))));
    const ServerHandle source = make_server(session_, url(), tls());
    const Credential credential(std::string(16 << 20, 'c'));
    stsp_server_t* target = nullptr;
    EXPECT_EQ(open_target_server()(source.get(), "t", credential.get(), "", &target), 0);
    const ServerHandle owner(target);
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(target->service_handle, large);
}

INSTANTIATE_TEST_SUITE_P(Channel, ReplyTimeout, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "Tls" : "Plain"; });

TEST_F(Channel, WaitsForSilentPeersWithoutALimitUnlessTheFileSetsOne)
{
    configure("reply_timeout = -5\n");
    const PassedLimits limits;
    service_.script(closed());
    EXPECT_EQ(close_plainly(), 0);
    service_.script(closed());
    EXPECT_EQ(close_over_tls(), 0);
    EXPECT_THAT(limits.limits(), IsEmpty());
}
