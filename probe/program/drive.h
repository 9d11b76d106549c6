// A command, from the loading of the library to the exit code.
#ifndef SOAPWRAPPER_PROBE_PROGRAM_DRIVE_H
#define SOAPWRAPPER_PROBE_PROGRAM_DRIVE_H

#include "probe/commands/command.h"
#include "probe/program/common_options.h"

namespace soapwrapper::probe
{

// Loads the library, has `run` do its work with it and ends the output. The result is the exit code.
int drive_library(const CommonOptions& options, const Run& run);

} // namespace soapwrapper::probe

#endif
