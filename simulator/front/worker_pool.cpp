#include "simulator/front/worker_pool.h"

#include <sys/eventfd.h>

#include <cerrno>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

WorkerPool::WorkerPool(unsigned threads, Handler handler)
    : handler_(std::move(handler)), reply_event_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
    if (!reply_event_.valid()) throw std::system_error(errno, std::generic_category(), "no event descriptor");
    for (unsigned i = 0; i < threads; ++i) threads_.emplace_back([this] { work(); });
}

WorkerPool::~WorkerPool()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        ending_ = true;
    }
    changed_.notify_all();
    for (std::thread& thread : threads_) thread.join();
}

void WorkerPool::submit(Id id, Request request)
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        jobs_.push_back({id, std::move(request)});
    }
    changed_.notify_one();
}

std::vector<WorkerPool::Reply> WorkerPool::take_replies()
{
    eventfd_t ignored = 0;
    eventfd_read(reply_event_.get(), &ignored);
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(replies_, {});
}

void WorkerPool::work()
{
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return ending_ || !jobs_.empty(); });
        if (ending_) return;
        const Job job = std::move(jobs_.front());
        jobs_.pop_front();
        lock.unlock();
        std::string response = handler_(job.request);
        lock.lock();
        replies_.push_back({job.id, std::move(response)});
        eventfd_write(reply_event_.get(), 1);
    }
}

} // namespace soapwrapper::simulator
