// The simulator's front: takes connections on several sockets at once and answers what routes it is given.
// The HTTP library carries the connections; one loop runs it and blocks on no client, so that one that is
// slow, silent or stuck costs a descriptor and nothing else. Requests are served by threads of their own.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_SERVER_H
#define SOAPWRAPPER_SIMULATOR_FRONT_SERVER_H

#include "simulator/front/connection.h"
#include "simulator/front/entrance.h"
#include "simulator/front/http.h"
#include "simulator/front/limits.h"
#include "simulator/front/request_log.h"
#include "simulator/front/worker_pool.h"

#include <microhttpd.h>
#include <poll.h>

#include <cstddef>
#include <functional>
#include <list>
#include <map>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

class Server
{
  public:
    // `stop_fd` becomes readable when the server is to stop; `on_stop` is called then, once. Throws a
    // std::runtime_error with a text for the user.
    Server(std::vector<Listener> listeners, std::vector<Route> routes, unsigned threads, RequestLog& log,
           int stop_fd, std::function<void()> on_stop, const Limits& limits = {});
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    // Returns when it was told to stop and what was under way is done, or has taken too long. False if a
    // handler is still at work: the server's end, which waits for it, had better be that of the process.
    bool run();

  private:
    using Id = Connection::Id;
    using Connections = std::map<Id, Connection>;

    // What the library calls.
    static MHD_Result on_request(void* self, MHD_Connection* carried, const char* path, const char* method,
                                 const char* version, const char* data, std::size_t* size, void** begun);
    static void on_connection(void* self, MHD_Connection* carried, void** context,
                              MHD_ConnectionNotificationCode code) noexcept;
    MHD_Result take_head(Connection& connection, const char* path, const char* method, const char* version);
    MHD_Result take_end(Connection& connection);
    void closed(const Connection& connection);

    void poll_once();
    void poll_all();
    int time_to_wait() const;
    void drop_vanished();
    void deliver_replies();
    void end_pauses();
    void sweep();
    void accept_from(Entrance& entrance);
    bool can_accept() const;
    bool make_room();
    void begin_stop();
    void drop_all();
    void note(const Connection& connection, const std::string& outcome);

    const std::vector<Route> routes_;
    RequestLog& log_;
    const int stop_fd_;
    const std::function<void()> on_stop_;
    const Limits limits_;
    bool stopping_ = false;
    Clock::time_point stop_deadline_ = Clock::time_point::max();
    Clock::time_point accept_again_ = Clock::time_point::min(); // later than now, if descriptors ran out
    Id next_id_ = 0;
    Connections connections_; // in the order of their arrival
    std::vector<pollfd> polled_;
    std::vector<Id> watched_; // those whose sockets stand at the end of polled_
    std::list<Entrance> entrances_;
    const Entrance* accepting_ = nullptr; // which takes one in just now
    // The last member: the workers end first.
    WorkerPool workers_;
};

} // namespace soapwrapper::simulator

#endif
