// What somebody may have meant who typed something else.
#ifndef SOAPWRAPPER_PROBE_PROGRAM_NEAREST_H
#define SOAPWRAPPER_PROBE_PROGRAM_NEAREST_H

#include <string>
#include <vector>

namespace soapwrapper::probe
{

// Those of the known words that are nearest to the typed one, if they are near at all: by the letters that
// would have to be put in, left out, changed or swapped with the next one. A beginning is near, too.
std::vector<std::string> nearest(const std::string& typed, const std::vector<std::string>& known);

} // namespace soapwrapper::probe

#endif
