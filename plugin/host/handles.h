/* What the plug-in hands to the host to hold. The records behind these types are the plug-in's own, but for
 * the two whose fields are told here. */
#ifndef SOAPWRAPPER_PLUGIN_HOST_HANDLES_H
#define SOAPWRAPPER_PLUGIN_HOST_HANDLES_H

#include <stdint.h>

/* An open server session: made by stspi_open_server and stspi_open_target_server, ended by
 * stspi_close_server. Every other handle borrows one and must be closed before it. */
typedef struct stsp_server stsp_server_t;

/* An open list of LSUs, images or snapshots: made by the open entry of its kind and ended by the close entry
 * of the same kind. The service keeps its place in the list. */
typedef struct stsp_list stsp_list_t;

/* A started operation: made by the stspi_async_* entries that start one. No entry ends it, and nothing of it
 * is ever released, so it may be waited on any number of times, for as long as its server is open.
 *
 * No entry makes one of an operation's id either, and so its fields are told here. A host may read and keep
 * the id, and follow or cancel the operation by it at another time, in another process too: through a record
 * of its own, cleared but for an open server and the id. The entries that take a record neither change it nor
 * keep it. A record that the plug-in made is only to be read. */
typedef struct stsp_async {
    stsp_server_t* server; /* for an operation on an LSU, that of the reference */
    char* op_token;        /* the id, as the service made it up; null if there was no memory for it */
    int32_t pendingflag;   /* that of the start, or 0; stspi_async_wait_snap reads it for a copy */
} stsp_async_t;

/* An open image. No entry makes one, so its two fields are told here: the server under which the image is
 * open, and the service's token for it. Both stay the host's. */
typedef struct stsp_image {
    stsp_server_t* server;
    const char* token;
} stsp_image_t;

/* An open channel of events: made by stspi_open_evchannel_v11 and ended by stspi_close_evchannel. It has an
 * open server of its own, for as long as it lives. */
typedef struct stsp_evc stsp_evc_t;

/* An open list of what differs between two snapshots: made by stspi_open_snap_change_list and ended by
 * stspi_close_snap_change_list. Driven by one thread at a time. */
typedef struct stsp_change_list stsp_change_list_t;

#endif
