// The one place from which the library sleeps and asks for the time. Both go to the C library by name, and
// nowhere else, so that a test program can put its own in their place.
#ifndef SOAPWRAPPER_SERVICE_CLOCK_H
#define SOAPWRAPPER_SERVICE_CLOCK_H

#include <unistd.h>

#include <cstdint>
#include <ctime>

namespace soapwrapper
{

// Blocks the calling thread. A signal that comes in between doesn't shorten the time.
inline void pause_for(unsigned int seconds)
{
    while (seconds > 0) seconds = sleep(seconds);
}

// In whole seconds.
inline std::int64_t now()
{
    return std::time(nullptr);
}

} // namespace soapwrapper

#endif
