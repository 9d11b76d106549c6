#include "tests/xmlhelper/fixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xercesc/dom/DOM.hpp>

#include <algorithm>
#include <stdexcept>

using namespace xmlhelper;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

namespace
{

constexpr char kDocument[] = "<a n='1'>t<b n='2'><c n='3'/><b n='4'><c n='5'/></b></b><!-- c --><b n='6'/>"
                             "<a n='7'><b n='8'><c n='9'/></b></a></a>";
constexpr char kUnsupported[] = "XPath context not supported.";

std::vector<std::string> select(const std::string& xpath)
{
    return numbers(parsed(kDocument)->selectNodes(xpath));
}

std::vector<std::string> select_below(const std::string& top, const std::string& xpath)
{
    const OwnedDocument document = parsed(kDocument);
    const OwnedNode node(document->selectSingleNode(top));
    return numbers(node->selectNodes(xpath));
}

// A step as it is written down: for each node, each match that isn't in the result yet.
std::vector<std::string> slow_step(const std::vector<xercesc::DOMNode*>& from, const std::string& name,
                                   std::vector<xercesc::DOMNode*>& result)
{
    const std::unique_ptr<XMLCh[]> tag(transcodeUtf8ToXml(name.c_str()));
    for (xercesc::DOMNode* node : from) {
        xercesc::DOMNodeList* matches =
            static_cast<xercesc::DOMElement*>(node)->getElementsByTagName(tag.get());
        for (XMLSize_t i = 0; i < matches->getLength(); ++i) {
            if (std::find(result.begin(), result.end(), matches->item(i)) == result.end()) {
                result.push_back(matches->item(i));
            }
        }
    }
    std::vector<std::string> found;
    for (xercesc::DOMNode* node : result) found.push_back(XMLDocNode(nullptr, node).getAttributeString("n"));
    return found;
}

std::vector<xercesc::DOMNode*> dom_nodes(const XMLNodeList& list)
{
    std::vector<xercesc::DOMNode*> nodes;
    for (std::size_t i = 0; i < list.get_length(); ++i) nodes.push_back(list.get_domNode(i));
    return nodes;
}

// A tree whose shape and names follow from the seed.
std::string random_tree(unsigned seed)
{
    std::string text = "<a n='0'>";
    std::string open = "a";
    for (int i = 1; i < 200; ++i) {
        seed = seed * 1103515245U + 12345U;
        const unsigned draw = seed >> 16U;
        const char name = static_cast<char>('a' + draw % 3);
        text += std::string("<") + name + " n='" + std::to_string(i) + "'>";
        open += name;
        for (unsigned closed = draw / 3 % 3; closed > 0 && open.size() > 1; --closed) {
            text += std::string("</") + open.back() + ">";
            open.pop_back();
        }
    }
    for (; !open.empty(); open.pop_back()) text += std::string("</") + open.back() + ">";
    return text;
}

} // namespace

TEST(XPathSelection, FindsADescendantAtAnyDepthTheRootIncluded)
{
    EXPECT_THAT(select("//a"), ElementsAre("1", "7"));
    EXPECT_THAT(select("//b"), ElementsAre("2", "4", "6", "8"));
    EXPECT_THAT(select("//c"), ElementsAre("3", "5", "9"));
}

TEST(XPathSelection, TakesTheRootForTheFirstChildStep)
{
    EXPECT_THAT(select("a"), ElementsAre("1"));
    EXPECT_THAT(select("b"), IsEmpty());
}

TEST(XPathSelection, FindsTheChildrenOfTheRoot)
{
    EXPECT_THAT(select("a/b"), ElementsAre("2", "6"));
    EXPECT_THAT(select("a/b/c"), ElementsAre("3"));
    EXPECT_THAT(select("a/a/b/c"), ElementsAre("9"));
}

TEST(XPathSelection, FindsDescendantsOfSeveralNodesOnceEach)
{
    EXPECT_THAT(select("a//b"), ElementsAre("2", "4", "6", "8"));
    EXPECT_THAT(select("//b//c"), ElementsAre("3", "5", "9"));
    EXPECT_THAT(select("//a//b//c"), ElementsAre("3", "5", "9"));
    EXPECT_THAT(select("//a//a"), ElementsAre("7"));
}

TEST(XPathSelection, KeepsTheOrderOfFirstFinding)
{
    EXPECT_THAT(select("//a/b"), ElementsAre("2", "6", "8"));
    // The nodes before the last step stand as 2, 6, 8, 4: not in the document's order.
    const OwnedDocument document = parsed("<r><a n='1'><b n='2'/><a n='3'><b n='4'><c n='5'/></b></a>"
                                          "<b n='6'><c n='7'/></b></a></r>");
    EXPECT_THAT(numbers(document->selectNodes("//a/b")), ElementsAre("2", "6", "4"));
    EXPECT_THAT(numbers(document->selectNodes("//a/b//c")), ElementsAre("7", "5"));
    EXPECT_THAT(numbers(document->selectNodes("//a/b/c")), ElementsAre("7", "5"));
}

TEST(XPathSelection, FindsWhatTheSlowWayFindsInTheSameOrder)
{
    for (unsigned seed = 1; seed <= 50; ++seed) {
        const OwnedDocument document = parsed(random_tree(seed));
        for (const char* first : {"//a", "//b", "//a/b", "//c/a/b"}) {
            const OwnedList list(document->selectNodes(first));
            std::vector<xercesc::DOMNode*> found;
            const auto expected = slow_step(dom_nodes(*list), "c", found);
            EXPECT_EQ(numbers(document->selectNodes(std::string(first) + "//c")), expected)
                << seed << ' ' << first;
            std::vector<xercesc::DOMNode*> found_again;
            EXPECT_EQ(numbers(document->selectNodes(std::string(first) + "//c//b")),
                      slow_step(found, "b", found_again))
                << seed << ' ' << first;
        }
    }
}

TEST(XPathSelection, FindsANodeOnceWhereTheListHoldsOneTwice)
{
    const OwnedDocument document = parsed(kDocument);
    const OwnedNode node(document->selectSingleNode("a/b"));
    for (const char* steps : {"x/c", "x//c"}) {
        auto list = std::make_unique<XMLNodeList>(document.get());
        list->add_item(new XMLDocNode(*node));
        list->add_item(new XMLDocNode(*node));
        const THXPathExpression expression(steps);
        const auto found =
            numbers(selectNodesRecurse(document.get(), list.release(), expression.get_steps(), 1));
        EXPECT_EQ(found.front(), "3") << steps;
        EXPECT_EQ(found.size(), steps[2] == '/' ? 2U : 1U) << steps;
    }
}

TEST(XPathSelection, SkipsPredicatesAttributesAndCalls)
{
    EXPECT_THAT(select("a[1]/b"), ElementsAre("2", "6"));
    EXPECT_THAT(select("//b[@n='4']"), ElementsAre("2", "4", "6", "8"));
    EXPECT_THAT(select("a/@n"), IsEmpty());
}

TEST(XPathSelection, RefusesWhatItDoesNotSupport)
{
    const OwnedDocument document = parsed(kDocument);
    for (const char* xpath : {"/a", "/", ".", "..", "/*", "/*/a", "//.", "a/.", "a/..", "a/b/.."}) {
        EXPECT_THAT([&] { numbers(document->selectNodes(xpath)); },
                    ThrowsMessage<std::domain_error>(kUnsupported))
            << xpath;
    }
}

TEST(XPathSelection, RefusesAnUnsupportedStepBehindAnEmptyResultToo)
{
    const OwnedDocument document = parsed(kDocument);
    EXPECT_THAT([&] { numbers(document->selectNodes("nothing/..")); },
                ThrowsMessage<std::domain_error>(kUnsupported));
}

TEST(XPathSelection, RefusesAStepWithoutAContext)
{
    const OwnedDocument document = parsed(kDocument);
    const std::vector<THXPathNode> steps(1);
    EXPECT_THAT([&] { selectNodesRecurse(document.get(), new XMLNodeList(document.get()), steps, 0); },
                ThrowsMessage<std::domain_error>(kUnsupported));
}

TEST(XPathSelection, GivesAnEmptyListWithoutAMatch)
{
    EXPECT_THAT(select("//nothing"), IsEmpty());
    EXPECT_THAT(select("a/nothing//c"), IsEmpty());
    EXPECT_THAT(select(""), IsEmpty());
    EXPECT_THAT(select("a/"), IsEmpty());
    EXPECT_THAT(select("//"), IsEmpty());
    EXPECT_THAT(select("a//"), IsEmpty());
}

TEST(XPathSelection, TakesAStarForEveryElementInTheFirstDescendantStepOnly)
{
    EXPECT_EQ(select("//*").size(), 9U);
    EXPECT_THAT(select("a//*"), IsEmpty());
    EXPECT_THAT(select("a/*"), IsEmpty());
    EXPECT_THAT(select("*"), IsEmpty());
    EXPECT_THAT(select("//*/c"), ElementsAre("3", "5", "9"));
}

TEST(XPathSelection, ComparesNamesExactly)
{
    EXPECT_THAT(select("A"), IsEmpty());
    EXPECT_THAT(select("//B"), IsEmpty());
    const OwnedDocument document =
        parsed("<r xmlns:p='u'><ab n='1'/><abc n='2'/><p:ab n='3'/><\xC3\xA4 n='4'/></r>");
    EXPECT_THAT(numbers(document->selectNodes("r/ab")), ElementsAre("1"));
    EXPECT_THAT(numbers(document->selectNodes("r/p:ab")), ElementsAre("3"));
    EXPECT_THAT(numbers(document->selectNodes("r//p:ab")), ElementsAre("3"));
    EXPECT_THAT(numbers(document->selectNodes("r/\xC3\xA4")), ElementsAre("4"));
    EXPECT_THAT(numbers(document->selectNodes("//\xC3\xA4")), ElementsAre("4"));
    EXPECT_THAT(numbers(document->selectNodes("r/\xC3")), IsEmpty());
    EXPECT_THAT(numbers(document->selectNodes("r/ab\xFF")), IsEmpty());
}

TEST(XPathSelection, FindsNothingByANameThatIsTooLong)
{
    const std::string name = text_of_length(70000, 'x');
    const OwnedDocument document = parsed("<r><a/><" + name + "/></r>");
    EXPECT_THAT(numbers(document->selectNodes("//" + name)), IsEmpty());
    EXPECT_THAT(numbers(document->selectNodes("r//" + name)), IsEmpty());
    EXPECT_THAT(numbers(document->selectNodes("r/" + name)).size(), 1U);
    EXPECT_THAT(numbers(document->selectNodes("r/\xC3\xA4")), IsEmpty());
}

TEST(XPathSelection, StartsBelowANode)
{
    EXPECT_THAT(select_below("a/b", "c"), ElementsAre("3"));
    EXPECT_THAT(select_below("a/b", "b/c"), ElementsAre("5"));
    EXPECT_THAT(select_below("a/b", "//c"), ElementsAre("3", "5"));
    EXPECT_THAT(select_below("a/b", "//b//c"), ElementsAre("5"));
    EXPECT_THAT(select_below("a", "a"), ElementsAre("7"));
}

TEST(XPathSelection, LooksBelowADocumentsWrapperAsBelowTheDocument)
{
    const OwnedDocument document = parsed(kDocument);
    const OwnedNode top(root_of(*document)->get_parent());
    ASSERT_NE(top, nullptr);
    EXPECT_THAT(numbers(top->selectNodes("a/b")), ElementsAre("2", "6"));
}

TEST(XPathSelection, FindsNothingBelowATextOrAnAttribute)
{
    const OwnedDocument document = parsed(kDocument);
    const OwnedNode text = first_child_of_root(*document);
    EXPECT_THAT(numbers(text->selectNodes("//c")), IsEmpty());
    EXPECT_THAT(numbers(text->selectNodes("c")), IsEmpty());
    const std::unique_ptr<XMLNamedNodeMap> attributes(root_of(*document)->get_attributes());
    const OwnedNode attribute(attributes->getNamedItem("n"));
    EXPECT_THAT(numbers(attribute->selectNodes("//c")), IsEmpty());
}

TEST(XPathSelection, GivesNullWithoutANode)
{
    EXPECT_EQ(selectNodesDom(nullptr, nullptr, "..", true), nullptr);
    EXPECT_EQ(XMLDocNode(nullptr, nullptr).selectNodes(".."), nullptr);
    EXPECT_EQ(XMLDocNode(nullptr, nullptr).selectSingleNode(".."), nullptr);
    EXPECT_EQ(selectNodesRecurse(nullptr, nullptr, {}, 0), nullptr);
}

TEST(XPathSelection, GivesTheListBackWithoutAStepLeft)
{
    const auto list = std::make_unique<XMLNodeList>(nullptr);
    const std::vector<THXPathNode> steps(2);
    EXPECT_EQ(selectNodesRecurse(nullptr, list.get(), steps, 2), list.get());
    EXPECT_EQ(selectNodesRecurse(nullptr, list.get(), steps, 9), list.get());
}

TEST(XPathSelection, FindsTheChildrenOfSeveralNodesAndTexts)
{
    const OwnedDocument document =
        parsed("<r>x<a n='1'>y<b n='2'/></a><a n='3'>z<b n='4'/><b n='5'/></a></r>");
    EXPECT_THAT(numbers(document->selectNodes("r/a/b")), ElementsAre("2", "4", "5"));
    EXPECT_THAT(numbers(document->selectNodes("r/a/#text")), ElementsAre("", ""));
}

TEST(XPathSelection, FindsElementsThatCameOutOfAnEntity)
{
    const OwnedDocument document = parsed("<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT a ANY><!ATTLIST a n CDATA "
                                          "#IMPLIED><!ENTITY e '<a n=\"1\"><a n=\"2\"/></a>'>]><r>&e;</r>");
    EXPECT_THAT(numbers(document->selectNodes("//a")), ElementsAre("1", "2"));
    EXPECT_THAT(numbers(document->selectNodes("r//a")), ElementsAre("1", "2"));
    EXPECT_THAT(numbers(document->selectNodes("r//a//a")), ElementsAre("2"));
}

TEST(XPathSelection, TakesManyStepsAndManyNodes)
{
    std::string steps;
    for (int i = 0; i < 100'000; ++i) steps += "/b";
    EXPECT_THAT(select("a" + steps), IsEmpty());
    EXPECT_THAT(select("//a" + steps), IsEmpty());

    constexpr std::size_t kNodes = 100'000;
    std::string text = "<r>";
    for (std::size_t i = 0; i < kNodes; ++i) text += "<a><b/></a>";
    const OwnedDocument document = parsed(text + "</r>");
    for (const char* xpath : {"//b", "r/a/b", "//a/b", "r//b", "//a//b"}) {
        const OwnedList list(document->selectNodes(xpath));
        EXPECT_EQ(list->get_length(), kNodes) << xpath;
    }
}

// Each of the elements has all the ones below it for descendants: 500 million of them, were they counted.
TEST(XPathSelection, GoesThroughNestedElementsOnce)
{
    constexpr int kDepth = 30'000;
    const OwnedDocument document = empty_document();
    OwnedNode top(document->createElement("a"));
    for (int i = 1; i < kDepth; ++i) {
        OwnedNode parent(document->createElement("a"));
        ASSERT_EQ(parent->appendChild(top.get()), XML_DOC_OK);
        top = std::move(parent);
    }
    const OwnedList list(top->selectNodes("//a//a"));
    EXPECT_EQ(list->get_length(), static_cast<std::size_t>(kDepth - 2));
}
