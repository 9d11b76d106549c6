#include "changelist/zapi_connection.h"

#include "plugin/bounded_text.h"
#include "plugin/plugin_globals.h"
#include "plugin/session_log.h"
#include "plugin/status.h"

#include <unistd.h>

#include <cstring>

namespace soapwrapper
{
namespace
{

constexpr std::uint64_t kZapiVersion = 12;
constexpr std::int32_t kZapiSessionFlags = 15;
constexpr std::size_t kHostNameSize = 257;

// 1 from the first connection on, whether or not the start of the second plug-in succeeded. Under gMutex.
std::int32_t zapi_initialized = 0;

struct ConnectionText {
    std::string host;
    std::string user;
    std::string password;
};

// A text with fewer than two blanks is not supported: the cut then throws.
ConnectionText split(const std::string& connection)
{
    const std::size_t first_blank = connection.find(' ');
    const std::string behind_host = connection.substr(first_blank).substr(1);
    const std::size_t second_blank = behind_host.find(' ');
    return {connection.substr(0, first_blank), behind_host.substr(0, second_blank),
            behind_host.substr(second_blank).substr(1)};
}

sts_cred_block make_credentials(const ConnectionText& text)
{
    sts_cred_block block{};
    V_strlcpy(block.names, text.user.c_str(), sizeof block.names - 1);
    const std::size_t used = std::strlen(block.names) + 1;
    V_strlcpy(block.names + used, text.password.c_str(), sizeof block.names - used);
    return block;
}

// A session of the second plug-in's with the text that it points at.
struct ZapiSession {
    sts_session_def_v7_t definition{};
    char id[14] = "zapi_via_soap";
    ZapiSession* next = nullptr;
};

// The second plug-in keeps the session that it is given, as any plug-in does, and there is no telling for how
// long: it may outlive this library in the process. It differs only by the callback, so one for each callback
// stays for good. Under gMutex.
ZapiSession* g_sessions = nullptr;

sts_session_def_v7_t* session_for(sts_log_callback_t callback)
{
    const MutexLock lock(gMutex);
    for (ZapiSession* known = g_sessions; known; known = known->next) {
        if (known->definition.log_callback == callback) return &known->definition;
    }
    auto* session = new ZapiSession();
    // Written once: the second plug-in reads it on any thread, without our lock.
    session->definition.session_id = session->id;
    session->definition.log_callback = callback;
    session->definition.session_flags = kZapiSessionFlags;
    session->next = g_sessions;
    g_sessions = session;
    return &session->definition;
}

// The one-time start. Another first connection waits here, and then finds it done.
int start_once(const EntryLog& log)
{
    const MutexLock lock(gMutex);
    if (zapi_initialized) return STS_EOK;
    log.record(" doing sts_init");
    const int result = sts_init(kZapiVersion, pluginPath.c_str());
    zapi_initialized = 1;
    return result;
}

} // namespace

int open_zapi_connection(const std::string& connection, const sts_session_def_v7_t* session,
                         sts_handle_s** zapi_session, sts_handle_s** zapi_server)
{
    const EntryLog log(session, "open_zapi_connection");
    char host_name[kHostNameSize];
    if (const int result = gethostname(host_name, sizeof host_name)) {
        log_message(session, STS_LOG_FAILURE, "Fail to get hostname. error : ", result);
        return result;
    }
    const ConnectionText text = split(connection);
    sts_cred_block credentials = make_credentials(text);
    char server_name[STS_SERVER_NAME_SIZE];
    V_snprintf(server_name, sizeof server_name, "ZAPI:%s", text.host.c_str());

    if (start_once(log) != STS_EOK) {
        log.record("failed to open sts_init");
        return STS_ENULLARG;
    }
    if (api_open_session(session_for(session ? session->log_callback : nullptr), zapi_session) != STS_EOK) {
        log.record("failed to open zapi session");
        return STS_ENULLARG;
    }
    log.record("succeed to open zapi session");

    const int status = api_open_server(*zapi_session, server_name, &credentials, zapi_server);
    explicit_bzero(&credentials, sizeof credentials);
    if (status == STS_EOK) {
        log.record("succeed to open zapi server");
        return STS_EOK;
    }
    *zapi_server = nullptr;
    log.record("failed to open zapi server");
    if (*zapi_session) {
        const bool closed = api_close(*zapi_session) == STS_EOK;
        log.record(closed ? "succeed to close zapi session" : "failed to close zapi session");
    }
    return status;
}

int close_zapi_connection(sts_handle_s* zapi_session, sts_handle_s* zapi_server,
                          const sts_session_def_v7_t* session)
{
    const EntryLog log(session, "close_zapi_connection");
    int status = STS_EOK;
    if (zapi_server) {
        status = api_close(zapi_server);
        log.record(status == STS_EOK ? "succeed to close zapi server" : "failed to close zapi server");
    }
    if (zapi_session) {
        status = api_close(zapi_session);
        log.record(status == STS_EOK ? "succeed to close zapi session" : "failed to close zapi session");
    }
    return status;
}

} // namespace soapwrapper
