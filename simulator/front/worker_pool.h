// A fixed number of threads that serve requests, and a few more for those of people: they are served, too,
// while hosts keep all others waiting. Nothing here knows of sockets.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_WORKER_POOL_H
#define SOAPWRAPPER_SIMULATOR_FRONT_WORKER_POOL_H

#include "simulator/front/descriptor.h"
#include "simulator/front/http.h"
#include "simulator/front/limits.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace soapwrapper::simulator
{

class WorkerPool
{
  public:
    using Id = std::uint64_t;
    struct Reply {
        Id id;
        Answer answer;
    };

    static constexpr unsigned kThreadsForPeople = 2;

    // `threads` are for hosts.
    explicit WorkerPool(unsigned threads);
    // Lets what is being served be finished, and drops what waits.
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    // The handler must outlive the pool.
    void submit(Id id, const Handler& handler, Request request, Audience audience = Audience::kHosts);
    // Drops the request if it still waits.
    void forget(Id id);
    // Readable when there are replies to take.
    int reply_fd() const { return reply_event_.get(); }
    std::vector<Reply> take_replies();
    // Drops what waits. False if something is still being served at that time.
    bool end(Clock::time_point deadline);

  private:
    struct Job {
        Id id;
        const Handler* handler;
        Request request;
    };

    // What waits for the same threads.
    struct Lane {
        std::deque<Job> jobs;
        std::condition_variable has_jobs;
    };

    void work(Lane& lane);

    Descriptor reply_event_;
    std::mutex mutex_;
    std::condition_variable is_idle_;
    bool ending_ = false;
    unsigned serving_ = 0;
    Lane for_hosts_;
    Lane for_people_;
    std::vector<Reply> replies_;
    std::vector<std::thread> threads_;
};

} // namespace soapwrapper::simulator

#endif
