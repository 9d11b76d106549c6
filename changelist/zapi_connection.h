// A session and a server on the second plug-in, for the length of one change list.
#ifndef SOAPWRAPPER_CHANGELIST_ZAPI_CONNECTION_H
#define SOAPWRAPPER_CHANGELIST_ZAPI_CONNECTION_H

#include "changelist/zapi_api.h"
#include "plugin/host/host_records.h"

#include <string_view>

namespace soapwrapper
{

// `connection` is "host user password"; the password is all that follows the second blank. Starts the second
// plug-in at the first call of the process. Returns a status. Throws std::out_of_range for a text with fewer
// than two blanks.
int open_zapi_connection(std::string_view connection, const sts_session_def_v7_t* session,
                         sts_handle_s** zapi_session, sts_handle_s** zapi_server);

// Either handle may be null. Returns the status of the last close that was made. Silent without a session.
int close_zapi_connection(sts_handle_s* zapi_session, sts_handle_s* zapi_server,
                          const sts_session_def_v7_t* session);

} // namespace soapwrapper

#endif
