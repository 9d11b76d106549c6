// A signal that comes while a connection is being made: the system makes it all the same, and the call waits
// for that instead of trying again.
#include "tests/entries/discovery_fixture.h"
#include "tests/entries/runtime_hooks.h"

using namespace kit;

namespace
{

class InterruptedConnection : public Discovery
{
};

} // namespace

TEST_F(InterruptedConnection, DoesNotSpoilAPlainCall)
{
    service_.script(closed());
    ServerHandle server = make_server(session_, service_.url());
    const hooks::InterruptedConnections interrupted;
    EXPECT_EQ(close_server()(server.release()), 0);
    EXPECT_EQ(interrupted.tried(), 1);
    EXPECT_EQ(service_.requests().size(), 1U);
}

TEST_F(InterruptedConnection, DoesNotSpoilATlsCall)
{
    service_.script(closed());
    ServerHandle server = make_server(session_, service_.tls_url(), true);
    const hooks::InterruptedConnections interrupted;
    EXPECT_EQ(close_server()(server.release()), 0);
    EXPECT_EQ(interrupted.tried(), 1);
    EXPECT_EQ(service_.requests().size(), 1U);
}

TEST_F(InterruptedConnection, DoesNotSpoilDiscoveryWithItsTimeOut)
{
    const std::string name = own_name(host_part_at(service_.port()));
    service_.script(discovered({"11;1;2;http;" + dead_url("chosen")}));
    const hooks::InterruptedConnections interrupted;
    EXPECT_EQ(ask(name), 0);
    EXPECT_EQ(service_.requests().size(), 1U);
}
