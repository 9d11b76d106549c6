// Short documents that ask for any amount of memory, time or stack end in a status, and soon.
#include "tests/xmlhelper/hostile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace xmlhelper;
using testing::AnyOf;
using testing::HasSubstr;

namespace
{

constexpr std::size_t kMebibyte = 1024 * 1024;

// Each entity is ten times the one before.
std::string laughs(std::size_t entities)
{
    return "<!ENTITY e0 'ha'>" + repeat(entities, [](std::size_t i) {
               const std::string one = "&e" + std::to_string(i) + ";";
               return "<!ENTITY e" + std::to_string(i + 1) + " '" + repeat(10, one) + "'>";
           });
}

// A chain of elements, made from the inside out.
OwnedNode deep_tree(THXMLDocument& document, int depth)
{
    OwnedNode top(document.createElement("a"));
    for (int i = 1; i < depth; ++i) {
        OwnedNode parent(document.createElement("a"));
        EXPECT_EQ(parent->appendChild(top.get()), XML_DOC_OK);
        top = std::move(parent);
    }
    return top;
}

} // namespace

TEST(HostileDocument, OfElementsNested100000DeepIsRefused)
{
    on_a_small_stack([] {
        EXPECT_THAT(error_of(nested(100'000)), HasSubstr("the document is nested too deep"));
        EXPECT_THAT(error_of(repeat(100'000, "<a>")), HasSubstr("the document is nested too deep"));
    });
}

TEST(DeepDocument, ThatWasBuiltIsNeitherWrittenNorCopiedButWalkedAndReleased)
{
    on_a_small_stack([] {
        constexpr int kDepth = 100'000;
        const OwnedDocument document = empty_document();
        const OwnedNode top = deep_tree(*document, kDepth);
        ASSERT_EQ(document->setRoot(top.get()), XML_DOC_OK);
        const OwnedList all(document->selectNodes("//a"));
        EXPECT_EQ(all->get_length(), static_cast<std::size_t>(kDepth));
        std::string text = "before";
        EXPECT_EQ(document->serialize(text, false, true), XML_DOC_SERIALIZE_FAILED);
        EXPECT_EQ(text, "before");
        EXPECT_THAT(document->get_errorText(), HasSubstr("the document is nested too deep"));
        const Folder folder;
        const std::string path = folder.write("kept.xml", "what was there");
        EXPECT_EQ(document->save(path.c_str(), false, true), XML_DOC_SAVE_FAILED);
        EXPECT_EQ(folder.read("kept.xml"), "what was there");
        const OwnedDocument other = empty_document();
        EXPECT_EQ(other->importNode(top.get(), true), nullptr);
        EXPECT_EQ(other->get_errorText(), "THXMLDocument::importNode: the node is nested too deep");
        EXPECT_NE(OwnedNode(other->importNode(top.get(), false)), nullptr);
    });
}

TEST(HostileDocument, MayExpandEntitiesWithinBounds)
{
    const OwnedDocument document = parsed(with_type(laughs(3), "<r a='&e3;'>&e3;</r>"));
    EXPECT_EQ(root_of(*document)->getAttributeString("a").size(), 2000U);
    EXPECT_EQ(parsed(with_type("<!ENTITY e 'x'>", "<r>" + repeat(20'000, "&e;") + "</r>"))->get_errorText(),
              "");
}

TEST(HostileDocument, ThatExpandsEntitiesWithoutEndIsRefused)
{
    EXPECT_THAT(error_of(with_type(laughs(20), "<r>&e20;</r>")), HasSubstr("entity expansions"));
    EXPECT_THAT(error_of(with_type(laughs(20), "<r a='&e20;'/>")), HasSubstr("entity expansions"));
    error_of(with_type("<!ENTITY e '&f;'><!ENTITY f '&e;'>", "<r>&e;</r>"));
    error_of(with_type("<!ENTITY e '&f;'><!ENTITY f '&e;'>", "<r a='&e;'/>"));
}

TEST(HostileDocument, ThatExpandsALongEntityOverAndOverIsRefused)
{
    const std::string entity = "<!ENTITY e '" + text_of_length(100'000) + "'>";
    const std::string uses = repeat(40'000, "&e;");
    EXPECT_THAT(error_of(with_type(entity, "<r>" + uses + "</r>")), HasSubstr("too much memory"));
    EXPECT_THAT(error_of(with_type(entity, "<r a='" + uses + "'/>")), HasSubstr("too much memory"));
}

TEST(HostileDocument, ThatNestsEntitiesDeepIsRefused)
{
    const std::string chain =
        "<!ENTITY e0 'x'>" + repeat(10'000, [](std::size_t i) {
            return "<!ENTITY e" + std::to_string(i + 1) + " '&e" + std::to_string(i) + ";'>";
        });
    on_a_small_stack([&] {
        error_of(with_type(chain, "<r>&e10000;</r>"));
        error_of(with_type(chain, "<r a='&e10000;'/>"));
    });
}

TEST(HostileDocument, ThatExpandsParameterEntitiesWithoutEndIsRefused)
{
    const std::string ladder = "<!ENTITY % e0 '<!-- x -->'>" + repeat(40, [](std::size_t i) {
                                   const std::string one = "&#37;e" + std::to_string(i) + ";";
                                   return "<!ENTITY % e" + std::to_string(i + 1) + " '" + one + one + "'>";
                               });
    error_of(with_type(ladder + "%e40;", "<r/>"));
    const std::string silent = "<!ENTITY % e0 ''>" + ladder.substr(ladder.find('>', 20) + 1);
    error_of(with_type(silent + "%e40;", "<r/>"));
}

TEST(HostileDocument, WithALongDeclarationIsRefused)
{
    on_a_small_stack([&] {
        const std::string stars = repeat(100'000, "(") + "a" + repeat(100'000, ")*");
        for (const std::string& model :
             {"(" + listed_names(100'000, ",") + ")", "(" + listed_names(100'000, "|") + ")*",
              "(#PCDATA|" + listed_names(100'000, "|") + ")*", stars}) {
            const std::string declaration = "<!ELEMENT r " + model + ">";
            EXPECT_THAT(error_of("<!DOCTYPE r [" + declaration + "]><r/>"),
                        HasSubstr("a declaration of the document is too long"));
            EXPECT_THAT(error_of("<!DOCTYPE r [<!ENTITY % p '" + declaration + "'>%p;]><r/>"),
                        HasSubstr("a declaration of the document is too long"));
        }
        // The parser counts nested groups itself.
        error_of("<!DOCTYPE r [<!ELEMENT r (" + repeat(50'000, "(a,") + "a" + repeat(50'000, ")") +
                 ")>]><r/>");
    });
}

TEST(HostileDocument, WhoseContentModelHasExponentiallyManyStatesIsRefused)
{
    const std::string model = "((a|b)*,a" + repeat(40, ",(a|b)") + ")";
    EXPECT_THAT(
        error_of("<!DOCTYPE r [<!ELEMENT a EMPTY><!ELEMENT b EMPTY><!ELEMENT r " + model + ">]><r><a/></r>"),
        HasSubstr("too much memory"));
}

TEST(HostileDocument, MayDeclareManyThings)
{
    const std::string declarations = repeat(5000, [](std::size_t i) {
        const std::string n = std::to_string(i);
        return "<!ELEMENT a" + n + " (b,c?,d*)><!ATTLIST a" + n + " x CDATA 'y'><!ENTITY e" + n + " 'v'>";
    });
    EXPECT_EQ(
        root_of(*parsed(with_type(declarations + "<!-- " + text_of_length(100'000) + " -->", "<r>t</r>")))
            ->get_text(),
        "t");
}

TEST(HostileDocument, WhoseDefaultsFillTheMemoryIsRefused)
{
    const std::string defaults =
        "<!ELEMENT a EMPTY><!ATTLIST a" +
        repeat(50,
               [](std::size_t i) {
                   return " a" + std::to_string(i) + " CDATA '" + text_of_length(5000) + "'";
               }) +
        ">";
    EXPECT_THAT(error_of(with_type(defaults, "<r>" + repeat(2000, "<a/>") + "</r>")),
                HasSubstr("too much memory"));
}

// A warning about a name this long would be too long to convert, as would the name.
TEST(HostileDocument, WithAnEndlessNameEndsInAStatus)
{
    const std::string name = text_of_length(kMebibyte);
    const OwnedDocument document = parsed("<" + name + "/>");
    EXPECT_EQ(root_of(*document)->get_nodeName(), "");
    EXPECT_EQ(document->parse("<" + name + "></r>", ""), XML_DOC_PARSE_FAILED);
    EXPECT_THAT(document->get_errorText(), HasSubstr("Caught SAXException at line: "));
    EXPECT_EQ(document->parse("<" + name + ":r/>", ""), XML_DOC_PARSE_FAILED);
}

TEST(HostileDocument, CutAtAnyByteEndsInAStatus)
{
    const std::string text =
        "<?xml version='1.0'?><!DOCTYPE r [<!ELEMENT r ANY><!ENTITY % p '<!ENTITY e \"v\">'>"
        "%p;<!ATTLIST r a CDATA #IMPLIED>]><!-- c --><r a='&e;'>&e;<![CDATA[d]]><?p i?></r>";
    const OwnedDocument document = parsed(text);
    for (std::size_t length = 0; length < text.size(); ++length) {
        EXPECT_EQ(document->parse(text.substr(0, length), ""), XML_DOC_PARSE_FAILED) << length;
    }
}

TEST(LargeDocument, Of64MebibytesIsRead)
{
    std::string text = "<r>";
    const std::string item = "<a>" + text_of_length(4000) + "</a>";
    while (text.size() < 64 * kMebibyte) text += item;
    text += "</r>";
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->parse(text, ""), XML_DOC_OK) << document->get_errorText();
    const OwnedList list(document->selectNodes("r/a"));
    EXPECT_EQ(list->get_length(), 64 * kMebibyte / item.size() + 1);
}

TEST(LargeDocument, OfTheShortestElementsIsRead)
{
    const std::string text = "<r>" + repeat(kMebibyte, "<a/>") + "</r>";
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->parse(text, ""), XML_DOC_OK) << document->get_errorText();
}
