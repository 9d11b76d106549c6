#ifndef SOAPWRAPPER_TESTS_KIT_LOOPBACK_H
#define SOAPWRAPPER_TESTS_KIT_LOOPBACK_H

#include <arpa/inet.h>
#include <netinet/in.h>

#include <cstdint>

namespace kit
{

// 127.0.0.1; with port 0 the system draws one.
inline sockaddr_in loopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

} // namespace kit

#endif
