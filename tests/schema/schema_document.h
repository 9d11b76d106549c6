// The schema and the WSDL that are made with the binding, read back into plain lines that a test can compare.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_SCHEMA_DOCUMENT_H
#define SOAPWRAPPER_TESTS_SCHEMA_SCHEMA_DOCUMENT_H

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace schema
{

struct SchemaDocument {
    std::string target_namespace;
    std::string element_form_default;
    // Per named complex type its content, a line each: "flags xsd:int 1..1", with " nillable" behind it where
    // that is so; "choice 0..1" and its elements "choice 2: cifs ns1:T" below it. What is none of these makes
    // a line "unexpected ...".
    std::vector<std::pair<std::string, std::vector<std::string>>> complex_types;
    // Global elements with their types.
    std::map<std::string, std::string> elements;
    // What is told of each complex type ("LSU"), of each of its elements ("LSU.lsuName") and of each global
    // element
    // ("element labelLSU"); empty where that isn't one text.
    std::map<std::string, std::string> documentation;
    // Whatever else stands at the top, and what stands there twice.
    std::vector<std::string> oddities;
};

struct WsdlOperation {
    std::string name;
    std::string input; // the element in the body of the request, "ns1:addExport"
    std::string output;
    std::string style; // its own, or that of the binding
    std::string action;
    std::string input_use;
    std::string output_use;
    std::string documentation;
    std::string fault; // the element in the detail of the fault
    std::string fault_use;
};

struct WsdlDocument {
    std::string target_namespace;
    std::string transport;
    std::vector<std::string> addresses;
    std::string documentation; // of the service
    std::vector<WsdlOperation> operations;
    std::vector<std::string> port_type_operations;
};

// For both kinds of file: the schema, or the only schema within the WSDL. "ns1" stands for the target
// namespace and "xsd" for that of XML Schema, whatever the file calls them.
SchemaDocument read_schema(const std::string& path);
WsdlDocument read_wsdl(const std::string& path);

// What a schema validator has to say about a document; empty when it is valid.
class SchemaValidator
{
  public:
    explicit SchemaValidator(std::string schema_path) : schema_path_(std::move(schema_path)) {}
    // The complaints about several documents, by their names.
    std::vector<std::string> complaints(const std::map<std::string, std::string>& documents) const;

  private:
    std::string schema_path_;
};

} // namespace schema

#endif
