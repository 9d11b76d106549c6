// A second plug-in that its manager can't start.
#include "tests/entries/change_list_without_plugin_fixture.h"
#include "tests/kit/second_plugin.h"

namespace
{

class FailedStart : public change_list::WithoutPluginTest
{
};

} // namespace

TEST_F(FailedStart, IsNotTriedAgainAndLeavesThePluginOutOfReach)
{
    kit::plugin_manager().init_status = 2060099;
    expect_opens_without_plugin();
    expect_operations_not_initialised();
    EXPECT_EQ(kit::plugin_manager().starts, 1);
}
