#include "changelist/zapi_api.h"

#include "plugin/host/host_records.h"
#include "plugin/host/status.h"

#include <cstdint>
#include <dlfcn.h>

const sts_api_slot* sts_api = nullptr;

namespace soapwrapper
{
namespace
{

// Looked for by name and not linked, because a host may load its manager after this library, or have none.
template <class Function>
Function* manager_function(const char* name)
{
    void* found = dlsym(RTLD_DEFAULT, name);
    if (!found) dlerror(); // the message is nothing to the host, which may ask for one of its own
    return reinterpret_cast<Function*>(found);
}

} // namespace

int sts_init(std::uint64_t version, const char* plugin_path)
{
    if (version != STS_API_VERSION) return STS_EINTERFACE;
    if (!plugin_path) return STS_ENULLARG;
    auto* const init = manager_function<stsm_init_fn>("stsm_init");
    return init ? init(version, plugin_path, &sts_api) : sts_notinit();
}

int sts_terminate()
{
    auto* const terminate = manager_function<stsm_terminate_fn>("stsm_terminate");
    if (!terminate) return sts_notinit();
    const int result = terminate();
    if (result == STS_EINUSE) return STS_EOK;
    if (result == STS_EOK) sts_api = nullptr;
    return result;
}

int sts_notinit()
{
    return STS_ENOTINIT;
}

int api_close(sts_handle_s* handle)
{
    return sts_api ? STS_API_OPERATION(sts_api, sts_api_close)(handle, 0) : sts_notinit();
}

int api_close_snap_change_list(sts_handle_s* list)
{
    return sts_api ? STS_API_OPERATION(sts_api, sts_api_close_snap_change_list)(list) : sts_notinit();
}

int api_list_file(sts_handle_s* list, std::uint32_t filter_count, const char* filters,
                  sts_file_attr_v11_t* entry)
{
    return sts_api ? STS_API_OPERATION(sts_api, sts_api_list_file)(list, filter_count, filters, entry)
                   : sts_notinit();
}

int api_open_server(sts_handle_s* session, const char* server_name, const sts_cred_block* credentials,
                    sts_handle_s** server)
{
    return sts_api ? STS_API_OPERATION(sts_api, sts_api_open_server)(session, server_name, credentials, "",
                                                                     server)
                   : sts_notinit();
}

int api_open_session(sts_session_def_v7_t* definition, sts_handle_s** session)
{
    return sts_api ? STS_API_OPERATION(sts_api, sts_api_open_session)(definition, session) : sts_notinit();
}

int api_open_snap_change_list(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* base,
                              const sts_snap_def_v11_t* diff, sts_volume_spec_v11_t* volume,
                              std::uint32_t flags, sts_handle_s** list)
{
    return sts_api ? STS_API_OPERATION(sts_api, sts_api_open_snap_change_list)(lsu, base, diff, volume, flags,
                                                                               list)
                   : sts_notinit();
}

} // namespace soapwrapper
