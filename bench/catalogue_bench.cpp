// Entries of the catalogues beside a client that carries the same bytes and nothing more; the conversions of
// a full image information, with what they take from the heap; and what ten thousand calls leave in memory.
#include "bench/canned_service.h"

#include "conversion/image_definition.h"
#include "plugin/base/handle_records.h"
#include "plugin/host/slots.h"
#include "tests/kit/host.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"
#include "tests/unit/allocation_counter.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstring>
#include <functional>
#include <memory>
#include <string>

#include "soapwrapperStub.h"

namespace
{

using kit::element;

std::string image_reply()
{
    return kit::http_message(kit::reply(
        "listImageResponse",
        element("image",
                element("version", "10") + element("basename", "client1_1706659200_C1_F1") +
                    element("date", "20240131") + element("fulldate", "20240131T101500") +
                    element("policy", "daily") + element("saveas", "1") + element("flags", "2") +
                    element("format", "tar") +
                    element("isid", element("version", "1") + element("dpaid", "dpa") +
                                        element("dpaver", "9.1") + element("info", "bW91bnQ9L2E=")))));
}

std::string snap_reply()
{
    return kit::http_message(kit::reply(
        "getSnapPropByNameResponse",
        element("snapInfo",
                element("snapDef", element("snapName", "snap.2024-01-31_1015") + element("snapType", "1") +
                                       element("snapFlags", "2") + element("snapSaveas", "3")) +
                    element("snapServer", "Network_NTAP:filer") + element("snapLsu", "vol1") +
                    element("snapVolSpec", element("nfs", element("exportHost", "filer") +
                                                              element("exportName", "/vol/vol1") +
                                                              element("exportPath", "/")) +
                                               element("volumeType", "0")) +
                    element("snapStatus", "1") + element("snapSize", "1073741824"))));
}

std::string lsu_reply()
{
    return kit::http_message(kit::reply("listLSUResponse", element("lsu", "vol1")));
}

// An open server and an open list at a canned service, filled by hand: the opens are not what is measured.
struct OpenHandles {
    explicit OpenHandles(std::string reply)
        : service(std::move(reply), bench::Channel::kPlain), url(service.url())
    {
        std::memset(&session, 0, sizeof session);
        server.endpoint = url.data();
        server.service_handle = token.data();
        server.session = &session;
        lsu.server = &server;
        std::strcpy(lsu.name, "vol1");
        list = {&server, token.data()};
    }

    bench::CannedService service;
    std::string url;
    std::string token = "a-token-of-usual-length-0123456789";
    sts_session_def_v7_t session;
    stsp_server server{};
    stsp_lsu_v7_t lsu{};
    stsp_list list{};
};

int call_list_image(OpenHandles& handles)
{
    static const auto entry =
        kit::Host::instance().main_slot<stspi_list_image_fn>(STSPI_V11_SLOT_stspi_list_image);
    sts_image_def_v10_t image;
    return entry(&handles.list, &image);
}

int call_get_snap_prop(OpenHandles& handles)
{
    static const auto entry = kit::Host::instance().snapshot_slot<stspi_get_snap_prop_byname_fn>(
        STSPI3_V11_SLOT_stspi_get_snap_prop_byname);
    static const auto snap = std::make_unique<sts_snap_def_v11_t>();
    sts_snap_info_v11_t info;
    return entry(&handles.lsu, snap.get(), &info);
}

int call_list_lsu(OpenHandles& handles)
{
    static const auto entry =
        kit::Host::instance().main_slot<stspi_list_lsu_fn>(STSPI_V11_SLOT_stspi_list_lsu);
    char name[STS_LSU_NAME_SIZE];
    return entry(&handles.list, name);
}

using Call = int (*)(OpenHandles&);

void entry(benchmark::State& state, const std::string& reply, Call call)
{
    OpenHandles handles(reply);
    for (auto _ : state) {
        if (call(handles) != 0) return state.SkipWithError("the entry failed");
    }
}

void bare(benchmark::State& state, const std::string& reply, Call call)
{
    OpenHandles handles(reply);
    if (call(handles) != 0) return state.SkipWithError("no request to copy");
    const std::string request = handles.service.last_request();
    for (auto _ : state) {
        if (bench::bare_exchange(handles.service.port(), request) == 0) {
            return state.SkipWithError("no reply");
        }
    }
}

void list_image(benchmark::State& state)
{
    entry(state, image_reply(), call_list_image);
}
void list_image_floor(benchmark::State& state)
{
    bare(state, image_reply(), call_list_image);
}
void get_snap_prop(benchmark::State& state)
{
    entry(state, snap_reply(), call_get_snap_prop);
}
void get_snap_prop_floor(benchmark::State& state)
{
    bare(state, snap_reply(), call_get_snap_prop);
}

// What the heap holds more after ten thousand calls than before them; the first calls may set things up.
void ten_thousand_list_lsu(benchmark::State& state)
{
    constexpr int kCalls = 10000;
    OpenHandles handles(lsu_reply());
    for (int i = 0; i < 100; ++i) call_list_lsu(handles);
    for (auto _ : state) {
        const std::size_t before = mallinfo2().uordblks;
        for (int i = 0; i < kCalls; ++i) {
            if (call_list_lsu(handles) != 0) return state.SkipWithError("the entry failed");
        }
        const std::size_t after = mallinfo2().uordblks;
        state.counters["grown_bytes"] = static_cast<double>(after) - static_cast<double>(before);
        if (after > before + kCalls) return state.SkipWithError("the calls leave memory behind");
    }
}

void fill(sts_image_info_v10_t& info)
{
    std::memset(&info, 0, sizeof info);
    std::strcpy(info.def.basename, "client1_1706659200_C1_F1");
    std::strcpy(info.def.date, "20240131");
    std::strcpy(info.def.fulldate, "20240131T101500");
    std::strcpy(info.def.policy, "a policy with a name of some length");
    std::strcpy(info.def.format, "tar");
    std::strcpy(info.def.isid.dpaid, "data-protection-application");
    std::strcpy(info.def.isid.dpaver, "9.1");
    std::strcpy(info.def.isid.info, "mount=/vol/vol1;use_zapi=1");
    std::strcpy(info.server, "Network_NTAP:filer.example.com");
    std::strcpy(info.lsu, "vol1");
    for (sts_export_v7_t& exported : info.exports) std::strcpy(exported.mount, "/mnt/exports/of/an/image");
}

void image_information_to_the_service(benchmark::State& state)
{
    const auto info = std::make_unique<sts_image_info_v10_t>();
    fill(*info);
    const std::size_t before = allocations();
    for (auto _ : state) {
        ns1__ArrayOfExport exports;
        ns1__ImageInformation wire;
        wire.exports = &exports;
        soapwrapper::set_image_info_from_sts(wire, info.get());
        benchmark::DoNotOptimize(wire);
        soapwrapper::release_image_info(wire);
    }
    state.counters["allocations"] =
        static_cast<double>(allocations() - before) / static_cast<double>(state.iterations());
}

void image_information_to_the_host(benchmark::State& state)
{
    const auto info = std::make_unique<sts_image_info_v10_t>();
    fill(*info);
    ns1__ArrayOfExport exports;
    ns1__ImageInformation wire;
    wire.exports = &exports;
    soapwrapper::set_image_info_from_sts(wire, info.get());
    const std::size_t before = allocations();
    for (auto _ : state) {
        soapwrapper::set_image_info_from_soap(*info, &wire);
        benchmark::DoNotOptimize(*info);
    }
    state.counters["allocations"] =
        static_cast<double>(allocations() - before) / static_cast<double>(state.iterations());
    soapwrapper::release_image_info(wire);
}

} // namespace

BENCHMARK(list_image)->UseRealTime();
BENCHMARK(list_image_floor)->UseRealTime();
BENCHMARK(get_snap_prop)->UseRealTime();
BENCHMARK(get_snap_prop_floor)->UseRealTime();
BENCHMARK(ten_thousand_list_lsu)->UseRealTime()->Iterations(1)->Repetitions(1)->Unit(benchmark::kMillisecond);
BENCHMARK(image_information_to_the_service);
BENCHMARK(image_information_to_the_host);
