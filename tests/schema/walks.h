// The members of all wire classes, for the walkers: each under the name of its element, in wire order.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_WALKS_H
#define SOAPWRAPPER_TESTS_SCHEMA_WALKS_H

#include "contract_lists.h"

#include "soapwrapperStub.h"

namespace schema
{

#define VALUE(NAME, TYPE) walker(#NAME, object.NAME);
#define NILLABLE(NAME, TYPE) walker(#NAME, object.NAME);
#define REPEATED(NAME, TYPE) walker(#NAME, object.NAME);
#define CHOICE(NUMBER, NAME, TYPE) walker.choice(object, NUMBER, #NAME, choices(object).NAME);
#define WALK(CLASS, ELEMENTS)                                                                                \
    template <class Walker>                                                                                  \
    void walk([[maybe_unused]] Walker& walker, [[maybe_unused]] CLASS& object)                               \
    {                                                                                                        \
        ELEMENTS                                                                                             \
    }
#define WALK_TYPE(NAME, ELEMENTS) WALK(ns1__##NAME, ELEMENTS)
#define WALK_MESSAGE(NAME, ELEMENTS) WALK(_ns1__##NAME, ELEMENTS)
CONTRACT_TYPES(WALK_TYPE)
CONTRACT_MESSAGES(WALK_MESSAGE)
#undef VALUE
#undef NILLABLE
#undef REPEATED
#undef CHOICE
#undef WALK
#undef WALK_TYPE
#undef WALK_MESSAGE

} // namespace schema

#endif
