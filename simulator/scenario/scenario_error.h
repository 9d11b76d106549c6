#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_ERROR_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_SCENARIO_ERROR_H

#include <stdexcept>

namespace soapwrapper::simulator
{

// Says where a scenario is wrong and what is expected there.
class ScenarioError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

} // namespace soapwrapper::simulator

#endif
