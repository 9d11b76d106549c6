// What the numbers mean that the library's entries return.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_STATUS_TEXT_H
#define SOAPWRAPPER_PROBE_OUTPUT_STATUS_TEXT_H

namespace soapwrapper::probe
{

struct StatusText {
    int status;
    const char* name;
    const char* meaning;
};

// For a number that the library's interface doesn't name: it is the storage service's own.
StatusText status_text(int status);

// "STS_EBUSY"; null for a number that the interface doesn't name.
const char* status_name(int status);

} // namespace soapwrapper::probe

#endif
