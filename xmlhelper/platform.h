// The XML platform counts its starts and ends without a lock of its own, so each of ours goes through here.
#ifndef SOAPWRAPPER_XMLHELPER_PLATFORM_H
#define SOAPWRAPPER_XMLHELPER_PLATFORM_H

#include <string>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// False if the platform can't start; the reason goes to `message`, which may be null.
bool start_platform(std::string* message);

// Once for each start that succeeded.
void end_platform();

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
