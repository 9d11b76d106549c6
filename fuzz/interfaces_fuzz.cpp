// The rows of a service's interface list, as they stand in the host's record. A line feed of the input begins
// the next row; a row that is full has no terminator of its own.
#include "service/discovery.h"

#include <cstdint>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    struct Rows {
        char row[STS_INTERFACES][STS_INTERFACE_SIZE];
    };
    const auto rows = std::make_unique<Rows>();
    std::size_t number = 0;
    std::size_t column = 0;
    for (std::size_t i = 0; i < size && number < STS_INTERFACES; ++i) {
        if (data[i] == '\n' || column == STS_INTERFACE_SIZE) {
            ++number;
            column = 0;
        } else {
            rows->row[number][column++] = static_cast<char>(data[i]);
        }
    }
    interface_detail chosen;
    soapwrapper::determine_endpoint(rows->row, chosen, nullptr);
    return 0;
}
