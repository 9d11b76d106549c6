/* The tables that the host drives the plug-in through. The slot numbers are the contract; a slot that slots.h
 * doesn't name is null. In C, because C names the slots of an array. */
#include "plugin/host/entry_points.h"
#include "plugin/host/slots.h"

#define SLOT(slot, entry) [slot] = (stspi_slot_t)(entry),

/* For hosts that look it up by name: stspi_init hands out the next one only. */
const stspi_slot_t PluginEntryPoints_v10[STSPI_V10_SLOTS] = {STSPI_V10_ENTRIES(SLOT)};

const stspi_slot_t PluginEntryPoints_v11[STSPI_V11_SLOTS] = {STSPI_V11_ENTRIES(SLOT)};

const stspi_slot_t PluginEntryPoints3_v11[STSPI3_V11_SLOTS] = {STSPI3_V11_ENTRIES(SLOT)};
