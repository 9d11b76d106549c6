#include "simulator/front/session_tickets.h"

#include <gnutls/gnutls.h>
#include <microhttpd.h>

#include <stdexcept>

namespace soapwrapper::simulator
{

SessionTickets::SessionTickets()
{
    if (gnutls_session_ticket_key_generate(&key_) != GNUTLS_E_SUCCESS) {
        throw std::runtime_error("can't make the key of the TLS session tickets");
    }
}

SessionTickets::~SessionTickets()
{
    gnutls_memset(key_.data, 0, key_.size);
    gnutls_free(key_.data);
}

void SessionTickets::offer(MHD_Connection* connection) const
{
    const MHD_ConnectionInfo* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_GNUTLS_SESSION);
    // Should it fail, the handshake is a whole one.
    if (info) gnutls_session_ticket_enable_server(static_cast<gnutls_session_t>(info->tls_session), &key_);
}

} // namespace soapwrapper::simulator
