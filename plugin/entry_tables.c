/* The tables that the host drives the plug-in through. The slot numbers are the contract; a slot that isn't
 * named here is null. In C, because C names the slots of an array. */
#include "plugin/entry_points.h"

#define SLOT(number, entry) [number] = (stspi_slot_t)(entry)

/* For hosts that look it up by name: stspi_init hands out the next one only. */
const stspi_slot_t PluginEntryPoints_v10[STSPI_V10_SLOTS] = {
    SLOT(4, stspi_claim),
    SLOT(9, stspi_close_server),
    SLOT(21, stspi_get_server_prop),
    SLOT(22, stspi_get_server_prop_byname),
    SLOT(29, stspi_open_server),
    SLOT(30, stspi_open_target_server),
    SLOT(35, stspi_terminate),
};

const stspi_slot_t PluginEntryPoints_v11[STSPI_V11_SLOTS] = {
    SLOT(4, stspi_claim),
    SLOT(9, stspi_close_server),
    SLOT(21, stspi_get_server_prop),
    SLOT(22, stspi_get_server_prop_byname),
    SLOT(29, stspi_open_server),
    SLOT(30, stspi_open_target_server),
    SLOT(35, stspi_terminate),
};

const stspi_slot_t PluginEntryPoints3_v11[STSPI3_V11_SLOTS] = {0};
