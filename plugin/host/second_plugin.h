/* The second plug-in, which speaks to a filer itself, as the library calls it when it opens a change list.
 * The host brings it: its plug-in manager exports stsm_init and stsm_terminate in the library's sight, and
 * hands out the plug-in's table. A host without one lacks nothing but that route.
 *
 * The table is the second plug-in's, and longer than the six operations that the library uses: the last of
 * them stands in slot 111. They may all be called on several threads at once. Each returns a status of
 * status.h or a number of its own. */
#ifndef SOAPWRAPPER_PLUGIN_HOST_SECOND_PLUGIN_H
#define SOAPWRAPPER_PLUGIN_HOST_SECOND_PLUGIN_H

#include "host_records.h" // IWYU pragma: export

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef void (*sts_api_slot)(void);

/* A session, a server or a list of the second plug-in. */
typedef struct sts_handle_s sts_handle_s;

/* A server's credentials: a user name and a password, each with its terminator, one behind the other. */
typedef struct sts_cred_block {
    uint64_t reserved; /* 0 */
    char names[1024];
} sts_cred_block;

/* ---- the manager's functions, by name ---- */

enum { STS_API_VERSION = 12 };

/* stsm_init: starts the second plug-in, once in a process, and gives its table, which stays good. `version`
 * is STS_API_VERSION, `plugin_path` the path of the library that asks. */
typedef int stsm_init_fn(uint64_t version, const char* plugin_path, const sts_api_slot** api);

/* stsm_terminate: ends it. STS_EINUSE counts as an end, and leaves the table in use. */
typedef int stsm_terminate_fn(void);

/* ---- the operations: X(slot, operation) for each ---- */

#define STS_API_OPERATIONS(X)                                                                                \
    X(24, sts_api_close)                                                                                     \
    X(25, sts_api_close_snap_change_list)                                                                    \
    X(79, sts_api_list_file)                                                                                 \
    X(109, sts_api_open_server)                                                                              \
    X(110, sts_api_open_session)                                                                             \
    X(111, sts_api_open_snap_change_list)

/* Ends a session or a server; `flags` is 0. */
typedef int sts_api_close_fn(sts_handle_s* handle, int flags);

typedef int sts_api_close_snap_change_list_fn(sts_handle_s* list);

/* As stspi_list_file. */
typedef int sts_api_list_file_fn(sts_handle_s* list, uint32_t filter_count, const char* filters,
                                 sts_file_attr_v11_t* entry);

/* `server_name` is "ZAPI:" and the filer; `interface_name` is empty. */
typedef int sts_api_open_server_fn(sts_handle_s* session, const char* server_name,
                                   const sts_cred_block* credentials, const char* interface_name,
                                   sts_handle_s** server);

/* `definition` stays where it is for good. */
typedef int sts_api_open_session_fn(sts_session_def_v7_t* definition, sts_handle_s** session);

/* As stspi_open_snap_change_list, but that the server in `lsu` is a handle of the second plug-in, and the
 * snapshots' names are their export paths. */
typedef int sts_api_open_snap_change_list_fn(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* base,
                                             const sts_snap_def_v11_t* diff, sts_volume_spec_v11_t* volume,
                                             uint32_t flags, sts_handle_s** list);

/* The slot of each: STS_API_SLOT_sts_api_close is 24. */
#define STS_API_NUMBER(slot, operation) STS_API_SLOT_##operation = (slot),
enum { STS_API_OPERATIONS(STS_API_NUMBER) };
#undef STS_API_NUMBER

/* An operation of the table, as a pointer to a function of its type. */
#ifdef __cplusplus
#define STS_API_OPERATION(table, operation)                                                                  \
    (reinterpret_cast<operation##_fn*>((table)[STS_API_SLOT_##operation]))
#else
#define STS_API_OPERATION(table, operation) ((operation##_fn*)(table)[STS_API_SLOT_##operation])
#endif

#ifdef __cplusplus
}
#endif

#endif
