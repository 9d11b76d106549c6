// A document that names things elsewhere is read as the parser by itself would read it with all of them at
// hand, but for what stands in them.
#include "tests/xmlhelper/fixtures.h"

#include "xmlhelper/parse_memory.h"
#include "xmlhelper/parser_setup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>

using namespace xmlhelper;

namespace
{

using Levels = std::vector<THValidationLevel>;
const Levels kLevelsWithSchemas = {VALIDATION_IGNORE_ERRORS, VALIDATION_FATAL_ERRORS,
                                   VALIDATION_FATAL_WARNINGS};
const Levels kLevels = {VALIDATION_IGNORE_ERRORS, VALIDATION_FATAL_ERRORS, VALIDATION_FATAL_WARNINGS,
                        VALIDATION_NO_SCHEMA};

constexpr char kXs[] =
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' elementFormDefault='qualified' ";
constexpr char kInstance[] = " xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' ";

std::string any_content(const std::string& name)
{
    return "<xs:element name='" + name +
           "'><xs:complexType mixed='true'><xs:sequence><xs:any minOccurs='0' maxOccurs='unbounded'/>"
           "</xs:sequence><xs:attribute name='a'/></xs:complexType></xs:element>";
}

// What a reading came to. The tree is told by how many elements it has.
struct Outcome {
    XMLDocumentStatus status;
    std::size_t elements;
    friend bool operator==(const Outcome& left, const Outcome& right)
    {
        return left.status == right.status && left.elements == right.elements;
    }
    friend void PrintTo(const Outcome& outcome, std::ostream* out)
    {
        *out << "status " << outcome.status << ", " << outcome.elements << " elements";
    }
};

std::size_t elements_of(const xercesc::DOMDocument* document)
{
    return document ? document->getElementsByTagName(u"*")->getLength() : 0;
}

class DocumentThatNamesThings : public testing::Test
{
  protected:
    DocumentThatNamesThings()
    {
        const std::string declarations =
            "<!ELEMENT r ANY><!ELEMENT b ANY><!ATTLIST r a CDATA #IMPLIED c IDREF #IMPLIED>"
            "<!ATTLIST b d ID #IMPLIED><!ENTITY far 'far'><!NOTATION n SYSTEM 'n'><!ENTITY u SYSTEM 'u' "
            "NDATA n>";
        folder_.write("x.dtd", declarations + "<!ATTLIST r e ENTITY #IMPLIED>");
        folder_.write("p.ent", declarations);
        folder_.write("e.ent", "far");
        folder_.write("u.xsd", kXs + std::string("targetNamespace='u'>") + any_content("r") +
                                   any_content("b") + "</xs:schema>");
        folder_.write("none.xsd",
                      kXs + std::string(">") + any_content("r") + any_content("b") + "</xs:schema>");
        callers_ = folder_.write("callers.xsd", kXs + std::string(">") + any_content("r") + any_content("k") +
                                                    "<xs:element name='i' type='xs:int'/></xs:schema>");
    }

    // With all that the document names at hand, and fetched.
    Outcome fetching(const std::string& text, THValidationLevel level, const std::string& schema) const
    {
        const ParseBudget budget(text.size()); // takes back what the parser leaves behind
        ValidatingHandler handler(level);
        xercesc::XercesDOMParser parser(nullptr, parse_memory());
        configureParser(parser, handler, schema);
        try {
            parser.parse(xercesc::MemBufInputSource(reinterpret_cast<const XMLByte*>(text.data()),
                                                    text.size(), folder_.path("document.xml").c_str()));
        } catch (const xercesc::SAXException&) {
            return {XML_DOC_PARSE_FAILED, 0};
        }
        return {XML_DOC_OK, elements_of(parser.getDocument())};
    }

    Outcome reading(const std::string& text, THValidationLevel level, const std::string& schema) const
    {
        XMLDocumentStatus status = XML_DOC_OK;
        THXMLDocument document(&status, false, level, schema);
        status = document.parse(text, folder_.path("document.xml"));
        return {status, elements_of(document.get_document())};
    }

    void expect_what_fetching_gives(const std::vector<std::string>& texts,
                                    const std::vector<std::string>& schemas, const Levels& levels = kLevels)
    {
        for (const std::string& text : texts) {
            for (const std::string& schema : schemas) {
                for (const auto level : levels) {
                    EXPECT_EQ(reading(text, level, schema), fetching(text, level, schema))
                        << text << "\nlevel " << level << " schema " << schema;
                }
            }
        }
    }

    const OwnedDocument platform_ = empty_document(); // the parser by itself needs one
    Folder folder_;
    std::string callers_;
};

std::string rooted(const std::string& type, const std::string& content)
{
    return "<!DOCTYPE r " + type + ">" + content;
}

const std::vector<std::string>& contents()
{
    static const std::vector<std::string> all = {
        "<r/>",
        "<r>t<b/><b/></r>",
        "<r a='v'>t</r>",
        "<r>&far;<b>&far;</b><b/></r>",
        "<r a='&far;'>t<b/></r>",
        "<r c='i'><b/><b d='i'/></r>",
    };
    return all;
}

} // namespace

TEST_F(DocumentThatNamesThings, IsReadWithoutTheDeclarationsThatItKeepsElsewhere)
{
    for (const std::string& content : contents()) {
        expect_what_fetching_gives(
            {rooted("SYSTEM 'x.dtd'", content), rooted("PUBLIC '-//x//y' 'x.dtd'", content),
             rooted("SYSTEM 'x.dtd' []", content), rooted("SYSTEM 'x.dtd' [<!ENTITY near 'n'>]", content),
             rooted("[<!ENTITY % p SYSTEM 'p.ent'> %p;]", content),
             rooted("[<!ENTITY % p SYSTEM 'p.ent'><!ENTITY % q '%p;'> %q;]", content),
             rooted("[<!ENTITY % p SYSTEM 'p.ent'> %p; <!ENTITY near 'n'>]", content)},
            {"", folder_.path("missing.xsd")});
    }
    expect_what_fetching_gives(
        {
            rooted("SYSTEM 'x.dtd'", "<r e='u'/>"),
            rooted("SYSTEM 'x.dtd' [<!ENTITY v SYSTEM 'v' NDATA n>]", "<r><b/></r>"),
            rooted("SYSTEM 'x.dtd' [<!ELEMENT k (b)><!ATTLIST b f CDATA '1'>]", "<r><k><b/></k></r>"),
            rooted("SYSTEM 'x.dtd' [<!ATTLIST b f NOTATION (n) #IMPLIED>]", "<r><b f='n'/></r>"),
        },
        {""});
}

TEST_F(DocumentThatNamesThings, IsRefusedForWhatNothingElsewhereCouldMend)
{
    std::vector<std::string> texts = {"<!DOCTYPE r [<!ENTITY % p SYSTEM 'p.ent'> %p;]><b>t<r/></b>"};
    for (const std::string wrong :
         {"<!ELEMENT k EMPTY>]><r>t<k>text</k><b/></r>", "<!ELEMENT k EMPTY>]><r>t<k><b/></k><b/></r>",
          "<!ELEMENT k (b)>]><r>t<k>text</k><b/></r>", "<!ELEMENT k (b)>]><r>t<k/><b/></r>", "]><b>t<r/></b>",
          "<!ELEMENT k EMPTY><!ATTLIST k g CDATA #REQUIRED>]><r>t<k/><b/></r>",
          "<!ELEMENT k EMPTY><!ATTLIST k g (x|y) #IMPLIED>]><r>t<k g='z'/><b/></r>",
          "<!ELEMENT k EMPTY><!ATTLIST k g CDATA #FIXED 'x'>]><r>t<k g='z'/><b/></r>",
          "<!ELEMENT k EMPTY><!ATTLIST k g ID #IMPLIED h ID #IMPLIED>]><r>t<k/><b/></r>",
          "<!ELEMENT k EMPTY><!ATTLIST k g NMTOKEN 'not one'>]><r>t<k/><b/></r>"}) {
        texts.push_back("<!DOCTYPE r SYSTEM 'x.dtd' [" + wrong);
    }
    expect_what_fetching_gives(texts, {""});
    for (const std::string& text : texts) {
        EXPECT_EQ(reading(text, VALIDATION_FATAL_ERRORS, "").status, XML_DOC_PARSE_FAILED) << text;
    }
}

TEST_F(DocumentThatNamesThings, MayLackTheContentOfAnEntity)
{
    for (const std::string model : {"(#PCDATA)", "(#PCDATA|b)*", "ANY"}) {
        expect_what_fetching_gives(
            {rooted("[<!ELEMENT r " + model +
                        "><!ELEMENT b EMPTY><!ENTITY e SYSTEM 'e.ent'><!ENTITY f '&e;'>]",
                    "<r>t&e;&f;</r>")},
            {""});
    }
    folder_.write("b.ent", "<b/>");
    for (const std::string text : {"<r>&e;</r>", "<r>&f;</r>"}) {
        const std::string document =
            rooted("[<!ELEMENT r (b)><!ELEMENT b EMPTY><!ENTITY e SYSTEM 'b.ent'><!ENTITY f '&e;'>]", text);
        for (const auto level : kLevels) {
            EXPECT_EQ(reading(document, level, "").status, XML_DOC_OK) << text << level;
            EXPECT_EQ(fetching(document, level, "").status, XML_DOC_OK) << text << level;
        }
    }
    // What lacks nothing is read as strictly as ever.
    EXPECT_EQ(reading(rooted("[<!ELEMENT r ANY><!ELEMENT k (b)><!ELEMENT b EMPTY><!ENTITY e SYSTEM 'b.ent'>]",
                             "<r><k>&e;</k><k/></r>"),
                      VALIDATION_FATAL_ERRORS, "")
                  .status,
              XML_DOC_PARSE_FAILED);
}

TEST_F(DocumentThatNamesThings, IsReadWithoutTheSchemaThatItNames)
{
    const std::string hint = std::string(kInstance) + "xsi:noNamespaceSchemaLocation='none.xsd'";
    const std::string list = std::string(kInstance) + "xmlns='u' xsi:schemaLocation='u u.xsd'";
    expect_what_fetching_gives(
        {
            "<r" + hint + ">t<b/>t<b/></r>",
            "<r" + list + ">t<b/>t<b/></r>",
            "<u:r xmlns:u='u'" + std::string(kInstance) + "xsi:schemaLocation=' u \n u.xsd '>t<u:b/></u:r>",
        },
        {"", folder_.path("missing.xsd")});
}

TEST_F(DocumentThatNamesThings, IsReadWithoutTheSchemaThatItNamesBesideItsType)
{
    const std::string hint = std::string(kInstance) + "xsi:noNamespaceSchemaLocation='none.xsd'";
    const std::string list = std::string(kInstance) + "xmlns='u' xsi:schemaLocation='u u.xsd'";
    for (const std::string type : {"[<!ENTITY near 'n'>]", "[<!ELEMENT q EMPTY>]", "[<!ELEMENT r EMPTY>]"}) {
        for (const std::string& attributes : {hint, list}) {
            expect_what_fetching_gives({rooted(type, "<r a='v'" + attributes + ">t<b/>t<b/></r>")}, {""});
        }
    }
}

TEST_F(DocumentThatNamesThings, IsReadWithTheCallersSchemaAndWithoutThoseThatItNames)
{
    const std::string at = std::string(kInstance) + "xsi:schemaLocation='u u.xsd' ";
    expect_what_fetching_gives(
        {
            "<r xmlns='u'" + at + ">t<b/>t<b/></r>",
            "<r" + at + "xmlns:u='u'>t<u:b a='v'>t</u:b><k>t<u:b/></k><i>42</i></r>",
            "<r xmlns:u='u'><u:b" + at + ">t</u:b><u:b/></r>",
            "<u:r xmlns:u='u'" + at + "><r>t</r><i>42</i></u:r>",
            "<r" + std::string(kInstance) + "xsi:noNamespaceSchemaLocation='none.xsd'>t<k/><i>42</i></r>",
            "<!DOCTYPE r SYSTEM 'x.dtd'><r a='v'>&far;</r>",
            "<!DOCTYPE r [<!ELEMENT r ANY><!ENTITY e SYSTEM 'e.ent'>]><r>&e;</r>",
        },
        {callers_});
    expect_what_fetching_gives(
        {
            "<!DOCTYPE r SYSTEM 'x.dtd'><r a='v'>&far;<k/><i>42</i></r>",
            "<!DOCTYPE r SYSTEM 'x.dtd'><r xmlns:u='u'" + at + ">&far;<u:b/><i>42</i></r>",
            "<!DOCTYPE r [<!ENTITY % p SYSTEM 'p.ent'> %p;]><r>&far;<k/><i>42</i></r>",
            "<!DOCTYPE r [<!ENTITY e SYSTEM 'e.ent'>]><r>&e;<k>&e;</k></r>",
        },
        {callers_}, kLevelsWithSchemas);
}

TEST_F(DocumentThatNamesThings, IsStillHeldAgainstTheCallersSchema)
{
    const std::string at = std::string(kInstance) + "xsi:schemaLocation='u u.xsd' ";
    const std::vector<std::string> texts = {
        "<unknown" + at + "/>",
        "<r" + at + ">t<unknown/><k/></r>",
        "<r" + at + ">t<i>no number</i><k/></r>",
        "<r" + at + " bad='v'>t<k/></r>",
        "<v:r xmlns:v='v'" + at + "><k/></v:r>",
        "<r" + std::string(kInstance) + "xsi:noNamespaceSchemaLocation='none.xsd'>t<b/><k/></r>",
        "<!DOCTYPE r SYSTEM 'x.dtd'><r>t<b/><k/></r>",
        "<!DOCTYPE r SYSTEM 'x.dtd'><v:r xmlns:v='v'><k/></v:r>",
        "<!DOCTYPE r SYSTEM 'x.dtd'><r>t<i>no number</i><k/></r>",
        "<!DOCTYPE r [<!ENTITY % p SYSTEM 'p.ent'> %p;]><r>t<i>no number</i><k/></r>",
    };
    for (const std::string& text : texts) {
        for (const auto level : kLevelsWithSchemas) {
            EXPECT_EQ(reading(text, level, callers_), fetching(text, level, callers_)) << text << level;
        }
        EXPECT_EQ(reading(text, VALIDATION_FATAL_ERRORS, callers_).status, XML_DOC_PARSE_FAILED) << text;
    }
}

TEST_F(DocumentThatNamesThings, IsRefusedForWhatIsNoXmlWhateverItNames)
{
    for (const std::string& text :
         {rooted("SYSTEM 'x.dtd'", "<r><b></r>"), rooted("SYSTEM 'x.dtd'", "<r a='&far;'><b></r>"),
          rooted("SYSTEM 'x.dtd' [<!ENTITY near '<b>'>]", "<r>&near;</r>"),
          "<?xml version='1.0' standalone='yes'?>" + rooted("SYSTEM 'x.dtd'", "<r>&far;</r>"),
          rooted("[<!ENTITY e SYSTEM 'e.ent'>]", "<r a='&e;'/>"),
          rooted("[<!ELEMENT r ANY><!ENTITY near 'n'>]", "<r>&far;</r>")}) {
        for (const auto level : kLevels) {
            EXPECT_EQ(reading(text, level, "").status, XML_DOC_PARSE_FAILED) << text << level;
            EXPECT_EQ(fetching(text, level, "").status, XML_DOC_PARSE_FAILED) << text << level;
        }
    }
}
