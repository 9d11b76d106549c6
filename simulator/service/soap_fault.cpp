#include "simulator/service/soap_fault.h"

#include "simulator/scenario/fault.h"

#include "soapwrapperH.h"

namespace soapwrapper::simulator
{

int raise_fault(soap& context, const Fault& fault)
{
    const char* text = soap_strdup(&context, fault.what());
    const int error = soap_sender_fault(&context, text, nullptr);
    ns1__STSException* exception = soap_new_ns1__STSException(&context);
    if (!exception) return context.error = SOAP_EOM;
    exception->errorCode = fault.code();

    // Asked for its text, the runtime makes the detail's record.
    soap_faultdetail(&context);
    SOAP_ENV__Detail* detail = context.version == 2 ? context.fault->SOAP_ENV__Detail : context.fault->detail;
    if (!detail) return context.error = SOAP_EOM;
    detail->ns1__STSException_ = exception;
    return error;
}

} // namespace soapwrapper::simulator
