/* What a host in C makes of the public headers. */
#ifndef SOAPWRAPPER_TESTS_INTERFACE_C_HOST_H
#define SOAPWRAPPER_TESTS_INTERFACE_C_HOST_H

#include "plugin/host/slots.h"

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct CHostLayout {
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
    size_t operation;
    size_t operation_id;
} CHostLayout;

CHostLayout c_host_layout_seen(void);

/* Asks the claim entry of a table for this name: of the main one, and of the old one. */
int c_host_claims(const stspi_slot_t* main_table, const char* name);
int c_host_claims_of_old(const stspi_slot_t* old_table, const char* name);

/* Stops the operation with this id, which was started at another time. The log has a session of its own. */
int c_host_cancels(const stspi_slot_t* main_table, stsp_server_t* server, char* id);

/* Claims a volume at no server, through the second table. */
int c_host_claims_volume(const stspi_slot_t* second_table, const sts_volume_spec_v11_t* volume);

#ifdef __cplusplus
}
#endif

#endif
