#include "simulator/api/changes.h"

#include "simulator/api/answers.h"
#include "simulator/front/answer_stream.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

// Between two words to the same watcher, so that thousands of changes a second keep neither side busy.
constexpr std::chrono::milliseconds kPause(50);

} // namespace

Changes::Changes(std::string instance, std::function<std::uint64_t()> last_request)
    : instance_(std::move(instance)), last_request_(std::move(last_request)), teller_([this] { tell(); })
{
}

Changes::~Changes()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        is_ending_ = true;
        changed_.notify_all();
    }
    teller_.join();
    for (const auto& stream : streams_) stream->end();
}

std::uint64_t Changes::revision() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return revision_;
}

void Changes::notify()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    ++revision_;
    if (streams_.empty() || std::exchange(is_due_, true)) return;
    changed_.notify_all();
}

std::shared_ptr<AnswerStream> Changes::open()
{
    auto stream = std::make_shared<AnswerStream>();
    const std::uint64_t told = revision();
    const std::string text = words(told);
    const std::lock_guard<std::mutex> lock(mutex_);
    streams_.erase(
        std::remove_if(streams_.begin(), streams_.end(), [](const auto& each) { return !each->is_open(); }),
        streams_.end());
    if (streams_.size() >= kMostStreams) return nullptr;
    stream->append(text);
    streams_.push_back(stream);
    // What changed since the words were chosen is told behind them.
    is_due_ = is_due_ || revision_ != told;
    if (is_due_) changed_.notify_all();
    return stream;
}

// The words are chosen behind the change that is due, and without the lock: whoever records a request may
// hold one of his own while he tells of it. What changes from then on is due anew.
void Changes::tell()
{
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return is_due_ || is_ending_; });
        if (is_ending_) return;
        is_due_ = false;
        const std::uint64_t revision = revision_;
        lock.unlock();
        const std::string text = words(revision);
        lock.lock();
        streams_.erase(std::remove_if(streams_.begin(), streams_.end(),
                                      [&](const auto& stream) { return !stream->offer(text); }),
                       streams_.end());
        changed_.wait_for(lock, kPause, [this] { return is_ending_; });
    }
}

std::string Changes::words(std::uint64_t revision) const
{
    return "event: change\ndata: " +
           dumped({{"instance", instance_}, {"revision", revision}, {"requests", last_request_()}}) + "\n\n";
}

} // namespace soapwrapper::simulator
