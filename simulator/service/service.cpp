#include "simulator/service/service.h"

#include "simulator/front/http.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/text.h"
#include "simulator/service/call.h"
#include "simulator/service/change_list_requests.h"
#include "simulator/service/events.h"
#include "simulator/service/exports.h"
#include "simulator/service/image_copies.h"
#include "simulator/service/images.h"
#include "simulator/service/iocontrol.h"
#include "simulator/service/lsus.h"
#include "simulator/service/operation_starts.h"
#include "simulator/service/operation_waits.h"
#include "simulator/service/request_bounds.h"
#include "simulator/service/service_operations.h"
#include "simulator/service/sessions.h"
#include "simulator/service/snapshots.h"
#include "simulator/service/soap_fault.h"
#include "simulator/service/text_encoding.h"
#include "simulator/service/unserved.h"

#include <exception>
#include <new>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

#include "soapwrapperPSVWSSoapBindingService.h"

#include "PSVWSSoapBinding.nsmap"

namespace soapwrapper::simulator
{
namespace
{

soap_mode mode_for(TextEncoding encoding)
{
    return encoding == TextEncoding::kUtf8 ? SOAP_ENC_PLAIN | SOAP_C_UTFSTRING : SOAP_ENC_PLAIN;
}

// The generated skeleton with its operations filled in. Each goes the same road: what the user asked to go
// wrong goes wrong, then the handler answers, and what it throws becomes the fault.
class Service : public PSVWSSoapBindingService
{
  public:
    explicit Service(const Backend& backend)
        : PSVWSSoapBindingService(mode_for(backend.text_encoding)), backend_(backend)
    {
    }

#define SOAPWRAPPER_DECLARE(name, answered)                                                                  \
    int name(_ns1__##name* request, _ns1__##answered& response) override                                     \
    {                                                                                                        \
        return answer(#name, request, response);                                                             \
    }
    SOAPWRAPPER_SIMULATED_OPERATIONS(SOAPWRAPPER_DECLARE)
#undef SOAPWRAPPER_DECLARE

    // The runtime would also take a bare element for a message.
    int dispatch() override
    {
        if (version == 0) {
            soap_set_version(this, 1);
            return soap_sender_fault(this, "the request has no SOAP envelope", nullptr);
        }
        return PSVWSSoapBindingService::dispatch();
    }

    PSVWSSoapBindingService* copy() override
    {
        return new (std::nothrow) Service(backend_);
    }

    // What became of the request, for the log.
    const char* operation() const
    {
        return operation_;
    }
    std::string outcome() const;

  private:
    template <class Request, class Response>
    int answer(const char* operation, const Request* request, Response& response)
    {
        operation_ = operation;
        if (bounds_.check() != SOAP_OK) return error;
        try {
            backend_.model.use()->request_arrived();
            backend_.interference.apply(operation);
            Call call(backend_.model, *this);
            handle(call, required(request, operation), response);
            return SOAP_OK;
        } catch (const Fault& raised) {
            fault_code_ = raised.code();
            return raise_fault(*this, raised);
        } catch (const std::exception& trouble) {
            return soap_receiver_fault(this, "the simulator failed", nullptr);
        }
    }

    const Backend& backend_;
    RequestBounds bounds_{*this};
    const char* operation_ = "-";
    std::optional<int> fault_code_;
};

std::string Service::outcome() const
{
    if (!fault) return "ok";
    const char* text = version == 2 ? (fault->SOAP_ENV__Reason ? fault->SOAP_ENV__Reason->SOAP_ENV__Text : "")
                                    : fault->faultstring;
    const std::string shown = printable(text ? text : "");
    return fault_code_ ? "fault " + std::to_string(*fault_code_) + ", " + shown : "fault, " + shown;
}

} // namespace

Answer serve_request(const Backend& backend, const Request& request)
{
    try {
        std::istringstream in(request.body);
        std::ostringstream out;
        Service service(backend);
        service.is = &in;
        service.os = &out;
        service.serve();

        std::string reply = out.str();
        backend.log.line(request.is_tls, request.client, service.operation(), service.outcome());
        if (reply.empty()) return refusal(400);
        const bool is_soap_12 = service.version == 2;
        return {service.fault ? 500 : 200,
                is_soap_12 ? "application/soap+xml; charset=utf-8" : "text/xml; charset=utf-8",
                std::move(reply),
                {},
                nullptr};
    } catch (const std::exception& trouble) {
        backend.log.line(request.is_tls, request.client, "-", "failed, " + printable(trouble.what()));
        return refusal(500);
    }
}

} // namespace soapwrapper::simulator
