// Each bound of a document: what reaches it is read, on a thread with little stack, and what goes past it
// isn't.
#include "tests/xmlhelper/hostile.h"

#include "xmlhelper/document_bounds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace xmlhelper;
using testing::HasSubstr;

namespace
{

// With validation, which is what follows the declarations.
void expect_read(const std::string& text)
{
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->parse(text, ""), XML_DOC_OK) << document->get_errorText();
    EXPECT_NE(root_of(*document), nullptr);
}

std::string attributes(std::size_t count, const std::string& behind)
{
    return repeat(count, [&](std::size_t i) { return " a" + std::to_string(i) + behind; });
}

// Of elements that exist, so that the model is used.
std::string with_model(const std::string& model)
{
    return "<!DOCTYPE r [<!ELEMENT r " + model + "><!ELEMENT a0 EMPTY>]><r><a0/></r>";
}

// `names` names, each in a group of its own within the one before.
std::string groups(std::size_t names)
{
    return "(a0" + repeat(names - 2, ",(a0") + ",a0" + repeat(names - 1, ")");
}

constexpr char kTooDeep[] = "the document is nested too deep";
constexpr char kTooLong[] = "a declaration of the document is too long";
constexpr char kTooManyAttributes[] = "an element has too many attributes";
constexpr char kTooMuchTime[] = "the document takes too much time";

} // namespace

TEST(DepthOfADocument, IsBounded)
{
    on_a_small_stack([] {
        const OwnedDocument document = parsed(nested(kMaxDepth));
        const OwnedList all(document->selectNodes("//a//a"));
        EXPECT_EQ(all->get_length(), kMaxDepth - 1);
        EXPECT_THAT(error_of(nested(kMaxDepth + 1)), HasSubstr(kTooDeep));
    });
}

TEST(DepthOfADocument, ThatIsWrittenOrCopiedIsBounded)
{
    on_a_small_stack([] {
        const OwnedDocument document = parsed(nested(kMaxWrittenDepth));
        std::string text;
        EXPECT_EQ(document->serialize(text, false, false), XML_DOC_OK);
        EXPECT_EQ(text.size(), nested(kMaxWrittenDepth - 1).size() + 4);
        EXPECT_EQ(document->serialize(text, true, false), XML_DOC_OK);
        const OwnedDocument copy = empty_document();
        EXPECT_NE(OwnedNode(copy->importNode(root_of(*document).get(), true)), nullptr);
        ASSERT_EQ(document->parse(nested(kMaxWrittenDepth + 1), ""), XML_DOC_OK);
        EXPECT_EQ(document->serialize(text, false, false), XML_DOC_SERIALIZE_FAILED);
    });
}

TEST(DepthOfAnEntity, IsBounded)
{
    on_a_small_stack([] {
        const auto text_with = [](std::size_t depth) {
            return with_type("<!ELEMENT a ANY><!ENTITY e '" + nested(depth - 1) + "'>",
                             "<r><a><a><a><a>&e;</a></a></a></a>&e;</r>");
        };
        expect_read(text_with(kMaxEntityDepth));
        EXPECT_THAT(error_of(text_with(kMaxEntityDepth + 1)), HasSubstr(kTooDeep));
    });
}

TEST(AttributesOfAnElement, AreBounded)
{
    on_a_small_stack([] {
        expect_read("<r" + attributes(kMaxAttributes, "=''") + "/>");
        EXPECT_THAT(error_of("<r" + attributes(kMaxAttributes + 1, "=''") + "/>"),
                    HasSubstr(kTooManyAttributes));
        const auto declared = [](std::size_t count, const std::string& behind) {
            return "<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r" + attributes(count, behind) + ">]><r/>";
        };
        expect_read(declared(kMaxAttributes, " CDATA 'x'"));
        expect_read(declared(kMaxAttributes, " CDATA #IMPLIED"));
        EXPECT_THAT(error_of(declared(kMaxAttributes + 1, " CDATA #IMPLIED")), HasSubstr(kTooManyAttributes));
    });
}

TEST(ValuesOfAnAttribute, AreBounded)
{
    on_a_small_stack([] {
        const auto text_with = [](std::size_t count) {
            return with_type("<!ATTLIST r b (" + listed_names(count, "|") + ") 'a0'>", "<r/>");
        };
        expect_read(text_with(kMaxListedValues));
        EXPECT_THAT(error_of(text_with(kMaxListedValues + 1)), HasSubstr(kTooLong));
    });
}

TEST(ContentModel, IsBounded)
{
    on_a_small_stack([] {
        for (const std::string separator : {",", "|", "?,", "*|"}) {
            expect_read(with_model("(" + listed_names(kMaxModelNames, separator) + ")*"));
            EXPECT_THAT(error_of(with_model("(" + listed_names(kMaxModelNames + 1, separator) + ")*")),
                        HasSubstr(kTooLong));
        }
        expect_read(with_model(groups(kMaxModelNames)));
        EXPECT_THAT(error_of(with_model(groups(kMaxModelNames + 1))), HasSubstr(kTooLong));
        const auto stars = [](std::size_t count) { return repeat(count, "(") + "a0" + repeat(count, ")*"); };
        expect_read(with_model(stars(kMaxModelDepth - 1)));
        EXPECT_THAT(error_of(with_model(stars(kMaxModelDepth))), HasSubstr(kTooLong));
    });
}

TEST(ContentModel, ThatIsMixedIsBounded)
{
    on_a_small_stack([] {
        expect_read(with_model("(#PCDATA|" + listed_names(kMaxMixedNames, "|") + ")*"));
        EXPECT_THAT(error_of(with_model("(#PCDATA|" + listed_names(kMaxMixedNames + 1, "|") + ")*")),
                    HasSubstr(kTooLong));
    });
}

TEST(ExpansionsOfEntities, AreBoundedByTheLengthOfTheDocument)
{
    const auto text_with = [](std::size_t count, std::size_t more) {
        return with_type("<!ENTITY e 'x'>", "<r>" + repeat(count, "&e;") + text_of_length(more) + "</r>");
    };
    const std::size_t more = 10'000 * kBytesPerEntityExpansion;
    expect_read(text_with(kMinEntityExpansions + 10'000, more));
    EXPECT_THAT(error_of(text_with(kMinEntityExpansions + 25'000, more)), HasSubstr("entity expansions"));
}

TEST(ParameterEntity, MayBeOfAnyLength)
{
    const std::string declarations =
        "<!-- " + text_of_length(100'000) + " -->" +
        repeat(2000, [](std::size_t i) { return "<!ELEMENT a" + std::to_string(i) + " (b,c)>"; });
    expect_read(with_type("<!ENTITY % p '" + declarations + "'>%p;", "<r/>"));
}

TEST(TimeOfADocument, IsBounded)
{
    const std::string wide = "<a" + attributes(kMaxAttributes, "=''") + "/>";
    EXPECT_THAT(error_of("<r>" + repeat(4, wide) + "</r>"), HasSubstr(kTooMuchTime));
    EXPECT_THAT(error_of(repeat(9000, "<a>") + repeat(40'000, "<b/>")), HasSubstr(kTooMuchTime));
    const auto named = [](std::size_t count) {
        return "<r>" + repeat(count, [](std::size_t i) { return "<a" + std::to_string(i) + "/>"; }) + "</r>";
    };
    expect_read(named(60'000));
    EXPECT_THAT(error_of(named(150'000)), HasSubstr(kTooMuchTime));
    const std::string list = " (" + listed_names(9000, "|") + ") #IMPLIED";
    EXPECT_THAT(error_of(with_type("<!ATTLIST r" + attributes(4, list) + ">", "<r/>")),
                HasSubstr(kTooMuchTime));
}

TEST(MemoryOfADocument, SufficesForTheShortestOfEverything)
{
    for (const std::string piece : {"<!---->", "<?p?>", "<a/>x", "<a b=''/>"}) {
        expect_read("<r>" + repeat(250'000, piece) + "</r>");
    }
}
