#include "tests/xmlhelper/fixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xercesc/dom/DOM.hpp>

#include <stdexcept>

using namespace xmlhelper;
using testing::ThrowsMessage;

TEST(EmptyDocument, TakesItsEncodingFromTheFlagOrTheNumber)
{
    XMLDocumentStatus status = XML_DOC_PARSE_FAILED;
    const THXMLDocument utf8(&status, false, VALIDATION_IGNORE_ERRORS, "");
    EXPECT_EQ(status, XML_DOC_OK);
    EXPECT_EQ(utf8.get_encoding(), XML_ENCODING_UTF8);
    const THXMLDocument utf16(&status, true, VALIDATION_NO_SCHEMA, "schema.xsd");
    EXPECT_EQ(status, XML_DOC_OK);
    EXPECT_EQ(utf16.get_encoding(), XML_ENCODING_UTF16);
    for (const auto encoding :
         {XML_ENCODING_DECLARED, XML_ENCODING_UTF8, XML_ENCODING_UTF16, XML_ENCODING_UTF32}) {
        const THXMLDocument document(&status, encoding, VALIDATION_FATAL_ERRORS, "");
        EXPECT_EQ(status, XML_DOC_OK);
        EXPECT_EQ(document.get_encoding(), encoding);
        EXPECT_EQ(document.get_errorText(), "");
    }
}

TEST(EmptyDocument, HasNoRootAndNoNodes)
{
    const OwnedDocument document = empty_document();
    ASSERT_NE(document->get_document(), nullptr);
    EXPECT_EQ(document->get_document()->getFirstChild(), nullptr);
    EXPECT_EQ(document->get_root(), nullptr);
}

TEST(EmptyDocument, TakesNoStatus)
{
    const THXMLDocument document(nullptr, false, VALIDATION_IGNORE_ERRORS, "");
    EXPECT_EQ(document.get_errorText(), "");
}

TEST(EmptyDocument, SelectsNothingAndDoesNotLookAtTheExpression)
{
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->selectNodes("/unsupported"), nullptr);
    EXPECT_EQ(document->selectSingleNode(".."), nullptr);
    std::string text = "before";
    bool value = true;
    document->selectSingleNodeTextString("..", text);
    document->selectSingleNodeTextBoolean("..", value);
    EXPECT_EQ(text, "before");
    EXPECT_TRUE(value);
}

TEST(ProcessingInstruction, IsMadeAndNotPlacedInTheTree)
{
    const OwnedDocument document = built("r");
    for (const auto encoding :
         {XML_ENCODING_DECLARED, XML_ENCODING_UTF8, XML_ENCODING_UTF16, XML_ENCODING_UTF32}) {
        EXPECT_EQ(document->addProcessingInstruction(encoding), XML_DOC_OK);
    }
    EXPECT_EQ(document->get_document()->getFirstChild(), document->get_document()->getDocumentElement());
    EXPECT_EQ(document->get_document()->getLastChild(), document->get_document()->getDocumentElement());
}

TEST(ProcessingInstruction, NeedsADocument)
{
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->parse("<", ""), XML_DOC_PARSE_FAILED);
    EXPECT_THAT([&] { document->addProcessingInstruction(XML_ENCODING_UTF8); },
                ThrowsMessage<std::domain_error>("pXMLDom is null"));
}

TEST(Root, IsTheElementThatWasSet)
{
    const OwnedDocument document = empty_document();
    const OwnedNode element(document->createElement("r"));
    EXPECT_EQ(document->setRoot(element.get()), XML_DOC_OK);
    EXPECT_EQ(root_of(*document)->get_domNode(), element->get_domNode());
    EXPECT_EQ(OwnedNode(document->selectSingleNode("r"))->get_nodeName(), "r");
}

TEST(Root, IsSetOnceOnly)
{
    const OwnedDocument document = built("r");
    const OwnedNode another(document->createElement("s"));
    EXPECT_EQ(document->setRoot(another.get()), XML_DOC_SET_ROOT_FAILED);
    EXPECT_EQ(document->get_errorText(), "THXMLDocument::setRoot: appendChild() failed");
    EXPECT_EQ(root_of(*document)->get_nodeName(), "r");
}

TEST(Root, IsNotSetWithoutADocumentANodeOrAnElement)
{
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->setRoot(nullptr), XML_DOC_SET_ROOT_FAILED);
    const std::unique_ptr<XMLTextNode> text(document->createTextNode("t"));
    EXPECT_EQ(document->setRoot(text.get()), XML_DOC_SET_ROOT_FAILED);
    const OwnedNode element(document->createElement("r"));
    const OwnedDocument without = empty_document();
    EXPECT_EQ(without->setRoot(element.get()), XML_DOC_SET_ROOT_FAILED);
    EXPECT_EQ(without->parse("<", ""), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(without->setRoot(element.get()), XML_DOC_SET_ROOT_FAILED);
    EXPECT_EQ(without->createElement("r"), nullptr);
    EXPECT_EQ(without->createTextNode("t"), nullptr);
    EXPECT_EQ(without->importNode(element.get(), true), nullptr);
}

TEST(ImportedNode, IsACopyWithOrWithoutItsChildren)
{
    const OwnedDocument source = parsed("<r><a n='1'>text<b/></a></r>");
    const OwnedNode a(source->selectSingleNode("r/a"));
    const OwnedDocument target = built("t");
    const OwnedNode deep(target->importNode(a.get(), true));
    const OwnedNode shallow(target->importNode(a.get(), false));
    ASSERT_NE(deep, nullptr);
    ASSERT_NE(shallow, nullptr);
    EXPECT_EQ(deep->get_parent(), nullptr);
    const OwnedNode root = root_of(*target);
    EXPECT_EQ(root->appendChild(deep.get()), XML_DOC_OK);
    EXPECT_EQ(root->appendChild(shallow.get()), XML_DOC_OK);
    std::string text;
    EXPECT_EQ(target->serialize(text, false, false), XML_DOC_OK);
    EXPECT_EQ(text, "<t><a n=\"1\">text<b/></a><a n=\"1\"/></t>");
    EXPECT_EQ(a->getAttributeString("n"), "1");
}

TEST(ImportedNode, IsNullForNothingAndForAWholeDocument)
{
    const OwnedDocument source = parsed("<r/>");
    const OwnedDocument target = built("t");
    EXPECT_EQ(target->importNode(nullptr, true), nullptr);
    XMLDocNode nothing(source.get(), nullptr);
    EXPECT_EQ(target->importNode(&nothing, true), nullptr);
    const OwnedNode whole(root_of(*source)->get_parent());
    EXPECT_EQ(target->importNode(whole.get(), true), nullptr);
    EXPECT_THAT(target->get_errorText(), testing::StartsWith("Caught DOMException at line: "));
}

TEST(SelectingFromADocument, GivesTheFirstMatchAndItsText)
{
    const OwnedDocument document = parsed("<r><a>one</a><a>two</a><b/></r>");
    EXPECT_EQ(OwnedNode(document->selectSingleNode("r/a"))->get_text(), "one");
    EXPECT_EQ(document->selectSingleNode("r/c"), nullptr);
    std::string text = "before";
    document->selectSingleNodeTextString("r/c", text);
    EXPECT_EQ(text, "before");
    document->selectSingleNodeTextString("r/a", text);
    EXPECT_EQ(text, "one");
    document->selectSingleNodeTextString("r/b", text);
    EXPECT_EQ(text, "");
}

TEST(SelectingFromADocument, TakesTrueInLowerCaseAlone)
{
    const OwnedDocument document = parsed("<r><yes>true</yes><big>TRUE</big><no>false</no><none/></r>");
    const auto selected = [&](const char* xpath, bool before) {
        document->selectSingleNodeTextBoolean(xpath, before);
        return before;
    };
    EXPECT_TRUE(selected("r/yes", false));
    EXPECT_FALSE(selected("r/big", true));
    EXPECT_FALSE(selected("r/no", true));
    EXPECT_TRUE(selected("r/none", true));
    EXPECT_FALSE(selected("r/none", false));
    EXPECT_TRUE(selected("r/nothing", true));
}

TEST(SelectingFromADocument, LetsAnUnsupportedExpressionThrough)
{
    const OwnedDocument document = parsed("<r/>");
    EXPECT_THROW(document->selectSingleNode("/r"), std::domain_error);
    std::string text;
    bool value = false;
    EXPECT_THROW(document->selectSingleNodeTextString("/r", text), std::domain_error);
    EXPECT_THROW(document->selectSingleNodeTextBoolean("/r", value), std::domain_error);
}
