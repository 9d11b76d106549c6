#include "service/service_call.h"

#include "plugin/base/session_log.h"
#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "plugin/host/status.h"
#include "service/channel_settings.h"
#include "service/endpoint.h"
#include "service/reply_bounds.h"
#include "service/tls_connection.h"
#include "service/tls_context.h"
#include "service/transport.h"
#include "service/wire_text.h"

#include <sys/socket.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>
#include <sstream>
#include <string>

namespace soapwrapper
{

namespace
{

ServiceCall& call_of(soap* context)
{
    return *static_cast<ServiceCall*>(context->user);
}

// A fault's rendering, in the encoding that the host's log has.
std::string loggable(const std::ostringstream& text)
{
    return channel_settings().texts_are_utf8 ? to_valid_utf8(text.str()) : text.str();
}

} // namespace

ServiceCall::ServiceCall(const EntryLog& log) : log_(log)
{
    install_hooks();
    proxy_.socket_flags = MSG_NOSIGNAL;
    // Without a socket the runtime would turn to the process's standard output and input.
    proxy_.sendfd = -1;
    proxy_.recvfd = -1;
    // How much a reply and a list in it may hold is for memory to say; how deep it nests, for the stack.
    proxy_.recv_maxlength = 0;
    proxy_.maxoccurs = std::numeric_limits<decltype(proxy_.maxoccurs)>::max();
    proxy_.maxlevel = kDeepestLevel;
    const ChannelSettings& settings = channel_settings();
    proxy_.connect_timeout = settings.connect_timeout;
    proxy_.send_timeout = settings.reply_timeout;
    proxy_.recv_timeout = settings.reply_timeout;
    if (settings.texts_are_utf8) soap_set_mode(&proxy_, SOAP_C_UTFSTRING);
}

void ServiceCall::install_hooks()
{
    proxy_.user = this;
    proxy_.fopen = connect;
    proxy_.fsend = send_bytes;
    proxy_.frecv = receive;
    proxy_.fpreparerecv = check_block;
    proxy_.fsslauth = share_tls_context;
}

ServiceCall::ServiceCall(const stsp_server_t& server, const EntryLog& log) : ServiceCall(log)
{
    set_endpoint(server.endpoint);
    set_https(server.use_https);
}

Failure ServiceCall::secure(const sts_session_def_v7_t* session)
{
    if (!use_https_) return std::nullopt;
    sigpipe_guard_.emplace(); // over TLS the runtime's own flag against the signal has no effect
    if (soap_ssl_client_context(&proxy_, 0, nullptr, nullptr, nullptr, nullptr, nullptr) == SOAP_OK) {
        return std::nullopt;
    }
    // Neither the error number nor the fault record is looked at here: rendering makes a record.
    return status_of_fault(session);
}

int ServiceCall::prepare()
{
    bounds_.begin();
    if (is_service_url(&proxy_, proxy_.soap_endpoint)) return SOAP_OK;
    soap_set_version(&proxy_, 1);
    return soap_set_receiver_error(&proxy_, "No http:// or https:// URL with a host", proxy_.soap_endpoint,
                                   SOAP_TCP_ERROR);
}

// Whether a connection is encrypted is settled ahead of the URL, which has a say only against it.
int ServiceCall::connect(soap* context, const char* url, const char* host, int port)
{
    ServiceCall& call = call_of(context);
    const bool encrypted = call.use_https_ && is_https(url);
    const ChannelSettings& settings = channel_settings();
    if (settings.unusable) {
        return fail(context, "soapwrapper.conf has a value that can't be followed", settings.unusable);
    }
    if (!encrypted && settings.require_tls) {
        return fail(context, "require_tls in soapwrapper.conf forbids a plain connection", url);
    }
    return encrypted ? open_tls_connection(context, host, port, call.full_handshake_)
                     : open_connection(context, host, port);
}

std::size_t ServiceCall::receive(soap* context, char* bytes, std::size_t count)
{
    const std::size_t received = receive_bytes(context, bytes, std::min(count, kLargestRead));
    call_of(context).bounds_.came_over_wire(received);
    return received;
}

int ServiceCall::check_block(soap* context, const char* /*bytes*/, std::size_t count)
{
    return call_of(context).bounds_.check(context, count);
}

// A refusal by the service is an answer as good as any; whatever else fails speaks against the connection.
int ServiceCall::finish(int result)
{
    const int checked = bounds_.check_call(&proxy_, result);
    if (checked == SOAP_OK || is_service_fault(checked)) keep_tls_session(&proxy_, full_handshake_);
    return checked;
}

int ServiceCall::status_of(int result, int without_fault)
{
    if (is_service_fault(result)) return status_of_fault(log_.session());
    if (somebody_listens(log_.session())) {
        std::ostringstream text;
        proxy_.soap_stream_fault(text);
        log_message(log_.session(), STS_LOG_FAILURE, loggable(text));
    }
    return without_fault;
}

int ServiceCall::status_of_fault(const sts_session_def_v7_t* session)
{
    std::ostringstream text;
    const bool listening = somebody_listens(session);
    if (listening) proxy_.soap_stream_fault(text);
    const SOAP_ENV__Fault* fault = proxy_.fault;
    const bool has_code = fault && fault->detail && fault->detail->ns1__STSException_;
    const int status = has_code ? fault->detail->ns1__STSException_->errorCode : STS_EFAULTDETAIL;
    if (listening) log_message(session, STS_LOG_FAILURE, loggable(text), "HANDLE_SOAP_FAULT: ", status);
    return status;
}

} // namespace soapwrapper
