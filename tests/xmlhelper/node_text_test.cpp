#include "tests/xmlhelper/fixtures.h"

#include <gtest/gtest.h>
#include <xercesc/dom/DOM.hpp>

#include <limits>

using namespace xmlhelper;

namespace
{

std::string root_text(const std::string& document)
{
    return root_of(*parsed(document))->get_text();
}

// The text of a root that holds `text`, with its end trimmed.
std::string trimmed(const std::string& text)
{
    const OwnedDocument document = built("r");
    const OwnedNode root = root_of(*document);
    const OwnedNode child(root->createAndAppendChild("c", text));
    std::string result = "before";
    const std::string& returned = child->get_text(result, true);
    EXPECT_EQ(&returned, &result);
    return result;
}

struct Value {
    const char* text;
    bool boolean;
    std::int64_t number;
};

class ReadingAValue : public testing::TestWithParam<Value>
{
};

const Value kValues[] = {
    {"true", true, 0},
    {"TRUE", true, 0},
    {"TrUe", true, 0},
    {"true ", false, 0},
    {"1", false, 1},
    {"yes", false, 0},
    {"-7", false, -7},
    {"+7", false, 7},
    {"0x10", false, 0},
    {"010", false, 10},
    {"12abc", false, 12},
    {"abc", false, 0},
    {"9223372036854775807", false, std::numeric_limits<std::int64_t>::max()},
    {"-9223372036854775808", false, std::numeric_limits<std::int64_t>::min()},
    {"00000000000000000042", false, 42},
    {"000000000000000000042", false, 0},
};

} // namespace

TEST(NodeText, IsTheFirstTextChildOfAnElement)
{
    EXPECT_EQ(root_text("<r>one<a>two</a>three</r>"), "one");
    EXPECT_EQ(root_text("<r><a>two</a>three</r>"), "three");
    EXPECT_EQ(root_text("<r><!--c--><![CDATA[<four>]]>five</r>"), "<four>");
    EXPECT_EQ(root_text("<r><a>two</a></r>"), "");
    EXPECT_EQ(root_text("<r/>"), "");
}

TEST(NodeText, IsTheOwnValueOfWhatHasOne)
{
    const OwnedDocument document = parsed("<r a='v'>t<![CDATA[d]]><!--c--><?p q?></r>");
    const OwnedList children(root_of(*document)->get_childNodes());
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < children->get_length(); ++i) {
        texts.push_back(OwnedNode(children->get_item(i))->get_text());
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"t", "d", "c", "q"}));
    const std::unique_ptr<XMLNamedNodeMap> attributes(root_of(*document)->get_attributes());
    EXPECT_EQ(OwnedNode(attributes->getNamedItem("a"))->get_text(), "v");
}

TEST(NodeText, OfADocumentAndAFragmentIsThatOfTheirTextChild)
{
    const OwnedDocument document = parsed("<r>t</r>");
    EXPECT_EQ(OwnedNode(root_of(*document)->get_parent())->get_text(), "");
    xercesc::DOMDocumentFragment* fragment = document->get_document()->createDocumentFragment();
    fragment->appendChild(document->get_document()->createTextNode(u"in the fragment"));
    XMLDocNode node(document.get(), fragment);
    EXPECT_EQ(node.get_text(), "in the fragment");
    EXPECT_EQ(node.replace_text("changed"), XML_DOC_OK);
    EXPECT_EQ(node.get_text(), "changed");
}

TEST(NodeText, OfAnyOtherNodeIsEmpty)
{
    const OwnedDocument document = parsed("<!DOCTYPE r [<!ELEMENT r ANY><!ENTITY e 'x'>]><r>&e;</r>");
    const OwnedNode reference = first_child_of_root(*document);
    ASSERT_EQ(reference->get_domNode()->getNodeType(), xercesc::DOMNode::ENTITY_REFERENCE_NODE);
    EXPECT_EQ(reference->get_text(), "");
    EXPECT_EQ(reference->replace_text("t"), XML_DOC_REPLACE_TEXT_FAILED);
}

TEST(NodeText, KeepsTheEndUnlessItIsToBeTrimmed)
{
    const OwnedDocument document = parsed("<r>text \n </r>");
    const OwnedNode root = root_of(*document);
    std::string text;
    EXPECT_EQ(root->get_text(), "text \n ");
    EXPECT_EQ(root->get_text(text, false), "text \n ");
    EXPECT_EQ(root->get_text(text, true), "text");
    EXPECT_EQ(root->getNodeText(text, true), "text");
    EXPECT_EQ(root->getNodeText(text, false), "text \n ");
}

TEST(NodeText, LosesBlanksAndLineEndsAtItsEnd)
{
    EXPECT_EQ(trimmed("a"), "a");
    EXPECT_EQ(trimmed("a  "), "a");
    EXPECT_EQ(trimmed("a\n"), "a");
    EXPECT_EQ(trimmed("a\r\n"), "a");
    EXPECT_EQ(trimmed("a \r\n \n\r\n "), "a");
    EXPECT_EQ(trimmed(" a b "), " a b");
    EXPECT_EQ(trimmed("a\t"), "a\t");
    EXPECT_EQ(trimmed("a\t "), "a\t");
    EXPECT_EQ(trimmed("a\r"), "a\r");
    EXPECT_EQ(trimmed("a\n\r"), "a\n\r");
    EXPECT_EQ(trimmed("a\r\r\n"), "a\r");
}

TEST(NodeText, KeepsACharacterWhenAllCouldGo)
{
    EXPECT_EQ(trimmed(" "), " ");
    EXPECT_EQ(trimmed("   "), " ");
    EXPECT_EQ(trimmed("\n\n"), "\n");
    EXPECT_EQ(trimmed("\r\n"), "\r");
    EXPECT_EQ(trimmed("\r\n "), "\r");
}

TEST(NodeText, IsEmptyWithAMessageWhereItIsTooLong)
{
    const OwnedDocument document =
        parsed("<r a='" + text_of_length(65537) + "'>" + text_of_length(65537) + "</r>");
    const OwnedNode root = root_of(*document);
    constexpr char kMessage[] =
        "Caught domain_error: transcodeXmlToUtf8: text exceeded transcoder buffer size";
    std::string text = "before";
    EXPECT_EQ(root->get_text(text, true), "");
    EXPECT_EQ(text, "");
    EXPECT_EQ(root->get_errorText(), kMessage);
    const OwnedNode other = root_of(*document);
    EXPECT_EQ(other->getAttributeString("a"), "");
    EXPECT_EQ(other->get_errorText(), kMessage);
    EXPECT_THROW(getNodeTextDom(root->get_domNode()), std::domain_error);
    EXPECT_EQ(root_text("<r>" + text_of_length(65536) + "</r>").size(), 65536U);
}

TEST(NodeText, OfAChildIsFoundByTheChildsName)
{
    const OwnedDocument document = parsed("<r>x<a>one</a><b>two</b><b>three</b></r>");
    EXPECT_EQ(root_of(*document)->getChildNodeText("b"), "two");
    EXPECT_EQ(root_of(*document)->getChildNodeText("c"), "");
    EXPECT_EQ(root_of(*document)->getChildNodeText("#text"), "");
}

TEST(NodeText, IsReplacedInTheFirstTextChild)
{
    const OwnedDocument document = parsed("<r><a/>one<b/>two</r>");
    const OwnedNode root = root_of(*document);
    EXPECT_EQ(root->replace_text("n\xC3\xA4w & <"), XML_DOC_OK);
    EXPECT_EQ(root->get_text(), "n\xC3\xA4w & <");
    std::string written;
    ASSERT_EQ(document->serialize(written, false, false), XML_DOC_OK);
    EXPECT_EQ(written, "<r><a/>n\xC3\xA4w &amp; &lt;<b/>two</r>");
}

TEST(NodeText, IsReplacedInATextNodeItself)
{
    const OwnedDocument document = parsed("<r>one</r>");
    EXPECT_EQ(first_child_of_root(*document)->replace_text("two"), XML_DOC_OK);
    EXPECT_EQ(root_of(*document)->get_text(), "two");
}

TEST(NodeText, IsNotReplacedWithoutATextChild)
{
    for (const char* text : {"<r/>", "<r><a>x</a></r>", "<r><![CDATA[x]]></r>", "<r><!--x--></r>"}) {
        EXPECT_EQ(root_of(*parsed(text))->replace_text("new"), XML_DOC_REPLACE_TEXT_FAILED) << text;
    }
    const OwnedDocument document = parsed("<r a='v'><!--c--></r>");
    EXPECT_EQ(first_child_of_root(*document)->replace_text("new"), XML_DOC_REPLACE_TEXT_FAILED);
    const std::unique_ptr<XMLNamedNodeMap> attributes(root_of(*document)->get_attributes());
    EXPECT_EQ(OwnedNode(attributes->getNamedItem("a"))->replace_text("w"), XML_DOC_REPLACE_TEXT_FAILED);
    EXPECT_EQ(replaceNodeTextDom(nullptr, "t"), XML_DOC_REPLACE_TEXT_FAILED);
}

TEST(NodeText, IsNotReplacedByOneThatIsTooLong)
{
    const OwnedDocument document = parsed("<r>one</r>");
    const OwnedNode root = root_of(*document);
    EXPECT_EQ(root->replace_text(text_of_length(65537)), XML_DOC_REPLACE_TEXT_FAILED);
    EXPECT_EQ(root->get_errorText(),
              "Caught domain_error: transcodeUtf8ToXml: text exceeded transcoder buffer size");
    EXPECT_EQ(root->get_text(), "one");
}

TEST_P(ReadingAValue, FollowsTheTextOfANodeAndOfAnAttribute)
{
    const Value& value = GetParam();
    const std::string text = value.text;
    const OwnedDocument document = parsed("<r a='" + text + "'>" + text + "</r>");
    const OwnedNode root = root_of(*document);
    EXPECT_EQ(root->getAttributeString("a"), text);
    EXPECT_EQ(root->getAttributeBoolean("a"), value.boolean);
    EXPECT_EQ(root->getNodeBoolean(), value.boolean);
    EXPECT_EQ(root->getAttributeNumeric("a"), value.number);
    EXPECT_EQ(root->getNodeNumeric(), value.number);
}

INSTANTIATE_TEST_SUITE_P(OfANode, ReadingAValue, testing::ValuesIn(kValues));

TEST(NodeValue, OfNothingIsEmptyFalseAndZero)
{
    const OwnedDocument document = parsed("<r a=''/>");
    const OwnedNode root = root_of(*document);
    for (const char* name : {"a", "b", "", "\xFF"}) {
        EXPECT_EQ(root->getAttributeString(name), "") << name;
        EXPECT_FALSE(root->getAttributeBoolean(name)) << name;
        EXPECT_EQ(root->getAttributeNumeric(name), 0) << name;
    }
    EXPECT_FALSE(root->getNodeBoolean());
    EXPECT_EQ(root->getNodeNumeric(), 0);
}
