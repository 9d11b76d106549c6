// Tells those who watch that something has changed.
#ifndef SOAPWRAPPER_SIMULATOR_API_CHANGES_H
#define SOAPWRAPPER_SIMULATOR_API_CHANGES_H

#include "simulator/front/answer_stream.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace soapwrapper::simulator
{

// Any thread may call. A watcher is sent a few words of where the simulator has got to, and asks for what it
// wants to know. Nothing is lost while it doesn't read: of several that are due, only the last one is sent,
// and it is never older than the change that made it due.
class Changes
{
  public:
    static constexpr std::size_t kMostStreams = 32;

    // `instance` tells this run of the simulator from others; `last_request` tells the number of the last one
    // that was recorded, and may be called by any thread until this ends.
    Changes(std::string instance, std::function<std::uint64_t()> last_request);
    ~Changes();
    Changes(const Changes&) = delete;
    Changes& operator=(const Changes&) = delete;

    const std::string& instance() const { return instance_; }
    // Rises with each change.
    std::uint64_t revision() const;

    // Something has changed. It costs the caller a lock that nobody holds for long.
    void notify();

    // A watcher's stream, with where things stand; null if there are too many of them.
    std::shared_ptr<AnswerStream> open();

  private:
    void tell();
    std::string words(std::uint64_t revision) const;

    const std::string instance_;
    const std::function<std::uint64_t()> last_request_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::uint64_t revision_ = 0;
    bool is_due_ = false;
    bool is_ending_ = false;
    std::vector<std::shared_ptr<AnswerStream>> streams_;
    // The last member: it works with the others.
    std::thread teller_;
};

} // namespace soapwrapper::simulator

#endif
