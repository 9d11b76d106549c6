/* Which entry stands in which slot of which table, and how a host calls it: by its name, with its own type.
 *
 *     stspi_plugin_def_t plugin = {0};
 *     stspi_init(11, path, &plugin);
 *     stspi_list_lsu_fn* const list_lsu = STSPI_V11_ENTRY(plugin.entry_points, stspi_list_lsu);
 *     if (list_lsu) status = list_lsu(list, name);
 *
 * An entry that a table doesn't have can't be asked of it: that doesn't compile. The slots that no list names
 * are empty; a host should find each null before it calls, as a library of another release may serve less. */
#ifndef SOAPWRAPPER_PLUGIN_HOST_SLOTS_H
#define SOAPWRAPPER_PLUGIN_HOST_SLOTS_H

#include "entry_points.h" // IWYU pragma: export

/* Each list calls X(slot, entry) once for every entry of its table, in the order of the slots. */

/* The old main table, of STSPI_V10_SLOTS (41) slots, 25 of them empty. stspi_init doesn't hand it out: it is
 * exported as PluginEntryPoints_v10, for hosts that look it up by name. */
#define STSPI_V10_ENTRIES(X)                                                                                 \
    X(4, stspi_claim)                                                                                        \
    X(7, stspi_close_image_list)                                                                             \
    X(8, stspi_close_lsu_list)                                                                               \
    X(9, stspi_close_server)                                                                                 \
    X(18, stspi_get_image_prop)                                                                              \
    X(19, stspi_get_image_prop_byname)                                                                       \
    X(20, stspi_get_lsu_prop_byname_v10)                                                                     \
    X(21, stspi_get_server_prop)                                                                             \
    X(22, stspi_get_server_prop_byname)                                                                      \
    X(25, stspi_list_image)                                                                                  \
    X(26, stspi_list_lsu)                                                                                    \
    X(28, stspi_open_lsu_list_v10)                                                                           \
    X(29, stspi_open_server)                                                                                 \
    X(30, stspi_open_target_server)                                                                          \
    X(33, stspi_open_image_list)                                                                             \
    X(35, stspi_terminate)

/* The main table, of STSPI_V11_SLOTS (57) slots, 30 of them empty. stspi_init hands it out in the record's
 * `entry_points`; it is exported as PluginEntryPoints_v11. */
#define STSPI_V11_ENTRIES(X)                                                                                 \
    X(2, stspi_async_wait)                                                                                   \
    X(4, stspi_claim)                                                                                        \
    X(5, stspi_close_evchannel)                                                                              \
    X(7, stspi_close_image_list)                                                                             \
    X(8, stspi_close_lsu_list)                                                                               \
    X(9, stspi_close_server)                                                                                 \
    X(12, stspi_delete_event)                                                                                \
    X(14, stspi_delete_image)                                                                                \
    X(15, stspi_get_event)                                                                                   \
    X(18, stspi_get_image_prop)                                                                              \
    X(19, stspi_get_image_prop_byname)                                                                       \
    X(20, stspi_get_lsu_prop_byname_v11)                                                                     \
    X(21, stspi_get_server_prop)                                                                             \
    X(22, stspi_get_server_prop_byname)                                                                      \
    X(25, stspi_list_image)                                                                                  \
    X(26, stspi_list_lsu)                                                                                    \
    X(27, stspi_open_evchannel_v11)                                                                          \
    X(28, stspi_open_lsu_list_v11)                                                                           \
    X(29, stspi_open_server)                                                                                 \
    X(30, stspi_open_target_server)                                                                          \
    X(33, stspi_open_image_list)                                                                             \
    X(35, stspi_terminate)                                                                                   \
    X(41, stspi_async_cancel)                                                                                \
    X(44, stspi_get_event_payload)                                                                           \
    X(47, stspi_named_async_status)                                                                          \
    X(55, stspi_get_lsu_replication_prop)                                                                    \
    X(56, stspi_iocontrol)

/* The second table, of STSPI3_V11_SLOTS (45) slots, 11 of them empty: snapshots, exports and change lists.
 * stspi_init3 hands it out in its record's `entry_points`; it is exported as PluginEntryPoints3_v11. */
#define STSPI3_V11_ENTRIES(X)                                                                                \
    X(0, stspi_add_export)                                                                                   \
    X(1, stspi_async_copy_snap_byname)                                                                       \
    X(2, stspi_async_create_snap_byname)                                                                     \
    X(3, stspi_async_get_snap_diff)                                                                          \
    X(4, stspi_async_postprocess_snap_byname)                                                                \
    X(5, stspi_async_prepare_snap_byname)                                                                    \
    X(6, stspi_async_rollback_snap)                                                                          \
    X(7, stspi_async_validate_snap_byname)                                                                   \
    X(8, stspi_async_wait_snap)                                                                              \
    X(9, stspi_claim_volume)                                                                                 \
    X(10, stspi_close_snap_list)                                                                             \
    X(12, stspi_create_export)                                                                               \
    X(14, stspi_delete_export)                                                                               \
    X(15, stspi_delete_snap)                                                                                 \
    X(19, stspi_get_snap_prop_byname)                                                                        \
    X(20, stspi_list_snap)                                                                                   \
    X(21, stspi_named_async_copy_snap_byname)                                                                \
    X(22, stspi_named_async_create_snap_byname)                                                              \
    X(23, stspi_named_async_get_snap_diff)                                                                   \
    X(24, stspi_named_async_postprocess_snap_byname)                                                         \
    X(25, stspi_named_async_prepare_snap_byname)                                                             \
    X(26, stspi_named_async_rollback_snap)                                                                   \
    X(27, stspi_named_async_validate_snap_byname)                                                            \
    X(28, stspi_named_async_wait_snap)                                                                       \
    X(29, stspi_open_snap_list_by_volume)                                                                    \
    X(30, stspi_open_snap_list)                                                                              \
    X(34, stspi_validate_rollback)                                                                           \
    X(37, stspi_async_provision_topology)                                                                    \
    X(38, stspi_named_async_provision_topology)                                                              \
    X(39, stspi_open_snap_change_list)                                                                       \
    X(40, stspi_close_snap_change_list)                                                                      \
    X(41, stspi_list_file)                                                                                   \
    X(43, stspi_async_import_snap_byname)                                                                    \
    X(44, stspi_named_async_import_snap_byname)

/* The type of each entry: stspi_claim_fn is that of stspi_claim. It is taken from the prototype, and nothing
 * is linked for it. The first two are in the old table only. */
#define STSPI_TYPE(slot, entry) typedef __typeof__(entry) entry##_fn;
typedef __typeof__(stspi_get_lsu_prop_byname_v10) stspi_get_lsu_prop_byname_v10_fn;
typedef __typeof__(stspi_open_lsu_list_v10) stspi_open_lsu_list_v10_fn;
STSPI_V11_ENTRIES(STSPI_TYPE)
STSPI3_V11_ENTRIES(STSPI_TYPE)
#undef STSPI_TYPE

/* The slot of each entry in each table: STSPI_V11_SLOT_stspi_claim is 4. */
#define STSPI_V10_NUMBER(slot, entry) STSPI_V10_SLOT_##entry = (slot),
#define STSPI_V11_NUMBER(slot, entry) STSPI_V11_SLOT_##entry = (slot),
#define STSPI3_V11_NUMBER(slot, entry) STSPI3_V11_SLOT_##entry = (slot),
enum { STSPI_V10_ENTRIES(STSPI_V10_NUMBER) };
enum { STSPI_V11_ENTRIES(STSPI_V11_NUMBER) };
enum { STSPI3_V11_ENTRIES(STSPI3_V11_NUMBER) };
#undef STSPI_V10_NUMBER
#undef STSPI_V11_NUMBER
#undef STSPI3_V11_NUMBER

/* An entry of a table, as a pointer to a function of its type; null if the slot is empty. */
#define STSPI_V10_ENTRY(table, entry) STSPI_SLOT_AS(entry, (table)[STSPI_V10_SLOT_##entry])
#define STSPI_V11_ENTRY(table, entry) STSPI_SLOT_AS(entry, (table)[STSPI_V11_SLOT_##entry])
#define STSPI3_V11_ENTRY(table, entry) STSPI_SLOT_AS(entry, (table)[STSPI3_V11_SLOT_##entry])

#ifdef __cplusplus
#define STSPI_SLOT_AS(entry, slot) (reinterpret_cast<entry##_fn*>(slot))
#else
#define STSPI_SLOT_AS(entry, slot) ((entry##_fn*)(slot))
#endif

#endif
