/* The library's C interface. A host loads libsoapwrapper.so, calls stspi_init and stspi_init3 by name, and
 * drives everything else through the slots of the tables that they hand out.
 *
 * Every entry returns a status: 0, a number of status.h, or any other number, which is then the storage
 * service's own. Unless an entry says otherwise:
 *  - pointers are borrowed for the length of the call; strings are NUL-terminated;
 *  - on failure nothing is written through an out pointer and no handle changes its state;
 *  - STS_EFAULTDETAIL (2060021) means that the service refused without saying why, STS_ESOAPERROR (2060017)
 *    that it couldn't be reached or its answer couldn't be read;
 *  - entries may run on several threads at once, also on one handle, as long as nobody closes a handle that
 *    is in use. Calls block for as long as the network does;
 *  - a call needs some 192 KiB of stack on the calling thread. */
#ifndef SOAPWRAPPER_PLUGIN_ENTRY_POINTS_H
#define SOAPWRAPPER_PLUGIN_ENTRY_POINTS_H

#include "handles.h"
#include "host_records.h"
#include "status.h"

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define STSPI_EXPORT __attribute__((visibility("default")))

/* A slot of an entry table: cast it to the entry's own type before the call. Null: not served. */
typedef void (*stspi_slot_t)(void);

enum { STSPI_V10_SLOTS = 41, STSPI_V11_SLOTS = 57, STSPI3_V11_SLOTS = 45 };

extern STSPI_EXPORT const stspi_slot_t PluginEntryPoints_v10[STSPI_V10_SLOTS];
extern STSPI_EXPORT const stspi_slot_t PluginEntryPoints_v11[STSPI_V11_SLOTS];
extern STSPI_EXPORT const stspi_slot_t PluginEntryPoints3_v11[STSPI3_V11_SLOTS];

/* Always 0. */
extern STSPI_EXPORT int32_t stspi_ismt;

/* The release, as "\n@(#) " and its name, for a plain search of the file. */
extern STSPI_EXPORT const char TH_STATIC_RELEASE_STR[24];

/* The host's record that stspi_init fills. */
typedef struct stspi_plugin_def {
    uint64_t version; /* 11 */
    const stspi_slot_t* entry_points;
    char prefix[32];
    char description[32];
    unsigned char host_private[448]; /* the host's; not touched */
    uint32_t flag_a;
    uint32_t flag_b;
    uint64_t version_a;
    uint64_t level;
    uint64_t version_b;
    char release[32];
} stspi_plugin_def_t;

/* The host's record that stspi_init3 fills. */
typedef struct stspi_plugin_def3 {
    uint64_t version; /* 11 */
    const stspi_slot_t* entry_points;
} stspi_plugin_def3_t;

/* ---- handshakes; none of them logs, and no other call may be under way during them ---- */

/* Fills `definition` and remembers `path`, the path of this library: its directory is where soapwrapper.conf
 * is looked for. 2060001: null definition. 2060008: host_version below 11; the path is remembered even so. */
STSPI_EXPORT int stspi_init(uint64_t host_version, const char* path, stspi_plugin_def_t* definition);

/* Fills `definition`, starts the TLS library's thread support and makes the lock of the change lists ready.
 * 2060001: null definition. */
STSPI_EXPORT int stspi_init3(uint64_t host_version, stspi_plugin_def3_t* definition);

/* 0 if `name` begins with "Network_", 2060009 if it doesn't, 2060001 for a null name. */
STSPI_EXPORT int stspi_claim(const char* name);

/* The last call: close every handle before it. Always 0. */
STSPI_EXPORT int stspi_terminate(void);

/* Images are not copied by this plug-in: does nothing. Always 0. */
STSPI_EXPORT int stspi_copy_image(void);

/* TH_STATIC_RELEASE_STR from its first byte, and the bare release name within it. */
STSPI_EXPORT const char* get_TH_binary_version1(void);
STSPI_EXPORT const char* get_TH_binary_version2(void);

/* Start and end of the TLS library's thread support, as stspi_init3 and stspi_terminate call them. */
STSPI_EXPORT int CRYPTO_thread_setup(void);
STSPI_EXPORT int CRYPTO_thread_cleanup(int argument);

/* ---- servers ---- */

/* Finds the service behind `server_name` (prefix, colon, host), fills `info` with what it says of itself,
 * and remembers its best interface for a later open. Without a URL in the configuration it tries https on
 * port 8086 and http on port 8085, each first for 10 seconds and then for as long as it takes.
 * `info` is the host's and should arrive cleared: only what the service names is written, and capability
 * bits are only ever set.
 * 2060001: a null argument, or a name without a colon. 2060008: no interface offered can be used; `info` is
 * filled all the same. Otherwise the status of the last attempt. */
STSPI_EXPORT int stspi_get_server_prop_byname(const sts_session_def_v7_t* session, const char* server_name,
                                              sts_server_info_v8_t* info);

/* Logs in at the service and makes a handle; `session` is kept by the handle and must outlive it. The URL is
 * the configuration's, else discovery's, else http on port 8085; https is used if discovery chose it.
 * At most 255 characters of the URL and 511 of the name are kept.
 * `required_interface` may be null. 2060001: session, handle or name null, credential null, or a name
 * without a colon. 2060046: the service answered without a handle. */
STSPI_EXPORT int stspi_open_server(const sts_session_def_v7_t* session, const char* server_name,
                                   const sts_cred_t* credential, const char* required_interface,
                                   stsp_server_t** server);

/* Opens a second, named server through an open one, at the same service and with the same session. The four
 * last arguments are required and not tested. 2060022: null source. 2060026: the source has no service
 * handle. 2060046: the service answered without a handle. */
STSPI_EXPORT int stspi_open_target_server(stsp_server_t* source, const char* target_name,
                                          const sts_cred_t* credential, const char* interface_name,
                                          stsp_server_t** target);

/* Ends a session. The handle is gone on success only; after a failure it may be closed again.
 * 2060001: null handle. 2060022: the handle has no service handle. */
STSPI_EXPORT int stspi_close_server(stsp_server_t* server);

/* What stspi_get_server_prop_byname reads, through an open handle. 2060001: null argument. 2060026: the
 * handle has no service handle, or the service couldn't be reached or understood. */
STSPI_EXPORT int stspi_get_server_prop(stsp_server_t* server, sts_server_info_v8_t* info);

#ifdef __cplusplus
}
#endif

#endif
