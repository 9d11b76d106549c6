// The server handle, to which all other operations lead back: open, open through another, close, properties.
#include "conversion/server_information.h"
#include "operations/handle_text.h"
#include "operations/reply_handle.h"
#include "plugin/base/bounded_text.h"
#include "plugin/base/handle_records.h"
#include "plugin/base/plugin_globals.h"
#include "plugin/base/session_log.h"
#include "plugin/host/entry_points.h"
#include "service/configuration.h"
#include "service/discovery.h"
#include "service/service_call.h"
#include "service/wire_session.h"

#include <cstdlib>
#include <cstring>
#include <string>

using namespace soapwrapper;

namespace
{

// Where the service of a server is: the URL in kUrlSize bytes at `endpoint`, and whether to use TLS. A URL in
// the file wins over discovery's, and yet discovery's choice is the one that decides about TLS.
bool find_endpoint(const sts_session_def_v7_t* session, const char* server_name, const char* host,
                   char* endpoint)
{
    const MutexLock lock(gMutex);
    const bool in_file = find_ss_name_in_conf(session, host, endpoint);
    const auto chosen = gServerEndPointMap.find(server_name);
    if (chosen == gServerEndPointMap.end()) {
        if (!in_file) V_snprintf(endpoint, kUrlSize, "http://%s:8085", host);
        return false;
    }
    if (!in_file) V_strlcpy(endpoint, chosen->second.url.c_str(), kUrlSize);
    return chosen->second.type == "https";
}

stsp_server_t* make_handle(const char* server_name, const sts_session_def_v7_t* session,
                           const std::string& token, const char* endpoint, bool use_https)
{
    auto* server = new stsp_server_t();
    V_strlcpy(server->server_name, server_name, sizeof server->server_name);
    server->session = session;
    server->service_handle = allocate_text(token);
    server->endpoint = allocate_text(endpoint, kEndpointSize);
    server->use_https = use_https;
    return server;
}

} // namespace

extern "C" int stspi_open_server(const sts_session_def_v7_t* session, const char* server_name,
                                 const sts_cred_t* credential, const char* required_interface,
                                 stsp_server_t** server)
{
    if (!session || !server || !server_name) return STS_ENULLARG;
    const EntryLog log(session, "stspi_open_server");
    log.enter();
    if (!credential) {
        log.failure("null credentials not supported");
        return STS_ENULLARG;
    }
    const char* colon = std::strchr(server_name, ':');
    if (!colon) {
        log.failure("no colon in server_name = ", server_name);
        return STS_ENULLARG;
    }
    const char* host = colon + 1;
    log.record("new server_name = ", host);

    ServiceCall call(log);
    char endpoint[kUrlSize];
    const bool use_https = find_endpoint(session, server_name, host, endpoint);
    call.set_endpoint(endpoint);
    log.record("soap_endpoint = ", endpoint);
    WireSession sd(*session);
    WireCredential cred(*credential);
    call.set_https(use_https);
    if (const Failure failure = call.secure()) return *failure;

    _ns1__openServer request;
    request.sd = sd.get();
    request.server = server_name;
    request.cred = cred.get();
    request.requiredInterface = required_interface ? required_interface : "";
    _ns1__openServerResponse response;
    if (const Failure failure = call.send(&Service::openServer, request, response)) return *failure;
    if (const char* missing = missing_of(response.serverHandle, "serverHandle")) {
        return log.reply_lacks(missing);
    }
    *server = make_handle(server_name, session, *response.serverHandle->token, endpoint, use_https);
    return log.ok();
}

extern "C" int stspi_open_target_server(stsp_server_t* source, const char* target_name,
                                        const sts_cred_t* credential, const char* interface_name,
                                        stsp_server_t** target)
{
    if (!source) return STS_EBADARG;
    if (!source->service_handle) return STS_ENOSERVICEHANDLE;
    const EntryLog log(source->session, "stspi_open_target_server");
    if (!target) log.anomaly("no place for the handle");
    if (!target_name || !credential || !target) return STS_ENULLARG;
    log.enter();
    ServiceCall call(*source, log);
    if (const Failure failure = call.secure()) return *failure;

    WireServerHandle server_handle(source->service_handle);
    WireCredential cred(*credential);
    _ns1__openTargetServer request;
    request.serverHandle = server_handle.get();
    request.server = target_name;
    request.cred = cred.get();
    request.interface = interface_name ? interface_name : "";
    _ns1__openTargetServerResponse response;
    if (const Failure failure = call.send(&Service::openTargetServer, request, response)) return *failure;
    if (const char* missing = missing_of(response.targetServerHandle, "targetServerHandle")) {
        return log.reply_lacks(missing);
    }
    // The service reaches the target, so the target's calls go where the source's go.
    *target = make_handle(target_name, source->session, *response.targetServerHandle->token, source->endpoint,
                          source->use_https);
    return log.ok();
}

extern "C" int stspi_close_server(stsp_server_t* server)
{
    if (!server) return STS_ENULLARG;
    const EntryLog log(server->session, "stspi_close_server");
    log.enter();
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;
    log.record("soap_endpoint = ", text_or_empty(server->endpoint));
    if (!server->service_handle) return STS_EBADARG;

    WireServerHandle server_handle(server->service_handle);
    _ns1__closeServer request;
    request.serverHandle = server_handle.get();
    _ns1__closeServerResponse response;
    if (const Failure failure = call.send(&Service::closeServer, request, response)) return *failure;
    std::free(server->service_handle);
    std::free(server->endpoint);
    delete server;
    return log.ok();
}

extern "C" int stspi_get_server_prop(stsp_server_t* server, sts_server_info_v8_t* info)
{
    if (!server || !info) return STS_ENULLARG;
    const EntryLog log(server->session, "stspi_get_server_prop");
    log.enter();
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;

    WireServerHandle server_handle(server->service_handle);
    _ns1__getServerProp request;
    request.serverHandle = server_handle.get();
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;
    _ns1__getServerPropResponse response;
    // No return code is logged here, and an unreachable service is told by a status of its own.
    if (const int result = call.send_quietly(&Service::getServerProp, request, response)) {
        return call.status_of(result, STS_ENOSERVICEHANDLE);
    }
    if (!response.info) return log.reply_lacks("info");
    set_server_info_from_soap(info, response.info, server->session);
    return log.ok();
}
