// The simulator's front: takes connections on several sockets at once, reads requests, hands them to workers
// and sends back the answers. One loop holds all sockets and blocks on none, so that a client that is slow,
// silent or stuck costs a descriptor and nothing else.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_SERVER_H
#define SOAPWRAPPER_SIMULATOR_FRONT_SERVER_H

#include "simulator/front/connection.h"
#include "simulator/front/descriptor.h"
#include "simulator/front/limits.h"
#include "simulator/front/request_log.h"
#include "simulator/front/worker_pool.h"

#include <openssl/types.h>
#include <poll.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

struct Listener {
    Descriptor socket;
    SSL_CTX* tls = nullptr; // borrowed; null for plain HTTP
};

class Server
{
  public:
    // `stop_fd` becomes readable when the server is to stop; `on_stop` is called then, once.
    Server(std::vector<Listener> listeners, unsigned threads, Handler handler, RequestLog& log, int stop_fd,
           std::function<void()> on_stop, const Limits& limits = {});
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    // Returns when it was told to stop and what was under way is done.
    void run();

  private:
    using Id = WorkerPool::Id;
    using Connections = std::map<Id, Connection>;

    void poll_once();
    int time_to_wait() const;
    void tend(Id id, Connection& connection, short happened);
    void deliver_replies();
    void sweep();
    void accept_from(const Listener& listener);
    bool can_accept() const;
    bool make_room();
    void begin_stop();
    void note(const Connection& connection, const std::string& outcome);

    std::vector<Listener> listeners_;
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
    // The last member: the workers end first.
    WorkerPool workers_;
};

} // namespace soapwrapper::simulator

#endif
