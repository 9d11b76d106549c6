// What --version says.
#ifndef SOAPWRAPPER_PROBE_PROGRAM_VERSION_H
#define SOAPWRAPPER_PROBE_PROGRAM_VERSION_H

#include "probe/program/common_options.h"

#include <string>

namespace soapwrapper::probe
{

// The releases of the program and of the library that the options name, in the form that they ask for. A
// library that can't be loaded is told as such.
std::string version_text(const CommonOptions& options);

} // namespace soapwrapper::probe

#endif
