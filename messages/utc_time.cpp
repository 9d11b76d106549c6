#include "messages/utc_time.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>

namespace soapwrapper::messages
{

std::string utc_time(std::chrono::system_clock::time_point time)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(time - seconds).count();
    const std::time_t whole = std::chrono::system_clock::to_time_t(seconds);
    std::tm parts = {};
    gmtime_r(&whole, &parts);
    char date[32];
    char fraction[8];
    std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &parts);
    std::snprintf(fraction, sizeof fraction, ".%03dZ", static_cast<int>(milliseconds));
    return std::string(date) + fraction;
}

} // namespace soapwrapper::messages
