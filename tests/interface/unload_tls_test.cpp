// The library keeps sessions of TLS between calls, and gives them back when it is unloaded.
#include "plugin/base/handle_records.h"
#include "plugin/host/entry_points.h"
#include "tests/interface/loaded_library.h"
#include "tests/kit/certificate.h"
#include "tests/kit/host.h"
#include "tests/kit/live_tls_sessions.h"
#include "tests/kit/log_recorder.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>

using namespace kit;

namespace
{

constexpr int kCalls = 5;

class UnloadingWithTls : public testing::Test
{
  protected:
    // One life of the library, with calls over TLS, of which each but the first resumes a session.
    void live_once(ScriptedService& service, bool terminate)
    {
        const LoadedLibrary library(SOAPWRAPPER_LIBRARY, RTLD_LOCAL);
        stspi_plugin_def_t definition{};
        const std::string path = (folder_.path() / "libsoapwrapper.so").string();
        EXPECT_EQ(library.symbol<decltype(stspi_init)>("stspi_init")(11, path.c_str(), &definition), 0);
        const auto get_properties =
            reinterpret_cast<decltype(&stspi_get_server_prop)>(definition.entry_points[21]);
        std::string url = service.tls_url();
        char token[] = "T";
        stsp_server_t server{};
        server.endpoint = url.data();
        server.service_handle = token;
        server.session = session_.get();
        server.use_https = true;
        for (int i = 0; i < kCalls; ++i) {
            service.script(fault_answer(fault(2060005)));
            EXPECT_EQ(get_properties(&server, info_.get()), 2060005);
        }
        if (!terminate) return;
        EXPECT_EQ(reinterpret_cast<decltype(&stspi_terminate)>(definition.entry_points[35])(), 0);
    }

    TemporaryFolder folder_;
    RecordedSession session_;
    std::unique_ptr<sts_server_info_v8_t> info_ = std::make_unique<sts_server_info_v8_t>();
};

} // namespace

TEST_F(UnloadingWithTls, LeavesNoSessionBehind)
{
    for (const bool terminate : {true, false}) {
        const LiveTlsSessions sessions;
        for (int i = 0; i < 3; ++i) {
            std::optional<ScriptedService> service(std::in_place);
            service->set_tls_context(with_tickets(make_tls_server_context(), 20));
            live_once(*service, terminate);
            EXPECT_EQ(service->handshakes().resumed, std::size_t{kCalls - 1});
            EXPECT_FALSE(LoadedLibrary::is_loaded(SOAPWRAPPER_LIBRARY));
            service.reset(); // which has sessions too
            EXPECT_EQ(sessions.count(), 0);
        }
    }
}

TEST_F(UnloadingWithTls, ForgetsTheSessions)
{
    ScriptedService service;
    live_once(service, true);
    live_once(service, true);
    EXPECT_EQ(service.handshakes().full, 2U);
    EXPECT_EQ(service.handshakes().offered, std::size_t{2 * (kCalls - 1)});
}
