#include "tests/xmlhelper/fixtures.h"

#include <gtest/gtest.h>

using namespace xmlhelper;

namespace
{

constexpr char kItems[] =
    "<r><i key='a' value='1'/><i key='b' value='2'/><i value='3'/><i key='b' value='4'/></r>";

} // namespace

TEST(NodeList, GivesNullAtItsLengthAndBeyond)
{
    const OwnedDocument document = parsed(kItems);
    const OwnedList list(document->selectNodes("r/i"));
    EXPECT_EQ(list->get_length(), 4U);
    EXPECT_EQ(list->get_item(4), nullptr);
    EXPECT_EQ(list->get_item(static_cast<std::size_t>(-1)), nullptr);
    EXPECT_EQ(list->get_domNode(4), nullptr);
    EXPECT_EQ(list->get_length(), 4U);
}

TEST(NodeList, HandsOutWrappersOfTheirOwn)
{
    const OwnedDocument document = parsed(kItems);
    OwnedList list(document->selectNodes("r/i"));
    const OwnedNode first(list->get_item(0));
    const OwnedNode again(list->get_item(0));
    EXPECT_NE(first, again);
    EXPECT_EQ(first->get_domNode(), again->get_domNode());
    list.reset();
    EXPECT_EQ(first->getAttributeString("key"), "a");
}

TEST(NodeList, DeletesWhatWasAddedWithItself)
{
    struct Counted : XMLDocNode {
        explicit Counted(int& deleted) : XMLDocNode(nullptr, nullptr), deleted_(deleted) {}
        Counted(const Counted&) = delete;
        Counted& operator=(const Counted&) = delete;
        ~Counted() override { ++deleted_; }
        int& deleted_;
    };
    int deleted = 0;
    {
        XMLNodeList list(nullptr);
        list.add_item(new Counted(deleted));
        list.add_item(new Counted(deleted));
        EXPECT_EQ(list.get_length(), 2U);
        delete list.get_item(1);
        EXPECT_EQ(deleted, 0);
    }
    EXPECT_EQ(deleted, 2);
}

TEST(NodeList, PassesOverNull)
{
    XMLNodeList list(nullptr);
    list.add_item(nullptr);
    EXPECT_EQ(list.get_length(), 0U);
}

TEST(NodeList, FindsAnAttributeByAnother)
{
    const OwnedDocument document = parsed(kItems);
    const OwnedList list(document->selectNodes("r/i"));
    EXPECT_EQ(list->findAttributeString("key", "b", "value"), "2");
    EXPECT_EQ(list->findAttributeString("key", "c", "value"), "");
    EXPECT_EQ(list->findAttributeString("key", "a", "nothing"), "");
    std::string text = "before";
    list->findAttributeString("key", "b", "value", text);
    EXPECT_EQ(text, "2");
    list->findAttributeString("key", "c", "value", text);
    EXPECT_EQ(text, "");
}

// An attribute that isn't there reads as the empty text.
TEST(NodeList, FindsANodeWithoutTheAttributeByTheEmptyValue)
{
    const OwnedDocument document = parsed(kItems);
    const OwnedList list(document->selectNodes("r/i"));
    EXPECT_EQ(list->findAttributeString("key", "", "value"), "3");
}

TEST(NamedNodeMap, GivesTheAttributeOfAName)
{
    const OwnedDocument document = parsed("<r a='1' \xC3\xA4='two'/>");
    const std::unique_ptr<XMLNamedNodeMap> map(root_of(*document)->get_attributes());
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(OwnedNode(map->getNamedItem("a"))->get_text(), "1");
    EXPECT_EQ(OwnedNode(map->getNamedItem("\xC3\xA4"))->get_text(), "two");
    EXPECT_EQ(OwnedNode(map->getNamedItem("a"))->get_nodeName(), "a");
    EXPECT_EQ(map->getNamedItem("b"), nullptr);
}

TEST(NamedNodeMap, TellsTheDocumentOfANameThatCannotBeConverted)
{
    const OwnedDocument document = parsed("<r a='1'/>");
    const std::unique_ptr<XMLNamedNodeMap> map(root_of(*document)->get_attributes());
    EXPECT_EQ(map->getNamedItem(text_of_length(65537)), nullptr);
    EXPECT_EQ(document->get_errorText(),
              "Caught domain_error: transcodeUtf8ToXml: text exceeded transcoder buffer size");
    EXPECT_EQ(XMLNamedNodeMap(nullptr, nullptr).getNamedItem("a"), nullptr);
}
