// What the HTTP library has no way to do to a client. It is told to end the connection afterwards.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_PAST_LIBRARY_H
#define SOAPWRAPPER_SIMULATOR_FRONT_PAST_LIBRARY_H

#include <microhttpd.h>

#include <string_view>

namespace soapwrapper::simulator
{

// Sends the bytes as they are, in the TLS session if there is one: as many as the socket takes at once, and
// no more than kMaxRaw.
void send_raw(MHD_Connection* connection, std::string_view bytes);

// Sends a TCP reset. Whatever is sent on that socket later, such as the end of a TLS session, reaches nobody.
void reset_peer(int socket);

} // namespace soapwrapper::simulator

#endif
