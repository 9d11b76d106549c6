// Where to listen, as text and as sockets.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_ADDRESS_H
#define SOAPWRAPPER_SIMULATOR_FRONT_ADDRESS_H

#include "simulator/front/descriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

struct Address {
    std::string host; // a name or a number, without brackets
    std::uint16_t port = 0;
};

// "HOST:PORT", an IPv6 number in brackets.
std::optional<Address> parse_address(std::string_view text);

// "HOST:PORT" again, with brackets where they belong.
std::string to_string(const Address& address);

// A listening socket that doesn't block. Throws a std::runtime_error with a text for the user.
Descriptor listen_on(const Address& address);

// Whether it is a number that this machine alone reaches.
bool is_loopback(const Address& address);

// The address that a socket is bound to or, with `peer`, connected to.
Address address_of(int socket, bool peer = false);

} // namespace soapwrapper::simulator

#endif
