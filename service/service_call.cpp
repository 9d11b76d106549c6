#include "service/service_call.h"

#include "service/tls_context.h"

#include <sys/socket.h>

#include <sstream>

namespace soapwrapper
{

ServiceCall::ServiceCall(const EntryLog& log) : log_(log)
{
    proxy_.socket_flags = MSG_NOSIGNAL;
    proxy_.fsslauth = share_tls_context;
}

ServiceCall::ServiceCall(const stsp_server_t& server, const EntryLog& log) : ServiceCall(log)
{
    set_endpoint(server.endpoint);
    set_https(server.use_https);
}

Failure ServiceCall::secure()
{
    if (!use_https_) return std::nullopt;
    sigpipe_guard_.emplace(); // over TLS the runtime's own flag against the signal has no effect
    if (soap_ssl_client_context(&proxy_, 0, nullptr, nullptr, nullptr, nullptr, nullptr) == SOAP_OK) {
        return std::nullopt;
    }
    // Neither the error number nor the fault record is looked at here: rendering makes a record.
    return status_of_fault();
}

int ServiceCall::status_of(int result, int without_fault)
{
    if ((result == SOAP_CLI_FAULT || result == SOAP_FAULT) && proxy_.fault) return status_of_fault();
    if (somebody_listens(log_.session())) {
        std::ostringstream text;
        proxy_.soap_stream_fault(text);
        log_message(log_.session(), STS_LOG_FAILURE, text.str());
    }
    return without_fault;
}

int ServiceCall::status_of_fault()
{
    std::ostringstream text;
    const bool listening = somebody_listens(log_.session());
    if (listening) proxy_.soap_stream_fault(text);
    const SOAP_ENV__Fault* fault = proxy_.fault;
    const bool has_code = fault && fault->detail && fault->detail->ns1__STSException_;
    const int status = has_code ? fault->detail->ns1__STSException_->errorCode : STS_EFAULTDETAIL;
    if (listening) log_message(log_.session(), STS_LOG_FAILURE, text.str(), "HANDLE_SOAP_FAULT: ", status);
    return status;
}

} // namespace soapwrapper
