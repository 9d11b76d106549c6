// What --fault and --delay ask for.
#ifndef SOAPWRAPPER_SIMULATOR_TROUBLE_OPTIONS_H
#define SOAPWRAPPER_SIMULATOR_TROUBLE_OPTIONS_H

#include "simulator/service/trouble.h"

#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// The values of the two options, each in its order. Throws a CLI::ValidationError.
std::vector<Trouble> troubles_in(const std::vector<std::string>& faults,
                                 const std::vector<std::string>& delays);

} // namespace soapwrapper::simulator

#endif
