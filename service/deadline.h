#ifndef SOAPWRAPPER_SERVICE_DEADLINE_H
#define SOAPWRAPPER_SERVICE_DEADLINE_H

#include <poll.h>

#include <cerrno>
#include <chrono>

namespace soapwrapper
{

// A time by which a connection must be ready, over any number of waits and through any signal.
class Deadline
{
  public:
    // With 0 seconds there is none.
    explicit Deadline(int seconds)
        : end_(std::chrono::steady_clock::now() + std::chrono::seconds(seconds)),
          left_(seconds > 0 ? seconds * 1000 : -1)
    {
    }

    // Blocks until poll finds one of the events on the socket, or an error; false if time is up.
    bool wait_for(int socket, short events)
    {
        for (;;) {
            pollfd watched = {socket, events, 0};
            const int ready = poll(&watched, 1, left_);
            const bool interrupted = ready < 0 && errno == EINTR;
            if (left_ > 0) left_ = milliseconds_left();
            if (!interrupted) return ready > 0;
        }
    }

  private:
    int milliseconds_left() const
    {
        using std::chrono::milliseconds;
        const auto left = std::chrono::ceil<milliseconds>(end_ - std::chrono::steady_clock::now());
        return left.count() > 0 ? static_cast<int>(left.count()) : 0;
    }

    std::chrono::steady_clock::time_point end_;
    int left_; // in milliseconds; below 0: without end
};

} // namespace soapwrapper

#endif
