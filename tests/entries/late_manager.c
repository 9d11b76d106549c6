/* A plug-in manager in a library of its own, to be loaded when a test wants it. Its second plug-in opens and
 * closes whatever it is asked to, and its lists are empty. */
#include "plugin/host/host_records.h"
#include "plugin/host/status.h"

#include <stddef.h>
#include <stdint.h>

typedef void (*Slot)(void);

__attribute__((visibility("default"))) int late_manager_starts = 0;

static int close_handle(void* handle)
{
    return handle ? STS_EOK : STS_EBADARG;
}
static int list_file(void* list)
{
    return list ? STS_ENOENT : STS_EBADARG;
}
static int open_server(void* session, const char* name, const void* credentials, const char* empty,
                       void** out)
{
    *out = session && name && credentials && empty ? &late_manager_starts : NULL;
    return STS_EOK;
}
static int open_session(const sts_session_def_v7_t* session, void** out)
{
    *out = session->session_id ? &late_manager_starts : NULL;
    return STS_EOK;
}
static int open_list(const void* lsu, const void* base, const void* diff, const void* volume, uint32_t flags,
                     void** out)
{
    *out = lsu && base && diff && volume && flags ? &late_manager_starts : NULL;
    return STS_EOK;
}

__attribute__((visibility("default"))) int stsm_init(uint64_t version, const char* path, const Slot** api)
{
    static Slot table[128];
    table[24] = (Slot)close_handle;
    table[25] = (Slot)close_handle;
    table[79] = (Slot)list_file;
    table[109] = (Slot)open_server;
    table[110] = (Slot)open_session;
    table[111] = (Slot)open_list;
    ++late_manager_starts;
    *api = table;
    return version == 12 && path ? STS_EOK : STS_EINTERFACE;
}
