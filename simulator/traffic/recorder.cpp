#include "simulator/traffic/recorder.h"

#include "messages/secret_fields.h"
#include "simulator/front/http.h"
#include "simulator/traffic/exchange.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

// What it takes, at least.
std::size_t bytes_of(const Exchange& exchange)
{
    std::size_t bytes = exchange.request.size() + exchange.reply.size() + exchange.path.size();
    for (const auto& field : exchange.fields) bytes += field.first.size() + field.second.size();
    return bytes;
}

Exchange without_texts(const Exchange& exchange)
{
    Exchange copy;
    copy.number = exchange.number;
    copy.time = exchange.time;
    copy.client = exchange.client;
    copy.is_tls = exchange.is_tls;
    copy.operation = exchange.operation;
    copy.status = exchange.status;
    copy.fault_code = exchange.fault_code;
    copy.outcome = exchange.outcome;
    copy.microseconds = exchange.microseconds;
    copy.request_bytes = exchange.request_bytes;
    copy.reply_bytes = exchange.reply_bytes;
    copy.request_is_cut = exchange.request_is_cut;
    copy.reply_is_cut = exchange.reply_is_cut;
    copy.trouble = exchange.trouble;
    copy.method = exchange.method;
    copy.path = exchange.path;
    return copy;
}

} // namespace

Recorder::Recorder(const std::string& credential, std::function<void()> on_change)
    : blotter_(credential), on_change_(std::move(on_change))
{
}

std::shared_ptr<const Exchange> Recorder::add(Exchange exchange)
{
    blot(exchange);
    const auto kept = std::make_shared<Exchange>(std::move(exchange));
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        kept->number = ++last_;
        bytes_ += bytes_of(*kept);
        exchanges_.push_back(kept);
        while (exchanges_.size() > kMostExchanges || bytes_ > kMostBytes) {
            bytes_ -= bytes_of(*exchanges_.front());
            exchanges_.pop_front();
        }
    }
    if (on_change_) on_change_();
    return kept;
}

std::vector<Exchange> Recorder::after(std::uint64_t number, std::size_t most) const
{
    std::vector<Exchange> found;
    for (const std::shared_ptr<const Exchange>& each : newest(number, most)) {
        found.push_back(without_texts(*each));
    }
    return found;
}

std::optional<Exchange> Recorder::find(std::uint64_t number) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (exchanges_.empty() || number < exchanges_.front()->number || number > last_) return std::nullopt;
    return *exchanges_[static_cast<std::size_t>(number - exchanges_.front()->number)];
}

std::vector<std::shared_ptr<const Exchange>> Recorder::all() const
{
    return newest(0, kMostExchanges);
}

std::uint64_t Recorder::last() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return last_;
}

void Recorder::clear()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        exchanges_.clear();
        bytes_ = 0;
    }
    if (on_change_) on_change_();
}

std::vector<std::shared_ptr<const Exchange>> Recorder::newest(std::uint64_t behind, std::size_t most) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const std::uint64_t newer = last_ > behind ? last_ - behind : 0;
    const std::size_t count =
        static_cast<std::size_t>(std::min<std::uint64_t>({newer, most, exchanges_.size()}));
    return {exchanges_.end() - static_cast<std::ptrdiff_t>(count), exchanges_.end()};
}

void Recorder::blot(Exchange& exchange)
{
    exchange.request_is_cut = blot(exchange.request, exchange.request_bytes);
    exchange.reply_is_cut = blot(exchange.reply, exchange.reply_bytes);
    // Printable as it is, but parts of it are the client's.
    exchange.outcome = blotter_.text(exchange.outcome);
    exchange.method = blotter_.text(exchange.method);
    exchange.path = blotter_.text(exchange.path.substr(0, exchange.path.find('?')));
    Fields& fields = exchange.fields;
    fields.erase(std::remove_if(fields.begin(), fields.end(),
                                [](const auto& field) { return messages::is_secret_field(field.first); }),
                 fields.end());
    for (auto& field : fields) {
        field.first = blotter_.text(field.first);
        field.second = blotter_.text(field.second);
    }
}

// Whether the text isn't whole.
bool Recorder::blot(std::string& text, std::size_t bytes)
{
    const bool is_cut = bytes > kLongestText;
    text.resize(std::min(text.size(), kLongestText));
    text = blotter_.message(text, is_cut);
    // A name may be longer than what it stands for.
    const bool has_grown = text.size() > kLongestText;
    if (has_grown) text.resize(kLongestText);
    return is_cut || has_grown;
}

} // namespace soapwrapper::simulator
