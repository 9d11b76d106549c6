// What somebody may have meant who typed something else.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_NEAREST_H
#define SOAPWRAPPER_PROBE_OUTPUT_NEAREST_H

#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

// How many letters have to be put in, left out, changed or swapped with the next one. It takes as long as
// both are, multiplied.
std::size_t changes_between(const std::string& one, const std::string& other);

// Those of the known words that are nearest to the typed one, if they are near at all: by these
// changes. A beginning is near, too.
std::vector<std::string> nearest(const std::string& typed, const std::vector<std::string>& known);

} // namespace soapwrapper::probe

#endif
