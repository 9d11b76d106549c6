#ifndef SOAPWRAPPER_SIMULATOR_FRONT_SESSION_TICKETS_H
#define SOAPWRAPPER_SIMULATOR_FRONT_SESSION_TICKETS_H

#include <gnutls/gnutls.h>
#include <microhttpd.h>

namespace soapwrapper::simulator
{

// Lets TLS clients resume an earlier session, which spares both sides most of a handshake. The HTTP library
// has no option for that, but shows the session of a connection before its handshake.
class SessionTickets
{
  public:
    // Throws a std::runtime_error.
    SessionTickets();
    ~SessionTickets();
    SessionTickets(const SessionTickets&) = delete;
    SessionTickets& operator=(const SessionTickets&) = delete;

    // For a connection that has just been accepted.
    void offer(MHD_Connection* connection) const;

  private:
    gnutls_datum_t key_{};
};

} // namespace soapwrapper::simulator

#endif
