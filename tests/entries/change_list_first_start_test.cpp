// The start of the second plug-in. A program of its own: a process starts it once.
#include "tests/entries/change_list_zapi_fixture.h"

#include <thread>

using namespace change_list;
using namespace kit;
using testing::ElementsAreArray;

namespace
{

class FirstConnection : public ChangeListTest
{
  protected:
    SecondPlugin plugin;
    Clock clock;
};

} // namespace

TEST_F(FirstConnection, StartsThePluginAndTheSecondFindsItStarted)
{
    set_isid("use_zapi=1");
    EXPECT_EQ(plugin_manager().starts, 0); // neither the load nor the handshakes did
    const LogLine connected = record("open_zapi_connection: succeed to open zapi session");
    for (const Lines& start : {Lines{record("open_zapi_connection:  doing sts_init")}, Lines{}}) {
        session.clear();
        script_mapping();
        ASSERT_EQ(open(), 0);
        Lines head = session.lines();
        const Lines expected = mapping_log("1") + start + Lines{connected};
        ASSERT_GE(head.size(), expected.size());
        head.resize(expected.size(), connected);
        EXPECT_THAT(head, ElementsAreArray(expected));
        script("ioControlResponse", element("args") + element("len", "0"));
        EXPECT_EQ(close_list()(list), 0);
    }
    EXPECT_EQ(plugin_manager().starts, 1);
    EXPECT_EQ(plugin_manager().ends, 0);
    EXPECT_EQ(plugin_manager().version, 12u);
    EXPECT_EQ(plugin_manager().path,
              (Host::instance().configuration_file().parent_path() / "libsoapwrapper.so").string());
    EXPECT_EQ(plugin.open_handles(), 0u);
}
