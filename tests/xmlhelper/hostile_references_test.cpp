// Nothing that a document names is ever fetched, and a schema that the caller names is.
#include "tests/xmlhelper/bait.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

using namespace xmlhelper;

namespace
{

constexpr char kInstance[] = "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'";

// Ways to name `location` in a document.
std::vector<std::string> documents_naming(const std::string& location)
{
    const std::string at = "'" + location + "'";
    return {
        "<!DOCTYPE r SYSTEM " + at + "><r>t</r>",
        "<!DOCTYPE r PUBLIC '-//x//y' " + at + "><r>t</r>",
        "<!DOCTYPE r SYSTEM " + at + " [<!ENTITY a 'x'>]><r>&a;&stolen;</r>",
        "<!DOCTYPE r [<!ELEMENT r ANY><!ENTITY e SYSTEM " + at + ">]><r>t&e;t</r>",
        "<!DOCTYPE r [<!ELEMENT r ANY><!ENTITY e PUBLIC 'p' " + at + ">]><r>t&e;t</r>",
        "<!DOCTYPE r [<!ENTITY e SYSTEM " + at + ">]><r a='&e;'/>",
        "<!DOCTYPE r [<!ENTITY % p SYSTEM " + at + "> %p; <!ELEMENT r ANY>]><r>t</r>",
        "<!DOCTYPE r [<!ENTITY % p \"<!ENTITY &#37; q SYSTEM " + at +
            "> &#37;q;\"> %p; <!ELEMENT r ANY>]><r>&stolen;</r>",
        "<!DOCTYPE r [<!ELEMENT r ANY><!NOTATION n SYSTEM " + at + "><!ENTITY u SYSTEM " + at +
            " NDATA n><!ATTLIST r a ENTITY #IMPLIED>]><r a='u'/>",
        "<r " + std::string(kInstance) + " xsi:noNamespaceSchemaLocation=" + at + ">t</r>",
        "<r xmlns='u' " + std::string(kInstance) + " xsi:schemaLocation='u " + location + "'>t</r>",
        "<r xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include href=" + at + "/></r>",
        "<r xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include parse='text' href=" + at + "/></r>",
        "<?xml-stylesheet type='text/xsl' href=" + at + "?><r/>",
    };
}

constexpr THValidationLevel kLevels[] = {VALIDATION_IGNORE_ERRORS, VALIDATION_FATAL_ERRORS,
                                         VALIDATION_FATAL_WARNINGS, VALIDATION_NO_SCHEMA};

class Fetching : public testing::Test
{
  protected:
    void expect_nothing_touched(const std::string& schema)
    {
        for (const std::string& location :
             {port_.url("x"), pipe_.path(), "file://" + pipe_.path(), std::string("pipe")}) {
            for (const std::string& text : documents_naming(location)) {
                for (const auto level : kLevels) read(text, level, schema);
            }
        }
    }

    Folder folder_;
    ListeningPort port_;
    NamedPipe pipe_{folder_};

  private:
    void read(const std::string& text, THValidationLevel level, const std::string& schema)
    {
        XMLDocumentStatus status = XML_DOC_OK;
        THXMLDocument document(&status, false, level, schema);
        document.parse(text, folder_.path("document.xml"));
        EXPECT_FALSE(port_.was_touched()) << text;
        EXPECT_FALSE(pipe_.was_touched()) << text;
        document.load(folder_.write("document.xml", text).c_str(), true);
        ASSERT_FALSE(port_.was_touched()) << text;
        ASSERT_FALSE(pipe_.was_touched()) << text;
    }
};

std::string schema_of(const std::string& type)
{
    return "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element name='r' type='" + type +
           "'/></xs:schema>";
}

} // namespace

TEST_F(Fetching, TouchesNothingThatADocumentNames)
{
    expect_nothing_touched("");
}

TEST_F(Fetching, TouchesNothingThatADocumentNamesBesideTheCallersSchema)
{
    expect_nothing_touched(folder_.write("schema.xsd", schema_of("xs:string")));
}

// The bait itself works: whoever opens it is seen.
TEST_F(Fetching, WouldBeSeen)
{
    std::FILE* opened = std::fopen(pipe_.path().c_str(), "re");
    EXPECT_TRUE(pipe_.was_touched());
    std::fclose(opened);
    XMLDocumentStatus status = XML_DOC_OK;
    THXMLDocument document(&status, false, VALIDATION_IGNORE_ERRORS, pipe_.path());
    EXPECT_FALSE(pipe_.was_touched());
}

TEST_F(Fetching, ReadsADocumentWithoutTheDeclarationsThatItKeepsElsewhere)
{
    const OwnedDocument document =
        parsed("<!DOCTYPE r SYSTEM '" + port_.url("x.dtd") + "' [<!ENTITY a 'x'>]><r>t<b/>&a;</r>");
    EXPECT_EQ(root_of(*document)->get_text(), "t");
    EXPECT_NE(OwnedNode(document->selectSingleNode("r/b")), nullptr);
}

TEST_F(Fetching, ReadsADocumentThatKeepsDeclarationsElsewhereAtEveryLevel)
{
    const std::string schema = folder_.write("s.xsd", schema_of("xs:int"));
    for (const auto level : kLevels) {
        for (const std::string& callers : {std::string(), schema}) {
            XMLDocumentStatus status = XML_DOC_OK;
            THXMLDocument document(&status, false, level, callers);
            EXPECT_EQ(document.parse("<!DOCTYPE r SYSTEM '" + port_.url("x.dtd") + "'><r>42</r>", ""),
                      XML_DOC_OK)
                << level << document.get_errorText();
        }
    }
    XMLDocumentStatus status = XML_DOC_OK;
    THXMLDocument document(&status, false, VALIDATION_FATAL_ERRORS, schema);
    EXPECT_EQ(document.parse("<!DOCTYPE r SYSTEM '" + port_.url("x.dtd") + "'><r>no number</r>", ""),
              XML_DOC_PARSE_FAILED);
    EXPECT_FALSE(port_.was_touched());
}

TEST_F(Fetching, ReadsADocumentWithoutTheSchemaThatItNames)
{
    const std::string text = "<r " + std::string(kInstance) + " xsi:noNamespaceSchemaLocation='" +
                             port_.url("x.xsd") + "'>no number</r>";
    for (const auto level : kLevels) {
        XMLDocumentStatus status = XML_DOC_OK;
        THXMLDocument document(&status, false, level, "");
        EXPECT_EQ(document.parse(text, ""), XML_DOC_OK) << level << document.get_errorText();
    }
}

TEST_F(Fetching, ReadsADocumentThatNamesASchemaBesideTheCallers)
{
    const std::string schema = folder_.write("s.xsd", schema_of("xs:int"));
    for (const auto level : kLevels) {
        XMLDocumentStatus status = XML_DOC_OK;
        THXMLDocument document(&status, false, level, schema);
        EXPECT_EQ(document.parse("<r xmlns='u' " + std::string(kInstance) + " xsi:schemaLocation='u " +
                                     port_.url("x.xsd") + "'>t</r>",
                                 ""),
                  XML_DOC_OK)
            << level << document.get_errorText();
        const OwnedNode root(document.get_root());
        ASSERT_NE(root, nullptr) << level;
        EXPECT_EQ(root->get_text(), "t") << level;
    }
    EXPECT_FALSE(port_.was_touched());
}

TEST_F(Fetching, ReadsAnExternalEntityAsEmpty)
{
    const OwnedDocument document = parsed("<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT b ANY><!ENTITY e SYSTEM '" +
                                          pipe_.path() + "'>]><r><b>&e;</b></r>");
    EXPECT_EQ(OwnedNode(document->selectSingleNode("r/b"))->get_text(), "");
    EXPECT_FALSE(pipe_.was_touched());
}

TEST_F(Fetching, UsesTheCallersSchemaWhateverTheDocumentNames)
{
    const std::string schema = folder_.write("schema.xsd", schema_of("xs:int"));
    for (const std::string& named :
         {port_.url("other.xsd"), pipe_.path(), std::string("schema.xsd"), schema}) {
        XMLDocumentStatus status = XML_DOC_OK;
        THXMLDocument document(&status, false, VALIDATION_FATAL_ERRORS, schema);
        const auto text_with = [&](const char* content) {
            return "<r " + std::string(kInstance) + " xsi:noNamespaceSchemaLocation='" + named + "'>" +
                   content + "</r>";
        };
        EXPECT_EQ(document.parse(text_with("42"), ""), XML_DOC_OK) << named << document.get_errorText();
        EXPECT_EQ(document.parse(text_with("no number"), ""), XML_DOC_PARSE_FAILED) << named;
    }
    EXPECT_FALSE(port_.was_touched());
    EXPECT_FALSE(pipe_.was_touched());
}

TEST_F(Fetching, FindsTheCallersSchemaBesideTheDocument)
{
    folder_.write("schema.xsd", schema_of("xs:int"));
    XMLDocumentStatus status = XML_DOC_OK;
    THXMLDocument document(&status, false, VALIDATION_FATAL_ERRORS, "schema.xsd");
    EXPECT_EQ(document.load(folder_.write("good.xml", "<r>42</r>").c_str(), true), XML_DOC_OK)
        << document.get_errorText();
    EXPECT_EQ(document.load(folder_.write("bad.xml", "<r>no number</r>").c_str(), true),
              XML_DOC_PARSE_FAILED);
}
