// Short documents that ask for any amount of memory, time or stack end in a status, and soon.
#include "tests/xmlhelper/fixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>

using namespace fixtures;
using testing::AnyOf;
using testing::HasSubstr;

namespace
{

constexpr std::size_t kMebibyte = 1024 * 1024;
constexpr std::size_t kSmallStack = 256 * 1024;

std::string repeat(std::size_t count, const std::function<std::string(std::size_t)>& piece)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += piece(i);
    return text;
}

std::string repeat(std::size_t count, const std::string& piece)
{
    return repeat(count, [&](std::size_t) { return piece; });
}

std::string with_type(const std::string& declarations, const std::string& content)
{
    return "<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r a CDATA #IMPLIED>" + declarations + "]>" + content;
}

// Each entity is ten times the one before.
std::string laughs(std::size_t entities)
{
    return "<!ENTITY e0 'ha'>" + repeat(entities, [](std::size_t i) {
               const std::string one = "&e" + std::to_string(i) + ";";
               return "<!ENTITY e" + std::to_string(i + 1) + " '" + repeat(10, one) + "'>";
           });
}

std::string error_of(const std::string& text)
{
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->parse(text, ""), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(document->get_document(), nullptr);
    return document->get_errorText();
}

// On a thread with as little stack as a host may give one. Sanitized frames are larger.
void on_a_small_stack(std::function<void()> action)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr std::size_t kStack = 8 * kSmallStack;
#else
    constexpr std::size_t kStack = kSmallStack;
#endif
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kStack);
    pthread_t thread;
    const auto run = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &action), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::string nested(std::size_t depth)
{
    return repeat(depth, "<a>") + repeat(depth, "</a>");
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

TEST(DeepDocument, IsReadSelectedFromAndWrittenUpTo1000Levels)
{
    on_a_small_stack([] {
        const OwnedDocument document = parsed(nested(1000));
        const OwnedList all(document->selectNodes("//a//a"));
        EXPECT_EQ(all->get_length(), 999U);
        std::string text;
        EXPECT_EQ(document->serialize(text, false, false), XML_DOC_OK);
        EXPECT_EQ(text.size(), nested(999).size() + 4);
        EXPECT_EQ(document->serialize(text, true, false), XML_DOC_OK);
        const OwnedDocument copy = empty_document();
        EXPECT_NE(OwnedNode(copy->importNode(root_of(*document).get(), true)), nullptr);
        EXPECT_EQ(document->parse(nested(1001), ""), XML_DOC_PARSE_FAILED);
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
    const auto item = [](const char* separator) {
        return [=](std::size_t i) { return (i ? separator : "") + ("a" + std::to_string(i)); };
    };
    on_a_small_stack([&] {
        for (const std::string& model :
             {repeat(100'000, item(",")), repeat(100'000, item("|")), "#PCDATA|" + repeat(100'000, item("|")),
              repeat(100'000, "(") + "a" + repeat(100'000, ")")}) {
            EXPECT_THAT(error_of("<!DOCTYPE r [<!ELEMENT r (" + model + ")*>]><r/>"),
                        HasSubstr("a declaration of the document is too long"));
        }
        // The parser counts nested groups itself.
        error_of("<!DOCTYPE r [<!ELEMENT r (" + repeat(50'000, "(a,") + "a" + repeat(50'000, ")") +
                 ")>]><r/>");
        for (const std::size_t count : {100U, 300U, 400U, 600U, 800U, 900U, 1000U, 2000U}) {
            const OwnedDocument document = empty_document();
            EXPECT_EQ(document->parse(
                          "<!DOCTYPE r [<!ELEMENT r (" + repeat(count, item(",")) + ")>]><r><a0/></r>", ""),
                      count <= 400 ? XML_DOC_OK : XML_DOC_PARSE_FAILED)
                << count;
        }
    });
}

TEST(HostileDocument, ThatHidesALongDeclarationInAParameterEntityIsRefused)
{
    const std::string declaration = "<!ELEMENT s (a" + repeat(2000, ",a") + ")>";
    EXPECT_THAT(error_of(with_type("<!ENTITY % p '" + declaration + "'>%p;", "<r/>")),
                HasSubstr("a parameter entity of the document is too long"));
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

TEST(HostileDocument, WithTooManyAttributesIsRefused)
{
    const auto attribute = [](std::size_t i) { return " a" + std::to_string(i) + "=''"; };
    EXPECT_EQ(parsed("<r" + repeat(512, attribute) + "/>")->get_errorText(), "");
    EXPECT_THAT(error_of("<r" + repeat(513, attribute) + "/>"),
                HasSubstr("an element has too many attributes"));
    EXPECT_THAT(error_of("<r" + repeat(100'000, attribute) + "/>"),
                HasSubstr("an element has too many attributes"));
}

TEST(HostileDocument, WhoseDefaultsFillTheMemoryIsRefused)
{
    const std::string defaults =
        "<!ELEMENT a EMPTY><!ATTLIST a" +
        repeat(
            500,
            [](std::size_t i) { return " a" + std::to_string(i) + " CDATA '" + text_of_length(500) + "'"; }) +
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
