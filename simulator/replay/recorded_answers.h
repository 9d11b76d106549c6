// Which recorded exchange answers a request.
#ifndef SOAPWRAPPER_SIMULATOR_REPLAY_RECORDED_ANSWERS_H
#define SOAPWRAPPER_SIMULATOR_REPLAY_RECORDED_ANSWERS_H

#include "simulator/replay/request_key.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

enum class Fit {
    kSame,   // the request is the recorded one
    kAgain,  // the same, but its answers have all been given: the last one is given again
    kSimilar // only the operation is the same
};

class RecordedAnswers
{
  public:
    struct Choice {
        std::size_t index;
        Fit fit;
    };

    // The next recorded exchange, whose request was this one.
    void add(std::size_t index, const RequestKey& request);

    // Equal requests get their answers in their order. A request that was never made takes the first answer
    // to its operation that nobody has got; nothing, if there is none.
    std::optional<Choice> choose(const RequestKey& request);

  private:
    // Indices in their order, and how many of the first of them have been given away.
    struct Queue {
        std::vector<std::size_t> indices;
        std::size_t given = 0;
    };

    // The first that nobody has got.
    std::optional<std::size_t> take(Queue& queue);

    std::vector<bool> is_given_; // by index
    std::map<std::string, Queue> by_request_;
    std::map<std::string, Queue> by_operation_;
};

} // namespace soapwrapper::simulator

#endif
