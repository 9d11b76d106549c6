#include "changelist/path_map.h"

#include "tests/kit/log_recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using kit::record;
using soapwrapper::parse_pattern_xml;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

struct Reading {
    explicit Reading(const std::string& text) : xml(text)
    {
        result = parse_pattern_xml(text.c_str(), patterns, paths, more, session.get());
    }

    // Each as prefix, target and original.
    std::vector<std::string> pattern_texts() const
    {
        std::vector<std::string> texts;
        for (const auto& pattern : patterns) {
            texts.push_back(pattern.prefix + " " + pattern.target_path + " " + pattern.original_path);
        }
        return texts;
    }

    std::string xml;
    kit::RecordedSession session;
    std::vector<snapdiff_repl_pattern> patterns{{"first", "first", "first"}};
    std::vector<std::string> paths{"first"};
    bool more = true;
    int result = -1;
};

std::string path_map(const std::string& prefix, const std::string& original, const std::string& target)
{
    return "<path_map><prefix>" + prefix + "</prefix><original_path>" + original +
           "</original_path><target_path>" + target + "</target_path></path_map>";
}

} // namespace

TEST(ParsePatternXml, AppendsAPatternAndAPathForWhatMoves)
{
    const Reading reading("<maps>" + path_map("/vol/", "src/q1", "dst/q1") + path_map("", "/a", "/b") +
                          "</maps>");
    EXPECT_EQ(reading.result, 0);
    EXPECT_FALSE(reading.more);
    EXPECT_THAT(reading.pattern_texts(), ElementsAre("first first first", "/vol/ dst/q1 src/q1", " /b /a"));
    EXPECT_THAT(reading.paths, ElementsAre("first", "/vol/dst/q1", "/b"));
}

TEST(ParsePatternXml, AppendsAPathAloneForWhatStaysInPlace)
{
    const Reading reading("<maps>" + path_map("/vol/", "q1", "") +
                          "<path_map><original_path>q2</original_path></path_map></maps>");
    EXPECT_EQ(reading.result, 0);
    EXPECT_THAT(reading.pattern_texts(), ElementsAre("first first first"));
    EXPECT_THAT(reading.paths, ElementsAre("first", "/vol/q1", "q2"));
}

TEST(ParsePatternXml, LogsTheTextAndTheCount)
{
    const Reading reading("<maps>" + path_map("p", "o", "t") + "</maps>");
    EXPECT_THAT(reading.session.lines(),
                ElementsAre(record("parse_pattern_xml: xml is " + reading.xml + " more is 0"),
                            record("parse_pattern_xml: nodes are 1")));
}

TEST(ParsePatternXml, UnderstandsADocumentWithoutAMapping)
{
    for (const char* text : {"<maps/>", "<maps><path_maps/><Path_map><prefix>p</prefix></Path_map></maps>"}) {
        const Reading reading(text);
        EXPECT_EQ(reading.result, 0);
        EXPECT_FALSE(reading.more);
        EXPECT_EQ(reading.patterns.size(), 1U);
        EXPECT_EQ(reading.paths.size(), 1U);
        EXPECT_THAT(reading.session.lines(),
                    ElementsAre(record("parse_pattern_xml: xml is " + reading.xml + " more is 0"),
                                record("No mapping for snapvault receieved")));
    }
}

TEST(ParsePatternXml, SaysNothingOfTextThatIsNotXml)
{
    for (const char* text : {"", "no xml", "<maps>", "<maps></map>", "<maps><path_map></maps>"}) {
        const Reading reading(text);
        EXPECT_EQ(reading.result, 2) << text;
        EXPECT_TRUE(reading.more);
        EXPECT_EQ(reading.patterns.size(), 1U);
        EXPECT_EQ(reading.paths.size(), 1U);
        EXPECT_THAT(reading.session.lines(), IsEmpty());
    }
}

TEST(ParsePatternXml, TakesNullForTheEmptyText)
{
    std::vector<snapdiff_repl_pattern> patterns;
    std::vector<std::string> paths;
    bool more = true;
    EXPECT_EQ(parse_pattern_xml(nullptr, patterns, paths, more, nullptr), 2);
}

// A declaration of the document's own that the root violates ends the reading ahead of the root.
TEST(ParsePatternXml, FailsToSelectFromADocumentThatWasCutOff)
{
    const Reading reading("<!DOCTYPE maps [<!ELEMENT other EMPTY>]><maps>" + path_map("p", "o", "t") +
                          "</maps>");
    EXPECT_EQ(reading.result, 4);
    EXPECT_FALSE(reading.more);
    EXPECT_THAT(reading.session.lines(),
                ElementsAre(record("parse_pattern_xml: xml is " + reading.xml + " more is 0"),
                            record("select nodes failed")));
    EXPECT_EQ(reading.paths.size(), 1U);
}

TEST(ParsePatternXml, FailsAtAMappingWithoutChildrenAndKeepsWhatCameBefore)
{
    const Reading reading("<maps>" + path_map("p", "o", "t") + "<path_map/>" + path_map("q", "o", "t") +
                          "</maps>");
    EXPECT_EQ(reading.result, 5);
    EXPECT_THAT(reading.paths, ElementsAre("first", "pt"));
    EXPECT_EQ(reading.patterns.size(), 2U);
    EXPECT_THAT(reading.session.lines(),
                ElementsAre(record("parse_pattern_xml: xml is " + reading.xml + " more is 0"),
                            record("parse_pattern_xml: nodes are 3")));
}

TEST(ParsePatternXml, AppendsTheEmptyPathForAMappingWithNothingOfInterest)
{
    for (const char* child :
         {" ", "text", "<other>x</other>", "<!-- c -->", "<Prefix>x</Prefix>", "<prefix/>"}) {
        const Reading reading("<maps><path_map>" + std::string(child) + "</path_map></maps>");
        EXPECT_EQ(reading.result, 0) << child;
        EXPECT_THAT(reading.paths, ElementsAre("first", "")) << child;
        EXPECT_EQ(reading.patterns.size(), 1U) << child;
    }
}

TEST(ParsePatternXml, PassesOverOtherChildrenAndTakesAnyOrder)
{
    const Reading reading("<maps>\n <path_map>\n  <target_path>t</target_path> <!-- c --> <other>x</other>\n"
                          "  <original_path>o</original_path>\n <prefix>p</prefix>\n</path_map>\n</maps>");
    EXPECT_EQ(reading.result, 0);
    EXPECT_THAT(reading.pattern_texts(), ElementsAre("first first first", "p t o"));
}

TEST(ParsePatternXml, TakesTheLastOfSeveral)
{
    const Reading reading("<maps><path_map><prefix>1</prefix><target_path>a</target_path><prefix>2</prefix>"
                          "<target_path>b</target_path><original_path>c</original_path><original_path/>"
                          "</path_map></maps>");
    EXPECT_THAT(reading.pattern_texts(), ElementsAre("first first first", "2 b "));
    EXPECT_THAT(reading.paths, ElementsAre("first", "2b"));
}

TEST(ParsePatternXml, KeepsTextsAsTheyStand)
{
    const Reading reading("<maps>" + path_map(" /vol ", "<![CDATA[a&b]]>", "\n t \xC3\xA4&amp; \n") +
                          "</maps>");
    EXPECT_THAT(reading.pattern_texts(), ElementsAre("first first first", " /vol  \n t \xC3\xA4& \n a&b"));
}

TEST(ParsePatternXml, KeepsTwoMappingsWithOneTarget)
{
    const Reading reading("<maps>" + path_map("p", "1", "t") + path_map("p", "2", "t") + "</maps>");
    EXPECT_THAT(reading.pattern_texts(), ElementsAre("first first first", "p t 1", "p t 2"));
}

TEST(ParsePatternXml, FindsMappingsAtAnyDepth)
{
    const Reading reading("<maps><a><b>" + path_map("", "1", "x") + "</b></a><path_map><prefix>o</prefix>" +
                          path_map("", "2", "y") + "</path_map></maps>");
    EXPECT_EQ(reading.result, 0);
    EXPECT_THAT(reading.paths, ElementsAre("first", "x", "o", "y"));
    EXPECT_THAT(Reading(path_map("", "1", "root")).paths, ElementsAre("first", "root"));
}

TEST(ParsePatternXml, ReadsTheEncodingThatTheDocumentDeclares)
{
    const Reading reading("<?xml version='1.0' encoding='ISO-8859-1'?><maps>" + path_map("gr\xFC", "", "t") +
                          "</maps>");
    EXPECT_THAT(reading.paths, ElementsAre("first", "gr\xC3\xBCt"));
}

TEST(ParsePatternXml, TakesATextThatIsTooLongForEmpty)
{
    const Reading reading("<maps>" + path_map("p", "o", std::string(65537, 'x')) + "</maps>");
    EXPECT_EQ(reading.result, 0);
    EXPECT_THAT(reading.paths, ElementsAre("first", "po"));
}

TEST(ParsePatternXml, PassesOverAChildWhoseNameIsTooLong)
{
    const std::string name(65537, 'x');
    const Reading reading("<maps><path_map><" + name + ">x</" + name +
                          "><prefix>p</prefix></path_map></maps>");
    EXPECT_EQ(reading.result, 0);
    EXPECT_THAT(reading.paths, ElementsAre("first", "p"));
}

TEST(ParsePatternXml, WorksWithoutASession)
{
    std::vector<snapdiff_repl_pattern> patterns;
    std::vector<std::string> paths;
    bool more = true;
    EXPECT_EQ(parse_pattern_xml(path_map("p", "o", "t").c_str(), patterns, paths, more, nullptr), 0);
    EXPECT_FALSE(more);
    EXPECT_THAT(paths, ElementsAre("pt"));
}
