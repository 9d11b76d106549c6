#include "changelist/zapi_connection.h"

#include "changelist/zapi_api.h"
#include "plugin/base/bounded_text.h"
#include "plugin/base/plugin_globals.h"
#include "plugin/base/session_log.h"
#include "plugin/base/wipe.h"
#include "plugin/host/host_records.h"
#include "plugin/host/status.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <new> // IWYU pragma: keep: the placement
#include <stdexcept>
#include <string>
#include <string_view>

namespace soapwrapper
{
namespace
{

constexpr std::int32_t kZapiSessionFlags = 15;
constexpr std::size_t kHostNameSize = 257;

// 1 from the first connection on, whether or not the start of the second plug-in succeeded. Under gMutex.
std::int32_t zapi_initialized = 0;

// Views of the whole text, because a copy of the password would have to be wiped.
struct ConnectionText {
    std::string_view host;
    std::string_view user;
    std::string_view password;
};

// A text with fewer than two blanks is not supported.
ConnectionText split(std::string_view connection)
{
    const std::size_t first_blank = connection.find(' ');
    const std::size_t second_blank = connection.find(' ', first_blank + 1);
    // Thrown here and not by the cut: the host may read the text, and the standard library words its own.
    if (first_blank == std::string_view::npos || second_blank == std::string_view::npos) {
        throw std::out_of_range("basic_string::substr");
    }
    return {connection.substr(0, first_blank),
            connection.substr(first_blank + 1, second_blank - first_blank - 1),
            connection.substr(second_blank + 1)};
}

// The block is zeroed, so that each text has its terminator where it ends.
void fill_credentials(sts_cred_block& block, const ConnectionText& text)
{
    const std::size_t user = text.user.copy(block.names, sizeof block.names - 2);
    text.password.copy(block.names + user + 1, sizeof block.names - user - 2);
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

// Not from the heap, where it would be taken for a leak once the library is unloaded. Null without memory.
ZapiSession* make_immortal_session()
{
    void* memory =
        mmap(nullptr, sizeof(ZapiSession), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : new (memory) ZapiSession();
}

sts_session_def_v7_t* session_for(sts_log_callback_t callback)
{
    const MutexLock lock(gMutex);
    for (ZapiSession* known = g_sessions; known; known = known->next) {
        if (known->definition.log_callback == callback) return &known->definition;
    }
    ZapiSession* session = make_immortal_session();
    if (!session) return nullptr;
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
    log.record(" doing sts_init"); // with its blank, on purpose
    const int result = sts_init(STS_API_VERSION, pluginPath.c_str());
    zapi_initialized = 1;
    return result;
}

} // namespace

int open_zapi_connection(std::string_view connection, const sts_session_def_v7_t* session,
                         sts_handle_s** zapi_session, sts_handle_s** zapi_server)
{
    const EntryLog log(session, "open_zapi_connection");
    char host_name[kHostNameSize];
    if (const int result = gethostname(host_name, sizeof host_name)) {
        log_message(session, STS_LOG_FAILURE, "Fail to get hostname. error : ", result);
        return result;
    }
    const ConnectionText text = split(connection);
    sts_cred_block credentials{};
    const WipeAtEnd wiped(credentials);
    fill_credentials(credentials, text);
    char server_name[STS_SERVER_NAME_SIZE];
    V_snprintf(server_name, sizeof server_name, "ZAPI:%.*s", static_cast<int>(text.host.size()),
               text.host.data());

    if (start_once(log) != STS_EOK) {
        log.record("failed to open sts_init");
        return STS_ENULLARG;
    }
    sts_session_def_v7_t* const zapi_definition = session_for(session ? session->log_callback : nullptr);
    if (!zapi_definition || api_open_session(zapi_definition, zapi_session) != STS_EOK) {
        log.record("failed to open zapi session");
        return STS_ENULLARG;
    }
    log.record("succeed to open zapi session");

    const int status = api_open_server(*zapi_session, server_name, &credentials, zapi_server);
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
