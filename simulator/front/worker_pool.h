// A fixed number of threads that serve requests. Nothing here knows of sockets.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_WORKER_POOL_H
#define SOAPWRAPPER_SIMULATOR_FRONT_WORKER_POOL_H

#include "simulator/front/descriptor.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace soapwrapper::simulator
{

struct Request {
    std::string body;
    std::string client;
    bool is_tls = false;
};

// Returns a whole HTTP response. Called by several threads at once.
using Handler = std::function<std::string(const Request&)>;

class WorkerPool
{
  public:
    using Id = std::uint64_t;
    struct Reply {
        Id id;
        std::string response;
    };

    WorkerPool(unsigned threads, Handler handler);
    // Lets what is being served be finished, and drops what waits.
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    void submit(Id id, Request request);
    // Readable when there are replies to take.
    int reply_fd() const { return reply_event_.get(); }
    std::vector<Reply> take_replies();

  private:
    struct Job {
        Id id;
        Request request;
    };

    void work();

    const Handler handler_;
    Descriptor reply_event_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool ending_ = false;
    std::deque<Job> jobs_;
    std::vector<Reply> replies_;
    std::vector<std::thread> threads_;
};

} // namespace soapwrapper::simulator

#endif
