// How the guide's lines get into the WSDL and the schema, and which guides are refused.
#include "schema_document.h"

#include "service/contract/contract_files.h"
#include "service/contract/service_guide.h"
#include "service/contract/xml_tags.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>

namespace schema
{

namespace
{

using soapwrapper::ContractFiles;
using soapwrapper::read_service_guide;
using testing::AllOf;
using testing::HasSubstr;

std::string content_of(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

const std::string& guide()
{
    static const std::string text = content_of(SERVICE_GUIDE);
    return text;
}

// The guide with one text in the place of another.
std::string guide_with(const std::string& text, const std::string& replacement)
{
    std::string changed = guide();
    const size_t place = changed.find(text);
    if (place == std::string::npos) throw std::invalid_argument("the guide has no " + text);
    return changed.replace(place, text.size(), replacement);
}

ContractFiles documented(const std::string& markdown)
{
    const std::string folder = BINDING_FILES;
    return soapwrapper::document_contract(content_of(folder + "/PSVWSSoapBinding.wsdl"),
                                          content_of(folder + "/ns1.xsd"), read_service_guide(markdown),
                                          "http://there:1");
}

std::string complaint_about(const std::string& markdown)
{
    try {
        documented(markdown);
    } catch (const std::runtime_error& trouble) {
        return trouble.what();
    }
    return "none";
}

// The documents as a reader of XML has them.
struct Read {
    WsdlDocument wsdl;
    SchemaDocument schema;
};

Read read(const ContractFiles& files)
{
    const std::string path = testing::TempDir() + "documented_contract." + std::to_string(getpid());
    std::ofstream(path, std::ios::binary) << files.wsdl;
    Read read{read_wsdl(path), read_schema(path)};
    std::remove(path.c_str());
    return read;
}

TEST(ContractDocuments, AreWhatIsInstalled)
{
    const std::string folder = CONTRACT_FILES;
    const ContractFiles files =
        soapwrapper::document_contract(content_of(std::string(BINDING_FILES) + "/PSVWSSoapBinding.wsdl"),
                                       content_of(std::string(BINDING_FILES) + "/ns1.xsd"),
                                       read_service_guide(guide()), "http://localhost:8085");
    // Not shown where they differ: they are too long.
    EXPECT_TRUE(files.wsdl == content_of(folder + "/PSVWSSoapBinding.wsdl"));
    EXPECT_TRUE(files.schema == content_of(folder + "/ns1.xsd"));
    EXPECT_TRUE(files.operations == content_of(folder + "/operations.txt"));
}

TEST(ContractDocuments, HoldATextWithAmpersandsBracketsAndQuotesAsItIs)
{
    const std::string text = R"(Ends <a & b> "c" 'd' ]]> &lt; | [0] )";
    const Read document =
        read(documented(guide_with("Ends a session.", R"(Ends <a & b> "c" 'd' ]]> &lt; \| [0] .)")));
    std::map<std::string, std::string> operations;
    for (const WsdlOperation& operation : document.wsdl.operations) {
        operations[operation.name] = operation.documentation;
    }
    EXPECT_EQ(operations.at("closeServer"), text + ".");
    EXPECT_EQ(document.schema.documentation.at("closeServer"), "Request of closeServer. " + text + ".");
}

TEST(ContractDocuments, HoldCharactersBeyondAsciiInUtf8)
{
    const ContractFiles files = documented(guide_with("Ends a session.", "Ends it\xC3\xA9."));
    EXPECT_THAT(files.wsdl, HasSubstr(">Ends it\xC3\xA9.<"));
    EXPECT_THAT(files.operations, HasSubstr("\ncloseServer\tEnds it\xC3\xA9.\n"));
}

TEST(ContractDocuments, LeaveOutTheMarksOfMarkdown)
{
    const Read document =
        read(documented(guide_with("The label. |", "`lsu`, [a list](#lists) and [0] (1). |")));
    EXPECT_EQ(document.schema.documentation.at("labelLSU.lsuLabel"), "lsu, a list and [0] (1).");
}

TEST(ContractDocuments, HaveOneLineForAnElementOfManyMessagesAndOneForTheExceptions)
{
    const Read document = read(documented(guide()));
    const auto& texts = document.schema.documentation;
    EXPECT_EQ(texts.at("deleteSnap.lsu"), texts.at("openSnapList.lsu"));
    EXPECT_EQ(texts.at("listLSUResponse.lsu"), "The name of the LSU.");
    EXPECT_NE(texts.at("deleteSnap.lsu"), texts.at("listLSUResponse.lsu"));
}

TEST(ContractDocuments, NameTheAddressThatIsAskedFor)
{
    EXPECT_THAT(read(documented(guide())).wsdl.addresses, testing::ElementsAre("http://there:1"));
}

TEST(ContractDocuments, AreRefusedWithoutALineForAnOperationATypeOrAnElement)
{
    EXPECT_THAT(complaint_about(guide_with("| `closeServer` |", "| `closeServers` |")),
                AllOf(HasSubstr("no line for the operation closeServer"),
                      HasSubstr("a line for closeServers, and no such thing")));
    EXPECT_THAT(complaint_about(guide_with("### `LSU`", "### `Lsu`")),
                AllOf(HasSubstr("no line for the type LSU"), HasSubstr("no line for the element LSU.lsuName"),
                      HasSubstr("a line for Lsu.lsuName, and no such thing")));
    EXPECT_THAT(complaint_about(guide_with("| `lsuLabel` |", "| `label` |")),
                AllOf(HasSubstr("no line for the element labelLSU.lsuLabel"),
                      HasSubstr("a line for label, and no such thing")));
}

TEST(ContractDocuments, AreRefusedWithALineForSomethingThatThereIsNot)
{
    EXPECT_THAT(complaint_about(guide_with("| `lsuLabel` |", "| `lsuLabel`, `labelLSU.lsu2` |")),
                HasSubstr("a line for labelLSU.lsu2, and no such thing"));
    EXPECT_THAT(complaint_about(guide_with("| `errorCode` |", "| `errorCode`, `text` |")),
                HasSubstr("a line for STSException.text, and no such thing"));
    // Neither is there one that all messages have an exception from.
    EXPECT_THAT(complaint_about(guide_with("| `listLSUResponse.lsu` |", "| `listLSUResponse.lsu`, `info` |")),
                HasSubstr("a line for info, and no such thing"));
}

TEST(ServiceGuides, TellTheLineThatIsNotOfTheForm)
{
    const std::string start = "# T\n\nService.\n\n## Operations\n\n| Operation | What it does |\n|---|---|\n";
    const auto complaint = [&](const std::string& row) -> std::string {
        try {
            read_service_guide(start + row);
        } catch (const std::runtime_error& trouble) {
            return trouble.what();
        }
        return "none";
    };
    EXPECT_EQ(complaint("| `a` | One. |\n| `b`, `c` | Two. |\n"), "none");
    EXPECT_EQ(complaint("| `a` | One. |\n| `a` | Two. |\n"), "line 10: a is told twice");
    EXPECT_THAT(complaint("| `a`, `a` | One. |\n"), HasSubstr("line 9: a is told twice"));
    EXPECT_THAT(complaint("| a | One. |\n"), HasSubstr("line 9: a row is to begin with a name"));
    EXPECT_THAT(complaint("| | One. |\n"), HasSubstr("line 9: a row is to begin with a name"));
    EXPECT_THAT(complaint("| `` | One. |\n"), HasSubstr("line 9: a row is to begin with a name"));
    EXPECT_THAT(complaint("| `a` `b` | One. |\n"), HasSubstr("line 9: names are to have a comma"));
    EXPECT_THAT(complaint("| `a` |\n"), HasSubstr("line 9: a row is to have two cells"));
    EXPECT_THAT(complaint("| `a` | One. | Two. |\n"), HasSubstr("line 9: a row is to have two cells"));
    EXPECT_THAT(complaint("| `a` | |\n"), HasSubstr("line 9: a row without a text"));
    EXPECT_THAT(complaint("| `a` | One.\n"), HasSubstr("line 9: a row without an end"));
    EXPECT_THAT(complaint("|"), HasSubstr("line 9: a row is to have two cells"));
    EXPECT_THAT(complaint("| `a` | One.\x01 |\n"), HasSubstr("line 9: a control character"));
    EXPECT_THROW(read_service_guide("# T\n\n## Operations\n"), std::runtime_error);
    EXPECT_THROW(read_service_guide(""), std::runtime_error);
}

TEST(ServiceGuides, HaveTablesForReadersAloneBesideThoseOfTheContract)
{
    soapwrapper::ServiceGuide read =
        read_service_guide("# T\nService\ntext.\n\n## Operations\n\n| Number | What |\n"
                           "|---|---|\n| 1 | one | more |\n\n## Other\n\n"
                           "| Operation | What it does |\n|---|---|\n| `a` | One. |\n");
    EXPECT_EQ(read.service, "Service text.");
    EXPECT_EQ(read.operations.find("a"), nullptr);
}

TEST(XmlTags, AreRefusedWithoutAnEnd)
{
    EXPECT_THROW(soapwrapper::tags_of("<a b=\">\""), std::runtime_error);
    EXPECT_THROW(soapwrapper::without_comments("<a/><!-- b"), std::runtime_error);
    EXPECT_EQ(soapwrapper::without_comments("<a/><!-- <b> -->c"), "<a/>c");
    EXPECT_EQ(soapwrapper::tags_of("").size(), 1U);
    EXPECT_EQ(soapwrapper::tags_of("<>a</><//><?x?>").size(), 5U);
}

} // namespace

} // namespace schema
