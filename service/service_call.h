// The frame around every call of the service: one proxy, one connection, one request, and what becomes of a
// failure. What an entry does with a good reply stands in the entry.
#ifndef SOAPWRAPPER_SERVICE_SERVICE_CALL_H
#define SOAPWRAPPER_SERVICE_SERVICE_CALL_H

#include "plugin/base/handle_records.h"
#include "plugin/base/session_log.h"
#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "plugin/host/status.h"
#include "service/reply_bounds.h"
#include "service/sigpipe_guard.h"

#include <cstddef>
#include <cstdint>
#include <optional>

#include "soapwrapperPSVWSSoapBindingProxy.h"

namespace soapwrapper
{

// The status of what failed, if it did. A service may fail a call with the status 0: then the entry ends, and
// returns 0, without a reply to read.
using Failure = std::optional<int>;

// The binding's proxy, under a name with which the send of an entry stands on one line.
using Service = PSVWSSoapBindingProxy;

// The long form of the proxy's operation for a request and its response.
template <class Request, class Response>
using Operation = int (Service::*)(const char* endpoint, const char* action, Request*, Response&);

// One call. The object holds the whole SOAP context, and the reply's memory with it: what a reply says is
// copied out while the call lives.
class ServiceCall
{
  public:
    // Logs under the entry's name; `log` must outlive the call.
    explicit ServiceCall(const EntryLog& log);
    // The same, to where the handle points.
    ServiceCall(const stsp_server_t& server, const EntryLog& log);
    ~ServiceCall() = default;
    ServiceCall(const ServiceCall&) = delete;
    ServiceCall& operator=(const ServiceCall&) = delete;

    // The URL is borrowed. A null one leads nowhere, as an empty one does.
    void set_endpoint(const char* url) { proxy_.soap_endpoint = url ? url : ""; }
    void set_https(bool use_https) { use_https_ = use_https; }
    // In seconds; 0 waits for as long as the channel's settings let it.
    void set_connect_timeout(int seconds)
    {
        if (seconds > 0) proxy_.connect_timeout = seconds;
    }

    // Sets up TLS where the call is to use it. A failure is told to the log's session, or to another.
    Failure secure() { return secure(log_.session()); }
    Failure secure(const sts_session_def_v7_t* session);

    // Sends the request, logs the return code, and turns a failure into a status, which it logs.
    template <class Request, class Response>
    Failure send(Operation<Request, Response> operation, Request& request, Response& response)
    {
        const int result = send_quietly(operation, request, response);
        log_.return_code(result);
        return failure_of(result);
    }

    // The bare call: a SOAP error number, nothing logged.
    template <class Request, class Response>
    int send_quietly(Operation<Request, Response> operation, Request& request, Response& response)
    {
        if (const int error = prepare()) return error;
        return finish((proxy_.*operation)(nullptr, nullptr, &request, response));
    }

    // What a result of send_quietly means, logged if it is a failure.
    Failure failure_of(int result)
    {
        if (result == SOAP_OK) return std::nullopt;
        return status_of(result, STS_ESOAPERROR);
    }

    // Gives back the memory of the reply so far, where a call asks more than once.
    void release_reply() { proxy_.destroy(); }

    // Whether the result of a call is a fault that the service sent, and that says something of its own.
    bool is_service_fault(int result) const
    {
        return (result == SOAP_CLI_FAULT || result == SOAP_FAULT) && proxy_.fault;
    }

    // The status of a failed call, logged as a failure: what the service's fault says, or `without_fault`
    // where there is no fault to read.
    int status_of(int result, int without_fault);

  private:
    // The runtime's hooks.
    static int connect(soap* context, const char* url, const char* host, int port);
    static std::size_t receive(soap* context, char* bytes, std::size_t count);
    static int check_block(soap* context, const char* bytes, std::size_t count);

    void install_hooks();
    // Ahead of a request: a SOAP error number where it mustn't be sent.
    int prepare();
    // Behind its reply: what the call came to, as a SOAP error number.
    int finish(int result);
    int status_of_fault(const sts_session_def_v7_t* session);

    const EntryLog& log_;
    // Ahead of the proxy, because closing a TLS connection may raise the signal too.
    std::optional<SigpipeGuard> sigpipe_guard_;
    Service proxy_;
    ReplyBounds bounds_;
    bool use_https_ = false;
    std::int64_t full_handshake_ = 0; // when it was that a TLS connection goes back to
};

} // namespace soapwrapper

#endif
