#include "probe/output/progress_line.h"

#include "probe/output/width.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstddef>
#include <mutex>
#include <string>

namespace soapwrapper::probe
{
namespace
{

constexpr std::size_t kUsualWidth = 80;

// One less than there is: a character in the last column makes some terminals begin a new line.
std::size_t room_on(int descriptor)
{
    winsize size = {};
    const bool known = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
    return (known ? size.ws_col : kUsualWidth) - 1;
}

// A terminal that takes no more must neither end the job nor keep it waiting.
void write_to(int descriptor, const std::string& text)
{
    pollfd watched = {descriptor, POLLOUT, 0};
    if (poll(&watched, 1, 0) <= 0) return;
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = write(descriptor, text.data() + written, text.size() - written);
        if (count <= 0) return;
        written += static_cast<std::size_t>(count);
    }
}

} // namespace

ProgressLine::ProgressLine(int descriptor) : descriptor_(descriptor), visible_(isatty(descriptor) == 1) {}

void ProgressLine::show(const std::string& text)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    waiting_ = false;
    show_now(text);
}

void ProgressLine::show_waiting(const std::string& text)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (in_a_line_ || (shown_ > 0 && !waiting_)) return;
    waiting_ = true;
    show_now(text);
}

void ProgressLine::show_now(const std::string& text)
{
    if (!visible_) return;
    const std::string line = cut_to_width(text, room_on(descriptor_));
    const std::size_t columns = display_width(line);
    // Blanks over what stood there: no terminal is too simple for them.
    const std::size_t rest = shown_ > columns ? shown_ - columns : 0;
    write_to(descriptor_, '\r' + line + std::string(rest, ' ') + std::string(rest, '\b'));
    shown_ = columns;
}

void ProgressLine::clear()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    clear_now();
}

void ProgressLine::clear_waiting()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (waiting_) clear_now();
}

void ProgressLine::clear_now()
{
    waiting_ = false;
    if (shown_ == 0) return;
    write_to(descriptor_, '\r' + std::string(shown_, ' ') + '\r');
    shown_ = 0;
}

void ProgressLine::Room::written(const char* bytes, std::size_t count)
{
    if (count > 0) line_.in_a_line_ = bytes[count - 1] != '\n';
}

} // namespace soapwrapper::probe
