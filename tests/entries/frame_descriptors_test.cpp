#include "tests/entries/discovery_fixture.h"
#include "tests/entries/many_open_files.h"

using namespace kit;

namespace
{

class ManyFilesOpen : public Discovery
{
  protected:
    void SetUp() override { ASSERT_TRUE(files_.are_enough()); }

    ManyOpenFiles files_;
};

} // namespace

TEST_F(ManyFilesOpen, DontHarmAPlainCall)
{
    ServerHandle server = make_server(session_, service_.url());
    service_.script(closed());
    EXPECT_EQ(close_server()(server.release()), 0);
}

TEST_F(ManyFilesOpen, DontHarmATlsCall)
{
    ServerHandle server = make_server(session_, service_.tls_url(), true);
    service_.script(closed());
    EXPECT_EQ(close_server()(server.release()), 0);
}

TEST_F(ManyFilesOpen, DontHarmDiscoveryWithItsTimeOut)
{
    const std::string name = own_name(host_part_at(service_.port()));
    service_.script(discovered({"11;1;2;http;" + dead_url("chosen")}));
    EXPECT_EQ(ask(name), 0);
    EXPECT_EQ(service_.connections(), 1U);
}
