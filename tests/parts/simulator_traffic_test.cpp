// What is kept of requests and replies, and what isn't.
#include "messages/indented.h"
#include "simulator/front/http.h"
#include "simulator/traffic/dump_folder.h"
#include "simulator/traffic/exchange.h"
#include "simulator/traffic/recorder.h"
#include "simulator/traffic/report.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using namespace soapwrapper::messages;
using namespace soapwrapper::simulator;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

TEST(SimulatorIndentation, EachElementHasALineButForThoseOfATextAlone)
{
    EXPECT_EQ(indented("<?xml version=\"1.0\"?>\n<a x='>'><b>text</b><c/> <d><e></e></d></a>"),
              "<?xml version=\"1.0\"?>\n<a x='>'>\n  <b>text</b>\n  <c/>\n  <d>\n    <e></e>\n  </d>\n</a>");
    EXPECT_EQ(indented("<a><b> </b><!-- c --><d> e </d></a>"),
              "<a>\n  <b> </b>\n  <!-- c -->\n  <d> e </d>\n</a>");
    EXPECT_EQ(indented("<a><![CDATA[<b>]]></a>"), "<a><![CDATA[<b>]]></a>");
}

TEST(SimulatorIndentation, WhatIsNotWellFormedComesBackAsItIs)
{
    std::string deep;
    for (int i = 0; i < 40; ++i) deep.insert(0, "<a>").append("</a>");
    for (const std::string& odd : {std::string(), std::string("text"), std::string("<a><b></a></b>"),
                                   std::string("<a>"), std::string("</a>"), std::string("<a b='"),
                                   std::string("<a><!-- "), std::string("(not XML, 5 bytes)"), deep}) {
        EXPECT_EQ(indented(odd), odd);
    }
}

Exchange exchange_with(const std::string& request, const std::string& reply = "<reply/>")
{
    Exchange exchange;
    exchange.operation = "openServer";
    exchange.request_bytes = request.size();
    exchange.request = request;
    exchange.reply_bytes = reply.size();
    exchange.reply = reply;
    exchange.method = "POST";
    exchange.path = "/";
    return exchange;
}

std::vector<std::uint64_t> numbers_of(const std::vector<Exchange>& exchanges)
{
    std::vector<std::uint64_t> numbers;
    for (const Exchange& exchange : exchanges) numbers.push_back(exchange.number);
    return numbers;
}

TEST(SimulatorRecorder, GivesTheNewestBehindANumberWithoutTheirTexts)
{
    Recorder recorder("");
    EXPECT_EQ(recorder.last(), 0U);
    EXPECT_THAT(recorder.after(0, 10), IsEmpty());
    for (int i = 0; i < 5; ++i) recorder.add(exchange_with("<a/>"));
    EXPECT_EQ(recorder.last(), 5U);
    EXPECT_THAT(numbers_of(recorder.after(0, 10)), ElementsAre(1, 2, 3, 4, 5));
    EXPECT_THAT(numbers_of(recorder.after(0, 2)), ElementsAre(4, 5));
    EXPECT_THAT(numbers_of(recorder.after(3, 10)), ElementsAre(4, 5));
    EXPECT_THAT(recorder.after(5, 10), IsEmpty());
    EXPECT_THAT(recorder.after(1000, 10), IsEmpty());
    EXPECT_EQ(recorder.after(4, 1).at(0).request, "");
    EXPECT_EQ(recorder.after(4, 1).at(0).request_bytes, 4U);
    EXPECT_EQ(recorder.find(5)->request, "<a/>");
    EXPECT_FALSE(recorder.find(0));
    EXPECT_FALSE(recorder.find(6));
}

TEST(SimulatorRecorder, ForgetsTheOldestBeyondAThousand)
{
    Recorder recorder("");
    for (std::size_t i = 0; i < Recorder::kMostExchanges + 1; ++i) recorder.add(exchange_with(""));
    EXPECT_FALSE(recorder.find(1));
    EXPECT_EQ(recorder.find(2)->number, 2U);
    EXPECT_THAT(recorder.after(0, 2000), SizeIs(Recorder::kMostExchanges));
    EXPECT_THAT(recorder.all(), SizeIs(Recorder::kMostExchanges));
}

TEST(SimulatorRecorder, ForgetsTheOldestBeyondTheBytesThatItMayHold)
{
    Recorder recorder("");
    const std::string large = "<a>" + std::string(Recorder::kLongestText - 7, '.') + "</a>";
    const std::size_t fitting = Recorder::kMostBytes / (2 * Recorder::kLongestText);
    for (std::size_t i = 0; i < fitting; ++i) recorder.add(exchange_with(large, large));
    EXPECT_LE(fitting - recorder.all().size(), 1U);
    EXPECT_GT(recorder.all().size(), 100U);
}

TEST(SimulatorRecorder, CutsWhatIsTooLongAndSaysSo)
{
    Recorder recorder("");
    const std::string large = "<a>" + std::string(Recorder::kLongestText, '.') + "</a>";
    const auto kept = recorder.add(exchange_with(large));
    EXPECT_EQ(kept->request, large.substr(0, Recorder::kLongestText));
    EXPECT_TRUE(kept->request_is_cut);
    EXPECT_EQ(kept->request_bytes, large.size());
    EXPECT_FALSE(kept->reply_is_cut);
}

TEST(SimulatorRecorder, GoesOnCountingBehindAClear)
{
    Recorder recorder("");
    recorder.add(exchange_with(""));
    recorder.clear();
    EXPECT_THAT(recorder.all(), IsEmpty());
    EXPECT_EQ(recorder.last(), 1U);
    EXPECT_FALSE(recorder.find(1));
    EXPECT_EQ(recorder.add(exchange_with(""))->number, 2U);
    EXPECT_THAT(numbers_of(recorder.after(0, 10)), ElementsAre(2));
    EXPECT_EQ(recorder.find(2)->number, 2U);
}

TEST(SimulatorRecorder, TellsOfEachChangeWhenItIsDone)
{
    Recorder* asked = nullptr;
    std::vector<std::size_t> sizes;
    Recorder recorder("", [&] { sizes.push_back(asked->all().size()); });
    asked = &recorder;
    recorder.add(exchange_with(""));
    recorder.add(exchange_with(""));
    recorder.clear();
    EXPECT_THAT(sizes, ElementsAre(1, 2, 0));
}

TEST(SimulatorRecorder, KeepsNoFieldThatIsSecretAndNoQuery)
{
    Exchange exchange = exchange_with("");
    exchange.path = "/sesame/x?password=SECRET";
    exchange.outcome = "fault, sesame";
    exchange.fields = {{"Host", "h"},
                       {"AUTHORIZATION", "SECRET"},
                       {"cookie", "SECRET"},
                       {"X-Api-Key", "SECRET"},
                       {"Proxy-Authorization", "SECRET"},
                       {"X-Token", "SECRET"},
                       {"Referer", "/?SECRET"},
                       {"X", "a sesame b"},
                       {"Y-sesame", "c"}};
    const auto kept = Recorder("sesame").add(exchange);
    EXPECT_EQ(kept->path, "/***/x");
    EXPECT_EQ(kept->outcome, "fault, ***");
    EXPECT_THAT(kept->fields, ElementsAre(Fields::value_type("Host", "h"), Fields::value_type("X", "a *** b"),
                                          Fields::value_type("Y-***", "c")));
}

TEST(SimulatorReport, TellsOfEachExchangeAsAnHttpArchive)
{
    Recorder recorder("");
    Exchange exchange = exchange_with("<a><b/></a>");
    exchange.time = 1767225600123;
    exchange.microseconds = 1500;
    exchange.status = 500;
    exchange.fault_code = 2060013;
    exchange.trouble = "fault";
    exchange.fields = {{"host", "filer:8085"}, {"content-type", "text/xml"}};
    recorder.add(exchange);
    const nlohmann::json log = report_of(recorder.all(), "1.2.3").at("log");
    EXPECT_EQ(log.at("version"), "1.2");
    EXPECT_EQ(log.at("creator").at("name"), "soapwrapper-sim");
    EXPECT_EQ(log.at("creator").at("version"), "1.2.3");
    const nlohmann::json& entry = log.at("entries").at(0);
    EXPECT_EQ(entry.at("startedDateTime"), "2026-01-01T00:00:00.123Z");
    EXPECT_EQ(entry.at("time"), 1.5);
    EXPECT_EQ(entry.at("request").at("url"), "http://filer:8085/");
    EXPECT_EQ(entry.at("request").at("method"), "POST");
    EXPECT_EQ(entry.at("request").at("bodySize"), 11);
    EXPECT_EQ(entry.at("request").at("postData").at("mimeType"), "text/xml");
    EXPECT_EQ(entry.at("request").at("postData").at("text"), "<a>\n  <b/>\n</a>");
    EXPECT_EQ(entry.at("response").at("status"), 500);
    EXPECT_EQ(entry.at("response").at("content").at("text"), "<reply/>");
    EXPECT_EQ(entry.at("_operation"), "openServer");
    EXPECT_EQ(entry.at("_fault"), 2060013);
    EXPECT_EQ(entry.at("_trouble"), "fault");
}

class SimulatorDump : public testing::Test
{
  protected:
    SimulatorDump()
    {
        std::string pattern = testing::TempDir() + "simulator-dump-XXXXXX";
        if (!mkdtemp(pattern.data())) throw std::runtime_error("no folder");
        parent_ = pattern;
        folder_ = parent_ / "dump";
    }
    ~SimulatorDump() override { std::filesystem::remove_all(parent_); }

    std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    std::string content(const std::string& name) const
    {
        std::ifstream file(folder_ / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static unsigned mode_of(const std::filesystem::path& path)
    {
        struct stat status {
        };
        return stat(path.c_str(), &status) == 0 ? status.st_mode & 0777U : 0;
    }
    static Exchange numbered(std::uint64_t number)
    {
        Exchange exchange = exchange_with("<a><b/></a>");
        exchange.number = number;
        return exchange;
    }

    std::filesystem::path parent_;
    std::filesystem::path folder_;
};

TEST_F(SimulatorDump, WritesEachRequestAndItsReplyToFilesOfTheirOwn)
{
    DumpFolder dump(folder_.string());
    Exchange unknown = numbered(2);
    unknown.operation = "-";
    unknown.reply = "";
    dump.write(numbered(1));
    dump.write(unknown);
    EXPECT_THAT(files(), ElementsAre("000001-openServer.reply.xml", "000001-openServer.request.xml",
                                     "000002-unknown.reply.xml", "000002-unknown.request.xml"));
    EXPECT_EQ(content("000001-openServer.request.xml"), "<a>\n  <b/>\n</a>\n");
    EXPECT_EQ(content("000001-openServer.reply.xml"), "<reply/>\n");
    EXPECT_EQ(content("000002-unknown.reply.xml"), "");
}

TEST_F(SimulatorDump, IsForItsOwnerAlone)
{
    DumpFolder dump(folder_.string());
    dump.write(numbered(1));
    EXPECT_EQ(mode_of(folder_), 0700U);
    EXPECT_EQ(mode_of(folder_ / "000001-openServer.request.xml"), 0600U);
}

TEST_F(SimulatorDump, GoesOnBehindTheFilesOfAnotherRun)
{
    DumpFolder(folder_.string()).write(numbered(1));
    std::ofstream(folder_ / "000041-x") << "x";
    std::ofstream(folder_ / "99999999999999999999-x") << "x";
    std::ofstream(folder_ / "77") << "x";
    DumpFolder(folder_.string()).write(numbered(1));
    EXPECT_THAT(files(), testing::Contains("000042-openServer.request.xml"));
    EXPECT_EQ(content("000041-x"), "x");
}

TEST_F(SimulatorDump, WritesOverNoFileAndThroughNoLink)
{
    DumpFolder dump(folder_.string());
    std::ofstream(folder_ / "000001-openServer.request.xml") << "another's";
    std::filesystem::create_symlink(parent_ / "elsewhere", folder_ / "000002-openServer.request.xml");
    testing::internal::CaptureStderr();
    dump.write(numbered(1));
    dump.write(numbered(2));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("can't be written: File exists"));
    EXPECT_EQ(content("000001-openServer.request.xml"), "another's");
    EXPECT_FALSE(std::filesystem::exists(parent_ / "elsewhere"));
}

TEST_F(SimulatorDump, AFolderThatHasGoneIsToldOnce)
{
    DumpFolder dump(folder_.string());
    std::filesystem::remove_all(folder_);
    testing::internal::CaptureStderr();
    dump.write(numbered(1));
    dump.write(numbered(2));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "soapwrapper-sim: --dump: a file in \"" +
                                                          folder_.string() +
                                                          "\" can't be written: No such file or directory\n");
}

TEST_F(SimulatorDump, WhatCanBeNoFolderIsRefused)
{
    std::ofstream(parent_ / "file") << "x";
    EXPECT_THROW(DumpFolder((parent_ / "file").string()), std::runtime_error);
    EXPECT_THROW(DumpFolder((parent_ / "none/dump").string()), std::runtime_error);
}

} // namespace
