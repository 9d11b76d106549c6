#include "service/service_call.h"

#include "service/tls_context.h"

#include <sys/socket.h>

#include <limits>
#include <sstream>

namespace soapwrapper
{

ServiceCall::ServiceCall(const EntryLog& log) : log_(log), runtime_connect_(proxy_.fopen)
{
    proxy_.user = this;
    proxy_.fopen = connect;
    proxy_.socket_flags = MSG_NOSIGNAL;
    // Without a socket the runtime would turn to the process's standard output and input.
    proxy_.sendfd = -1;
    proxy_.recvfd = -1;
    // How much a list may hold is for memory to say.
    proxy_.maxoccurs = std::numeric_limits<decltype(proxy_.maxoccurs)>::max();
    proxy_.fsslauth = share_tls_context;
    // The runtime's fixed sizes cost two system calls and keep the kernel from growing the buffers for long
    // replies.
    proxy_.sndbuf = 0;
    proxy_.rcvbuf = 0;
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

// The runtime would go by the URL's scheme. Whether a connection is encrypted is settled ahead of it.
int ServiceCall::connect(soap* context, const char* url, const char* host, int port)
{
    const auto& call = *static_cast<const ServiceCall*>(context->user);
    return call.runtime_connect_(context, call.use_https_ ? url : "http:", host, port);
}

int ServiceCall::status_of(int result, int without_fault)
{
    if (is_service_fault(result)) return status_of_fault(log_.session());
    if (somebody_listens(log_.session())) {
        std::ostringstream text;
        proxy_.soap_stream_fault(text);
        log_message(log_.session(), STS_LOG_FAILURE, text.str());
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
    if (listening) log_message(session, STS_LOG_FAILURE, text.str(), "HANDLE_SOAP_FAULT: ", status);
    return status;
}

} // namespace soapwrapper
