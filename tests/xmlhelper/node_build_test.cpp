#include "tests/xmlhelper/fixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

using namespace xmlhelper;
using testing::ThrowsMessage;

namespace
{

std::string written(THXMLDocument& document)
{
    std::string text;
    EXPECT_EQ(document.serialize(text, false, false), XML_DOC_OK);
    return text;
}

// An element that already is an ancestor of where it is to go.
struct Loop {
    Loop() : document(built("r")), root(root_of(*document)), child(root->createAndAppendChild("c")) {}
    OwnedDocument document;
    OwnedNode root;
    OwnedNode child;
};

} // namespace

TEST(BuildingAnElement, MakesOneOfTheName)
{
    const OwnedDocument document = empty_document();
    XMLDocumentStatus status = XML_DOC_APPEND_FAILED;
    const XMLDocNode node(document.get(), "\xC3\xA4", &status);
    EXPECT_EQ(status, XML_DOC_OK);
    EXPECT_EQ(node.get_nodeName(), "\xC3\xA4");
    EXPECT_EQ(node.get_parent(), nullptr);
    EXPECT_EQ(node.get_document(), document.get());
    const XMLDocNode with_text(document.get(), "a", "text", &status);
    EXPECT_EQ(status, XML_DOC_OK);
    EXPECT_EQ(with_text.get_text(), "text");
    EXPECT_EQ(with_text.get_errorText(), "");
}

TEST(BuildingAnElement, NeedsADocument)
{
    XMLDocumentStatus status = XML_DOC_OK;
    const XMLDocNode node(nullptr, "a", &status);
    EXPECT_EQ(status, XML_DOC_CREATE_ELEMENT_FAILED);
    EXPECT_EQ(node.get_errorText(),
              "XMLDocNode::XMLDocNode: cannot call createElement(), no THXMLDocument supplied");
    const XMLDocNode with_text(nullptr, "a", "text", &status);
    EXPECT_EQ(status, XML_DOC_CREATE_ELEMENT_FAILED);
    const XMLDocNode without_status(nullptr, "a", nullptr);
    EXPECT_EQ(without_status.get_element(), nullptr);
}

TEST(BuildingAnElement, NeedsAName)
{
    const OwnedDocument document = empty_document();
    for (const std::string& name : {std::string("1"), std::string(), std::string("a b"), std::string("\xFF"),
                                    std::string("<"), text_of_length(65537)}) {
        XMLDocumentStatus status = XML_DOC_OK;
        const XMLDocNode node(document.get(), name, &status);
        EXPECT_EQ(status, XML_DOC_CREATE_ELEMENT_FAILED);
        EXPECT_EQ(node.get_errorText(), "XMLDocNode::XMLDocNode: createElement() failed");
        EXPECT_EQ(document->createElement(name), nullptr);
        EXPECT_EQ(document->get_errorText(), "XMLDocNode::XMLDocNode: createElement() failed");
    }
}

TEST(BuildingAText, MakesOneOfTheText)
{
    const OwnedDocument document = built("r");
    XMLDocumentStatus status = XML_DOC_APPEND_FAILED;
    XMLTextNode text(document.get(), "t\xC3\xA4xt", &status);
    EXPECT_EQ(status, XML_DOC_OK);
    EXPECT_EQ(text.get_text(), "t\xC3\xA4xt");
    EXPECT_EQ(text.appendText(root_of(*document).get()), XML_DOC_OK);
    EXPECT_EQ(written(*document), "<r>t\xC3\xA4xt</r>");
}

TEST(BuildingAText, FailsWithoutADocumentAndWithATextThatIsTooLong)
{
    XMLDocumentStatus status = XML_DOC_OK;
    const XMLTextNode text(nullptr, "the text", &status);
    EXPECT_EQ(status, XML_DOC_CREATE_TEXT_FAILED);
    EXPECT_EQ(text.get_errorText(), "XMLTextNode::XMLTextNode: createTextNode(the text) failed");

    const OwnedDocument document = empty_document();
    const std::string long_text = text_of_length(65537);
    EXPECT_EQ(document->createTextNode(long_text), nullptr);
    EXPECT_EQ(document->get_errorText(),
              "XMLTextNode::XMLTextNode: createTextNode(" + long_text + ") failed");
    const XMLDocNode with_text(document.get(), "a", long_text, &status);
    EXPECT_EQ(status, XML_DOC_CREATE_TEXT_FAILED);
}

TEST(AppendingAnElement, PutsItBehindTheChildren)
{
    const OwnedDocument document = built("r");
    const OwnedNode root = root_of(*document);
    const OwnedNode a(document->createElement("a"));
    const OwnedNode b(document->createElement("b"));
    EXPECT_EQ(a->appendElement(root.get()), XML_DOC_OK);
    EXPECT_EQ(root->appendChild(b.get()), XML_DOC_OK);
    const std::unique_ptr<XMLTextNode> text(document->createTextNode("t"));
    EXPECT_EQ(root->appendChild(text.get()), XML_DOC_OK);
    EXPECT_EQ(written(*document), "<r><a/><b/>t</r>");
}

TEST(AppendingAnElement, SaysWhatIsMissing)
{
    const OwnedDocument document = built("r");
    const OwnedNode root = root_of(*document);
    const std::unique_ptr<XMLTextNode> text(document->createTextNode("t"));
    const OwnedNode element(document->createElement("a"));

    EXPECT_EQ(element->appendElement(nullptr), XML_DOC_APPEND_FAILED);
    EXPECT_EQ(element->get_errorText(),
              "XMLDocNode::appendElement: cannot call appendChild(), parentElement is NULL");
    EXPECT_EQ(element->appendElement(text.get()), XML_DOC_APPEND_FAILED);
    EXPECT_EQ(element->get_errorText(),
              "XMLDocNode::appendElement: cannot call appendChild(), parentElement->get_element() is NULL");
    XMLDocNode nothing(document.get(), nullptr);
    EXPECT_EQ(nothing.appendElement(root.get()), XML_DOC_APPEND_FAILED);
    EXPECT_EQ(nothing.get_errorText(),
              "XMLDocNode::appendElement: cannot call appendChild(), pElement is NULL");
    EXPECT_EQ(root->appendChild(static_cast<XMLDocNode*>(nullptr)), XML_DOC_APPEND_FAILED);
    EXPECT_EQ(root->get_errorText(),
              "XMLDocNode::appendElement: cannot call appendChild(), pElement is NULL");
    EXPECT_EQ(root->appendChild(&nothing), XML_DOC_APPEND_FAILED);
}

TEST(AppendingAnElement, RefusesALoopAndAnotherDocumentsElement)
{
    Loop loop;
    EXPECT_EQ(loop.root->appendElement(loop.child.get()), XML_DOC_APPEND_FAILED);
    EXPECT_EQ(loop.root->get_errorText(), "XMLDocNode::appendElement: appendChild() failed");
    EXPECT_EQ(loop.child->appendChild(loop.root.get()), XML_DOC_APPEND_FAILED);
    EXPECT_EQ(loop.child->get_errorText(), "XMLDocNode::appendElement: appendChild() failed");

    const OwnedDocument other = built("other");
    const OwnedNode other_root = root_of(*other);
    EXPECT_EQ(other_root->appendElement(loop.root.get()), XML_DOC_APPEND_FAILED);
}

TEST(AppendingAText, SaysWhatIsMissing)
{
    const OwnedDocument document = built("r");
    const OwnedNode root = root_of(*document);
    const std::unique_ptr<XMLTextNode> text(document->createTextNode("t"));
    EXPECT_EQ(text->appendText(nullptr), XML_DOC_APPEND_FAILED);
    EXPECT_EQ(text->get_errorText(), "XMLTextNode::appendText: parentElement is NULL");
    EXPECT_EQ(text->appendText(text.get()), XML_DOC_APPEND_FAILED);
    EXPECT_EQ(text->get_errorText(), "XMLTextNode::appendText: pDomElement is NULL");
    XMLTextNode nothing(nullptr, "t", nullptr);
    EXPECT_EQ(nothing.appendText(root.get()), XML_DOC_APPEND_FAILED);
    EXPECT_EQ(nothing.get_errorText(), "XMLTextNode::appendText: pText is NULL");
    EXPECT_EQ(root->appendChild(static_cast<XMLTextNode*>(nullptr)), XML_DOC_APPEND_FAILED);
    EXPECT_EQ(root->get_errorText(), "XMLTextNode::appendText: pText is NULL");

    const OwnedDocument other = built("other");
    EXPECT_EQ(text->appendText(root_of(*other).get()), XML_DOC_APPEND_FAILED);
    EXPECT_EQ(text->get_errorText(), "XMLTextNode::appendText: appendChild() failed");
}

TEST(CreatingAndAppending, WritesTextsBooleansAndIntegers)
{
    const OwnedDocument document = built("r");
    const OwnedNode root = root_of(*document);
    const OwnedNode empty(root->createAndAppendChild("e"));
    const OwnedNode text(root->createAndAppendChild("t", "x<y"));
    const OwnedNode yes(root->createAndAppendChild("b", true));
    const OwnedNode no(root->createAndAppendChild("b", false));
    const OwnedNode number(root->createAndAppendChild("n", -42));
    const OwnedNode large(root->createAndAppendChild("n", std::int64_t{9223372036854775807}));
    EXPECT_EQ(written(*document), "<r><e/><t>x&lt;y</t><b>true</b><b>false</b><n>-42</n>"
                                  "<n>9223372036854775807</n></r>");
    EXPECT_TRUE(yes->getNodeBoolean());
    EXPECT_EQ(large->getNodeNumeric(), 9223372036854775807);
}

TEST(CreatingAndAppending, ThrowsTheStatusOfAFailure)
{
    const OwnedDocument document = built("r");
    const OwnedNode root = root_of(*document);
    const std::string long_text = text_of_length(65537);
    EXPECT_THAT([&] { root->createAndAppendChild("1"); },
                ThrowsMessage<std::domain_error>("Failed to create XMLDocNode. Status: 5"));
    EXPECT_THAT([&] { root->createAndAppendChild("1", "text"); },
                ThrowsMessage<std::domain_error>("Failed to create XMLDocNode. Status: 5"));
    EXPECT_THAT([&] { root->createAndAppendChild("1", true); },
                ThrowsMessage<std::domain_error>("Failed to create XMLDocNode. Status: 5"));
    EXPECT_THAT([&] { root->createAndAppendChild("1", 1); },
                ThrowsMessage<std::domain_error>("Failed to create XMLDocNode. Status: 5"));
    EXPECT_THAT([&] { root->createAndAppendChild("a", long_text); },
                ThrowsMessage<std::domain_error>("Failed to create XMLDocNode. Status: 12"));
    XMLDocNode not_an_element(document.get(), nullptr);
    EXPECT_THAT([&] { not_an_element.createAndAppendChild("a"); },
                ThrowsMessage<std::domain_error>("Failed to append XMLDocNode. Status: 9"));
    EXPECT_THAT([&] { not_an_element.createAndAppendChild("a", "text"); },
                ThrowsMessage<std::domain_error>("Failed to append XMLDocNode. Status: 9"));
    EXPECT_EQ(written(*document), "<r/>");
}

TEST(SettingAnAttribute, AddsItOrReplacesItsValue)
{
    const OwnedDocument document = built("r");
    const OwnedNode root = root_of(*document);
    EXPECT_EQ(root->addAttribute("a", "one"), XML_DOC_OK);
    EXPECT_EQ(root->setAttribute("b", "<\xC3\xA4>"), XML_DOC_OK);
    EXPECT_EQ(root->addAttribute("a", "two"), XML_DOC_OK);
    EXPECT_EQ(root->getAttributeString("a"), "two");
    EXPECT_EQ(root->getAttributeString("b"), "<\xC3\xA4>");
}

TEST(SettingAnAttribute, NeedsAnElementANameAndAValueThatFits)
{
    const OwnedDocument document = built("r");
    XMLDocNode nothing(document.get(), nullptr);
    EXPECT_EQ(nothing.addAttribute("a", "v"), XML_DOC_SET_ATTRIBUTE_FAILED);
    EXPECT_EQ(nothing.get_errorText(),
              "XMLDocNode::addAttribute: cannot call setAttribute(), pElement is NULL");
    const OwnedNode root = root_of(*document);
    for (const char* name : {"1", "", "a b", "\xFF"}) {
        EXPECT_EQ(root->setAttribute(name, "v"), XML_DOC_SET_ATTRIBUTE_FAILED) << name;
        EXPECT_EQ(root->get_errorText(), "XMLDocNode::addAttribute: setAttribute() failed");
    }
    EXPECT_EQ(root->addAttribute("a", text_of_length(65537)), XML_DOC_SET_ATTRIBUTE_FAILED);
    EXPECT_EQ(root->get_errorText(),
              "Caught domain_error: transcodeUtf8ToXml: text exceeded transcoder buffer size");
    EXPECT_EQ(written(*document), "<r/>");
}
