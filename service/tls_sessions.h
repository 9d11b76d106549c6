#ifndef SOAPWRAPPER_SERVICE_TLS_SESSIONS_H
#define SOAPWRAPPER_SERVICE_TLS_SESSIONS_H

#include <openssl/ssl.h>
#include <openssl/types.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <string>

namespace soapwrapper
{

struct FreeTlsSession {
    void operator()(SSL_SESSION* session) const { SSL_SESSION_free(session); }
};
using TlsSession = std::unique_ptr<SSL_SESSION, FreeTlsSession>;

// A session, and when the full handshake was that it goes back to.
struct KnownTlsSession {
    TlsSession session;
    std::int64_t full_handshake = 0; // in seconds
};

// What servers gave out for the next connections to them. A session is for one connection at a time: it is
// taken out, and what comes back is what that connection ended with.
class TlsSessions
{
  public:
    // As many as a host's threads that call one service at once; each costs its server's certificates.
    static constexpr std::size_t kMostPerServer = 32;
    static constexpr std::size_t kMostInAll = 256;
    // In bytes. A ticket is sent in the first message to the server, which has room for 64 KiB at the very
    // most.
    static constexpr std::size_t kLargestTicket = 16 << 10;
    // So long, in seconds, a server may go by one full handshake: then its certificate is looked at anew.
    static constexpr std::int64_t kLongestUse = 3600;

    // The newest for the server, or none.
    KnownTlsSession take(const char* host, int port);
    // Dropped if there is no use or no memory for it, or if its ticket is too large. The oldest make room.
    void keep(const char* host, int port, KnownTlsSession known);
    void forget(const char* host, int port);
    void forget_all();

  private:
    struct Entry {
        std::string host;
        int port;
        KnownTlsSession known;
        std::int64_t end; // of its use
    };

    std::mutex mutex_;
    std::list<Entry> entries_; // the newest first
};

} // namespace soapwrapper

#endif
