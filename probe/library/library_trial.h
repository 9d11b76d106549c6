// The library, tried out in a process of its own before it is loaded in this one.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_LIBRARY_TRIAL_H
#define SOAPWRAPPER_PROBE_LIBRARY_LIBRARY_TRIAL_H

#include "probe/library/plugin_library.h"
#include "probe/output/problem.h"

#include <chrono>
#include <optional>

namespace soapwrapper::probe
{

// What a library may take from the beginning of its loading to the end of its unloading.
constexpr std::chrono::milliseconds kTrialLimit = std::chrono::seconds(10);

// Has a child process load the library, greet it and unload it. A library that ends that process, or holds it
// up, is a Problem that says how and where. One that merely can't be loaded, or refuses, is none here:
// loading it tells why. Nor is there one if this program is to end before it is known, by a signal or because
// it is `end_of_run`. To be called while this process has one thread.
std::optional<Problem>
try_library(const LibraryPlaces& places, std::chrono::milliseconds limit = kTrialLimit,
            std::chrono::steady_clock::time_point end_of_run = std::chrono::steady_clock::time_point::max());

} // namespace soapwrapper::probe

#endif
