// Numbers as people like to read them.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_READABLE_H
#define SOAPWRAPPER_PROBE_OUTPUT_READABLE_H

#include <chrono>
#include <cstdint>
#include <string>

namespace soapwrapper::probe
{

// "512 B", "1.5 GiB": below a hundred of a unit with one digit behind the point.
std::string readable_bytes(std::int64_t bytes);

// The size within a sentence: "1.5 GiB", or to the byte "1610612736 bytes".
std::string amount_of_bytes(std::int64_t bytes, bool exact);

// "2026-01-12T00:00:00Z", from seconds since 1970; a number that is no time of the calendar stays one.
std::string utc_time(std::int64_t seconds);

// "0:05", "12:00", "1:00:00".
std::string readable_time(std::chrono::seconds time);

} // namespace soapwrapper::probe

#endif
