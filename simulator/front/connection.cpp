#include "simulator/front/connection.h"

#include "simulator/front/http.h"
#include "simulator/front/limits.h"
#include "simulator/front/stream.h"

#include <poll.h>

#include <cstddef>
#include <string>
#include <utility>

namespace soapwrapper::simulator
{

Connection::Connection(Stream stream, std::string client, const Limits& limits, Clock::time_point now)
    : stream_(std::move(stream)), client_(std::move(client)), limits_(&limits),
      deadline_(now + limits.for_request)
{
}

short Connection::events() const
{
    if (stage_ == Stage::kHasRequest || stage_ == Stage::kServing) return 0;
    return wanted_ == Stream::Result::kWantsWrite ? POLLOUT : POLLIN;
}

void Connection::advance(Clock::time_point now)
{
    if (stage_ == Stage::kHandshake) shake_hands();
    if (stage_ == Stage::kReading) read();
    if (stage_ == Stage::kReading && reader_.refusal() != 0) answer(http_refusal(reader_.refusal()), now);
    if (stage_ == Stage::kWriting) write(now);
    if (stage_ == Stage::kGoodbye && stream_.discard() == Stream::Result::kEnded) stage_ = Stage::kGone;
}

std::string Connection::take_request()
{
    stage_ = Stage::kServing;
    deadline_ = Clock::time_point::max();
    return reader_.take_body();
}

void Connection::answer(std::string bytes, Clock::time_point now)
{
    out_ = std::move(bytes);
    stage_ = Stage::kWriting;
    deadline_ = now + limits_->for_answer;
}

void Connection::shake_hands()
{
    wanted_ = stream_.handshake();
    if (wanted_ == Stream::Result::kEnded) stage_ = Stage::kGone;
    if (wanted_ == Stream::Result::kDone) stage_ = Stage::kReading;
}

void Connection::read()
{
    char buffer[16 * 1024];
    for (;;) {
        std::size_t count = 0;
        wanted_ = stream_.read(buffer, sizeof buffer, count);
        if (wanted_ == Stream::Result::kEnded) stage_ = Stage::kGone;
        if (wanted_ != Stream::Result::kDone) return;

        const RequestReader::Progress progress = reader_.add({buffer, count});
        if (progress == RequestReader::Progress::kRefused) return;
        if (progress == RequestReader::Progress::kComplete) {
            had_request_ = true;
            stage_ = Stage::kHasRequest;
            return;
        }
        // So few bytes into a buffer that nothing has been put into yet: they fit.
        if (reader_.take_expectation()) stream_.write(kContinue, count);
    }
}

void Connection::write(Clock::time_point now)
{
    while (sent_ < out_.size()) {
        std::size_t count = 0;
        wanted_ = stream_.write(std::string_view(out_).substr(sent_), count);
        if (wanted_ == Stream::Result::kEnded) stage_ = Stage::kGone;
        if (wanted_ != Stream::Result::kDone) return;
        sent_ += count;
    }
    // Closed with unread bytes behind it, the connection would be reset and the answer with it.
    stream_.end_writing();
    stage_ = Stage::kGoodbye;
    wanted_ = Stream::Result::kWantsRead;
    deadline_ = now + limits_->for_goodbye;
}

} // namespace soapwrapper::simulator
