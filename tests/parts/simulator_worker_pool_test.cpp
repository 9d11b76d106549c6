// The threads that serve the simulator's requests.
#include "simulator/front/http.h"
#include "simulator/front/limits.h"
#include "simulator/front/worker_pool.h"

#include <gmock/gmock.h>

#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace
{

using namespace soapwrapper::simulator;

// What the system says that a thread of this process does: 'S' if it waits for something.
char state_of(pid_t thread)
{
    std::string text;
    std::getline(std::ifstream("/proc/self/task/" + std::to_string(thread) + "/stat"), text);
    const std::size_t behind_name = text.rfind(')');
    return behind_name + 2 < text.size() ? text[behind_name + 2] : '?';
}

// Serves a request until it is let go.
class Busy
{
  public:
    Busy() : handler_([this](const Request&) { return serve(); }) {}

    void submit_to(WorkerPool& pool)
    {
        pool.submit(1, handler_, {});
        begun_.get_future().wait();
    }
    void let_go() { go_.set_value(); }

  private:
    Answer serve()
    {
        begun_.set_value();
        go_.get_future().wait();
        return {};
    }

    std::promise<void> begun_;
    std::promise<void> go_;
    Handler handler_;
};

// For a pool that gives its thread up: nobody can tell when that is done with what it works on.
Busy& lasting_busy()
{
    static auto* const all = new std::vector<std::unique_ptr<Busy>>;
    all->push_back(std::make_unique<Busy>());
    return *all->back();
}

TEST(SimulatorWorkerPool, EndsAsSoonAsTheLastHandlerIsDone)
{
    WorkerPool pool(1);
    Busy busy;
    busy.submit_to(pool);
    std::promise<pid_t> ending;
    auto end = std::async(std::launch::async, [&] {
        ending.set_value(gettid());
        return pool.end(Clock::now() + std::chrono::hours(1));
    });
    const pid_t thread = ending.get_future().get();
    while (state_of(thread) != 'S') std::this_thread::yield();
    busy.let_go();
    EXPECT_TRUE(end.get());
}

TEST(SimulatorWorkerPool, DoesNotWaitForAHandlerBeyondItsTime)
{
    WorkerPool pool(1);
    Busy& busy = lasting_busy();
    busy.submit_to(pool);
    EXPECT_FALSE(pool.end(Clock::now()));
    busy.let_go();
}

TEST(SimulatorWorkerPool, ServesNoRequestThatWasForgottenWhileItWaited)
{
    WorkerPool pool(1);
    Busy busy;
    busy.submit_to(pool);
    std::vector<int> served;
    const Handler second = [&](const Request&) {
        served.push_back(2);
        return Answer();
    };
    std::promise<void> done;
    const Handler third = [&](const Request&) {
        served.push_back(3);
        done.set_value();
        return Answer();
    };
    pool.submit(2, second, {});
    pool.submit(3, third, {});
    pool.forget(2);
    busy.let_go();
    done.get_future().wait();
    EXPECT_THAT(served, testing::ElementsAre(3));
}

// Somebody may have to take away what keeps hosts' requests waiting.
TEST(SimulatorWorkerPool, ServesPeopleWhileHostsKeepItsThreadsWaiting)
{
    WorkerPool pool(1);
    Busy busy;
    busy.submit_to(pool);
    std::promise<void> done;
    const Handler handler = [&](const Request&) {
        done.set_value();
        return Answer();
    };
    pool.submit(2, handler, {}, Audience::kPeople);
    done.get_future().wait();
    busy.let_go();
}

} // namespace
