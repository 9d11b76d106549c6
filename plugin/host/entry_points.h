/* The library's C interface. A host loads libsoapwrapper.so, calls stspi_init and stspi_init3 by name, and
 * drives everything else through the slots of the tables that they hand out: slots.h names them.
 *
 * Every entry returns a status: 0, a number of status.h, or any other number, which is then the storage
 * service's own. Unless an entry says otherwise:
 *  - pointers are borrowed for the length of the call; strings are NUL-terminated;
 *  - on failure nothing is written through an out pointer and no handle changes its state;
 *  - STS_EFAULTDETAIL (2060021) means that the service refused without saying why, STS_ESOAPERROR (2060017)
 *    that it couldn't be reached or its answer couldn't be read, and STS_EPLUGIN (2060046) that its answer
 *    could be read but lacks what the entry is for;
 *  - an out pointer that is said to be required and not tested, and is null, loses what the call brings: the
 *    log tells, the status doesn't;
 *  - entries may run on several threads at once, also on one handle, as long as nobody closes a handle that
 *    is in use. Calls block for as long as the network does;
 *  - a call needs some 192 KiB of stack on the calling thread. */
#ifndef SOAPWRAPPER_PLUGIN_HOST_ENTRY_POINTS_H
#define SOAPWRAPPER_PLUGIN_HOST_ENTRY_POINTS_H

#include "async_records.h" // IWYU pragma: export
#include "event_records.h" // IWYU pragma: export
#include "handles.h"       // IWYU pragma: export
#include "host_records.h"  // IWYU pragma: export
#include "status.h"        // IWYU pragma: export

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define STSPI_EXPORT __attribute__((visibility("default")))

/* A slot of an entry table, which slots.h reads as a pointer of the entry's own type. Null: not served. */
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
 * is looked for. What that file says of the channel to the services is read here and not later: a second call
 * reads it anew, and forgets the TLS sessions of the services. 2060001: null definition, and nothing else has
 * happened. 2060008: host_version below 11; the path is remembered and the file read even so. */
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
 * filled all the same. Otherwise the status of the last attempt, 2060046 for an answer without properties. */
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

/* Opens a second, named server through an open one, at the same service and with the same session.
 * `interface_name` may be null. 2060022: null source. 2060026: the source has no service handle. 2060001:
 * null name, credential or out handle. 2060046: the service answered without a handle. */
STSPI_EXPORT int stspi_open_target_server(stsp_server_t* source, const char* target_name,
                                          const sts_cred_t* credential, const char* interface_name,
                                          stsp_server_t** target);

/* Ends a session. The handle is gone on success only; after a failure it may be closed again.
 * 2060001: null handle. 2060022: the handle has no service handle. */
STSPI_EXPORT int stspi_close_server(stsp_server_t* server);

/* What stspi_get_server_prop_byname reads, through an open handle. 2060001: null argument. 2060026: the
 * handle has no service handle, or the service couldn't be reached or understood. 2060046: the service
 * answered without properties, and `info` is as it was. */
STSPI_EXPORT int stspi_get_server_prop(stsp_server_t* server, sts_server_info_v8_t* info);

/* ---- LSUs ---- */

/* Opens a list of the server's LSUs. `filter` may be null: then none applies. Its version and its replication
 * counts are not sent. 2060001: null server or out handle. 2060026: the server has no service handle.
 * 2060046: the service answered without a list. */
STSPI_EXPORT int stspi_open_lsu_list_v10(stsp_server_t* server, const sts_lsu_def_v9_t* filter,
                                         stsp_list_t** list);
STSPI_EXPORT int stspi_open_lsu_list_v11(stsp_server_t* server, const sts_lsu_def_v11_t* filter,
                                         stsp_list_t** list);

/* Writes the next LSU's name, cut to fit, to `name`, a buffer of STS_LSU_NAME_SIZE bytes. The end of the list
 * is the service's fault, and its code the status; the list is then still to be closed. 2060001: null handle.
 * 2060022: the handle has no token. */
STSPI_EXPORT int stspi_list_lsu(stsp_list_t* list, char* name);

/* Ends a list. The handle is gone on success only; after a failure it may be closed again. Statuses as above.
 */
STSPI_EXPORT int stspi_close_lsu_list(stsp_list_t* list);

/* Rewrites all of `info` with what the service says of one LSU; `version` is 0. 2060001: null argument.
 * 2060022: no server in the reference. 2060026: the server has no service handle. 2060046: the service
 * answered without the LSU's properties. */
STSPI_EXPORT int stspi_get_lsu_prop_byname_v10(const stsp_lsu_v7_t* lsu, sts_lsu_info_v9_t* info);
STSPI_EXPORT int stspi_get_lsu_prop_byname_v11(const stsp_lsu_v7_t* lsu, sts_lsu_info_v11_t* info);

/* Fills the arrays with the LSU's replication partners, which must be exactly as many as asked for. An array
 * may be null if its count is 0. After a failure neither array may be read. 2060001: null reference. 2060022:
 * no server in the reference, a null array with a count, or another number of partners. 2060026: the server
 * has no service handle. 2060046: the service answered without any list of partners. */
STSPI_EXPORT int stspi_get_lsu_replication_prop(const stsp_lsu_v7_t* lsu, uint32_t nsource,
                                                sts_lsu_spec_v11_t* sources, uint32_t ntarget,
                                                sts_lsu_spec_v11_t* targets);

/* ---- images ---- */

/* Opens a list of an LSU's images; `type` goes to the service unread. 2060001: null out handle. 2060022: no
 * reference, no server in it, or no service handle in the server. 2060046: the service answered without a
 * list. */
STSPI_EXPORT int stspi_open_image_list(const stsp_lsu_v7_t* lsu, int32_t type, stsp_list_t** list);

/* Writes base name, date, policy, save-as kind and flags of the next image to `image` and leaves the rest of
 * the record alone. End of the list and statuses as for stspi_list_lsu. 2060046: the service answered without
 * an image. */
STSPI_EXPORT int stspi_list_image(stsp_list_t* list, sts_image_def_v10_t* image);

/* As stspi_close_lsu_list. */
STSPI_EXPORT int stspi_close_image_list(stsp_list_t* list);

/* Rewrites all of `info` with what the service says of an open image; the exports stay empty. 2060001: null
 * record. 2060022: no image handle, or no server in it. 2060026: the server has no service handle. 2060046:
 * the service answered without the image's properties. */
STSPI_EXPORT int stspi_get_image_prop(const stsp_image_t* image, sts_image_info_v10_t* info);

/* The same of an image by its definition. 2060001: null argument. 2060022: no server in the reference.
 * 2060026: the server has no service handle. 2060046 as above. */
STSPI_EXPORT int stspi_get_image_prop_byname(const stsp_lsu_v7_t* lsu, const sts_image_def_v10_t* image,
                                             sts_image_info_v10_t* info);

/* Deletes an image; `async_flag` goes to the service unread. 2060001, 2060022 and 2060026 as above. */
STSPI_EXPORT int stspi_delete_image(const stsp_lsu_v7_t* lsu, const sts_image_def_v10_t* image,
                                    int32_t async_flag);

/* ---- snapshots ---- */

/* Opens a list of an LSU's snapshots. 2060001: null argument. 2060022: no server in the reference. 2060026:
 * the server has no service handle. 2060046: the service answered without a list. */
STSPI_EXPORT int stspi_open_snap_list(const stsp_lsu_v7_t* lsu, stsp_list_t** list);

/* The same of a volume's snapshots. 2060001: null volume or out handle. 2060022: null server. */
STSPI_EXPORT int stspi_open_snap_list_by_volume(stsp_server_t* server, const sts_volume_spec_v11_t* volume,
                                                stsp_list_t** list);

/* Writes the next snapshot's definition to `snap`, all but the supplier id. End of the list as for
 * stspi_list_lsu. 2060001: null argument. 2060022: the handle has no token. 2060046: the service answered
 * without a snapshot. */
STSPI_EXPORT int stspi_list_snap(stsp_list_t* list, sts_snap_def_v11_t* snap);

/* As stspi_close_lsu_list. */
STSPI_EXPORT int stspi_close_snap_list(stsp_list_t* list);

/* Rewrites all of `info` with what the service says of one snapshot. The supplier id stays empty, the
 * volume's third text too, and all of a device volume. 2060001: null argument. 2060022: no server in the
 * reference. 2060026: the server has no service handle. 2060046: the service answered without the snapshot's
 * properties. */
STSPI_EXPORT int stspi_get_snap_prop_byname(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap,
                                            sts_snap_info_v11_t* info);

/* Deletes a snapshot. 2060001, 2060022 and 2060026 as above. */
STSPI_EXPORT int stspi_delete_snap(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap);

/* Asks what a rollback to a snapshot would meet, and opens a list of the snapshots that the service names,
 * to be read and closed like any other. `target_server` may be null. `rollback_list` is `num_rollbacks` rows
 * of STS_ROLLBACK_ROW_SIZE characters, one behind the other. `list` is required and not tested. 2060001: null
 * reference, definition, volume or rollback list. 2060022: no server in the reference. 2060026: the server
 * has no service handle. 2060046: the service answered without a list. */
STSPI_EXPORT int stspi_validate_rollback(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap,
                                         stsp_server_t* target_server,
                                         const sts_volume_spec_v11_t* target_volume,
                                         const char* rollback_list, uint32_t num_rollbacks,
                                         stsp_list_t** list);

/* ---- exports and volumes ----
 * An export fills `exported` with the first two texts and the kind of the volume that the service made, and
 * leaves the rest of the record alone; of a device volume it leaves all of it alone. 2060046: the service
 * answered without a volume. */

/* Exports a snapshot by name. 2060001: null argument. 2060022: no server in the reference. */
STSPI_EXPORT int stspi_create_export(const stsp_lsu_v7_t* lsu, const char* snap_name,
                                     const sts_host_spec_v11_t* host, sts_volume_spec_v11_t* exported);

/* Exports a volume. `exported` is required and not tested. 2060001: null reference, volume or host. 2060022:
 * no server in the reference. 2060026: the server has no service handle. */
STSPI_EXPORT int stspi_add_export(const stsp_lsu_v7_t* lsu, const sts_volume_spec_v11_t* source,
                                  const sts_host_spec_v11_t* host, sts_volume_spec_v11_t* exported);

/* Takes an export away. 2060001: null argument. 2060022: no server in the reference. 2060026: the server has
 * no service handle. */
STSPI_EXPORT int stspi_delete_export(const stsp_lsu_v7_t* lsu, const sts_host_spec_v11_t* host,
                                     const sts_volume_spec_v11_t* exported);

/* Tells the service that the caller claims a volume. 2060022: null server. 2060026: the server has no service
 * handle. 2060001: null volume. */
STSPI_EXPORT int stspi_claim_volume(stsp_server_t* server, const sts_volume_spec_v11_t* volume);

/* ---- I/O control ---- */

/* Bits of `ioflag`. */
enum {
    STS_IOCTL_INPUT = 1, /* `buffer` holds a text to send */
    STS_IOCTL_OUTPUT = 2 /* what comes back is written to `buffer` */
};

/* Commands that the plug-in sends itself. */
enum {
    STS_START_SNAPDIFF = 10102, /* in: first and second text of the volume, as "%s;%s" */
    STS_STOP_SNAPDIFF = 10103,  /* in: the same */
    STS_GET_PATH_MAP = 10104    /* in: snapshot name, out: the path map's document */
};

/* Passes a command to the service. With STS_IOCTL_INPUT the text of `buffer` is sent, and `len`. With
 * STS_IOCTL_OUTPUT the answer is written to `buffer`, `len` bytes long: bytes that the service counted, cut
 * to fit and ended by a terminator; or a text, cut to fit, with a terminator at the place where the whole
 * text would have ended. So the buffer must be larger than any text that the service may send. 2060001: null
 * buffer, with either bit. 2060022: null server. 2060026: the server has no service handle. */
STSPI_EXPORT int stspi_iocontrol(stsp_server_t* server, int32_t command, char* buffer, int32_t ioflag,
                                 int32_t len);

/* ---- events ----
 * A channel brings events one at a time. One that comes detached, with a kind and no payload, has its payload
 * fetched by a second call, through a server handle of the host's own; an event that is done with is deleted
 * through one too. */

/* Logs in at the service, with `session`, `server_name`, `credential` and `interface_name` as for
 * stspi_open_server, and opens a channel there; the channel keeps the login and the session for its life. The
 * two arguments behind the interface are not read. The low 32 bits of `evseqno` go to the service. Needs room
 * for two calls on the stack.
 * 2060001: session, name or out handle null, or as for stspi_open_server, whose failures are returned as they
 * are. 2060046: the service answered without a token. If it is the channel's that is missing and not the
 * login's, `channel` is written even so, and must be closed. */
STSPI_EXPORT int stspi_open_evchannel_v11(const sts_session_def_v7_t* session, const char* server_name,
                                          const sts_cred_t* credential, const char* interface_name,
                                          const void* unused1, const void* unused2, int32_t flags,
                                          int64_t evseqno, stsp_evc_t** channel);

/* Ends a channel and its login. The handle is gone whatever the status, but for two cases: it is left whole,
 * to be closed again, if the end of the login, which is the second of the two calls, gives 2060005 (busy) or
 * 2060012 (in use), and if TLS can't be set up. The same numbers from the end of the channel itself mean that
 * the handle is gone; only the log tells the two apart. Needs room for two calls on the stack. 2060001: null
 * handle. */
STSPI_EXPORT int stspi_close_evchannel(stsp_evc_t* channel);

/* Writes the next event to `event`: the head, then the kind, and an inline event's payload; what it has no
 * value for stays as it stood. An empty channel is the service's fault, and its code the status.
 * 2060001: null argument. 2060022: the channel is unusable, or the event is of an unknown kind; its head has
 * then been written. 2060046: the service answered without an event. */
STSPI_EXPORT int stspi_get_event(stsp_evc_t* channel, sts_event_v11_t* event);

/* Sends `event` to the service, which answers with its payload. A detached_kind of 6 rewrites all of
 * `activity` with it; 0 and 1 write nothing. 2060001: null record. 2060022: null server, or any other
 * detached_kind, the 2 of stspi_get_event included. 2060026: the server has no service handle. 2060046: kind
 * 6, and the service answered without an activity. */
STSPI_EXPORT int stspi_get_event_payload(stsp_server_t* server, sts_ev_activity_v11_t* activity,
                                         const sts_event_v11_t* event);

/* Deletes an event at the service. 2060022: null server. 2060026: the server has no service handle. 2060001:
 * null event. */
STSPI_EXPORT int stspi_delete_event(stsp_server_t* server, const sts_event_v11_t* event);

/* ---- change lists ---- */

/* Opens the list of the files that differ between two snapshots of an NDMP volume, from the second plug-in or
 * from the service, as the diff snapshot's supplier text and the volume direct; the service is also asked
 * when the second plug-in has no list, if there is a base snapshot. `base` may be null. `list` is cleared
 * first. `volume` is written to: on the service's route its first text is cut at the first blank. Blocks for
 * as long as a busy filer's retries last. 2060001: lsu, diff, volume or list null. 2060022: no server in
 * `lsu`. 2060026: it has no service handle. 2060017: nobody had a list, or the snapshots couldn't be read.
 * 2060020: the filer stayed busy. 2060046: the service answered without a list. 2060002: no memory for the
 * list; what may be in `list` then has no token. Throws std::out_of_range where the second plug-in is to be
 * asked and the volume's first text isn't a filer, a user and a password with blanks between them. */
STSPI_EXPORT int stspi_open_snap_change_list(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* base,
                                             const sts_snap_def_v11_t* diff, sts_volume_spec_v11_t* volume,
                                             uint32_t flags, stsp_change_list_t** list);

/* Ends a list. After a failure the handle may be closed again; what the listing knew of paths is gone, unless
 * it was the second plug-in that failed. 2060001: null handle. 2060022: a handle without a token. 2060046:
 * the list is gone, but the connection to the second plug-in wouldn't close. */
STSPI_EXPORT int stspi_close_snap_change_list(stsp_change_list_t* list);

/* The next entry, with its path as the host knows it. `filters` is `filter_count` paths of 1024 bytes each,
 * and may be null if there are none. Blocks for as long as the service asked callers to stay away. 2060001:
 * null handle or entry. 2060022: a handle without a token. 2060013: no more entries. 2060005: the service is
 * busy, call again; or another thread is reading the list, or one with the same token. 2060046: the service's
 * batch lacks entries that it counts, and none of it is delivered. 2060002: no memory for the batch, 4168
 * bytes an entry. Throws std::out_of_range for a deleted entry whose path, or the newer snapshot's export,
 * has no snapshot folder where one must be replaced. */
STSPI_EXPORT int stspi_list_file(stsp_change_list_t* list, uint32_t filter_count, const char* filters,
                                 sts_file_attr_v11_t* entry);

/* ---- long operations on snapshots: starting one ----
 * The service answers at once and goes on by itself. In the first family it makes up an id, and the host gets
 * a handle in `async`; in the second the host names the operation in `opname`, may pass the name to
 * stspi_named_async_wait_snap and stspi_named_async_status, and gets nothing but the status.
 *
 * `targets` are `ntargets` LSUs. `imageset`, `pendingflag`, `rollback_flag`, `diff_flag` and `topology` go to
 * the service unread, but that the copy's `pendingflag` counts in stspi_async_wait_snap. What an entry
 * requires and doesn't test is said there. 2060046: the service answered without an id. */

/* Makes a snapshot of a volume. `async` is required and not tested. 2060022: null server. 2060001: null
 * source, target or targets. 2060026: the server has no service handle. */
STSPI_EXPORT int stspi_async_create_snap_byname(stsp_server_t* server, const sts_volume_spec_v11_t* source,
                                                const sts_snap_def_v11_t* target,
                                                const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                stsp_async_t** async, sts_imageset_t imageset,
                                                int32_t pendingflag);
STSPI_EXPORT int stspi_named_async_create_snap_byname(stsp_server_t* server,
                                                      const sts_volume_spec_v11_t* source,
                                                      const sts_snap_def_v11_t* target,
                                                      const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                      sts_opname_t opname, sts_imageset_t imageset,
                                                      int32_t pendingflag);

/* Makes a snapshot of a volume possible. Statuses as above; 2060001 also for a null `async`. */
STSPI_EXPORT int stspi_async_prepare_snap_byname(stsp_server_t* server, const sts_volume_spec_v11_t* source,
                                                 const sts_snap_def_v11_t* target,
                                                 const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                 stsp_async_t** async, sts_imageset_t imageset,
                                                 int32_t pendingflag);
STSPI_EXPORT int stspi_named_async_prepare_snap_byname(stsp_server_t* server,
                                                       const sts_volume_spec_v11_t* source,
                                                       const sts_snap_def_v11_t* target,
                                                       const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                       sts_opname_t opname, sts_imageset_t imageset,
                                                       int32_t pendingflag);

/* Asks whether a snapshot could be made, and how. 2060001 also for a null `topology` or `async`. */
STSPI_EXPORT int stspi_async_validate_snap_byname(stsp_server_t* server, const sts_volume_spec_v11_t* source,
                                                  const sts_snap_def_v11_t* target,
                                                  const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                  const char* topology, stsp_async_t** async);
STSPI_EXPORT int stspi_named_async_validate_snap_byname(stsp_server_t* server,
                                                        const sts_volume_spec_v11_t* source,
                                                        const sts_snap_def_v11_t* target,
                                                        const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                        const char* topology, sts_opname_t opname);

/* Makes what a topology says there should be. 2060001 also for a null `topology` or `async`. */
STSPI_EXPORT int stspi_async_provision_topology(stsp_server_t* server, const sts_volume_spec_v11_t* source,
                                                const sts_snap_def_v11_t* target,
                                                const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                const char* topology, sts_imageset_t imageset,
                                                int32_t pendingflag, stsp_async_t** async);
STSPI_EXPORT int stspi_named_async_provision_topology(stsp_server_t* server,
                                                      const sts_volume_spec_v11_t* source,
                                                      const sts_snap_def_v11_t* target,
                                                      const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                      const char* topology, sts_imageset_t imageset,
                                                      int32_t pendingflag, sts_opname_t opname);

/* Makes a snapshot known that the storage has already. `async` is required and not tested. 2060022: null
 * server. 2060001: null source or snapshot. 2060026: the server has no service handle. */
STSPI_EXPORT int stspi_async_import_snap_byname(stsp_server_t* server, const sts_volume_spec_v11_t* source,
                                                const sts_snap_def_v11_t* snap, sts_imageset_t imageset,
                                                int32_t pendingflag, stsp_async_t** async);
STSPI_EXPORT int stspi_named_async_import_snap_byname(stsp_server_t* server,
                                                      const sts_volume_spec_v11_t* source,
                                                      const sts_snap_def_v11_t* snap, sts_imageset_t imageset,
                                                      int32_t pendingflag, sts_opname_t opname);

/* Copies a snapshot to other LSUs. `async` is required and not tested. 2060001: null reference, snapshot or
 * targets. 2060022: no server in the reference. 2060026: the server has no service handle. */
STSPI_EXPORT int stspi_async_copy_snap_byname(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap,
                                              const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                              stsp_async_t** async, sts_imageset_t imageset,
                                              int32_t pendingflag);
STSPI_EXPORT int stspi_named_async_copy_snap_byname(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap,
                                                    const sts_lsu_spec_v11_t* targets, uint32_t ntargets,
                                                    sts_opname_t opname, sts_imageset_t imageset,
                                                    int32_t pendingflag);

/* Has the service do what follows the making of a snapshot. `async` is required and not tested. 2060001: null
 * reference or name. 2060022: no server in the reference. */
STSPI_EXPORT int stspi_async_postprocess_snap_byname(const stsp_lsu_v7_t* lsu, const char* snap_name,
                                                     stsp_async_t** async);
STSPI_EXPORT int stspi_named_async_postprocess_snap_byname(const stsp_lsu_v7_t* lsu, const char* snap_name,
                                                           sts_opname_t opname);

/* Moves a volume back to a snapshot; `target_server` may be null. The rollback list is that of
 * stspi_validate_rollback. `async` is required and not tested. 2060001: null reference, snapshot, volume or
 * rollback list. 2060022: no server in the reference. 2060026: the server has no service handle. */
STSPI_EXPORT int stspi_async_rollback_snap(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap,
                                           stsp_server_t* target_server,
                                           const sts_volume_spec_v11_t* target_volume,
                                           const char* rollback_list, uint32_t num_rollbacks,
                                           int32_t rollback_flag, stsp_async_t** async);
STSPI_EXPORT int stspi_named_async_rollback_snap(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* snap,
                                                 stsp_server_t* target_server,
                                                 const sts_volume_spec_v11_t* target_volume,
                                                 const char* rollback_list, uint32_t num_rollbacks,
                                                 int32_t rollback_flag, sts_opname_t opname);

/* Computes what differs between a snapshot and `num_rollbacks` volumes, NFS ones only: another kind is sent
 * empty. The named form sends any `diff_flag` but 0 as true. `target_server` and `async` are required and not
 * tested. 2060022: null server. 2060026: the server has no service handle. 2060001: null snapshot or
 * volumes. */
STSPI_EXPORT int stspi_async_get_snap_diff(stsp_server_t* server, const sts_snap_def_v11_t* snapshot,
                                           stsp_server_t* target_server, const sts_volume_spec_v11_t* volumes,
                                           uint32_t num_rollbacks, int32_t diff_flag, stsp_async_t** async);
STSPI_EXPORT int stspi_named_async_get_snap_diff(stsp_server_t* server, const sts_snap_def_v11_t* snapshot,
                                                 stsp_server_t* target_server,
                                                 const sts_volume_spec_v11_t* volumes, uint32_t num_rollbacks,
                                                 int32_t diff_flag, sts_opname_t opname);

/* ---- long operations: following one ----
 * A wait asks how an operation stands. With `blockflag` 0 it asks once: an operation that still runs is a
 * success with STS_EBUSY in `aio_error`. Otherwise it sleeps for as long as the service asks (30 seconds for
 * a negative number) and asks again, until the operation has come to its end or the service can't be reached:
 * there is no other limit, and a signal shortens none of this. `session` and `record` are the host's; the
 * session is what the service is told, and need not be the server's. 2060001: null session or record.
 * 2060022: no handle, or no server in it. 2060026: the server has no service handle. 2060046: the service
 * answered without a result, and `record` is as it was. */
STSPI_EXPORT int stspi_async_wait(const sts_session_def_v7_t* session, stsp_async_t* async, int32_t blockflag,
                                  sts_async_result_t* record);

/* The same for an operation on a snapshot. Where the result is a difference, body.difference.numDiffs must
 * point at an integer of the host's, and body.difference.diffs is the host's afterwards. A copy shows 0
 * bytes, unless its `pendingflag` was set or discovery has found its server. 2060046: no result, or a
 * difference without all the objects that it counts, and `record` is as it was; or a result of no known
 * kind, and the error and the retry interval are in the record. 2060002: no memory for the rows of a
 * difference, and `record` is as it was. */
STSPI_EXPORT int stspi_async_wait_snap(const sts_session_def_v7_t* session, stsp_async_t* async,
                                       int32_t blockflag, sts_async_snap_result_t* record);

/* The same by name; a copy shows its bytes. 2060001: null record. 2060022: null server. */
STSPI_EXPORT int stspi_named_async_wait_snap(stsp_server_t* server, int32_t blockflag,
                                             sts_async_snap_result_t* record, sts_opname_t opname);

/* Asks after an operation by name. The answer is the status alone. 2060022: null server. */
STSPI_EXPORT int stspi_named_async_status(stsp_server_t* server, sts_opname_t opname);

/* Stops an operation. The handle is left as it is. 2060001: null session. 2060022: no handle, or no server in
 * it. 2060026: the server has no service handle. */
STSPI_EXPORT int stspi_async_cancel(const sts_session_def_v7_t* session, stsp_async_t* async);

#ifdef __cplusplus
}
#endif

#endif
