// An interface that a server offers, one row of its record.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_OFFERED_INTERFACE_H
#define SOAPWRAPPER_PROBE_OUTPUT_OFFERED_INTERFACE_H

#include "plugin/host/host_records.h"

#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

struct OfferedInterface {
    static constexpr std::size_t kValuesPerRow = 5;

    std::string row;                 // "major;minor;sdk;type;url"
    std::vector<std::string> values; // kValuesPerRow of them, or the row is malformed
    bool chosen = false;

    bool well_formed() const { return values.size() == kValuesPerRow; }
    int number(std::size_t value) const;
    std::string version() const;
    const std::string& type() const { return values[3]; }
    const std::string& url() const { return values[4]; }
};

// `selection` is the library's own line on the interface that it chose; without one none is.
std::vector<OfferedInterface> offered_interfaces(const sts_server_info_v8_t& info,
                                                 const std::string& selection);

} // namespace soapwrapper::probe

#endif
