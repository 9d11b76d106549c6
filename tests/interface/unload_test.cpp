// A host may load and unload the library as often as it likes.
#include "plugin/host/entry_points.h"
#include "tests/interface/loaded_library.h"
#include "tests/kit/host.h"
#include "tests/kit/log_recorder.h"
#include "tests/kit/new_process.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"

#include <gmock/gmock.h>
#include <malloc.h>

#include <filesystem>
#include <fstream>
#include <memory>

using namespace kit;

namespace
{

constexpr int kTimes = 100;

std::size_t descriptors()
{
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
    return count;
}

std::size_t heap_in_use()
{
    return mallinfo2().uordblks;
}

// The mappings of the process that come from our library.
std::size_t mappings()
{
    std::ifstream maps("/proc/self/maps");
    std::size_t count = 0;
    for (std::string line; std::getline(maps, line);) {
        if (line.find("libsoapwrapper") != std::string::npos) ++count;
    }
    return count;
}

class Unloading : public testing::Test
{
  protected:
    // One life of the library: both handshakes, discovery over TLS and plain, an open, and the end.
    void live_once()
    {
        const LoadedLibrary library(SOAPWRAPPER_LIBRARY, RTLD_LOCAL);
        stspi_plugin_def_t definition{};
        stspi_plugin_def3_t definition3{};
        const std::string path = (folder_.path() / "libsoapwrapper.so").string();
        EXPECT_EQ(library.symbol<decltype(stspi_init)>("stspi_init")(11, path.c_str(), &definition), 0);
        EXPECT_EQ(library.symbol<decltype(stspi_init3)>("stspi_init3")(11, &definition3), 0);
        const auto discover =
            reinterpret_cast<decltype(&stspi_get_server_prop_byname)>(definition.entry_points[22]);
        const auto open = reinterpret_cast<decltype(&stspi_open_server)>(definition.entry_points[29]);
        const auto terminate = reinterpret_cast<decltype(&stspi_terminate)>(definition.entry_points[35]);

        EXPECT_EQ(discover(session_.get(), name_.c_str(), info_.get()), 2060017);
        stsp_server_t* server = nullptr;
        EXPECT_EQ(open(session_.get(), name_.c_str(), credential_.get(), nullptr, &server), 2060017);
        EXPECT_EQ(terminate(), 0);
        session_.clear();
    }

    TemporaryFolder folder_;
    RecordedSession session_;
    DeadPort port_; // a service of the test's own would take memory in the same process
    std::string name_ = "Network_X:127.0.0.1:" + std::to_string(port_.port()) + "/x";
    Credential credential_{"c"};
    std::unique_ptr<sts_server_info_v8_t> info_ = std::make_unique<sts_server_info_v8_t>();
};

} // namespace

TEST_F(Unloading, TakesTheLibraryOutOfTheProcess)
{
    live_once();
    EXPECT_FALSE(LoadedLibrary::is_loaded(SOAPWRAPPER_LIBRARY));
    EXPECT_EQ(mappings(), 0U);
}

TEST_F(Unloading, LeavesNothingBehindAHundredTimes)
{
    // The allocator is to keep nothing back for later, so that what is in use is what was not freed.
    setenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0:glibc.malloc.mxfast=0", 1);
    IN_A_NEW_PROCESS({
        for (int i = 0; i < 5; ++i) live_once(); // what other libraries keep for themselves, they have now
        const std::size_t open_before = descriptors();
        const std::size_t heap_before = heap_in_use();
        for (int i = 0; i < kTimes; ++i) live_once();
        EXPECT_EQ(descriptors(), open_before);
        // Not the smallest object a time.
        EXPECT_LT(heap_in_use(), heap_before + 16 * kTimes);
    });
    unsetenv("GLIBC_TUNABLES");
}

TEST_F(Unloading, ForgetsWhatDiscoveryFound)
{
    // The map lives as long as the library does.
    ScriptedService service;
    std::ofstream(folder_.path() / "soapwrapper.conf") << name_.substr(10) << "=" << service.url() << "\n";
    service.script(
        answer(reply("getServerPropByNameResponse",
                     element("info", element("requiredInterface",
                                             element("item", "11;1;2;http;" + port_.url() + "/chosen"))))));
    for (const bool discovers : {true, false}) {
        const LoadedLibrary library(SOAPWRAPPER_LIBRARY, RTLD_LOCAL);
        stspi_plugin_def_t definition{};
        const std::string path = (folder_.path() / "libsoapwrapper.so").string();
        ASSERT_EQ(library.symbol<decltype(stspi_init)>("stspi_init")(11, path.c_str(), &definition), 0);
        const auto discover =
            reinterpret_cast<decltype(&stspi_get_server_prop_byname)>(definition.entry_points[22]);
        const auto open = reinterpret_cast<decltype(&stspi_open_server)>(definition.entry_points[29]);
        if (discovers) {
            EXPECT_EQ(discover(session_.get(), name_.c_str(), info_.get()), 0);
            std::filesystem::remove(folder_.path() / "soapwrapper.conf");
        }
        session_.clear();
        stsp_server_t* server = nullptr;
        open(session_.get(), name_.c_str(), credential_.get(), nullptr, &server);
        EXPECT_EQ(session_.texts().at(4),
                  "stspi_open_server: soap_endpoint = " +
                      (discovers ? port_.url() + "/chosen" : "http://" + name_.substr(10) + ":8085"));
    }
}
