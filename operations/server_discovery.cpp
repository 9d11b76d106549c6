#include "operations/server_discovery.h"

#include "conversion/server_information.h"
#include "plugin/base/bounded_text.h"
#include "plugin/base/plugin_globals.h"
#include "plugin/base/session_log.h"
#include "plugin/host/entry_points.h"
#include "service/configuration.h"
#include "service/discovery.h"
#include "service/service_call.h"
#include "service/wire_session.h"

#include <cstring>
#include <string>

using namespace soapwrapper;

namespace
{

constexpr char kEntry[] = "stspi_get_server_prop_byname";

// The first pass bounds the wait for a dead address, the second takes a slow one as well.
constexpr unsigned int kTimeouts[] = {10, 0};

} // namespace

namespace soapwrapper
{

int get_server_prop_from_URL(const sts_session_def_v7_t* session, const std::string& server_name,
                             const char* url, sts_server_info_v8_t* info, unsigned int timeout)
{
    const EntryLog log(session, kEntry);
    ServiceCall call(log);
    // The one place where the scheme decides, and not a handle.
    call.set_https(std::strncmp(url, "https:", 6) == 0);
    if (const Failure failure = call.secure()) return *failure;
    call.set_endpoint(url);
    call.set_connect_timeout(static_cast<int>(timeout));
    log.record("soap_endpoint = ", url);

    WireSession sd(*session);
    _ns1__getServerPropByName request;
    request.sd = sd.get();
    request.server = server_name;
    _ns1__getServerPropByNameResponse response;
    if (const Failure failure = call.send(&Service::getServerPropByName, request, response)) return *failure;
    if (!response.info) return log.reply_lacks("info");

    // The host's record is written before the choice, and stays written if nothing will do.
    set_server_info_from_soap(info, response.info, session);
    interface_detail chosen;
    if (!determine_endpoint(info->requiredInterface, chosen, session)) {
        log_message(session, STS_LOG_FAILURE, "Could not find a compatible plugin version");
        return STS_EVERSION;
    }
    log_message(session, STS_LOG_RECORD, "Interface selected: major ", chosen.major, " minor ", chosen.minor,
                " sdk ", chosen.sdk, " type ", chosen.type, " url ", chosen.url);
    if (!chosen.url.empty()) {
        const MutexLock lock(gMutex);
        gServerEndPointMap[server_name] = chosen;
    }
    return log.ok();
}

} // namespace soapwrapper

extern "C" int stspi_get_server_prop_byname(const sts_session_def_v7_t* session, const char* server_name,
                                            sts_server_info_v8_t* info)
{
    if (!session || !server_name || !info) return STS_ENULLARG;
    const EntryLog log(session, kEntry);
    log.enter();
    log.record("server_name = ", server_name);
    const char* colon = std::strchr(server_name, ':');
    if (!colon) return STS_ENULLARG;
    const char* host = colon + 1;
    log.record("new server_name = ", host);

    char url[kUrlSize];
    if (find_ss_name_in_conf(session, host, url)) {
        return get_server_prop_from_URL(session, server_name, url, info, 0);
    }
    int status = STS_EOK;
    for (const unsigned int timeout : kTimeouts) {
        V_snprintf(url, sizeof url, "https://%s:8086", host);
        status = get_server_prop_from_URL(session, server_name, url, info, timeout);
        if (status == STS_EOK) return status;
        log.record("could not use https with timeout=", timeout, "; trying http now");

        V_snprintf(url, sizeof url, "http://%s:8085", host);
        status = get_server_prop_from_URL(session, server_name, url, info, timeout);
        if (status == STS_EOK) return status;
        log.record("could not use http as well with timeout=", timeout);
    }
    return status;
}
