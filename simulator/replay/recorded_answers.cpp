#include "simulator/replay/recorded_answers.h"

#include "simulator/replay/request_key.h"

#include <cstddef>
#include <optional>

namespace soapwrapper::simulator
{

void RecordedAnswers::add(std::size_t index, const RequestKey& request)
{
    if (is_given_.size() <= index) is_given_.resize(index + 1, false);
    by_request_[request.text].indices.push_back(index);
    by_operation_[request.operation].indices.push_back(index);
}

std::optional<RecordedAnswers::Choice> RecordedAnswers::choose(const RequestKey& request)
{
    const auto same = by_request_.find(request.text);
    if (same != by_request_.end()) {
        if (const std::optional<std::size_t> index = take(same->second)) return Choice{*index, Fit::kSame};
        return Choice{same->second.indices.back(), Fit::kAgain};
    }
    const auto similar = by_operation_.find(request.operation);
    if (similar == by_operation_.end()) return std::nullopt;
    const std::optional<std::size_t> index = take(similar->second);
    return index ? std::optional(Choice{*index, Fit::kSimilar}) : std::nullopt;
}

std::optional<std::size_t> RecordedAnswers::take(Queue& queue)
{
    while (queue.given < queue.indices.size()) {
        const std::size_t index = queue.indices[queue.given++];
        if (is_given_[index]) continue;
        is_given_[index] = true;
        return index;
    }
    return std::nullopt;
}

} // namespace soapwrapper::simulator
