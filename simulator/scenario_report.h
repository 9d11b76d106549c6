#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_REPORT_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_REPORT_H

#include <ostream>
#include <string>

namespace soapwrapper::simulator
{

// Tells what is wrong with a scenario file, a line each, and how much there is; "-" is standard input. The
// exit code that it comes to: 0 only if there is nothing to tell.
int report_on_scenario(const std::string& path, std::ostream& out);

} // namespace soapwrapper::simulator

#endif
