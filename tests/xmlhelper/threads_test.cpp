#include "tests/xmlhelper/fixtures.h"

#include "xmlhelper/platform.h"

#include "changelist/path_map.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

using namespace xmlhelper;

namespace
{

constexpr int kThreads = 10;
constexpr int kRounds = 20;

void on_ten_threads(const std::function<void(int)>& action)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) threads.emplace_back(action, i);
    for (std::thread& thread : threads) thread.join();
}

} // namespace

TEST(TenThreads, StartAndEndThePlatformAtOnce)
{
    on_ten_threads([](int) {
        for (int i = 0; i < kRounds; ++i) {
            ASSERT_TRUE(start_platform(nullptr));
            end_platform();
        }
    });
}

TEST(TenThreads, ShareTheTranscoderFromItsFirstUse)
{
    on_ten_threads([](int thread) {
        const std::string text = "n\xC3\xA4me-" + std::to_string(thread);
        for (int i = 0; i < kRounds; ++i) {
            const std::unique_ptr<XMLCh[]> converted(transcodeUtf8ToXml(text.c_str()));
            ASSERT_EQ(transcodeXmlToUtf8(converted.get()), text);
            ASSERT_EQ(transcodeXmlToUtf8(transcodeUtf8TagToXmlTag(text)), text);
            ASSERT_NE(transcodeUtf8TagToXmlTag("shared-by-all"), nullptr);
        }
    });
}

TEST(TenThreads, BuildWriteParseAndSelectInDocumentsOfTheirOwn)
{
    on_ten_threads([](int thread) {
        for (int i = 0; i < kRounds; ++i) {
            const std::string value = std::to_string(thread * kRounds + i);
            const OwnedDocument document = built("r");
            const OwnedNode child(root_of(*document)->createAndAppendChild("c", value));
            std::string text;
            ASSERT_EQ(document->serialize(text, true, true), XML_DOC_OK);
            const OwnedDocument read = parsed(text);
            ASSERT_EQ(OwnedNode(read->selectSingleNode("//c"))->get_text(), value);
            ASSERT_EQ(read->parse("<r>", ""), XML_DOC_PARSE_FAILED);
        }
    });
}

TEST(TenThreads, ReadPathMaps)
{
    on_ten_threads([](int) {
        for (int i = 0; i < kRounds; ++i) {
            std::vector<snapdiff_repl_pattern> patterns;
            std::vector<std::string> paths;
            bool more = true;
            ASSERT_EQ(soapwrapper::parse_pattern_xml(
                          "<m><path_map><prefix>/vol</prefix><target_path>/q</target_path></path_map></m>",
                          patterns, paths, more, nullptr),
                      0);
            ASSERT_EQ(paths, (std::vector<std::string>{"/vol/q"}));
        }
    });
}
