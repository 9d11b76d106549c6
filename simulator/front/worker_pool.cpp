#include "simulator/front/worker_pool.h"

#include <sys/eventfd.h>

#include "simulator/front/http.h"
#include "simulator/front/limits.h"

#include <algorithm>
#include <cerrno>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

WorkerPool::WorkerPool(unsigned threads) : reply_event_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
    if (!reply_event_.valid()) throw std::system_error(errno, std::generic_category(), "no event descriptor");
    for (unsigned i = 0; i < threads; ++i) threads_.emplace_back([this] { work(for_hosts_); });
    for (unsigned i = 0; i < kThreadsForPeople; ++i) threads_.emplace_back([this] { work(for_people_); });
}

WorkerPool::~WorkerPool()
{
    end(Clock::now());
    for (std::thread& thread : threads_) thread.join();
}

void WorkerPool::submit(Id id, const Handler& handler, Request request, Audience audience)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    Lane& lane = audience == Audience::kPeople ? for_people_ : for_hosts_;
    lane.jobs.push_back({id, &handler, std::move(request)});
    lane.has_jobs.notify_one();
}

void WorkerPool::forget(Id id)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    for (std::deque<Job>* jobs : {&for_hosts_.jobs, &for_people_.jobs}) {
        const auto found =
            std::find_if(jobs->begin(), jobs->end(), [id](const Job& job) { return job.id == id; });
        if (found != jobs->end()) jobs->erase(found);
    }
}

std::vector<WorkerPool::Reply> WorkerPool::take_replies()
{
    eventfd_t ignored = 0;
    eventfd_read(reply_event_.get(), &ignored);
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(replies_, {});
}

bool WorkerPool::end(Clock::time_point deadline)
{
    std::unique_lock<std::mutex> lock(mutex_);
    ending_ = true;
    for_hosts_.has_jobs.notify_all();
    for_people_.has_jobs.notify_all();
    return is_idle_.wait_until(lock, deadline, [this] { return serving_ == 0; });
}

void WorkerPool::work(Lane& lane)
{
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        lane.has_jobs.wait(lock, [&] { return ending_ || !lane.jobs.empty(); });
        if (ending_) return;
        const Job job = std::move(lane.jobs.front());
        lane.jobs.pop_front();
        ++serving_;
        lock.unlock();
        Answer answer = (*job.handler)(job.request);
        lock.lock();
        --serving_;
        if (ending_) is_idle_.notify_all();
        replies_.push_back({job.id, std::move(answer)});
        eventfd_write(reply_event_.get(), 1);
    }
}

} // namespace soapwrapper::simulator
