#include "simulator/service/service.h"

#include "simulator/front/http.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/text.h"
#include "simulator/service/call.h"
#include "simulator/service/change_list_requests.h"
#include "simulator/service/damaged_answer.h"
#include "simulator/service/events.h"
#include "simulator/service/exchange_of.h"
#include "simulator/service/exports.h"
#include "simulator/service/image_copies.h"
#include "simulator/service/images.h"
#include "simulator/service/interference.h"
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
#include "simulator/service/trouble.h"
#include "simulator/service/unserved.h"
#include "simulator/storage/model.h"
#include "simulator/traffic/exchange.h"

#include <chrono>
#include <exception>
#include <memory>
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
// wrong goes wrong, then the handler answers, and what it throws becomes the fault. Where the trouble is that
// the operation isn't performed, nothing is written, and whoever serves the request puts another answer in
// its place.
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

    // What became of the request.
    const char* operation() const
    {
        return operation_;
    }
    const std::optional<int>& fault_code() const
    {
        return fault_code_;
    }
    const Met& met() const
    {
        return met_;
    }
    std::string outcome() const;

  private:
    std::string soap_outcome() const;

    template <class Request, class Response>
    int answer(const char* operation, const Request* request, Response& response)
    {
        operation_ = operation;
        if (bounds_.check() != SOAP_OK) return error;
        try {
            backend_.model.get()->use()->request_arrived();
            met_ = backend_.interference.meet(operation);
            if (met_.trouble && met_.trouble->kind == TroubleKind::kFault) {
                throw Fault(met_.trouble->code, std::string(operation) + " fails on demand");
            }
            if (met_.trouble && !is_performed(met_.trouble->kind)) return SOAP_STOP;
            const std::shared_ptr<Model> model = backend_.model.get();
            Call call(*model, *this);
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
    Met met_;
};

std::string Service::outcome() const
{
    const bool is_damaged = met_.trouble && met_.trouble->kind != TroubleKind::kFault;
    const std::string damage = is_damaged ? "trouble: " + std::string(name_of(met_.trouble->kind)) : "";
    if (is_damaged && !is_performed(met_.trouble->kind)) return damage;
    return soap_outcome() + (is_damaged ? ", " + damage : "");
}

std::string Service::soap_outcome() const
{
    if (!fault) return "ok";
    const char* text = version == 2 ? (fault->SOAP_ENV__Reason ? fault->SOAP_ENV__Reason->SOAP_ENV__Text : "")
                                    : fault->faultstring;
    const std::string shown = printable(text ? text : "");
    return fault_code_ ? "fault " + std::to_string(*fault_code_) + ", " + shown : "fault, " + shown;
}

Answer answer_of(const Service& service, std::string reply)
{
    const std::optional<Trouble>& trouble = service.met().trouble;
    if (trouble && !is_performed(trouble->kind) && trouble->kind != TroubleKind::kFault) {
        return damaged({}, *trouble);
    }
    if (reply.empty()) return refusal(400);
    Answer answer;
    answer.status = service.fault ? 500 : 200;
    answer.content_type =
        service.version == 2 ? "application/soap+xml; charset=utf-8" : "text/xml; charset=utf-8";
    answer.body = std::move(reply);
    return trouble ? damaged(std::move(answer), *trouble) : answer;
}

// Tells of the exchange what the service knows, and answers.
Answer perform(const Backend& backend, const std::string& message, Exchange& exchange)
{
    try {
        std::istringstream in(message);
        std::ostringstream out;
        Service service(backend);
        service.is = &in;
        service.os = &out;
        service.serve();

        exchange.operation = service.operation();
        exchange.outcome = service.outcome();
        exchange.fault_code = service.fault_code();
        const Met& met = service.met();
        if (met.was_delayed) exchange.trouble = name_of(TroubleKind::kDelay);
        if (met.trouble) exchange.trouble = name_of(met.trouble->kind);
        return answer_of(service, out.str());
    } catch (const std::exception& trouble) {
        exchange.operation = "-";
        exchange.outcome = "failed, " + printable(trouble.what());
        return refusal(500);
    }
}

} // namespace

Answer serve_request(const Backend& backend, const Request& request)
{
    const auto start = std::chrono::steady_clock::now();
    try {
        Exchange exchange = exchange_of(request);
        Answer answer = perform(backend, request.body, exchange);
        backend.log.line(request.is_tls, request.client, exchange.operation, exchange.outcome);
        add_answer(exchange, answer, std::chrono::steady_clock::now() - start);
        const std::shared_ptr<const Exchange> kept = backend.recorder.add(std::move(exchange));
        if (backend.dump) backend.dump->write(*kept);
        return answer;
    } catch (const std::exception& trouble) {
        return refusal(500);
    }
}

} // namespace soapwrapper::simulator
