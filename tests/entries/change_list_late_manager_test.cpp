// A plug-in manager that the host loads after the library.
#include "tests/entries/change_list_without_plugin_fixture.h"
#include "tests/kit/new_process.h"

#include <dlfcn.h>

using namespace change_list;
using namespace kit;

namespace
{

class LateManager : public WithoutPluginTest
{
  protected:
    LateManager()
    {
        Host::instance(); // the library is loaded and has shaken hands
        set_isid("use_zapi=1");
    }

    void load_manager()
    {
        void* const manager = dlopen(LATE_MANAGER, RTLD_NOW | RTLD_GLOBAL);
        ASSERT_NE(manager, nullptr) << dlerror();
        starts_ = static_cast<int*>(dlsym(manager, "late_manager_starts"));
        ASSERT_NE(starts_, nullptr);
    }
    int starts() const { return *starts_; }

  private:
    int* starts_ = nullptr;
};

} // namespace

TEST_F(LateManager, IsFoundByTheFirstConnection)
{
    IN_A_NEW_PROCESS({
        load_manager();
        for (int i = 0; i < 2; ++i) {
            script_mapping();
            EXPECT_EQ(open(), 0);
            EXPECT_NE(list->zapi_list_cell, nullptr);
            script("ioControlResponse", element("args") + element("len", "0"));
            EXPECT_EQ(close_list()(list), 0);
            EXPECT_EQ(starts(), 1);
        }
    });
}

TEST_F(LateManager, ThatComesBehindAFailedStartIsNotAskedAnyMore)
{
    IN_A_NEW_PROCESS({
        script_mapping();
        EXPECT_EQ(open(), STS_ENULLARG);
        EXPECT_EQ(dlerror(), nullptr); // the search leaves no message to the host
        load_manager();
        session.clear();
        script_mapping();
        EXPECT_EQ(open(), STS_ENULLARG);
        EXPECT_EQ(starts(), 0);
        EXPECT_THAT(session.texts(), testing::Contains("open_zapi_connection: failed to open zapi session"));
    });
}
