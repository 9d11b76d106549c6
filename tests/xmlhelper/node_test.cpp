#include "tests/xmlhelper/fixtures.h"

#include <gtest/gtest.h>
#include <xercesc/dom/DOM.hpp>

using namespace xmlhelper;

namespace
{

std::string name_of(XMLDocNode* node)
{
    const OwnedNode owned(node);
    return node ? node->get_nodeName() : "null";
}

OwnedNode selected(THXMLDocument& document, const std::string& xpath)
{
    return OwnedNode(document.selectSingleNode(xpath));
}

} // namespace

TEST(Node, WalksTheTree)
{
    const OwnedDocument document = parsed("<r><a/>text<b/></r>");
    const OwnedNode a = selected(*document, "r/a");
    EXPECT_EQ(name_of(a->get_parent()), "r");
    EXPECT_EQ(name_of(a->get_next_sibling()), "#text");
    EXPECT_EQ(name_of(a->get_previous_sibling()), "null");
    const OwnedNode b = selected(*document, "r/b");
    EXPECT_EQ(name_of(b->get_previous_sibling()), "#text");
    EXPECT_EQ(name_of(b->get_next_sibling()), "null");
    EXPECT_EQ(name_of(root_of(*document)->get_parent()), "#document");
    const OwnedNode top(root_of(*document)->get_parent());
    EXPECT_EQ(top->get_parent(), nullptr);
}

TEST(Node, GivesItsNameInBothForms)
{
    const OwnedDocument document = parsed("<n\xC3\xA4me/>");
    const OwnedNode root = root_of(*document);
    EXPECT_EQ(root->get_nodeName(), "n\xC3\xA4me");
    EXPECT_EQ(std::basic_string<XMLCh>(root->get_nodeNameXml()), u"n\u00e4me");
    EXPECT_EQ(&root->get_nodeName(), &root->get_nodeName());
}

TEST(Node, HasAnEmptyNameAndAMessageWhereTheNameIsTooLong)
{
    const OwnedDocument document = parsed("<" + text_of_length(65537) + "/>");
    const OwnedNode root = root_of(*document);
    EXPECT_EQ(root->get_nodeName(), "");
    EXPECT_EQ(root->get_errorText(),
              "Caught domain_error: transcodeXmlToUtf8: text exceeded transcoder buffer size");
}

TEST(Node, ListsChildrenOfEveryType)
{
    const OwnedDocument document = parsed("<r> <a/><!--c--><![CDATA[d]]><?p q?>\n</r>");
    const OwnedList children(root_of(*document)->get_childNodes());
    std::vector<std::string> names;
    for (std::size_t i = 0; i < children->get_length(); ++i) names.push_back(name_of(children->get_item(i)));
    EXPECT_EQ(names, (std::vector<std::string>{"#text", "a", "#comment", "#cdata-section", "p", "#text"}));
}

TEST(Node, GivesNoListWithoutChildren)
{
    const OwnedDocument document = parsed("<r/>");
    EXPECT_EQ(root_of(*document)->get_childNodes(), nullptr);
    EXPECT_EQ(XMLDocNode(document.get(), nullptr).get_childNodes(), nullptr);
}

TEST(Node, GivesAttributesOfElementsOnly)
{
    const OwnedDocument document = parsed("<r>t</r>");
    const std::unique_ptr<XMLNamedNodeMap> none(root_of(*document)->get_attributes());
    ASSERT_NE(none, nullptr);
    EXPECT_EQ(none->getNamedItem("a"), nullptr);
    EXPECT_EQ(first_child_of_root(*document)->get_attributes(), nullptr);
}

TEST(Node, WithoutADomNodeGivesNothing)
{
    XMLDocNode node(nullptr, nullptr);
    EXPECT_EQ(node.get_parent(), nullptr);
    EXPECT_EQ(node.get_next_sibling(), nullptr);
    EXPECT_EQ(node.get_previous_sibling(), nullptr);
    EXPECT_EQ(node.get_childNodes(), nullptr);
    EXPECT_EQ(node.get_attributes(), nullptr);
    EXPECT_EQ(node.get_nodeName(), "");
    EXPECT_EQ(node.get_nodeNameXml(), nullptr);
    EXPECT_EQ(node.get_text(), "");
    EXPECT_EQ(node.getChildNodeText("a"), "");
    EXPECT_EQ(node.getAttributeString("a"), "");
    EXPECT_FALSE(node.getNodeBoolean());
    EXPECT_EQ(node.getNodeNumeric(), 0);
    EXPECT_EQ(node.replace_text("t"), XML_DOC_REPLACE_TEXT_FAILED);
    EXPECT_EQ(node.get_element(), nullptr);
}

TEST(Node, LeavesTheDomNodeAloneWhenItGoes)
{
    const OwnedDocument document = parsed("<r><a/></r>");
    selected(*document, "r/a").reset();
    EXPECT_EQ(name_of(document->selectSingleNode("r/a")), "a");
}

TEST(Node, SelectsTheFirstMatchBelowItself)
{
    const OwnedDocument document = parsed("<r><a n='1'><b n='2'/><b n='3'/></a></r>");
    const OwnedNode a = selected(*document, "r/a");
    EXPECT_EQ(OwnedNode(a->selectSingleNode("b"))->getAttributeString("n"), "2");
    EXPECT_EQ(a->selectSingleNode("c"), nullptr);
}
