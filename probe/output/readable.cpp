#include "probe/output/readable.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <iterator>
#include <string>

namespace soapwrapper::probe
{
namespace
{

std::string two_digits(std::int64_t number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

} // namespace

std::string readable_bytes(std::int64_t bytes)
{
    constexpr double kStep = 1024;
    static constexpr const char* kUnits[] = {"KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    if (bytes < static_cast<std::int64_t>(kStep)) return std::to_string(bytes) + " B";
    double number = static_cast<double>(bytes) / kStep;
    std::size_t unit = 0;
    // What would be rounded to 1024 is one of the next unit.
    while (number >= kStep - 0.5 && unit + 1 < std::size(kUnits)) {
        number /= kStep;
        ++unit;
    }
    char text[64];
    std::snprintf(text, sizeof text, "%.*f %s", number < 99.95 ? 1 : 0, number, kUnits[unit]);
    return text;
}

std::string amount_of_bytes(std::int64_t bytes, bool exact)
{
    return exact ? std::to_string(bytes) + " bytes" : readable_bytes(bytes);
}

std::string utc_time(std::int64_t seconds)
{
    const auto time = static_cast<std::time_t>(seconds);
    std::tm parts = {};
    char text[64];
    if (!gmtime_r(&time, &parts) || parts.tm_year < -1900 || parts.tm_year > 9999 - 1900 ||
        std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts) == 0) {
        return std::to_string(seconds);
    }
    return text;
}

std::string readable_time(std::chrono::seconds time)
{
    const std::int64_t seconds = time.count();
    const std::string tail = ":" + two_digits(seconds % 60);
    const std::int64_t minutes = seconds / 60;
    if (minutes < 60) return std::to_string(minutes) + tail;
    return std::to_string(minutes / 60) + ":" + two_digits(minutes % 60) + tail;
}

} // namespace soapwrapper::probe
