// A second plug-in that keeps the session that it was given, and outlives the library.
#include "plugin/base/handle_records.h"
#include "plugin/host/entry_points.h"
#include "tests/entries/change_list_fixture.h"
#include "tests/interface/loaded_library.h"
#include "tests/kit/second_plugin.h"

using namespace change_list;
using namespace kit;

namespace
{

// The session stays reachable from here, for those who look for leaks.
const sts_session_def_v7_t* g_kept_session = nullptr;

// The two entries by the slots of a library that is loaded for a while.
class LoadedEntries
{
  public:
    LoadedEntries()
    {
        stspi_plugin_def_t definition{};
        const std::string path = (folder_.path() / "libsoapwrapper.so").string();
        EXPECT_EQ(library_.symbol<decltype(stspi_init)>("stspi_init")(11, path.c_str(), &definition), 0);
        EXPECT_EQ(library_.symbol<decltype(stspi_init3)>("stspi_init3")(11, &definition3_), 0);
        terminate_ = reinterpret_cast<decltype(&stspi_terminate)>(definition.entry_points[35]);
    }
    ~LoadedEntries() { EXPECT_EQ(terminate_(), 0); }

    auto open_list() const
    {
        return reinterpret_cast<decltype(&stspi_open_snap_change_list)>(definition3_.entry_points[39]);
    }
    auto close_list() const
    {
        return reinterpret_cast<decltype(&stspi_close_snap_change_list)>(definition3_.entry_points[40]);
    }

  private:
    const LoadedLibrary library_{SOAPWRAPPER_LIBRARY, RTLD_LOCAL};
    const TemporaryFolder folder_;
    stspi_plugin_def3_t definition3_{};
    decltype(&stspi_terminate) terminate_ = nullptr;
};

} // namespace

TEST(UnloadedLibrary, LeavesThePluginASessionToLogThrough)
{
    static std::vector<std::string> lines;
    sts_session_def_v7_t caller = {};
    caller.log_callback = [](const char* id, const char* text, int) {
        if (std::string_view(text) == "from afar") lines.push_back(std::string(id) + ": " + text);
        return 0;
    };
    SecondPlugin plugin;
    ScriptedService service;
    std::string url = service.url();
    char service_handle[] = "S1";
    stsp_server server = {};
    server.endpoint = url.data();
    server.service_handle = service_handle;
    server.session = &caller;
    stsp_lsu_v7_t lsu = {};
    lsu.server = &server;
    const auto diff = std::make_unique<sts_snap_def_v11_t>();
    put(diff->isid.info, "use_zapi=1");
    const auto volume = std::make_unique<sts_volume_spec_v11_t>();
    put(volume->first, "filer1 admin word");

    {
        const LoadedEntries library;
        service.script(answer(
            reply("getSnapPropByNameResponse", snap_info(ndmp_element("snapVolSpec", "filer1", "/vol/v1")))));
        service.script(answer(reply("ioControlResponse", element("args") + element("len", "0"))));
        stsp_change_list_t* list = nullptr;
        ASSERT_EQ(library.open_list()(&lsu, nullptr, diff.get(), volume.get(), 0, &list), 0);
        EXPECT_EQ(library.close_list()(list), 0);
        g_kept_session = plugin.last_session();
    }
    ASSERT_FALSE(LoadedLibrary::is_loaded(SOAPWRAPPER_LIBRARY));
    plugin.log("from afar");
    EXPECT_THAT(lines, testing::ElementsAre("zapi_via_soap: from afar"));
    EXPECT_EQ(g_kept_session->session_flags, 15);
}
