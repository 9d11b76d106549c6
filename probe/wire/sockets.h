// The sockets that the library has connected, or is connecting.
#ifndef SOAPWRAPPER_PROBE_WIRE_SOCKETS_H
#define SOAPWRAPPER_PROBE_WIRE_SOCKETS_H

#include "probe/wire/tap.h"

#include <sys/socket.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace soapwrapper::probe::wire
{

struct Tapped {
    Connection connection;
    bool is_under_way = false; // nobody has learned yet what came of it
};

class Sockets
{
  public:
    // The process's. It outlives all else, since descriptors are closed until the very end.
    static Sockets& instance();

    Sockets();

    // A name is being looked up, and no longer. False: it mustn't be.
    bool begin_lookup(const std::string& place);
    void end_lookup();

    // Of the next connection.
    std::uint64_t next_number();

    // Begins to connect, in any case without waiting; the result is the system's. Nothing: it mustn't.
    std::optional<int> connect(int socket, const sockaddr* address, socklen_t size, Connection connection);

    // A socket that is on its way, once it is known what came of it.
    std::optional<Tapped> settle(int socket);

    // Of an observed transfer; nothing: the socket isn't the library's.
    std::optional<Connection> find(int socket);
    void set_tls(int socket, const std::string& tls);

    // Closes it, with the lock held, so that cut() never hits what has the number next.
    int close(int descriptor, std::optional<Tapped>& was);

    void cut();
    void allow();
    // Those that there are, and no later ones.
    void end_connections();
    bool was_ended(const Connection& connection) const { return connection.number <= ended_; }
    bool is_cut() const { return is_cut_; }
    // Readable while connections are cut; below 0: there is none.
    int cut_event() const { return cut_event_; }

    std::string where();

  private:
    void shut_down() const; // with the lock held

    const int cut_event_;
    std::atomic<bool> is_cut_{false};
    std::atomic<std::uint64_t> ended_{0}; // connections up to this number
    std::mutex mutex_;                    // guards all that follows
    std::uint64_t last_ = 0;
    std::map<int, Tapped> tapped_;
    std::string lookup_;
};

} // namespace soapwrapper::probe::wire

#endif
