/* What a host in C makes of the public headers. */
#ifndef SOAPWRAPPER_TESTS_INTERFACE_C_HOST_H
#define SOAPWRAPPER_TESTS_INTERFACE_C_HOST_H

#include "plugin/host/entry_points.h"

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct c_host_layout {
    size_t plugin_def;
    size_t plugin_def_release;
    size_t plugin_def3;
    size_t session;
    size_t session_id;
    size_t session_callback;
    size_t session_flags;
    size_t credential;
    size_t credential_bytes;
    size_t server_info;
    size_t image_info;
    size_t lsu_info;
    size_t file_attributes;
} c_host_layout;

c_host_layout c_host_layout_seen(void);

/* Asks the table's claim entry for this name. */
int c_host_claims(const stspi_slot_t* table, const char* name);

#ifdef __cplusplus
}
#endif

#endif
