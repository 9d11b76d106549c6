// A host without a plug-in manager: the library loads all the same.
#include "tests/entries/change_list_without_plugin_fixture.h"

namespace
{

class NoManager : public change_list::WithoutPluginTest
{
};

} // namespace

TEST_F(NoManager, MakesEveryStartFailAndLeavesThePluginOutOfReach)
{
    expect_opens_without_plugin();
    expect_operations_not_initialised();
}
