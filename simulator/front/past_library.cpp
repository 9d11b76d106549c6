#include "simulator/front/past_library.h"

#include "simulator/front/limits.h"

#include <gnutls/gnutls.h>
#include <microhttpd.h>
#include <sys/socket.h>

#include <string_view>

namespace soapwrapper::simulator
{

void send_raw(MHD_Connection* connection, std::string_view bytes)
{
    const std::string_view taken = bytes.substr(0, kMaxRaw);
    if (const auto* tls = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_GNUTLS_SESSION)) {
        gnutls_record_send(static_cast<gnutls_session_t>(tls->tls_session), taken.data(), taken.size());
        return;
    }
    const int socket = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd;
    send(socket, taken.data(), taken.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

// To be set to linger for no time would reset it at its close only: the library shuts it down ahead of that.
void reset_peer(int socket)
{
    sockaddr nobody{};
    nobody.sa_family = AF_UNSPEC;
    connect(socket, &nobody, sizeof nobody);
}

} // namespace soapwrapper::simulator
