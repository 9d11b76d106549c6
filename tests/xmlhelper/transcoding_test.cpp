#include "tests/xmlhelper/fixtures.h"

#include "xmlhelper/transcoding_hooks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xercesc/util/TransService.hpp>

#include <stdexcept>

using namespace xmlhelper;
using testing::StrEq;
using testing::ThrowsMessage;

namespace
{

using XmlText = std::unique_ptr<XMLCh[]>;

XmlText to_xml(const std::string& text)
{
    return XmlText(transcodeUtf8ToXml(text.c_str()));
}

std::basic_string<XMLCh> units(const std::string& text)
{
    return to_xml(text).get();
}

std::basic_string<XMLCh> repeated(std::size_t count, XMLCh unit)
{
    return std::basic_string<XMLCh>(count, unit);
}

constexpr char kTooLongForXml[] = "transcodeUtf8ToXml: text exceeded transcoder buffer size";
constexpr char kTooLongForUtf8[] = "transcodeXmlToUtf8: text exceeded transcoder buffer size";

} // namespace

TEST(Transcoder, IsOneForTheProcess)
{
    ASSERT_NE(getUtf8Transcoder(), nullptr);
    EXPECT_EQ(getUtf8Transcoder(), getUtf8Transcoder());
    EXPECT_EQ(getUtf8Transcoder()->getBlockSize(), 65536U);
}

TEST(EmptyStringConstant, IsEmpty)
{
    EXPECT_EQ(EmptyString, "");
}

TEST(TranscodeXmlToUtf8, GivesTheEmptyTextForNullAndEmpty)
{
    EXPECT_EQ(transcodeXmlToUtf8(nullptr), "");
    EXPECT_EQ(transcodeXmlToUtf8(u""), "");
}

TEST(TranscodeXmlToUtf8, WritesCharactersOfOneToFourBytes)
{
    EXPECT_EQ(transcodeXmlToUtf8(u"a\u00e4\u20ac\U0001F600z"), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80z");
}

TEST(TranscodeXmlToUtf8, Passes65536CharactersThatTakeThreeBytesEach)
{
    const std::string utf8 = transcodeXmlToUtf8(repeated(65536, u'\u20ac').c_str());
    EXPECT_EQ(utf8.size(), 3U * 65536U);
    EXPECT_EQ(utf8.substr(utf8.size() - 3), "\xE2\x82\xAC");
}

TEST(TranscodeXmlToUtf8, Throws65537CharactersBack)
{
    const auto text = repeated(65537, u'a');
    EXPECT_THAT([&] { transcodeXmlToUtf8(text.c_str()); }, ThrowsMessage<std::domain_error>(kTooLongForUtf8));
}

TEST(TranscodeXmlToUtf8, SurvivesHalvesOfSurrogatePairs)
{
    const XMLCh high_at_the_end[] = {u'a', 0xD83D, 0};
    const XMLCh high_alone[] = {u'a', 0xD83D, u'b', 0};
    const XMLCh low_alone[] = {u'a', 0xDE00, u'b', 0};
    for (const XMLCh* text : {high_at_the_end, high_alone, low_alone}) {
        EXPECT_LE(transcodeXmlToUtf8(text).size(), 12U);
    }
    EXPECT_EQ(transcodeXmlToUtf8(u"after"), "after");
}

TEST(TranscodeUtf8ToXml, GivesNullForNull)
{
    EXPECT_EQ(transcodeUtf8ToXml(nullptr), nullptr);
}

TEST(TranscodeUtf8ToXml, GivesARealArrayForTheEmptyText)
{
    const XmlText text = to_xml("");
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text[0], 0);
}

TEST(TranscodeUtf8ToXml, ReadsCharactersOfOneToFourBytes)
{
    EXPECT_EQ(units("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80z"), u"a\u00e4\u20ac\U0001F600z");
}

TEST(TranscodeUtf8ToXml, Passes65536Bytes)
{
    EXPECT_EQ(units(text_of_length(65536)), repeated(65536, u'x'));
}

TEST(TranscodeUtf8ToXml, Throws65537BytesBack)
{
    const std::string text = text_of_length(65537);
    EXPECT_THAT([&] { to_xml(text); }, ThrowsMessage<std::domain_error>(kTooLongForXml));
}

TEST(TranscodeUtf8ToXml, CountsBytesAndNotCharacters)
{
    std::string text;
    while (text.size() < 65537) text += "\xE2\x82\xAC"; // 21846 characters
    EXPECT_THAT([&] { to_xml(text); }, ThrowsMessage<std::domain_error>(kTooLongForXml));
}

// The text is converted in steps, and a character may lie across the end of one.
TEST(TranscodeUtf8ToXml, KeepsCharactersWholeAtEveryOffset)
{
    for (std::size_t lead = 1016; lead < 1032; ++lead) {
        const std::string ahead = text_of_length(lead);
        const std::basic_string<XMLCh> expected =
            repeated(lead, u'x') + u"\U0001F600\u20ac\u00e4" + repeated(2000, u'y');
        EXPECT_EQ(units(ahead + "\xF0\x9F\x98\x80\xE2\x82\xAC\xC3\xA4" + text_of_length(2000, 'y')), expected)
            << lead;
    }
}

TEST(TranscodeUtf8ToXml, KeepsWhatStandsAheadOfTheFirstByteThatIsNotUtf8)
{
    for (const std::string bad :
         {"\xFF", "\xC3(", "\x80", "\xC3", "\xF0\x9F\x98", "\xC0\x80", "\xED\xA0\x80", "\xE0\x80\x80",
          "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80"}) {
        for (const std::string behind : {"", "tail"}) {
            EXPECT_EQ(units(bad + behind), u"");
            EXPECT_EQ(units("n\xC3\xA4me\xF0\x9F\x98\x80" + bad + behind), u"n\u00e4me\U0001F600") << bad;
            for (const std::size_t ahead : {31U, 32U, 33U, 34U, 1023U, 1024U, 5000U}) {
                EXPECT_EQ(units(text_of_length(ahead) + bad + behind), repeated(ahead, u'x')) << bad << ahead;
            }
        }
    }
}

TEST(TranscodeUtf8TagToXmlTag, KeepsWhatStandsAheadOfTheFirstByteThatIsNotUtf8)
{
    EXPECT_EQ(std::basic_string<XMLCh>(transcodeUtf8TagToXmlTag("name\xFFtail")), u"name");
}

TEST(Transcoding, RestoresATextOfEveryLengthUpTo300)
{
    std::string text;
    for (int i = 0; i < 300; ++i) {
        text += i % 3 == 0 ? "\xC3\xA4" : "b";
        ASSERT_EQ(transcodeXmlToUtf8(to_xml(text).get()), text);
    }
}

TEST(TranscodeUtf8TagToXmlTag, ConvertsANameOnce)
{
    const XMLCh* first = transcodeUtf8TagToXmlTag("a-tag-\xC3\xA4");
    EXPECT_EQ(std::basic_string<XMLCh>(first), u"a-tag-\u00e4");
    EXPECT_EQ(transcodeUtf8TagToXmlTag("a-tag-\xC3\xA4"), first);
    EXPECT_NE(transcodeUtf8TagToXmlTag("another-tag"), first);
}

TEST(TranscodeUtf8TagToXmlTag, KeepsTheEmptyNameToo)
{
    const XMLCh* empty = transcodeUtf8TagToXmlTag("");
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(*empty, 0);
    EXPECT_EQ(transcodeUtf8TagToXmlTag(""), empty);
}

TEST(TranscodeUtf8TagToXmlTag, HasTheLimitAndTheMessageOfTexts)
{
    EXPECT_EQ(std::basic_string<XMLCh>(transcodeUtf8TagToXmlTag(text_of_length(65536))).size(), 65536U);
    const std::string text = text_of_length(65537);
    EXPECT_THAT([&] { transcodeUtf8TagToXmlTag(text); }, ThrowsMessage<std::domain_error>(kTooLongForXml));
}

TEST(TranscodingHooks, ReportTheWidthAndTheLength)
{
    std::size_t width = 0;
    std::size_t length = 0;
    std::uint16_t* text = utf8TranscodeForTest("a\xE2\x82\xAC\xF0\x9F\x98\x80", &width, &length);
    EXPECT_EQ(width, 2U);
    ASSERT_EQ(length, 4U);
    EXPECT_EQ(std::vector<std::uint16_t>(text, text + 5),
              (std::vector<std::uint16_t>{u'a', 0x20ac, 0xD83D, 0xDE00, 0}));
    releaseXmlChForTest(text);
}

TEST(TranscodingHooks, TakeNullsAndTheEmptyText)
{
    std::size_t length = 7;
    EXPECT_EQ(utf8TranscodeForTest(nullptr, nullptr, &length), nullptr);
    EXPECT_EQ(length, 0U);
    releaseXmlChForTest(nullptr);
    std::uint16_t* empty = utf8TranscodeForTest("", nullptr, nullptr);
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(*empty, 0);
    releaseXmlChForTest(empty);
}
