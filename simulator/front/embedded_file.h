#ifndef SOAPWRAPPER_SIMULATOR_FRONT_EMBEDDED_FILE_H
#define SOAPWRAPPER_SIMULATOR_FRONT_EMBEDDED_FILE_H

#include <string_view>

namespace soapwrapper::simulator
{

// A file that the program carries within itself.
struct EmbeddedFile {
    std::string_view name;
    std::string_view bytes;
};

} // namespace soapwrapper::simulator

#endif
