// One stspi_get_server_prop beside a client that carries the same bytes and nothing more, plain and over TLS.
#include "bench/canned_service.h"

#include "plugin/base/handle_records.h"
#include "tests/kit/host.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"

#include <benchmark/benchmark.h>

#include <cstring>

namespace
{

std::string properties_reply()
{
    using kit::element;
    std::string capabilities;
    for (int i = 0; i < 40; ++i) capabilities += element("item", std::to_string(i * 3));
    return kit::http_message(kit::reply(
        "getServerPropResponse",
        element("info",
                element("server", "Network_NTAP:filer") + element("sth", element("item", "NTAP")) +
                    element("flags", "3") + element("maxconnect", "64") + element("nconnect", "2") +
                    element("cap", capabilities) +
                    element("requiredInterface", element("item", "11;1;2;https;https://filer:8086") +
                                                     element("item", "11;1;2;http;http://filer:8085")) +
                    element("cred", element("item", "1")) + element("ndmpHost", "filer"))));
}

// A handle to a canned service, filled by hand: the open is not what is measured.
struct OpenHandle {
    explicit OpenHandle(bool tls) : service(properties_reply(), tls), url(service.url())
    {
        std::memset(&session, 0, sizeof session);
        server.endpoint = url.data();
        server.service_handle = token.data();
        server.session = &session;
        server.use_https = tls;
    }

    bench::CannedService service;
    std::string url;
    std::string token = "a-token-of-usual-length-0123456789";
    sts_session_def_v7_t session;
    stsp_server server{};
};

void get_server_prop(benchmark::State& state, bool tls)
{
    OpenHandle handle(tls);
    const auto entry = kit::get_server_prop();
    auto info = std::make_unique<sts_server_info_v8_t>();
    for (auto _ : state) {
        if (entry(&handle.server, info.get()) != 0) return state.SkipWithError("the entry failed");
    }
}

void get_server_prop_floor(benchmark::State& state, bool tls)
{
    OpenHandle handle(tls);
    auto info = std::make_unique<sts_server_info_v8_t>();
    if (kit::get_server_prop()(&handle.server, info.get()) != 0)
        return state.SkipWithError("no request to copy");
    const std::string request = handle.service.last_request();
    const kit::TlsContext context(SSL_CTX_new(TLS_client_method()));
    for (auto _ : state) {
        const std::size_t size = tls ? bench::bare_tls_exchange(handle.service.port(), request, context.get())
                                     : bench::bare_exchange(handle.service.port(), request);
        if (size == 0) return state.SkipWithError("no reply");
    }
}

void http(benchmark::State& state)
{
    get_server_prop(state, false);
}
void http_floor(benchmark::State& state)
{
    get_server_prop_floor(state, false);
}
void tls(benchmark::State& state)
{
    get_server_prop(state, true);
}
void tls_floor(benchmark::State& state)
{
    get_server_prop_floor(state, true);
}

} // namespace

BENCHMARK(http)->UseRealTime();
BENCHMARK(http_floor)->UseRealTime();
BENCHMARK(tls)->UseRealTime();
BENCHMARK(tls_floor)->UseRealTime();
