// What stands behind the host's handles.
#ifndef SOAPWRAPPER_PLUGIN_HANDLE_RECORDS_H
#define SOAPWRAPPER_PLUGIN_HANDLE_RECORDS_H

#include "plugin/host_records.h"

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

#endif
