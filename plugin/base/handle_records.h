// What stands behind the host's handles, as far as the host isn't told in plugin/host/handles.h.
#ifndef SOAPWRAPPER_PLUGIN_BASE_HANDLE_RECORDS_H
#define SOAPWRAPPER_PLUGIN_BASE_HANDLE_RECORDS_H

#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"

#include <cstddef>

namespace soapwrapper
{
constexpr std::size_t kEndpointSize = 256;
}

struct stsp_server {
    char* endpoint;                      // malloc, kEndpointSize bytes
    char* service_handle;                // malloc, exactly the text with its terminator
    const sts_session_def_v7_t* session; // the host's, borrowed
    char server_name[STS_SERVER_NAME_SIZE];
    bool use_https; // what discovery chose; not derived from the endpoint's text
};

struct stsp_list {
    stsp_server_t* server; // borrowed
    char* token;           // malloc, exactly the text with its terminator
};

struct stsp_evc {
    stsp_server_t* server;               // the channel's own
    const sts_session_def_v7_t* session; // the host's, borrowed
    char* token;                         // malloc, exactly the text with its terminator
};

struct sts_handle_s; // the second plug-in's

// A list of the service has no cells and no volume.
struct stsp_change_list {
    stsp_server_t* server; // borrowed
    char* token;           // malloc
    sts_handle_s** zapi_list_cell;
    sts_handle_s** zapi_server_cell;
    sts_handle_s** zapi_session_cell;
    sts_volume_spec_v11_t* volume_copy; // malloc
};

#endif
