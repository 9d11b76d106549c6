// The library itself: where it was found, what it was built with, and what it needs.
#ifndef SOAPWRAPPER_PROBE_CHECK_LIBRARY_CHECK_H
#define SOAPWRAPPER_PROBE_CHECK_LIBRARY_CHECK_H

#include "probe/check/check_report.h"
#include "probe/library/plugin_library.h"
#include "probe/output/problem.h"

namespace soapwrapper::probe
{

void check_library(const PluginLibrary& library, CheckReport& report);

// The same of one that can't be driven.
void report_unusable_library(const LibraryPlaces& places, const Problem& problem, CheckReport& report);

} // namespace soapwrapper::probe

#endif
