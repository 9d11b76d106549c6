// A fault of the service, thrown by whatever finds it.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_FAULT_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_FAULT_H

#include <stdexcept>
#include <string>

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

} // namespace soapwrapper::simulator

#endif
