#include "tests/xmlhelper/fixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xercesc/dom/DOM.hpp>

using namespace xmlhelper;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

namespace
{

constexpr char kSchema[] = "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>"
                           "<xs:include schemaLocation='types.xsd'/>"
                           "<xs:element name='r' type='number'/></xs:schema>";
constexpr char kTypes[] =
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:simpleType name='number'>"
    "<xs:restriction base='xs:integer'/></xs:simpleType></xs:schema>";

struct SchemaFolder : Folder {
    SchemaFolder()
    {
        write("types.xsd", kTypes);
        location = write("schema.xsd", kSchema);
    }
    std::string location;
};

XMLDocumentStatus parse(const std::string& text, THValidationLevel level, const std::string& schema = "")
{
    XMLDocumentStatus status = XML_DOC_OK;
    THXMLDocument document(&status, false, level, schema);
    return document.parse(text, "");
}

constexpr THValidationLevel kLevels[] = {VALIDATION_IGNORE_ERRORS, VALIDATION_FATAL_ERRORS,
                                         VALIDATION_FATAL_WARNINGS, VALIDATION_NO_SCHEMA};

} // namespace

TEST(Parsing, WrapsTheDocumentElementAsTheRoot)
{
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->parse("<!-- c --><r a='1'>t</r>", "the buffer"), XML_DOC_OK);
    const OwnedNode root = root_of(*document);
    EXPECT_EQ(root->get_nodeName(), "r");
    EXPECT_EQ(root->getAttributeString("a"), "1");
    EXPECT_EQ(root->get_document(), document.get());
    EXPECT_EQ(document->get_encoding(), XML_ENCODING_UTF8);
}

TEST(Parsing, ReplacesWhatTheDocumentHeld)
{
    const OwnedDocument document = parsed("<first/>");
    EXPECT_EQ(document->parse("<second/>", ""), XML_DOC_OK);
    EXPECT_EQ(root_of(*document)->get_nodeName(), "second");
}

TEST(Parsing, TakesAwayWhatTheDocumentHeldWhenItFails)
{
    const OwnedDocument document = parsed("<first/>");
    EXPECT_EQ(document->parse("<second>", ""), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(document->get_root(), nullptr);
    EXPECT_EQ(document->get_document(), nullptr);
    EXPECT_EQ(document->parse("<third/>", ""), XML_DOC_OK);
    EXPECT_EQ(root_of(*document)->get_nodeName(), "third");
}

TEST(Parsing, GivesTheReasonOfAFailure)
{
    const OwnedDocument document = empty_document();
    for (const char* text : {"", " ", "text", "<", "<r>", "<r></s>", "<r/><r/>", "<r a='1' a='2'/>",
                             "<r>&none;</r>", "<r a='<'/>", "<r>\x01</r>", "<r>\xFF</r>", "<p:r/>"}) {
        EXPECT_EQ(document->parse(text, ""), XML_DOC_PARSE_FAILED) << text;
        EXPECT_THAT(document->get_errorText(),
                    MatchesRegex("Caught SAXException at line: [0-9]+ File: [a-z_]+\\.cpp description: .+"));
    }
}

TEST(Parsing, TakesNullBytesForNone)
{
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->parse(static_cast<const char*>(nullptr), 100, nullptr, XML_ENCODING_DECLARED),
              XML_DOC_PARSE_FAILED);
}

TEST(Parsing, ReadsAsManyBytesAsItIsTold)
{
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->parse("<r/>garbage", 4, "", XML_ENCODING_DECLARED), XML_DOC_OK);
    EXPECT_EQ(document->parse("<r/>garbage", 5, "", XML_ENCODING_DECLARED), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(document->parse("<r/>garbage", 3, "", XML_ENCODING_DECLARED), XML_DOC_PARSE_FAILED);
}

TEST(Parsing, RefusesABufferNameThatIsTooLong)
{
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->parse("<r/>", text_of_length(65537)), XML_DOC_PARSE_FAILED);
    EXPECT_THAT(document->get_errorText(), StartsWith("Caught std::exception at line: "));
    EXPECT_THAT(document->get_errorText(),
                HasSubstr("description: transcodeUtf8ToXml: text exceeded transcoder buffer size"));
}

TEST(Validation, IgnoresAViolationOfTheSchemaAtLevel0)
{
    const SchemaFolder folder;
    EXPECT_EQ(parse("<r>no number</r>", VALIDATION_IGNORE_ERRORS, folder.location), XML_DOC_OK);
    EXPECT_EQ(parse("<other/>", VALIDATION_IGNORE_ERRORS, folder.location), XML_DOC_OK);
}

TEST(Validation, TakesAViolationOfTheSchemaForAFailureAtLevels1And2)
{
    const SchemaFolder folder;
    for (const auto level : {VALIDATION_FATAL_ERRORS, VALIDATION_FATAL_WARNINGS}) {
        EXPECT_EQ(parse("<r>42</r>", level, folder.location), XML_DOC_OK);
        EXPECT_EQ(parse("<r>no number</r>", level, folder.location), XML_DOC_PARSE_FAILED);
    }
}

TEST(Validation, LeavesTheSchemaOutAtLevel3)
{
    const SchemaFolder folder;
    EXPECT_EQ(parse("<r>no number</r>", VALIDATION_NO_SCHEMA, folder.location), XML_DOC_OK);
}

TEST(Validation, WorksWithASchemaWhosePathIsUtf8)
{
    const Folder folder;
    folder.write("types.xsd", kTypes);
    const std::string location = folder.write("sch\xC3\xA4ma.xsd", kSchema);
    // The parser itself opens it, through the character set of the environment.
    if (!std::setlocale(LC_ALL, "C.UTF-8")) GTEST_SKIP() << "no locale with UTF-8";
    EXPECT_EQ(parse("<r>42</r>", VALIDATION_FATAL_ERRORS, location), XML_DOC_OK);
    EXPECT_EQ(parse("<r>no number</r>", VALIDATION_FATAL_ERRORS, location), XML_DOC_PARSE_FAILED);
}

TEST(Validation, FailsWithASchemaThatIsNotThereUnlessWarningsAreIgnored)
{
    const Folder folder;
    EXPECT_EQ(parse("<r/>", VALIDATION_FATAL_WARNINGS, folder.path("none.xsd")), XML_DOC_PARSE_FAILED);
}

TEST(Validation, TakesAViolationOfTheDocumentsOwnTypeByTheLevel)
{
    constexpr char kText[] = "<!DOCTYPE r [<!ELEMENT r EMPTY>]><r>text</r>";
    EXPECT_EQ(parse(kText, VALIDATION_IGNORE_ERRORS), XML_DOC_OK);
    for (const auto level : {VALIDATION_FATAL_ERRORS, VALIDATION_FATAL_WARNINGS, VALIDATION_NO_SCHEMA}) {
        EXPECT_EQ(parse(kText, level), XML_DOC_PARSE_FAILED) << level;
    }
}

// Validation constraints are fatal: what comes behind the first violation isn't read.
TEST(Validation, EndsTheReadingAtAViolationAtLevel0)
{
    const OwnedDocument document = parsed("<!DOCTYPE r [<!ELEMENT other EMPTY>]><r><a/></r>");
    EXPECT_EQ(document->get_root(), nullptr);
    EXPECT_EQ(document->selectNodes("//a"), nullptr);
}

TEST(Validation, KnowsNamespacesBelowLevel3)
{
    for (const auto level : kLevels) {
        EXPECT_EQ(parse("<p:r/>", level), level == VALIDATION_NO_SCHEMA ? XML_DOC_OK : XML_DOC_PARSE_FAILED)
            << level;
        EXPECT_EQ(parse("<p:r xmlns:p='u'/>", level), XML_DOC_OK) << level;
    }
}

// A second declaration of an entity or an attribute is a warning.
TEST(Validation, TakesAWarningForAFailureAtLevels2And3)
{
    constexpr char kText[] =
        "<!DOCTYPE r [<!ELEMENT r EMPTY><!ATTLIST r a CDATA #IMPLIED><!ATTLIST r a CDATA #IMPLIED>]><r/>";
    EXPECT_EQ(parse(kText, VALIDATION_IGNORE_ERRORS), XML_DOC_OK);
    EXPECT_EQ(parse(kText, VALIDATION_FATAL_ERRORS), XML_DOC_OK);
    EXPECT_EQ(parse(kText, VALIDATION_FATAL_WARNINGS), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(parse(kText, VALIDATION_NO_SCHEMA), XML_DOC_PARSE_FAILED);
}

TEST(Parsing, ResolvesTheDocumentsOwnEntitiesAndDefaults)
{
    const OwnedDocument document =
        parsed("<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r a CDATA 'default' b CDATA #IMPLIED>"
               "<!ENTITY e 'entity'>]><r b='&e;&lt;'>&#65;&amp;&e;</r>");
    const OwnedNode root = root_of(*document);
    EXPECT_EQ(root->getAttributeString("a"), "default");
    EXPECT_EQ(root->getAttributeString("b"), "entity<");
    EXPECT_EQ(root->get_text(), "A&");
}
