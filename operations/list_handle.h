// The list handle, the same for LSUs, images and snapshots.
#ifndef SOAPWRAPPER_OPERATIONS_LIST_HANDLE_H
#define SOAPWRAPPER_OPERATIONS_LIST_HANDLE_H

#include "operations/reply_handle.h"
#include "plugin/base/handle_records.h"
#include "plugin/base/session_log.h"
#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"

#include <string>

namespace soapwrapper
{

// The session to log to, for the entries that log ahead of their null check: none for a null handle.
inline const sts_session_def_v7_t* session_of(const stsp_list_t* list)
{
    return list ? list->server->session : nullptr;
}

stsp_list_t* make_list(stsp_server_t* server, const std::string& token);
void destroy_list(stsp_list_t* list);

// What every open does with a good reply: a new handle in `list` for the token that came in `element`. Where
// an entry doesn't test `list`, and there is none, that is logged and the handle lost.
template <class Handle>
int hand_out_list(const Handle* reply, const char* element, stsp_server_t* server, stsp_list_t** list,
                  const EntryLog& log)
{
    if (const char* missing = missing_of(reply, element)) return log.reply_lacks(missing);
    if (list) {
        *list = make_list(server, *reply->token);
    } else {
        log.anomaly("no place for the handle");
    }
    return log.ok();
}

} // namespace soapwrapper

#endif
