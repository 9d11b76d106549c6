#ifndef SOAPWRAPPER_MESSAGES_UTC_TIME_H
#define SOAPWRAPPER_MESSAGES_UTC_TIME_H

#include <chrono>
#include <string>

namespace soapwrapper::messages
{

// With milliseconds, as "2026-11-22T17:40:01.123Z".
std::string utc_time(std::chrono::system_clock::time_point time);

} // namespace soapwrapper::messages

#endif
