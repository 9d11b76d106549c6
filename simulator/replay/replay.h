// A service that answers as another one did while it was recorded.
#ifndef SOAPWRAPPER_SIMULATOR_REPLAY_REPLAY_H
#define SOAPWRAPPER_SIMULATOR_REPLAY_REPLAY_H

#include "messages/recording.h"
#include "simulator/front/http.h"
#include "simulator/replay/interface_rows.h"
#include "simulator/replay/recorded_answers.h"

#include <condition_variable>
#include <mutex>
#include <set>
#include <string>

namespace soapwrapper::simulator
{

// Any thread may call.
class Replay
{
  public:
    // With `keeps_times`, an answer takes as long as it took then.
    Replay(messages::Recording recording, ReplayUrls urls, bool keeps_times);
    Replay(const Replay&) = delete;
    Replay& operator=(const Replay&) = delete;

    struct Replayed {
        Answer answer;
        std::string operation;
        std::string outcome; // for a log
    };
    Replayed answer(const Request& request);

    // Ends every wait, now and to come.
    void stop();

  private:
    void wait(const messages::RecordedExchange& exchange);

    const messages::Recording recording_;
    const ReplayUrls urls_;
    const bool keeps_times_;
    std::set<std::string> hosts_; // of the service that was recorded
    std::mutex mutex_;
    std::condition_variable stopped_;
    bool is_stopping_ = false;
    RecordedAnswers answers_;
};

} // namespace soapwrapper::simulator

#endif
