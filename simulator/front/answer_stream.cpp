#include "simulator/front/answer_stream.h"

#include <microhttpd.h>
#include <sys/eventfd.h>
#include <sys/types.h>

#include <cstddef>
#include <mutex>
#include <string_view>
#include <utility>

namespace soapwrapper::simulator
{

bool AnswerStream::append(std::string_view text)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (text.size() > kMaxWaiting - text_.size()) closed_ = true;
    const bool is_taken = !closed_ && !ended_;
    if (is_taken) kept_ = text_.append(text).size();
    resume();
    return is_taken;
}

bool AnswerStream::offer(std::string_view text)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (closed_ || ended_) return false;
    text_.resize(kept_);
    text_.append(text);
    resume();
    return true;
}

bool AnswerStream::is_open()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return !closed_ && !ended_;
}

void AnswerStream::end()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    ended_ = true;
    resume();
}

ssize_t AnswerStream::read(MHD_Connection* connection, int wake_fd, char* buffer, std::size_t size)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (closed_) return MHD_CONTENT_READER_END_WITH_ERROR;
    const std::size_t count = text_.copy(buffer, size);
    kept_ = text_.erase(0, count).size();
    if (count != 0) return static_cast<ssize_t>(count);
    if (ended_) return MHD_CONTENT_READER_END_OF_STREAM;
    suspended_ = connection;
    wake_fd_ = wake_fd;
    MHD_suspend_connection(connection);
    return 0;
}

void AnswerStream::close()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    closed_ = true;
    resume();
}

bool AnswerStream::is_waiting()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return suspended_ != nullptr;
}

void AnswerStream::resume()
{
    if (!suspended_) return;
    MHD_resume_connection(std::exchange(suspended_, nullptr));
    eventfd_write(wake_fd_, 1);
}

} // namespace soapwrapper::simulator
