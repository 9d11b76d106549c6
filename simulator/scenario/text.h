#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_TEXT_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_TEXT_H

#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

// A client's text as it may stand in a log line or a fault: of bounded length, and a question mark for every
// byte that isn't printable ASCII.
std::string printable(std::string_view text);

} // namespace soapwrapper::simulator

#endif
