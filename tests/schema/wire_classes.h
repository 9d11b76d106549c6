// The classes of the binding, a type or a message of the contract each.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_WIRE_CLASSES_H
#define SOAPWRAPPER_TESTS_SCHEMA_WIRE_CLASSES_H

#include "contract_lists.h"

#include <string>

#include "soapwrapperStub.h"

namespace schema
{

template <class WireClass>
struct Tag {
    using Class = WireClass;
    std::string name; // in the contract: "LSU", "deleteSnap"
    bool is_message;  // or else a type
};

// Calls `visit` with a tag for each wire class: types first, then messages.
template <class Visitor>
void each_wire_class(Visitor&& visit)
{
#define VISIT_TYPE(NAME, ELEMENTS) visit(Tag<ns1__##NAME>{#NAME, false});
#define VISIT_MESSAGE(NAME, ELEMENTS) visit(Tag<_ns1__##NAME>{#NAME, true});
    CONTRACT_TYPES(VISIT_TYPE)
    CONTRACT_MESSAGES(VISIT_MESSAGE)
#undef VISIT_TYPE
#undef VISIT_MESSAGE
}

} // namespace schema

#endif
