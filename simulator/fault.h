// A fault of the service, thrown by whatever finds it and turned into SOAP in one place.
#ifndef SOAPWRAPPER_SIMULATOR_FAULT_H
#define SOAPWRAPPER_SIMULATOR_FAULT_H

#include <stdexcept>
#include <string>

struct soap;

namespace soapwrapper::simulator
{

class Fault : public std::runtime_error
{
  public:
    // The text goes to the client: no token and no credential belongs into it.
    Fault(int code, const std::string& text) : std::runtime_error(text), code_(code) {}

    int code() const { return code_; }

  private:
    int code_;
};

// Makes the fault the answer of the request at hand: a client's fault, since of no other the library reads
// the code. Returns the SOAP error number that the operation is to end with.
int raise_fault(soap& context, const Fault& fault);

} // namespace soapwrapper::simulator

#endif
