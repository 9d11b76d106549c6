// The slots of the two tables that the library hands out, each with the table and the type of its entry, so
// that a call names the entry alone. Their numbers are the contract of plugin/host/slots.h.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_SLOTS_H
#define SOAPWRAPPER_PROBE_LIBRARY_SLOTS_H

#include "plugin/host/entry_points.h"
#include "plugin/host/slots.h"

#include <cstddef>

namespace soapwrapper::probe
{

enum class TableId {
    kMain,  // handed out by stspi_init
    kSecond // handed out by stspi_init3
};

// One slot: the table, its number there, the name of the entry that it holds, and how to take it from there.
template <class Entry>
struct Slot {
    TableId table;
    std::size_t number;
    const char* name;
    Entry* (*taken_from)(const stspi_slot_t* table);
};

// They bear the names of their entries: slot::stspi_claim.
namespace slot
{

#define MAIN_SLOT(number, entry)                                                                             \
    inline constexpr Slot<entry##_fn> entry{TableId::kMain, number, #entry, [](const stspi_slot_t* table) {  \
                                                return STSPI_V11_ENTRY(table, entry);                        \
                                            }};
#define SECOND_SLOT(number, entry)                                                                           \
    inline constexpr Slot<entry##_fn> entry{                                                                 \
        TableId::kSecond, number, #entry,                                                                    \
        [](const stspi_slot_t* table) { return STSPI3_V11_ENTRY(table, entry); }};
STSPI_V11_ENTRIES(MAIN_SLOT)
STSPI3_V11_ENTRIES(SECOND_SLOT)
#undef MAIN_SLOT
#undef SECOND_SLOT

} // namespace slot
} // namespace soapwrapper::probe

#endif
