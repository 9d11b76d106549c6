// The place of a virtual function in its class's table, as the Itanium C++ ABI keeps it in a member pointer:
// the offset within the table plus one.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_VTABLE_SLOT_H
#define SOAPWRAPPER_TESTS_SCHEMA_VTABLE_SLOT_H

#include <cstddef>
#include <cstring>

namespace schema
{

// -1 for a function that isn't virtual or doesn't belong to the first base.
template <class Function>
int vtable_slot(Function member)
{
    struct {
        std::ptrdiff_t pointer;
        std::ptrdiff_t adjustment;
    } parts;
    static_assert(sizeof member == sizeof parts);
    std::memcpy(&parts, &member, sizeof parts);
    if (parts.pointer % 2 == 0 || parts.adjustment != 0) return -1;
    return static_cast<int>(parts.pointer / static_cast<std::ptrdiff_t>(sizeof(void*)));
}

} // namespace schema

#endif
