// The service's contract as plain data: each complex type and each message element with its member elements
// in wire order. The tables are kept by hand, so that a slip in the type header has something to differ from.
#ifndef SCHEMA_TEST_CONTRACT_H
#define SCHEMA_TEST_CONTRACT_H

#include <initializer_list>
#include <string>
#include <vector>

namespace schema_test
{

enum class Form {
    value,    // written always, once
    nillable, // the same, and as xsi:nil when there is nothing
    choice,   // at most one of the type's choices is written
    repeated  // any number of times
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

inline const char* const integer = "xsd:int";
inline const char* const long_integer = "xsd:long";
inline const char* const boolean = "xsd:boolean";
inline const char* const string = "xsd:string";
inline const char* const bytes = "xsd:base64Binary";

inline Element value(const char* name, const char* type)
{
    return {name, type, Form::value};
}
inline Element nillable(const char* name, const char* type)
{
    return {name, type, Form::nillable};
}
inline Element repeated(const char* name, const char* type)
{
    return {name, type, Form::repeated};
}
inline Element choice(int number, const char* name, const char* type)
{
    return {name, type, Form::choice, number};
}

const std::vector<ComplexType>& types_of_sessions_servers_lsus();
const std::vector<ComplexType>& messages_of_sessions_servers_lsus();
const std::vector<ComplexType>& types_of_images_snapshots_exports();
const std::vector<ComplexType>& messages_of_images_snapshots_exports();
const std::vector<ComplexType>& types_of_async_operations();
const std::vector<ComplexType>& messages_of_async_operations();
const std::vector<ComplexType>& types_of_events_changelists_iocontrol();
const std::vector<ComplexType>& messages_of_events_changelists_iocontrol();

inline std::vector<ComplexType> joined(std::initializer_list<std::vector<ComplexType>> tables)
{
    std::vector<ComplexType> all;
    for (const auto& table : tables) all.insert(all.end(), table.begin(), table.end());
    return all;
}

inline std::vector<ComplexType> all_types()
{
    return joined({types_of_sessions_servers_lsus(), types_of_images_snapshots_exports(),
                   types_of_async_operations(), types_of_events_changelists_iocontrol()});
}

inline std::vector<ComplexType> all_messages()
{
    return joined({messages_of_sessions_servers_lsus(), messages_of_images_snapshots_exports(),
                   messages_of_async_operations(), messages_of_events_changelists_iocontrol()});
}

} // namespace schema_test

#endif
