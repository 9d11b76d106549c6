#include "tests/xmlhelper/fixtures.h"

#include <gtest/gtest.h>

using namespace xmlhelper;

namespace
{

struct Step {
    const char* text;
    bool is_first;
    THXPathContext context;
    const char* name;
    const char* predicate;
};

class ParsingAStep : public testing::TestWithParam<Step>
{
};

const Step kSteps[] = {
    {"a", true, XPATH_CHILD, "a", ""},
    {"a", false, XPATH_CHILD, "a", ""},
    {"", true, XPATH_CHILD, "", ""},
    {"/a", true, XPATH_ROOT, "a", ""},
    {"/a", false, XPATH_CHILD, "a", ""},
    {"/", true, XPATH_ROOT, "", ""},
    {"/", false, XPATH_CHILD, "", ""},
    {"//a", true, XPATH_DESCENDANT, "a", ""},
    {"//a", false, XPATH_DESCENDANT, "a", ""},
    {"//", true, XPATH_DESCENDANT, "", ""},
    {"//*", true, XPATH_DESCENDANT, "*", ""},
    {"///a", true, XPATH_DESCENDANT, "/a", ""},
    {"/*", true, XPATH_ANY_ROOT, "", ""},
    {"/*x", true, XPATH_ANY_ROOT, "x", ""},
    {"/*", false, XPATH_CHILD, "*", ""},
    {"*", true, XPATH_CHILD, "*", ""},
    {".", true, XPATH_SELF, "", ""},
    {"/.", false, XPATH_SELF, "", ""},
    {"//.", true, XPATH_SELF, "", ""},
    {"..", true, XPATH_PARENT, "", ""},
    {"/..", true, XPATH_PARENT, "", ""},
    {"//..", false, XPATH_PARENT, "", ""},
    {"...", true, XPATH_CHILD, "...", ""},
    {"a[1]", true, XPATH_CHILD, "a", "[1]"},
    {"a[@id='7'] ", true, XPATH_CHILD, "a", "[@id='7'] "},
    {"@id", true, XPATH_CHILD, "", "@id"},
    {"/@id", true, XPATH_ROOT, "", "@id"},
    {"text()", true, XPATH_CHILD, "text", "()"},
    {"a b", true, XPATH_CHILD, "a", " b"},
    {"a\nb", true, XPATH_CHILD, "a", "\nb"},
    {"a\tb", true, XPATH_CHILD, "a", "\tb"},
    {"a\rb", true, XPATH_CHILD, "a\rb", ""},
    {"a]b)c", true, XPATH_CHILD, "a]b)c", ""},
    {"..[1]", true, XPATH_PARENT, "", "[1]"},
    {"ns:a", true, XPATH_CHILD, "ns:a", ""},
};

std::vector<std::string> split(const std::string& expression)
{
    const THXPathExpression parsed_expression(expression);
    std::vector<std::string> steps;
    for (const THXPathNode& step : parsed_expression.get_steps()) {
        steps.push_back(std::to_string(step.get_context()) + step.get_name() + step.get_predicate());
    }
    return steps;
}

using Steps = std::vector<std::string>;

} // namespace

TEST_P(ParsingAStep, GivesItsContextItsNameAndItsRest)
{
    const Step& step = GetParam();
    const THXPathNode node(step.text, step.is_first);
    EXPECT_EQ(node.get_context(), step.context);
    EXPECT_EQ(node.get_name(), step.name);
    EXPECT_EQ(node.get_predicate(), step.predicate);
    EXPECT_EQ(node.get_errorText(), "");
}

INSTANTIATE_TEST_SUITE_P(OfXPath, ParsingAStep, testing::ValuesIn(kSteps));

TEST(XPathStep, HasNoContextByDefault)
{
    const THXPathNode step;
    EXPECT_EQ(step.get_context(), XPATH_NO_CONTEXT);
    EXPECT_EQ(step.get_name(), "");
    EXPECT_EQ(step.get_predicate(), "");
}

TEST(XPathStep, CopiesWithItsConvertedName)
{
    const THXPathNode step("//path[1]", true);
    const XMLCh* name = step.getNameXml();
    THXPathNode copy(step);
    EXPECT_EQ(copy.getNameXml(), name);
    THXPathNode assigned;
    assigned = copy;
    EXPECT_EQ(assigned.get_context(), XPATH_DESCENDANT);
    EXPECT_EQ(assigned.get_predicate(), "[1]");
    EXPECT_EQ(assigned.getNameXml(), name);
}

TEST(XPathStep, ConvertsItsNameOnce)
{
    const THXPathNode step("n\xC3\xA4me", true);
    EXPECT_EQ(std::basic_string<XMLCh>(step.getNameXml()), u"n\u00e4me");
    EXPECT_EQ(step.getNameXml(), step.getNameXml());
}

TEST(XPathStep, KeepsTheMessageOfANameThatIsTooLong)
{
    const THXPathNode step(text_of_length(65537), true);
    EXPECT_EQ(step.getNameXml(), nullptr);
    EXPECT_EQ(step.get_errorText(),
              "Caught domain_error: transcodeUtf8ToXml: text exceeded transcoder buffer size");
}

TEST(XPathExpression, SplitsAtTheSlashesBehindEachName)
{
    EXPECT_EQ(split("a"), (Steps{"2a"}));
    EXPECT_EQ(split("a/b/c"), (Steps{"2a", "2b", "2c"}));
    EXPECT_EQ(split("/a/b"), (Steps{"5a", "2b"}));
    EXPECT_EQ(split("//a//b"), (Steps{"3a", "3b"}));
    EXPECT_EQ(split("a//b/c[1]"), (Steps{"2a", "3b", "2c[1]"}));
    EXPECT_EQ(split("/*/a"), (Steps{"6", "2a"}));
    EXPECT_EQ(split("a/*"), (Steps{"2a", "2*"}));
    EXPECT_EQ(split("a///b"), (Steps{"2a", "3/b"}));
}

TEST(XPathExpression, HasOneEmptyStepForTheEmptyText)
{
    EXPECT_EQ(split(""), (Steps{"2"}));
}

TEST(XPathExpression, HasALastEmptyStepForATrailingSlash)
{
    EXPECT_EQ(split("a/"), (Steps{"2a", "2"}));
    EXPECT_EQ(split("a//"), (Steps{"2a", "3"}));
    EXPECT_EQ(split("/"), (Steps{"5"}));
}

TEST(XPathExpression, SplitsWithinPredicatesToo)
{
    EXPECT_EQ(split("a[b/c]/d"), (Steps{"2a[b", "2c]", "2d"}));
}
