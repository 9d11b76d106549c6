// The service's contract as plain data: each complex type and each message element with its member elements
// in wire order. Its lists are kept by hand, so that a slip in the type header has something to differ from;
// all else that the tests know of types and messages follows from them.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_CONTRACT_H
#define SOAPWRAPPER_TESTS_SCHEMA_CONTRACT_H

#include <initializer_list>
#include <string>
#include <vector>

namespace schema
{

enum class Form {
    kValue,    // written always, once
    kNillable, // the same, and as xsi:nil when there is nothing
    kChoice,   // at most one of the type's choices is written
    kRepeated  // any number of times
};

struct Element {
    std::string name;
    std::string type;
    Form form;
    int choice_number = 0;
};

struct ComplexType {
    std::string name;
    std::vector<Element> elements;
};

inline const char* const kInteger = "xsd:int";
inline const char* const kLongInteger = "xsd:long";
inline const char* const kBoolean = "xsd:boolean";
inline const char* const kString = "xsd:string";
inline const char* const kBytes = "xsd:base64Binary";

const std::vector<ComplexType>& all_types();
const std::vector<ComplexType>& all_messages();

std::vector<ComplexType> joined(std::initializer_list<std::vector<ComplexType>> tables);

// Of the type or the message of this name.
const std::vector<Element>& elements_of(const std::string& name);

// What a freshly made object writes between its tags: zeros, empty elements for texts, xsi:nil for null
// pointers, nothing for a choice that isn't made and for an empty list.
std::string blank_text(const std::string& name);

} // namespace schema

#endif
