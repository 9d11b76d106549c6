// Where the entries stand in the tables that the library hands out. The numbers are the contract between a
// host and the library; the types come from the prototypes of its interface, which nothing here links.
#ifndef SOAPWRAPPER_TOOLS_SLOTS_H
#define SOAPWRAPPER_TOOLS_SLOTS_H

#include "plugin/entry_points.h"

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
inline constexpr Slot<decltype(stspi_open_image_list)> kOpenImageList{TableId::Main, 33,
                                                                      "stspi_open_image_list"};
inline constexpr Slot<decltype(stspi_terminate)> kTerminate{TableId::Main, 35, "stspi_terminate"};
inline constexpr Slot<decltype(stspi_get_lsu_replication_prop)> kGetLsuReplicationProp{
    TableId::Main, 55, "stspi_get_lsu_replication_prop"};
inline constexpr Slot<decltype(stspi_iocontrol)> kIoControl{TableId::Main, 56, "stspi_iocontrol"};

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

} // namespace soapwrapper::probe

#endif
