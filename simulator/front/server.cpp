#include "simulator/front/server.h"

#include "simulator/front/address.h"
#include "simulator/front/connection.h"
#include "simulator/front/limits.h"
#include "simulator/front/request_log.h"
#include "simulator/front/worker_pool.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr char kNoOperation[] = "-";

bool lacks_resources(int error)
{
    return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}

} // namespace

Server::Server(std::vector<Listener> listeners, unsigned threads, Handler handler, RequestLog& log,
               int stop_fd, std::function<void()> on_stop, const Limits& limits)
    : listeners_(std::move(listeners)), log_(log), stop_fd_(stop_fd), on_stop_(std::move(on_stop)),
      limits_(limits), workers_(threads, std::move(handler))
{
}

void Server::run()
{
    while (!stopping_ || (!connections_.empty() && Clock::now() < stop_deadline_)) poll_once();
    connections_.clear();
}

void Server::poll_once()
{
    polled_.clear();
    polled_.push_back({stopping_ ? -1 : stop_fd_, POLLIN, 0});
    polled_.push_back({workers_.reply_fd(), POLLIN, 0});
    const bool accepting = can_accept();
    for (const Listener& listener : listeners_) {
        polled_.push_back({accepting ? listener.socket.get() : -1, POLLIN, 0});
    }
    const std::size_t first_connection = polled_.size();
    for (const auto& [id, connection] : connections_) {
        polled_.push_back({connection.fd(), connection.events(), 0});
    }
    if (poll(polled_.data(), polled_.size(), time_to_wait()) < 0) {
        for (pollfd& each : polled_) each.revents = 0;
    }

    auto happened = polled_.begin() + static_cast<std::ptrdiff_t>(first_connection);
    for (auto& [id, connection] : connections_) tend(id, connection, (happened++)->revents);
    deliver_replies();
    sweep();
    for (std::size_t i = 0; i < listeners_.size(); ++i) {
        if (polled_[2 + i].revents != 0) accept_from(listeners_[i]);
    }
    if (polled_[0].revents != 0) begin_stop();
}

int Server::time_to_wait() const
{
    const Clock::time_point now = Clock::now();
    Clock::time_point next = stop_deadline_;
    if (accept_again_ > now) next = std::min(next, accept_again_);
    for (const auto& [id, connection] : connections_) next = std::min(next, connection.deadline());
    if (next == Clock::time_point::max()) return -1;
    // Rounded up, so that what is due is due when poll returns.
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(next - now).count();
    return static_cast<int>(std::clamp<std::int64_t>(wait, 0, std::numeric_limits<int>::max()));
}

void Server::tend(Id id, Connection& connection, short happened)
{
    if (happened == 0) return;
    if (connection.stage() == Connection::Stage::kServing) {
        connection.abandon(); // nobody is left to answer
        return;
    }
    connection.advance(Clock::now());
    if (connection.stage() == Connection::Stage::kHasRequest) {
        workers_.submit(id, {connection.take_request(), connection.client(), connection.is_tls()});
    }
}

void Server::deliver_replies()
{
    for (WorkerPool::Reply& reply : workers_.take_replies()) {
        const auto found = connections_.find(reply.id);
        if (found == connections_.end() || found->second.stage() != Connection::Stage::kServing) continue;
        const Clock::time_point now = Clock::now();
        found->second.answer(std::move(reply.response), now);
        found->second.advance(now);
    }
}

void Server::sweep()
{
    const Clock::time_point now = Clock::now();
    for (auto each = connections_.begin(); each != connections_.end();) {
        const Connection& connection = each->second;
        const bool gone = connection.stage() == Connection::Stage::kGone;
        if (!gone && connection.deadline() > now) {
            ++each;
            continue;
        }
        if (connection.refusal() != 0) {
            note(connection, "refused with HTTP status " + std::to_string(connection.refusal()));
        } else if (!connection.had_request()) {
            note(connection, gone ? "closed without a whole request" : "dropped, the request took too long");
        }
        each = connections_.erase(each);
    }
}

void Server::accept_from(const Listener& listener)
{
    if (!can_accept()) return;
    Descriptor socket(accept4(listener.socket.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!socket.valid()) {
        if (lacks_resources(errno) && !make_room()) accept_again_ = Clock::now() + std::chrono::seconds(1);
        return;
    }
    if (connections_.size() >= limits_.connections) make_room();
    std::string client = to_string(address_of(socket.get(), true));
    connections_.emplace(next_id_++, Connection(Stream(std::move(socket), listener.tls), std::move(client),
                                                limits_, Clock::now()));
}

bool Server::can_accept() const
{
    if (accept_again_ > Clock::now()) return false;
    return connections_.size() < limits_.connections ||
           std::any_of(connections_.begin(), connections_.end(),
                       [](const auto& each) { return !each.second.had_request(); });
}

bool Server::make_room()
{
    const auto oldest = std::find_if(connections_.begin(), connections_.end(),
                                     [](const auto& each) { return !each.second.had_request(); });
    if (oldest == connections_.end()) return false;
    note(oldest->second, "dropped to make room, the request was not complete");
    connections_.erase(oldest);
    return true;
}

void Server::begin_stop()
{
    stopping_ = true;
    stop_deadline_ = Clock::now() + limits_.for_stop;
    listeners_.clear();
    for (auto each = connections_.begin(); each != connections_.end();) {
        each = each->second.had_request() ? std::next(each) : connections_.erase(each);
    }
    on_stop_();
}

void Server::note(const Connection& connection, const std::string& outcome)
{
    log_.line(connection.is_tls(), connection.client(), kNoOperation, outcome);
}

} // namespace soapwrapper::simulator
