// One stspi_get_server_prop beside a client that carries the same bytes and nothing more, plain and over TLS,
// on one thread and on several. Over TLS that client makes a full handshake each time.
#include "bench/canned_service.h"

#include "plugin/base/handle_records.h"
#include "tests/kit/host.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

namespace
{

using bench::Channel;

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

constexpr int kThreads = 8;

// A handle to a canned service, filled by hand: the open is not what is measured.
struct OpenHandle {
    OpenHandle(Channel channel, int threads)
        : service(properties_reply(), channel, threads), url(service.url())
    {
        std::memset(&session, 0, sizeof session);
        server.endpoint = url.data();
        server.service_handle = token.data();
        server.session = &session;
        server.use_https = channel != Channel::kPlain;
    }

    bool get_server_prop()
    {
        const auto info = std::make_unique<sts_server_info_v8_t>();
        return kit::get_server_prop()(&server, info.get()) == 0;
    }

    bench::CannedService service;
    std::string url;
    std::string token = "a-token-of-usual-length-0123456789";
    sts_session_def_v7_t session;
    stsp_server server{};
};

// Calls of the entry by each thread, all with one handle. The first thread makes it ahead of the loop, which
// all begin together; it stays until the next run, because a thread that fails leaves ahead of the others.
template <Channel kChannel>
void entry(benchmark::State& state)
{
    static std::unique_ptr<OpenHandle> handle;
    if (state.thread_index() == 0) handle = std::make_unique<OpenHandle>(kChannel, state.threads());
    const auto get_server_prop = kit::get_server_prop();
    const auto info = std::make_unique<sts_server_info_v8_t>();
    for (auto _ : state) {
        if (get_server_prop(&handle->server, info.get()) != 0) {
            state.SkipWithError("the entry failed");
            break;
        }
    }
}

// The request of such a call, carried by a client that makes a full handshake each time.
template <Channel kChannel>
void bare(benchmark::State& state)
{
    static std::unique_ptr<OpenHandle> handle;
    static std::string request;
    if (state.thread_index() == 0) {
        handle = std::make_unique<OpenHandle>(kChannel, state.threads());
        if (!handle->get_server_prop()) state.SkipWithError("no request to copy");
        request = handle->service.last_request();
    }
    const kit::TlsContext context(SSL_CTX_new(TLS_client_method()));
    for (auto _ : state) {
        const int port = handle->service.port();
        const std::size_t size = kChannel == Channel::kPlain
                                     ? bench::bare_exchange(port, request)
                                     : bench::bare_tls_exchange(port, request, context.get());
        if (size == 0) {
            state.SkipWithError("no reply");
            break;
        }
    }
}

} // namespace

BENCHMARK(entry<Channel::kPlain>)->Name("http")->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(bare<Channel::kPlain>)->Name("http_floor")->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(entry<Channel::kTls>)->Name("tls")->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(bare<Channel::kTls>)->Name("tls_floor")->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(entry<Channel::kTls12>)->Name("tls12")->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(bare<Channel::kTls12>)->Name("tls12_floor")->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(entry<Channel::kTls>)
    ->Name("tls_threads")
    ->Threads(kThreads)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK(bare<Channel::kTls>)
    ->Name("tls_threads_floor")
    ->Threads(kThreads)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK(entry<Channel::kTls12>)
    ->Name("tls12_threads")
    ->Threads(kThreads)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK(bare<Channel::kTls12>)
    ->Name("tls12_threads_floor")
    ->Threads(kThreads)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
