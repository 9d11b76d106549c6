// A socket where clients come in, plain or TLS, and the HTTP library's daemon that carries them from there
// on.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_ENTRANCE_H
#define SOAPWRAPPER_SIMULATOR_FRONT_ENTRANCE_H

#include "simulator/front/descriptor.h"
#include "simulator/front/http.h"
#include "simulator/front/session_tickets.h"
#include "simulator/front/tls_identity.h"
#include "simulator/front/tls_version.h"

#include <microhttpd.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>

namespace soapwrapper::simulator
{

struct Listener {
    Descriptor socket;
    std::optional<TlsIdentity> tls; // without one, plain HTTP
    TlsVersion newest_tls = TlsVersion::kTls13;
    Serves serves = Serves::kHosts;
};

// Whom the library tells of its connections and their requests.
struct EntranceCalls {
    MHD_AccessHandlerCallback request;
    MHD_NotifyConnectionCallback connection;
    void* context;
};

// The daemon has no thread of its own: it does what there is to do when it is run.
class Entrance
{
  public:
    // Throws a std::runtime_error with a text for the user.
    Entrance(Listener listener, const EntranceCalls& calls, std::size_t connections);

    int listening_fd() const { return listener_.socket.get(); }
    bool is_tls() const { return listener_.tls.has_value(); }
    Serves serves() const { return listener_.serves; }
    // One more client. False, with errno, if none could be accepted.
    bool accept();
    void close();
    // For the library's word of a client that it has taken in and not yet heard.
    void prepare(MHD_Connection* connection) const;

    // Readable when there is something to do.
    int fd() const;
    // After that time there is, all the same. It is never none: nobody who waits so long keeps a processor
    // busy.
    std::optional<std::chrono::milliseconds> time_to_wait() const;
    void run();

  private:
    struct Stop {
        void operator()(MHD_Daemon* daemon) const { MHD_stop_daemon(daemon); }
    };

    Listener listener_;
    std::optional<SessionTickets> tickets_;
    std::unique_ptr<MHD_Daemon, Stop> daemon_;
};

} // namespace soapwrapper::simulator

#endif
