// The start and the end of the second plug-in, with a manager of the test's own.
#include "changelist/zapi_api.h"
#include "changelist/zapi_connection.h"
#include "plugin/host/status.h"
#include "tests/kit/log_recorder.h"
#include "tests/kit/second_plugin.h"

#include <gmock/gmock.h>

using namespace soapwrapper;
using kit::plugin_manager;

namespace
{

class ZapiApi : public testing::Test
{
  protected:
    ZapiApi()
    {
        plugin_manager() = {};
        sts_api = nullptr;
    }
    ~ZapiApi() override { sts_api = nullptr; }
};

} // namespace

TEST_F(ZapiApi, StartsInterfaceTwelveOnly)
{
    EXPECT_EQ(sts_init(11, "/p"), STS_EINTERFACE);
    EXPECT_EQ(sts_init(13, nullptr), STS_EINTERFACE);
    EXPECT_EQ(sts_init((1ull << 32) + 12, "/p"), STS_EINTERFACE);
    EXPECT_EQ(plugin_manager().starts, 0);
    EXPECT_EQ(sts_api, nullptr);
}

TEST_F(ZapiApi, StartsWithAPathOnly)
{
    EXPECT_EQ(sts_init(12, nullptr), STS_ENULLARG);
    EXPECT_EQ(plugin_manager().starts, 0);
}

TEST_F(ZapiApi, AStartPassesItsArgumentsAndTheManagersStatusOn)
{
    plugin_manager().init_status = 2060099;
    EXPECT_EQ(sts_init(12, "/the/path"), 2060099);
    EXPECT_EQ(plugin_manager().version, 12u);
    EXPECT_EQ(plugin_manager().path, "/the/path");
    EXPECT_EQ(sts_api, nullptr);
    plugin_manager().init_status = 0;
    EXPECT_EQ(sts_init(12, ""), 0);
    EXPECT_NE(sts_api, nullptr);
}

TEST_F(ZapiApi, AnEndForgetsTheTable)
{
    ASSERT_EQ(sts_init(12, "/p"), 0);
    EXPECT_EQ(sts_terminate(), 0);
    EXPECT_EQ(sts_api, nullptr);
    EXPECT_EQ(plugin_manager().ends, 1);
}

TEST_F(ZapiApi, AnEndOfAPluginInUseIsGoodAndKeepsTheTable)
{
    ASSERT_EQ(sts_init(12, "/p"), 0);
    plugin_manager().terminate_status = STS_EINUSE;
    EXPECT_EQ(sts_terminate(), 0);
    EXPECT_NE(sts_api, nullptr);
}

TEST_F(ZapiApi, AnEndThatFailsKeepsTheTable)
{
    ASSERT_EQ(sts_init(12, "/p"), 0);
    plugin_manager().terminate_status = 2060099;
    EXPECT_EQ(sts_terminate(), 2060099);
    EXPECT_NE(sts_api, nullptr);
}

TEST_F(ZapiApi, WithoutATableEveryOperationIsNotInitialised)
{
    EXPECT_EQ(sts_notinit(), STS_ENOTINIT);
    EXPECT_EQ(api_close(nullptr), STS_ENOTINIT);
    EXPECT_EQ(api_close_snap_change_list(nullptr), STS_ENOTINIT);
    EXPECT_EQ(api_list_file(nullptr, 0, nullptr, nullptr), STS_ENOTINIT);
    EXPECT_EQ(api_open_server(nullptr, "", nullptr, nullptr), STS_ENOTINIT);
    EXPECT_EQ(api_open_session(nullptr, nullptr), STS_ENOTINIT);
    EXPECT_EQ(api_open_snap_change_list(nullptr, nullptr, nullptr, nullptr, 0, nullptr), STS_ENOTINIT);
}

TEST_F(ZapiApi, ClosingAConnectionThatNeverWasIsGoodAndSilent)
{
    kit::RecordedSession session;
    EXPECT_EQ(close_zapi_connection(nullptr, nullptr, session.get()), 0);
    EXPECT_TRUE(session.lines().empty());
}
