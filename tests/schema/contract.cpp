#include "contract.h"

#include "contract_lists.h"
#include "xml_node.h"

#include <algorithm>

namespace schema
{

#define VALUE(NAME, TYPE) {#NAME, TYPE, Form::kValue},
#define NILLABLE(NAME, TYPE) {#NAME, TYPE, Form::kNillable},
#define CHOICE(NUMBER, NAME, TYPE) {#NAME, TYPE, Form::kChoice, NUMBER},
#define REPEATED(NAME, TYPE) {#NAME, TYPE, Form::kRepeated},
#define AS_DATA(NAME, ELEMENTS) {#NAME, {ELEMENTS}},

const std::vector<ComplexType>& all_types()
{
    static const std::vector<ComplexType> all = {CONTRACT_TYPES(AS_DATA)};
    return all;
}

const std::vector<ComplexType>& all_messages()
{
    static const std::vector<ComplexType> all = {CONTRACT_MESSAGES(AS_DATA)};
    return all;
}

std::vector<ComplexType> joined(std::initializer_list<std::vector<ComplexType>> tables)
{
    std::vector<ComplexType> all;
    for (const auto& table : tables) all.insert(all.end(), table.begin(), table.end());
    return all;
}

const std::vector<Element>& elements_of(const std::string& name)
{
    static const std::vector<ComplexType> all = joined({all_types(), all_messages()});
    return std::find_if(all.begin(), all.end(), [&](const ComplexType& type) { return type.name == name; })
        ->elements;
}

std::string blank_text(const std::string& name)
{
    std::string text;
    for (const Element& member : elements_of(name)) {
        if (member.form == Form::kNillable) text += nil(member.name);
        if (member.form != Form::kValue) continue;
        if (member.type == kInteger || member.type == kLongInteger) text += zero(member.name);
        if (member.type == kBoolean) text += element(member.name, "false");
        if (member.type == kString) text += empty(member.name);
        if (member.type == kBytes) text += element(member.name, "");
    }
    return text;
}

} // namespace schema
