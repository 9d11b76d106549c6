#ifndef SOAPWRAPPER_PROBE_WIRE_UNPACKING_H
#define SOAPWRAPPER_PROBE_WIRE_UNPACKING_H

#include <cstddef>
#include <string>
#include <string_view>

namespace soapwrapper::probe::wire
{

struct Unpacked {
    std::string bytes;
    bool is_whole = false;
};

// Out of gzip, zlib's format or bare deflate: as much as can be had, and no more than `most` bytes.
Unpacked unpack(std::string_view packed, std::size_t most);

} // namespace soapwrapper::probe::wire

#endif
