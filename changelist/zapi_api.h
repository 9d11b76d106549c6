// The second plug-in of this interface family, which speaks ZAPI to a filer: its start, its end and its
// operations, while there is a table of it and while there is none.
#ifndef SOAPWRAPPER_CHANGELIST_ZAPI_API_H
#define SOAPWRAPPER_CHANGELIST_ZAPI_API_H

#include "plugin/host/host_records.h"
#include "plugin/host/second_plugin.h" // IWYU pragma: export

#include <cstdint>

// Null until the second plug-in has been started.
extern const sts_api_slot* sts_api;

namespace soapwrapper
{

// The framework's plug-in manager is whoever exports stsm_init and stsm_terminate in this process at the time
// of the call. Without one, both calls below are 2060010.

// 2060007 for a version other than 12, 2060001 for a null path, otherwise what the manager says.
int sts_init(std::uint64_t version, const char* plugin_path);
// A second plug-in that is still in use counts as ended, and stays reachable.
int sts_terminate();
// Stands in for every operation while there is no table.
int sts_notinit();

// The operations. All return a status.
int api_close(sts_handle_s* handle);
int api_close_snap_change_list(sts_handle_s* list);
int api_list_file(sts_handle_s* list, std::uint32_t filter_count, const char* filters,
                  sts_file_attr_v11_t* entry);
int api_open_server(sts_handle_s* session, const char* server_name, const sts_cred_block* credentials,
                    sts_handle_s** server);
int api_open_session(sts_session_def_v7_t* definition, sts_handle_s** session);
int api_open_snap_change_list(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* base,
                              const sts_snap_def_v11_t* diff, sts_volume_spec_v11_t* volume,
                              std::uint32_t flags, sts_handle_s** list);

} // namespace soapwrapper

#endif
