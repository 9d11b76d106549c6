// Where the entries stand in the tables that the library hands out. The numbers are the contract between a
// host and the library; the types come from the prototypes of its interface, which nothing here links.
#ifndef SOAPWRAPPER_TOOLS_SLOTS_H
#define SOAPWRAPPER_TOOLS_SLOTS_H

#include "plugin/host/entry_points.h"

#include <cstddef>

namespace soapwrapper::probe
{

enum class TableId {
    Main,  // handed out by stspi_init
    Second // handed out by stspi_init3
};

// One slot: the table, its number there, and the name of the entry that it holds.
template <class Entry>
struct Slot {
    TableId table;
    std::size_t number;
    const char* name;
};

inline constexpr Slot<decltype(stspi_claim)> kClaim{TableId::Main, 4, "stspi_claim"};
inline constexpr Slot<decltype(stspi_close_image_list)> kCloseImageList{TableId::Main, 7,
                                                                        "stspi_close_image_list"};
inline constexpr Slot<decltype(stspi_close_lsu_list)> kCloseLsuList{TableId::Main, 8, "stspi_close_lsu_list"};
inline constexpr Slot<decltype(stspi_close_server)> kCloseServer{TableId::Main, 9, "stspi_close_server"};
inline constexpr Slot<decltype(stspi_delete_image)> kDeleteImage{TableId::Main, 14, "stspi_delete_image"};
inline constexpr Slot<decltype(stspi_get_image_prop_byname)> kGetImagePropByname{
    TableId::Main, 19, "stspi_get_image_prop_byname"};
inline constexpr Slot<decltype(stspi_get_lsu_prop_byname_v11)> kGetLsuPropByname{
    TableId::Main, 20, "stspi_get_lsu_prop_byname_v11"};
inline constexpr Slot<decltype(stspi_get_server_prop)> kGetServerProp{TableId::Main, 21,
                                                                      "stspi_get_server_prop"};
inline constexpr Slot<decltype(stspi_get_server_prop_byname)> kGetServerPropByname{
    TableId::Main, 22, "stspi_get_server_prop_byname"};
inline constexpr Slot<decltype(stspi_list_image)> kListImage{TableId::Main, 25, "stspi_list_image"};
inline constexpr Slot<decltype(stspi_list_lsu)> kListLsu{TableId::Main, 26, "stspi_list_lsu"};
inline constexpr Slot<decltype(stspi_open_lsu_list_v11)> kOpenLsuList{TableId::Main, 28,
                                                                      "stspi_open_lsu_list_v11"};
inline constexpr Slot<decltype(stspi_open_server)> kOpenServer{TableId::Main, 29, "stspi_open_server"};
inline constexpr Slot<decltype(stspi_open_target_server)> kOpenTargetServer{TableId::Main, 30,
                                                                            "stspi_open_target_server"};
inline constexpr Slot<decltype(stspi_open_image_list)> kOpenImageList{TableId::Main, 33,
                                                                      "stspi_open_image_list"};
inline constexpr Slot<decltype(stspi_terminate)> kTerminate{TableId::Main, 35, "stspi_terminate"};
inline constexpr Slot<decltype(stspi_get_lsu_replication_prop)> kGetLsuReplicationProp{
    TableId::Main, 55, "stspi_get_lsu_replication_prop"};
inline constexpr Slot<decltype(stspi_iocontrol)> kIoControl{TableId::Main, 56, "stspi_iocontrol"};

inline constexpr Slot<decltype(stspi_open_snap_change_list)> kOpenSnapChangeList{
    TableId::Second, 39, "stspi_open_snap_change_list"};
inline constexpr Slot<decltype(stspi_close_snap_change_list)> kCloseSnapChangeList{
    TableId::Second, 40, "stspi_close_snap_change_list"};
inline constexpr Slot<decltype(stspi_list_file)> kListFile{TableId::Second, 41, "stspi_list_file"};
inline constexpr Slot<decltype(stspi_add_export)> kAddExport{TableId::Second, 0, "stspi_add_export"};
inline constexpr Slot<decltype(stspi_claim_volume)> kClaimVolume{TableId::Second, 9, "stspi_claim_volume"};
inline constexpr Slot<decltype(stspi_close_snap_list)> kCloseSnapList{TableId::Second, 10,
                                                                      "stspi_close_snap_list"};
inline constexpr Slot<decltype(stspi_create_export)> kCreateExport{TableId::Second, 12,
                                                                   "stspi_create_export"};
inline constexpr Slot<decltype(stspi_delete_export)> kDeleteExport{TableId::Second, 14,
                                                                   "stspi_delete_export"};
inline constexpr Slot<decltype(stspi_delete_snap)> kDeleteSnap{TableId::Second, 15, "stspi_delete_snap"};
inline constexpr Slot<decltype(stspi_get_snap_prop_byname)> kGetSnapPropByname{TableId::Second, 19,
                                                                               "stspi_get_snap_prop_byname"};
inline constexpr Slot<decltype(stspi_list_snap)> kListSnap{TableId::Second, 20, "stspi_list_snap"};
inline constexpr Slot<decltype(stspi_open_snap_list_by_volume)> kOpenSnapListByVolume{
    TableId::Second, 29, "stspi_open_snap_list_by_volume"};
inline constexpr Slot<decltype(stspi_open_snap_list)> kOpenSnapList{TableId::Second, 30,
                                                                    "stspi_open_snap_list"};
inline constexpr Slot<decltype(stspi_validate_rollback)> kValidateRollback{TableId::Second, 34,
                                                                           "stspi_validate_rollback"};

// Long operations: those that start one with an id, those that start one with a name, and what follows one.
inline constexpr Slot<decltype(stspi_async_cancel)> kAsyncCancel{TableId::Main, 41, "stspi_async_cancel"};
inline constexpr Slot<decltype(stspi_named_async_status)> kNamedAsyncStatus{TableId::Main, 47,
                                                                            "stspi_named_async_status"};

inline constexpr Slot<decltype(stspi_async_copy_snap_byname)> kAsyncCopySnapByname{
    TableId::Second, 1, "stspi_async_copy_snap_byname"};
inline constexpr Slot<decltype(stspi_async_create_snap_byname)> kAsyncCreateSnapByname{
    TableId::Second, 2, "stspi_async_create_snap_byname"};
inline constexpr Slot<decltype(stspi_async_get_snap_diff)> kAsyncGetSnapDiff{TableId::Second, 3,
                                                                             "stspi_async_get_snap_diff"};
inline constexpr Slot<decltype(stspi_async_postprocess_snap_byname)> kAsyncPostprocessSnapByname{
    TableId::Second, 4, "stspi_async_postprocess_snap_byname"};
inline constexpr Slot<decltype(stspi_async_prepare_snap_byname)> kAsyncPrepareSnapByname{
    TableId::Second, 5, "stspi_async_prepare_snap_byname"};
inline constexpr Slot<decltype(stspi_async_rollback_snap)> kAsyncRollbackSnap{TableId::Second, 6,
                                                                              "stspi_async_rollback_snap"};
inline constexpr Slot<decltype(stspi_async_validate_snap_byname)> kAsyncValidateSnapByname{
    TableId::Second, 7, "stspi_async_validate_snap_byname"};
inline constexpr Slot<decltype(stspi_async_wait_snap)> kAsyncWaitSnap{TableId::Second, 8,
                                                                      "stspi_async_wait_snap"};
inline constexpr Slot<decltype(stspi_named_async_copy_snap_byname)> kNamedAsyncCopySnapByname{
    TableId::Second, 21, "stspi_named_async_copy_snap_byname"};
inline constexpr Slot<decltype(stspi_named_async_create_snap_byname)> kNamedAsyncCreateSnapByname{
    TableId::Second, 22, "stspi_named_async_create_snap_byname"};
inline constexpr Slot<decltype(stspi_named_async_get_snap_diff)> kNamedAsyncGetSnapDiff{
    TableId::Second, 23, "stspi_named_async_get_snap_diff"};
inline constexpr Slot<decltype(stspi_named_async_postprocess_snap_byname)> kNamedAsyncPostprocessSnapByname{
    TableId::Second, 24, "stspi_named_async_postprocess_snap_byname"};
inline constexpr Slot<decltype(stspi_named_async_prepare_snap_byname)> kNamedAsyncPrepareSnapByname{
    TableId::Second, 25, "stspi_named_async_prepare_snap_byname"};
inline constexpr Slot<decltype(stspi_named_async_rollback_snap)> kNamedAsyncRollbackSnap{
    TableId::Second, 26, "stspi_named_async_rollback_snap"};
inline constexpr Slot<decltype(stspi_named_async_validate_snap_byname)> kNamedAsyncValidateSnapByname{
    TableId::Second, 27, "stspi_named_async_validate_snap_byname"};
inline constexpr Slot<decltype(stspi_named_async_wait_snap)> kNamedAsyncWaitSnap{
    TableId::Second, 28, "stspi_named_async_wait_snap"};
inline constexpr Slot<decltype(stspi_async_provision_topology)> kAsyncProvisionTopology{
    TableId::Second, 37, "stspi_async_provision_topology"};
inline constexpr Slot<decltype(stspi_named_async_provision_topology)> kNamedAsyncProvisionTopology{
    TableId::Second, 38, "stspi_named_async_provision_topology"};
inline constexpr Slot<decltype(stspi_async_import_snap_byname)> kAsyncImportSnapByname{
    TableId::Second, 43, "stspi_async_import_snap_byname"};
inline constexpr Slot<decltype(stspi_named_async_import_snap_byname)> kNamedAsyncImportSnapByname{
    TableId::Second, 44, "stspi_named_async_import_snap_byname"};

// Events.
inline constexpr Slot<decltype(stspi_close_evchannel)> kCloseEvchannel{TableId::Main, 5,
                                                                       "stspi_close_evchannel"};
inline constexpr Slot<decltype(stspi_delete_event)> kDeleteEvent{TableId::Main, 12, "stspi_delete_event"};
inline constexpr Slot<decltype(stspi_get_event)> kGetEvent{TableId::Main, 15, "stspi_get_event"};
inline constexpr Slot<decltype(stspi_open_evchannel_v11)> kOpenEvchannel{TableId::Main, 27,
                                                                         "stspi_open_evchannel_v11"};
inline constexpr Slot<decltype(stspi_get_event_payload)> kGetEventPayload{TableId::Main, 44,
                                                                          "stspi_get_event_payload"};

} // namespace soapwrapper::probe

#endif
