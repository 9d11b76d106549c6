#include "probe/wire/exchanges.h"

#include "messages/markup.h"
#include "messages/wiping.h"
#include "probe/wire/exchange.h"
#include "probe/wire/http_message.h"
#include "probe/wire/tap.h"

#include <chrono>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace soapwrapper::probe::wire
{
namespace
{

constexpr std::size_t kNowhere = std::string_view::npos;

// The first element in the envelope's body.
std::string operation_of(std::string_view xml)
{
    bool is_in_body = false;
    for (std::size_t at = xml.find('<'); at != kNowhere; at = xml.find('<', at)) {
        const messages::Tag tag = messages::tag_at(xml, at);
        if (tag.end == kNowhere) break;
        at = tag.end;
        if (tag.kind != messages::TagKind::kStart) continue;
        const std::string_view name = messages::without_prefix(tag.name);
        if (is_in_body && !name.empty()) return std::string(name);
        is_in_body = is_in_body || name == "Body";
    }
    return "-";
}

// "https://filer1:8086/path", from the request and the connection.
std::string url_of(const HttpMessage& request, const Connection& connection)
{
    const std::string_view head = request.head();
    const std::size_t begin = head.find(' ');
    if (begin == kNowhere) return {};
    const std::string_view rest = head.substr(begin + 1);
    const std::string target(rest.substr(0, rest.find_first_of(" \r\n")));
    if (target.empty() || target.front() != '/') return target; // it is a whole one
    std::string host = request.field("host");
    if (host.empty()) host = connection.address;
    return (connection.is_tls ? "https://" : "http://") + host + target;
}

} // namespace

Exchange::~Exchange()
{
    for (std::string* text : {&request_head, &request_body, &reply_head, &reply_body}) messages::wipe(*text);
}

void Exchanges::finish() noexcept
{
    if (takers_.empty()) return;
    observe(nullptr);
    for (const auto& each : std::exchange(talks_, {})) {
        try {
            if (each.second) give(*each.second);
        } catch (...) { // it is lost, as an observer's failure is
        }
    }
}

void Exchanges::give_to(TakeExchange taker)
{
    takers_.push_back(std::move(taker));
    observe(this);
}

Exchanges::Talk& Exchanges::talk_on(const Connection& connection)
{
    const auto [found, is_first] = talks_.try_emplace(connection.number);
    std::unique_ptr<Talk>& talk = found->second;
    if (!talk) talk = std::make_unique<Talk>();
    if (is_first) {
        talk->begun = connection.begun;
        talk->since = connection.since;
    }
    talk->connection = connection; // more may be known of it
    return *talk;
}

void Exchanges::connected(const Connection& connection, int error)
{
    Talk& talk = talk_on(connection);
    if (error == 0) return;
    talk.failure = std::strerror(error);
    closed(connection);
}

void Exchanges::sent(const Connection& connection, std::string_view bytes)
{
    for (std::size_t taken = 0; taken < bytes.size();) {
        Talk& talk = talk_on(connection);
        if (talk.request.is_whole()) {
            give(talk); // another request, ahead of the reply to this one
            talks_[connection.number] = nullptr;
            continue;
        }
        taken += talk.request.take(bytes.substr(taken));
        give_if_whole(talk);
    }
}

bool Exchanges::is_over(const Connection& connection) const
{
    const auto found = talks_.find(connection.number);
    return found != talks_.end() && !found->second;
}

void Exchanges::received(const Connection& connection, std::string_view bytes)
{
    if (bytes.empty()) {
        const auto found = talks_.find(connection.number);
        if (found == talks_.end() || !found->second) return;
        found->second->peer_ended = true;
        found->second->reply.end();
        give_if_whole(*found->second);
        return;
    }
    for (std::size_t taken = 0; taken < bytes.size();) {
        if (is_over(connection)) return; // behind the reply: nobody asked for the rest
        Talk& talk = talk_on(connection);
        if (talk.reply.is_whole()) return; // to a request that isn't whole itself
        taken += talk.reply.take(bytes.substr(taken));
        give_if_whole(talk);
    }
}

void Exchanges::failed(const Connection& connection, const std::string& why)
{
    if (is_over(connection)) return;
    Talk& talk = talk_on(connection);
    if (talk.failure.empty()) talk.failure = why;
}

void Exchanges::closed(const Connection& connection)
{
    const auto found = talks_.find(connection.number);
    if (found == talks_.end()) return;
    const std::unique_ptr<Talk> talk = std::move(found->second);
    talks_.erase(found);
    if (!talk) return;
    talk->connection = connection;
    talk->request.end();
    talk->reply.end();
    give(*talk);
}

void Exchanges::give_if_whole(Talk& talk)
{
    if (!talk.request.is_whole() || !talk.reply.is_whole()) return;
    give(talk);
    talks_[talk.connection.number] = nullptr;
}

std::string Exchanges::failure_of(const Talk& talk)
{
    if (talk.reply.is_whole()) return {};
    if (is_cut() || was_ended(talk.connection)) return "cut short by this program";
    if (!talk.failure.empty()) return talk.failure;
    if (!talk.request.is_begun()) return "the connection was given up ahead of a request";
    const std::string when = talk.reply.is_begun() ? "within the reply" : "without a reply";
    return (talk.peer_ended ? "the service ended the connection " : "the library ended the connection ") +
           when;
}

void Exchanges::give(Talk& talk)
{
    talk.request.unpack();
    talk.reply.unpack();
    Exchange exchange;
    exchange.connection = talk.connection;
    exchange.url = url_of(talk.request, talk.connection);
    exchange.operation = operation_of(talk.request.body());
    exchange.request_head = talk.request.head();
    exchange.request_body = talk.request.body();
    exchange.request_note = talk.request.note();
    exchange.request_is_whole = talk.request.is_whole();
    exchange.reply_head = talk.reply.head();
    exchange.reply_body = talk.reply.body();
    exchange.reply_note = talk.reply.note();
    exchange.reply_is_whole = talk.reply.is_whole();
    exchange.status = talk.reply.status();
    exchange.failure = failure_of(talk);
    exchange.begun = talk.begun;
    exchange.took =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - talk.since);
    for (const TakeExchange& taker : takers_) taker(exchange);
}

} // namespace soapwrapper::probe::wire
