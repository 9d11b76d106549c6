// The request that makes a filer ready for a snapshot difference, and its end.
#ifndef SOAPWRAPPER_CHANGELIST_START_REQUEST_H
#define SOAPWRAPPER_CHANGELIST_START_REQUEST_H

#include "plugin/base/handle_records.h"
#include "plugin/base/session_log.h"
#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"

namespace soapwrapper
{

// Asks until the filer is ready, with a growing pause between the tries, where the server is one that needs
// asking. STS_EOK, or STS_ETIMEDOUT if the filer never got ready. Cuts the server's name at its first colon.
int start_snapdiff(stsp_server_t& server, const sts_volume_spec_v11_t& volume, const EntryLog& log);

// Tells the filer that the difference is done with. What it answers is of no account.
void stop_snapdiff(stsp_server_t& server, const sts_volume_spec_v11_t& volume);

} // namespace soapwrapper

#endif
