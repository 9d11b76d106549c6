// A listing of a hundred thousand entries, beside a client that carries the same bytes and a streaming parser
// that goes through them; and the rewriting of one path beside putting its two halves together.
#include "bench/canned_service.h"

#include "changelist/path_transformation.h"
#include "plugin/base/handle_records.h"
#include "plugin/host/slots.h"
#include "plugin/host/status.h"
#include "tests/kit/host.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"

#include <benchmark/benchmark.h>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <cstring>
#include <map>
#include <memory>
#include <string>

namespace
{

constexpr int kEntries = 100000;
constexpr int kBatch = 1000;
constexpr char kExport[] = "/vol/vol1/.snapshot/snap.2024-01-31";

std::string soap_reply()
{
    using kit::element;
    std::string items;
    for (int i = 0; i < kBatch; ++i) {
        const std::string number = std::to_string(i);
        items += element(
            "item",
            element("name", std::string(kExport) + "/home/user" + number + "/file\\20" + number + ".txt") +
                element("ftype", "1") + element("changetype", "0") + element("modtime", "1706659200") +
                element("accesstime", "1706659200") + element("createtime", "1706659200") +
                element("changetime", "1706659200") + element("size", "4096") + element("ownerid", "1000") +
                element("groupid", "100") + element("permissions", "420") + element("inode", number) +
                element("gnum", "7"));
    }
    return kit::reply("listFileResponse", element("fileAttrList", items) +
                                              element("numFiles", std::to_string(kBatch)) +
                                              element("error", "0") + element("retryInterval", "0"));
}

// An open list at a canned service, filled by hand: the open is not what is measured.
struct OpenList {
    OpenList() : service(kit::http_message(soap_reply()), bench::Channel::kPlain), url(service.url())
    {
        std::memset(&session, 0, sizeof session);
        server.endpoint = url.data();
        server.service_handle = token.data();
        server.session = &session;
        list.server = &server;
        list.token = token.data();
    }
    // What a listing left in its buffer is not for the next one, which has the same token.
    ~OpenList()
    {
        kit::Host::instance()
            .symbol<std::map<std::string, snapdiff_session_info>>("snapdiff_info_per_session")
            ->clear();
    }
    OpenList(const OpenList&) = delete;
    OpenList& operator=(const OpenList&) = delete;

    bench::CannedService service;
    std::string url;
    std::string token = "a-token-of-usual-length-0123456789";
    sts_session_def_v7_t session;
    stsp_server server{};
    stsp_change_list list{};
};

auto list_file_entry()
{
    return kit::Host::instance().snapshot_slot<stspi_list_file_fn>(STSPI3_V11_SLOT_stspi_list_file);
}

void hundred_thousand_files(benchmark::State& state)
{
    OpenList open;
    const auto list_file = list_file_entry();
    const auto entry = std::make_unique<sts_file_attr_v11_t>();
    for (auto _ : state) {
        for (int i = 0; i < kEntries; ++i) {
            if (list_file(&open.list, 0, nullptr, entry.get()) != STS_EOK) {
                return state.SkipWithError("the listing failed");
            }
        }
    }
}

void hundred_thousand_files_floor(benchmark::State& state)
{
    using namespace xercesc;
    OpenList open;
    const auto entry = std::make_unique<sts_file_attr_v11_t>();
    if (list_file_entry()(&open.list, 0, nullptr, entry.get()) != STS_EOK) {
        return state.SkipWithError("no request to copy");
    }
    const std::string request = open.service.last_request();
    const std::string document = soap_reply();
    XMLPlatformUtils::Initialize();
    {
        const std::unique_ptr<SAX2XMLReader> reader(XMLReaderFactory::createXMLReader());
        DefaultHandler handler;
        reader->setContentHandler(&handler);
        reader->setErrorHandler(&handler);
        reader->setFeature(XMLUni::fgSAX2CoreValidation, false);
        for (auto _ : state) {
            for (int i = 0; i < kEntries / kBatch; ++i) {
                if (bench::bare_exchange(open.service.port(), request) == 0) {
                    state.SkipWithError("no reply");
                    break;
                }
                const MemBufInputSource source(reinterpret_cast<const XMLByte*>(document.data()),
                                               document.size(), "reply");
                reader->parse(source);
            }
        }
    }
    XMLPlatformUtils::Terminate();
}

snapdiff_session_info mounted()
{
    snapdiff_session_info info;
    info.parsed_isid.mpfs_vec = {{"/mnt/backup/snap.2024-01-31", "filer1:/vol/vol1"}};
    info.diff_export = kExport;
    info.repl_patterns = {{"", "other", "/not/this"}, {"", "home", "/export/home"}};
    return info;
}

std::unique_ptr<sts_file_attr_v11_t> changed_file()
{
    auto entry = std::make_unique<sts_file_attr_v11_t>();
    std::strcpy(entry->name, (std::string(kExport) + "/home/user1/a\\20file of usual length.txt").c_str());
    return entry;
}

void rewrite_path(benchmark::State& state)
{
    const auto entry = changed_file();
    const snapdiff_session_info info = mounted();
    for (auto _ : state) {
        benchmark::DoNotOptimize(soapwrapper::transform_path(entry.get(), info, nullptr));
    }
}

void rewrite_path_floor(benchmark::State& state)
{
    const auto entry = changed_file();
    const snapdiff_session_info info = mounted();
    const std::string& mount = info.parsed_isid.mpfs_vec.front().mount_path;
    for (auto _ : state) {
        benchmark::DoNotOptimize(mount + (entry->name + info.diff_export.size()));
    }
}

} // namespace

BENCHMARK(hundred_thousand_files)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(hundred_thousand_files_floor)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(rewrite_path);
BENCHMARK(rewrite_path_floor);
