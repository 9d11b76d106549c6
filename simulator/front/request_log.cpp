#include "simulator/front/request_log.h"

#include "simulator/front/descriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

constexpr std::size_t kAtOnce = 4096; // a pipe that has room takes as much

std::string now_as_text()
{
    using std::chrono::milliseconds;
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    char date[sizeof "2000-01-01T00:00:00"];
    std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &parts);
    const auto millis = std::chrono::duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
    char text[sizeof date + sizeof ".000Z"];
    std::snprintf(text, sizeof text, "%s.%03dZ", date, static_cast<int>(millis));
    return text;
}

// A description of our own does without waiting, which nobody else who has the descriptor must notice. Where
// there is none to be had, a look ahead of each write has to do: a pipe that can be written to has room for a
// line.
Descriptor opened_without_waiting(int fd)
{
    struct stat status {
    };
    const bool has_reader = fstat(fd, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode));
    const std::string name = "/proc/self/fd/" + std::to_string(fd);
    Descriptor own(has_reader ? open(name.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC) : -1);
    return own.valid() ? std::move(own) : Descriptor(fcntl(fd, F_DUPFD_CLOEXEC, 0));
}

} // namespace

RequestLog::RequestLog(bool is_on, int fd)
    : is_on_(is_on), out_(is_on ? opened_without_waiting(fd) : Descriptor())
{
}

void RequestLog::line(bool is_tls, std::string_view client, std::string_view operation,
                      std::string_view outcome)
{
    if (!is_on_) return;
    std::string text = now_as_text();
    text.append(is_tls ? " https " : " http ").append(client).append(" ");
    text.append(operation).append(": ").append(outcome).append("\n");
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!write_dropped() || !write(text)) ++dropped_;
}

void RequestLog::tell_dropped()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    write_dropped();
}

bool RequestLog::write(std::string_view text)
{
    if (!write_rest()) return false;
    rest_ = text;
    if (write_rest() || rest_.size() < text.size()) return true;
    rest_.clear();
    return false;
}

bool RequestLog::write_rest()
{
    while (!rest_.empty()) {
        pollfd polled{out_.get(), POLLOUT, 0};
        if (poll(&polled, 1, 0) != 1) return false;
        const ssize_t written = ::write(out_.get(), rest_.data(), std::min(rest_.size(), kAtOnce));
        if (written <= 0) return false;
        rest_.erase(0, static_cast<std::size_t>(written));
    }
    return true;
}

bool RequestLog::write_dropped()
{
    if (dropped_ == 0) return true;
    if (!write(now_as_text() + " " + std::to_string(dropped_) + " lines dropped, nobody read them\n"))
        return false;
    dropped_ = 0;
    return true;
}

} // namespace soapwrapper::simulator
