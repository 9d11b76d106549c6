#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_SERIAL_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_SERIAL_H

#include <cstdint>

namespace soapwrapper::simulator
{

// Never given twice, and larger for what was made later.
using Serial = std::uint64_t;

} // namespace soapwrapper::simulator

#endif
