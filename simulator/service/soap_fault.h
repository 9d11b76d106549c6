// A fault as the answer of a request.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_SOAP_FAULT_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_SOAP_FAULT_H

#include "simulator/scenario/fault.h"

struct soap;

namespace soapwrapper::simulator
{

// Makes the fault the answer of the request at hand: a client's fault, since of no other the library reads
// the code. Returns the SOAP error number that the operation is to end with.
int raise_fault(soap& context, const Fault& fault);

} // namespace soapwrapper::simulator

#endif
