#include "simulator/replay/replay.h"

#include "messages/recording.h"
#include "simulator/front/http.h"
#include "simulator/replay/interface_rows.h"
#include "simulator/replay/recorded_answers.h"
#include "simulator/replay/request_key.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

using messages::RecordedExchange;
using messages::ReplyEnd;

constexpr int kInternalServerError = 500;
constexpr int kFirstFinalStatus = 200;
constexpr std::int64_t kLongestWait = std::int64_t{3600} * 1'000'000; // microseconds

Answer without_reply(Delivery delivery)
{
    Answer answer;
    answer.delivery = delivery;
    return answer;
}

Answer with_body(const RecordedExchange& exchange, std::string body, Delivery delivery)
{
    if (exchange.status < kFirstFinalStatus) return without_reply(Delivery::kNothing);
    Answer answer;
    answer.status = exchange.status;
    answer.content_type = exchange.content_type;
    answer.body = std::move(body);
    answer.delivery = delivery;
    return answer;
}

Answer raw(const RecordedExchange& exchange)
{
    Answer answer = without_reply(Delivery::kRaw);
    answer.body = exchange.reply;
    return answer;
}

Answer recorded_answer(const RecordedExchange& exchange, const std::set<std::string>& hosts,
                       const ReplayUrls& urls)
{
    switch (exchange.end) {
    case ReplyEnd::kWhole:
        return with_body(exchange, with_own_interfaces(exchange.reply, hosts, urls), Delivery::kWhole);
    case ReplyEnd::kCut:
        // As long again, since half of the body is sent.
        return with_body(exchange, exchange.reply + std::string(exchange.reply.size() + 1, ' '),
                         Delivery::kCut);
    case ReplyEnd::kNoHttp:
        return raw(exchange);
    case ReplyEnd::kReset:
        return without_reply(Delivery::kReset);
    case ReplyEnd::kNothing:
    case ReplyEnd::kUnconnected:
        break;
    }
    return without_reply(Delivery::kNothing);
}

Answer no_answer_left(const std::string& operation)
{
    Answer answer;
    answer.status = kInternalServerError;
    answer.content_type = "text/xml; charset=utf-8";
    answer.body = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
                  "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><e:Fault>"
                  "<faultcode>e:Server</faultcode><faultstring>the recording holds no answer to " +
                  operation + "</faultstring></e:Fault></e:Body></e:Envelope>";
    return answer;
}

std::string outcome_of(const RecordedExchange& exchange, Fit fit)
{
    const std::string number = "replayed " + std::to_string(exchange.number);
    switch (fit) {
    case Fit::kSame:
        return number;
    case Fit::kAgain:
        return number + " again";
    case Fit::kSimilar:
        return number + ", whose request was another";
    }
    return number;
}

} // namespace

Replay::Replay(messages::Recording recording, ReplayUrls urls, bool keeps_times)
    : recording_(std::move(recording)), urls_(std::move(urls)), keeps_times_(keeps_times)
{
    for (std::size_t i = 0; i < recording_.exchanges.size(); ++i) {
        const RecordedExchange& exchange = recording_.exchanges[i];
        const std::string host = host_in_url(exchange.url);
        if (!host.empty()) hosts_.insert(host);
        if (exchange.end != ReplyEnd::kUnconnected) answers_.add(i, request_key(exchange.request));
    }
}

Replay::Replayed Replay::answer(const Request& request)
{
    const RequestKey key = request_key(request.body);
    std::optional<RecordedAnswers::Choice> choice;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        choice = answers_.choose(key);
    }
    if (!choice) return {no_answer_left(key.operation), key.operation, "no answer left"};
    const RecordedExchange& exchange = recording_.exchanges[choice->index];
    if (keeps_times_) wait(exchange);
    return {recorded_answer(exchange, hosts_, urls_), key.operation, outcome_of(exchange, choice->fit)};
}

void Replay::stop()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    is_stopping_ = true;
    stopped_.notify_all();
}

void Replay::wait(const RecordedExchange& exchange)
{
    std::unique_lock<std::mutex> lock(mutex_);
    const std::chrono::microseconds time(std::min(exchange.microseconds, kLongestWait));
    stopped_.wait_for(lock, time, [this] { return is_stopping_; });
}

} // namespace soapwrapper::simulator
