#ifndef SOAPWRAPPER_PROBE_COMPLETION_EMBEDDED_FILE_H
#define SOAPWRAPPER_PROBE_COMPLETION_EMBEDDED_FILE_H

#include <string_view>

namespace soapwrapper::probe
{

// A file that the program carries within itself.
struct EmbeddedFile {
    std::string_view name;
    std::string_view bytes;
};

} // namespace soapwrapper::probe

#endif
