#include "probe/wire/recorder.h"

#include "messages/blotter.h"
#include "messages/lower_case.h"
#include "messages/recording.h"
#include "messages/utc_time.h"
#include "probe/output/descriptor_stream.h"
#include "probe/output/problem.h"
#include "probe/output/url_login.h"
#include "probe/wire/exchange.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace soapwrapper::probe::wire
{
namespace
{

using messages::RecordedExchange;
using messages::ReplyEnd;

constexpr messages::RecordingBounds kBounds;

ReplyEnd end_of(const Exchange& exchange)
{
    if (exchange.request_head.empty()) return ReplyEnd::kUnconnected;
    if (exchange.status == 0) {
        if (!exchange.reply_body.empty()) return ReplyEnd::kNoHttp;
        return messages::lower_case(exchange.failure).find("reset") != std::string::npos ? ReplyEnd::kReset
                                                                                         : ReplyEnd::kNothing;
    }
    return exchange.reply_is_whole && exchange.reply_note.empty() ? ReplyEnd::kWhole : ReplyEnd::kCut;
}

// Of the reply.
std::string content_type_in(std::string_view head)
{
    constexpr std::string_view kName = "content-type:";
    for (std::size_t at = 0; at < head.size();) {
        const std::size_t end = std::min(head.find('\n', at), head.size());
        std::string_view line = head.substr(at, end - at);
        at = end + 1;
        if (messages::lower_case(line.substr(0, kName.size())) != kName) continue;
        line.remove_prefix(std::min(line.find_first_not_of(" \t", kName.size()), line.size()));
        return std::string(line.substr(0, line.find('\r')));
    }
    return {};
}

std::string joined(const std::string& failure, const std::string& note)
{
    return failure + (failure.empty() || note.empty() ? "" : "; ") + note;
}

} // namespace

RecordedExchange recorded(const Exchange& exchange)
{
    RecordedExchange result;
    result.time = messages::utc_time(exchange.begun);
    result.microseconds = std::max<std::int64_t>(exchange.took.count(), 0);
    result.url = without_url_logins(exchange.url);
    // What was to be reached is all there is of a connection that was never made.
    if (result.url.empty()) result.url = exchange.connection.address;
    result.is_tls = exchange.connection.is_tls;
    result.operation = exchange.operation;
    result.request = exchange.request_body;
    result.reply = exchange.reply_body;
    result.status = exchange.status;
    result.content_type = content_type_in(exchange.reply_head);
    result.end = end_of(exchange);
    result.failure = joined(exchange.failure, exchange.reply_note);
    return result;
}

Recorder::Recorder(const std::string& path, const messages::RecordingHead& head, messages::Blotter& blotter,
                   const DescriptorBuffer::Wait& wait)
    : blotter_(blotter), file_(path, wait)
{
    write(messages::recording_line(head, blotter_));
}

void Recorder::take(const Exchange& exchange)
{
    if (is_full_ || has_failed_) return;
    RecordedExchange entry = recorded(exchange);
    entry.number = ++exchanges_;
    const std::string line = messages::recording_line(entry, blotter_);
    is_full_ = exchanges_ > kBounds.exchanges || bytes_ + line.size() > kBounds.bytes;
    if (!is_full_) write(line);
}

std::optional<Problem> Recorder::problem() const
{
    if (is_full_) {
        return Problem(ExitCode::kOperation, "record", std::nullopt,
                       "it is full, and what followed isn't in it");
    }
    if (!has_failed_) return std::nullopt;
    return Problem(ExitCode::kOperation, "record", std::nullopt, "it could not be written");
}

void Recorder::write(const std::string& line)
{
    bytes_ += line.size();
    has_failed_ = !(file_.stream() << line << std::flush);
}

} // namespace soapwrapper::probe::wire
