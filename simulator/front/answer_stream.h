// The body of an answer that goes on for as long as somebody appends to it, such as a stream of events.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_ANSWER_STREAM_H
#define SOAPWRAPPER_SIMULATOR_FRONT_ANSWER_STREAM_H

#include <sys/types.h>

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>

struct MHD_Connection;

namespace soapwrapper::simulator
{

// For one client. It keeps no thread while there is nothing to send.
class AnswerStream
{
  public:
    // What may wait to be sent. A client that lets more come together is dropped.
    static constexpr std::size_t kMaxWaiting = 1024 * 1024;

    // Any thread may call these. False if nobody is there, or no longer, to take the text.
    bool append(std::string_view text);
    // The same for a text in which only the last word counts: it takes the place of what waits, but for a
    // text of which a part has gone out.
    bool offer(std::string_view text);
    bool is_open();
    // Sends what waits, then ends the answer.
    void end();

    // The front's side. Fills the buffer as the library wants it filled. If there is nothing, it suspends the
    // connection; when that goes on, the event descriptor wakes who runs the library.
    ssize_t read(MHD_Connection* connection, int wake_fd, char* buffer, std::size_t size);
    // From now on nobody is there. A connection that is suspended goes on, to find that out.
    void close();
    bool is_waiting();

  private:
    void resume();

    std::mutex mutex_;
    std::string text_;
    std::size_t kept_ = 0; // bytes at the front of it that no offer may take away
    MHD_Connection* suspended_ = nullptr;
    int wake_fd_ = -1;
    bool ended_ = false;
    bool closed_ = false;
};

} // namespace soapwrapper::simulator

#endif
