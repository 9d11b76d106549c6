// The schema and the WSDL as they are installed, against the contract's tables.
#include "contract.h"
#include "operations.h"
#include "registry.h"
#include "schema_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace schema
{

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;

const std::string kSchemaPath = std::string(CONTRACT_FILES) + "/ns1.xsd";
const std::string kWsdlPath = std::string(CONTRACT_FILES) + "/PSVWSSoapBinding.wsdl";

// The lines that the schema must have for a type of the contract.
std::vector<std::string> expected_lines(const ComplexType& type)
{
    std::vector<std::string> lines;
    for (const Element& element : type.elements) {
        const std::string typed_name = element.name + " " + element.type;
        switch (element.form) {
        case Form::kValue:
            lines.push_back(typed_name + " 1..1");
            break;
        case Form::kNillable:
            lines.push_back(typed_name + " 1..1 nillable");
            break;
        case Form::kRepeated:
            lines.push_back(typed_name + " 0..unbounded");
            break;
        case Form::kChoice:
            if (element.choice_number == 1) lines.push_back("choice 0..1");
            lines.push_back("choice " + std::to_string(element.choice_number) + ": " + typed_name);
            break;
        }
    }
    return lines;
}

std::vector<std::string> names_of(const std::vector<ComplexType>& table)
{
    std::vector<std::string> names;
    for (const ComplexType& entry : table) names.push_back(entry.name);
    return names;
}

// The schema stands in a file of its own and within the WSDL.
class SchemaFile : public testing::TestWithParam<std::string>
{
  protected:
    SchemaDocument document_ = read_schema(GetParam());
};

INSTANTIATE_TEST_SUITE_P(XsdAndWsdl, SchemaFile, testing::Values(kSchemaPath, kWsdlPath),
                         [](const auto& instance) { return instance.index == 0 ? "Xsd" : "Wsdl"; });

TEST(ContractTables, Hold58TypesAnd147MessagesUnderDifferentNames)
{
    std::set<std::string> names;
    for (const std::string& name : names_of(all_types())) names.insert(name);
    EXPECT_EQ(names.size(), 58U);
    for (const std::string& name : names_of(all_messages())) names.insert(name);
    EXPECT_EQ(names.size(), 58U + 147U);
    EXPECT_EQ(all_types().size(), 58U);
    EXPECT_EQ(all_messages().size(), 147U);
}

TEST(ContractTables, NameOnlyTypesThatAreInThem)
{
    std::set<std::string> known = {kInteger, kLongInteger, kBoolean, kString, kBytes};
    for (const std::string& name : names_of(all_types())) known.insert("ns1:" + name);
    for (const ComplexType& type : joined({all_types(), all_messages()})) {
        for (const Element& element : type.elements) {
            EXPECT_EQ(known.count(element.type), 1U) << type.name << " " << element.name;
        }
    }
}

TEST_P(SchemaFile, BelongsToTheServiceNamespaceAndQualifiesItsElements)
{
    EXPECT_EQ(document_.target_namespace, SERVICE_NAMESPACE);
    EXPECT_EQ(document_.element_form_default, "qualified");
    EXPECT_THAT(document_.oddities, IsEmpty());
}

TEST_P(SchemaFile, HasTheTypesOfTheContractAndNoOthers)
{
    std::vector<std::string> names;
    for (const auto& [name, lines] : document_.complex_types) names.push_back(name);
    EXPECT_THAT(names, UnorderedElementsAreArray(names_of(joined({all_types(), all_messages()}))));
}

TEST_P(SchemaFile, HasTheMembersOfEachTypeInOrderWithTypeAndForm)
{
    const std::map<std::string, std::vector<std::string>> found(document_.complex_types.begin(),
                                                                document_.complex_types.end());
    for (const ComplexType& type : joined({all_types(), all_messages()})) {
        const auto lines = found.find(type.name);
        ASSERT_NE(lines, found.end()) << type.name;
        EXPECT_EQ(lines->second, expected_lines(type)) << type.name;
    }
}

TEST_P(SchemaFile, HasTheMessagesAndTheFaultDetailAsItsOnlyGlobalElements)
{
    std::map<std::string, std::string> expected = {{"STSException", "ns1:STSException"}};
    for (const std::string& name : names_of(all_messages())) expected[name] = "ns1:" + name;
    EXPECT_EQ(document_.elements, expected);
}

// Of the contract's types, messages and their elements those that have no text, and texts of anything else.
std::vector<std::string> undocumented(const SchemaDocument& document)
{
    std::vector<std::string> names;
    std::map<std::string, std::string> left = document.documentation;
    const auto look_at = [&](const std::string& name) {
        if (left[name].empty()) names.push_back(name);
        left.erase(name);
    };
    look_at("element STSException");
    for (const ComplexType& type : joined({all_types(), all_messages()})) {
        look_at(type.name);
        for (const Element& element : type.elements) look_at(type.name + "." + element.name);
    }
    for (const ComplexType& message : all_messages()) look_at("element " + message.name);
    for (const auto& [name, text] : left) names.push_back(name + " of nothing");
    return names;
}

TEST_P(SchemaFile, TellsOfEachTypeOfEachMessageAndOfEachElement)
{
    EXPECT_THAT(undocumented(document_), IsEmpty());
}

TEST(SchemaFiles, TellTheSame)
{
    EXPECT_EQ(read_schema(kSchemaPath).documentation, read_schema(kWsdlPath).documentation);
}

TEST(SchemaFiles, TellOfAMessageWhatItsOperationDoesOrIs)
{
    const SchemaDocument document = read_schema(kSchemaPath);
    EXPECT_EQ(document.documentation.at("closeServer"), "Request of closeServer. Ends a session.");
    EXPECT_EQ(document.documentation.at("element closeServer"), "Request of closeServer. Ends a session.");
    EXPECT_EQ(document.documentation.at("closeServerResponse"), "Reply to closeServer.");
    EXPECT_EQ(document.documentation.at("openSnapListResponse"),
              "Reply to openSnapList and openSnapListByVolume.");
}

TEST(WsdlFile, HasThe74OperationsAsDocumentLiteralWithAnEmptyAction)
{
    const WsdlDocument document = read_wsdl(kWsdlPath);
    EXPECT_EQ(document.target_namespace, SERVICE_NAMESPACE);
    EXPECT_EQ(document.transport, "http://schemas.xmlsoap.org/soap/http");
    ASSERT_EQ(document.operations.size(), 74U);
    size_t next = 0;
    each_operation([&](const auto& expected) {
        const WsdlOperation& found = document.operations[next++];
        EXPECT_EQ(found.name, expected.name);
        EXPECT_EQ(found.input, "ns1:" + expected.name);
        EXPECT_EQ(found.output, "ns1:" + expected.response_name);
        EXPECT_EQ(found.style, "document");
        EXPECT_EQ(found.action, "");
        EXPECT_EQ(found.input_use, "literal");
        EXPECT_EQ(found.output_use, "literal");
    });
    EXPECT_EQ(next, 74U);
}

TEST(WsdlFile, HasThePortTypesOperationsInTheSameOrder)
{
    const WsdlDocument document = read_wsdl(kWsdlPath);
    std::vector<std::string> names;
    each_operation([&](const auto& operation) { names.push_back(operation.name); });
    EXPECT_EQ(document.port_type_operations, names);
}

TEST(WsdlFile, TellsOfEachOperationAndDeclaresItsFault)
{
    for (const WsdlOperation& operation : read_wsdl(kWsdlPath).operations) {
        EXPECT_NE(operation.documentation, "") << operation.name;
        EXPECT_EQ(operation.fault, "ns1:STSException") << operation.name;
        EXPECT_EQ(operation.fault_use, "literal") << operation.name;
    }
}

TEST(WsdlFile, TellsWhatTheServiceIsAndNotWhoWroteTheFile)
{
    const std::string text = read_wsdl(kWsdlPath).documentation;
    EXPECT_THAT(text, StartsWith("Manages the snapshots, images, volumes and exports of storage servers"));
    EXPECT_THAT(text, Not(HasSubstr("generated")));
}

TEST(WsdlFile, NamesTheAddressWhereTheLibraryLooksForAServiceWithoutTls)
{
    EXPECT_THAT(read_wsdl(kWsdlPath).addresses, ElementsAre("http://localhost:8085"));
}

// The schema is installed for others to read, so it must describe what the library writes.
TEST(XsdFile, DescribesEveryMessageBlankAndFilled)
{
    const std::string bindings = std::string(" xmlns:ns1=\"") + SERVICE_NAMESPACE +
                                 "\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"";
    std::map<std::string, std::string> documents;
    for (const WireClass& wire_class : wire_classes()) {
        if (!wire_class.is_message) continue;
        for (int round = 0; round <= 8; ++round) {
            const auto object = wire_class.make();
            Filler filler(wire_class.name, round);
            if (round > 0) object->fill(filler);
            std::string document = object->text(wire_class.name);
            document.insert(("<ns1:" + wire_class.name).size(), bindings);
            documents[wire_class.name + " in round " + std::to_string(round)] = document;
        }
    }
    EXPECT_EQ(documents.size(), 147U * 9U);
    EXPECT_THAT(SchemaValidator(kSchemaPath).complaints(documents), IsEmpty());
}

TEST(XsdFile, LetsAValidatorSeeAWrongMessage)
{
    const std::string document =
        std::string("<labelLSU xmlns=\"") + SERVICE_NAMESPACE + "\"><lsuLabel/></labelLSU>";
    EXPECT_FALSE(SchemaValidator(kSchemaPath).complaints({{"without an LSU", document}}).empty());
}

} // namespace

} // namespace schema
