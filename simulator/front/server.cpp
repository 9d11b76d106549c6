#include "simulator/front/server.h"

#include "simulator/front/connection.h"
#include "simulator/front/entrance.h"
#include "simulator/front/http.h"
#include "simulator/front/limits.h"
#include "simulator/front/request_log.h"
#include "simulator/front/worker_pool.h"

#include <microhttpd.h>
#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr char kNoOperation[] = "-";
// In what is polled: first the stop and the workers, then two for each entrance, the clients that are watched
// last.
constexpr int kFirstEntrance = 2;

bool lacks_resources(int error)
{
    return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}

bool is_reading(const Connection& connection)
{
    return connection.stage() == Connection::Stage::kReading;
}

} // namespace

Server::Server(std::vector<Listener> listeners, std::vector<Route> routes, unsigned threads, RequestLog& log,
               int stop_fd, std::function<void()> on_stop, const Limits& limits)
    : routes_(std::move(routes)), log_(log), stop_fd_(stop_fd), on_stop_(std::move(on_stop)), limits_(limits),
      workers_(threads)
{
    for (Listener& listener : listeners) {
        entrances_.emplace_back(std::move(listener), EntranceCalls{on_request, on_connection, this},
                                limits_.connections);
    }
}

Server::~Server()
{
    drop_all();
    entrances_.clear(); // each tells what it closes
}

bool Server::run()
{
    while (!stopping_ || (!connections_.empty() && Clock::now() < stop_deadline_)) poll_once();
    drop_all();
    return workers_.end(stop_deadline_);
}

MHD_Result Server::on_request(void* self, MHD_Connection* carried, const char* path, const char* method,
                              const char* version, const char* data, std::size_t* size, void** begun)
{
    Server& server = *static_cast<Server*>(self);
    auto& connection = *static_cast<Connection*>(
        MHD_get_connection_info(carried, MHD_CONNECTION_INFO_SOCKET_CONTEXT)->socket_context);
    if (connection.stage() == Connection::Stage::kDropped) return MHD_NO;
    try {
        if (!std::exchange(*begun, &connection)) {
            return server.take_head(connection, path, method, version);
        }
        if (const std::size_t count = std::exchange(*size, 0)) return connection.take_body(data, count);
        return is_reading(connection) ? server.take_end(connection) : connection.give_answer();
    } catch (const std::exception&) { // memory ran out
        return MHD_NO;
    }
}

void Server::on_connection(void* self, MHD_Connection* carried, void** context,
                           MHD_ConnectionNotificationCode code) noexcept
{
    Server& server = *static_cast<Server*>(self);
    if (code == MHD_CONNECTION_NOTIFY_STARTED) {
        const Id id = server.next_id_++;
        const auto [place, is_new] = server.connections_.try_emplace(
            id, id, carried, server.accepting_->is_tls(), server.accepting_->serves(), server.limits_,
            server.workers_.reply_fd());
        *context = &place->second;
        server.accepting_->prepare(carried);
    } else {
        server.closed(*static_cast<const Connection*>(*context));
    }
}

MHD_Result Server::take_head(Connection& connection, const char* path, const char* method,
                             const char* version)
{
    const MHD_Result result = connection.take_head(routes_, method, path, version);
    const int status = connection.refused_with();
    if (status != 0) note(connection, "refused with HTTP status " + std::to_string(status));
    return result;
}

MHD_Result Server::take_end(Connection& connection)
{
    workers_.submit(connection.id(), connection.handler(), connection.take_request(), connection.audience());
    connection.wait_for_answer();
    return MHD_YES;
}

void Server::closed(const Connection& connection)
{
    if (is_reading(connection)) note(connection, "closed without a whole request");
    workers_.forget(connection.id());
    connections_.erase(connection.id());
}

void Server::poll_once()
{
    poll_all();
    drop_vanished();
    deliver_replies();
    end_pauses();
    for (Entrance& entrance : entrances_) entrance.run();
    sweep();
    auto polled = polled_.begin() + kFirstEntrance;
    for (Entrance& entrance : entrances_) {
        if (polled[1].revents != 0) accept_from(entrance);
        polled += 2;
    }
    if (polled_[0].revents != 0) begin_stop();
}

void Server::poll_all()
{
    polled_.clear();
    watched_.clear();
    polled_.push_back({stopping_ ? -1 : stop_fd_, POLLIN, 0});
    polled_.push_back({workers_.reply_fd(), POLLIN, 0});
    const bool accepting = can_accept();
    for (const Entrance& entrance : entrances_) {
        polled_.push_back({entrance.fd(), POLLIN, 0});
        polled_.push_back({accepting ? entrance.listening_fd() : -1, POLLIN, 0});
    }
    for (const auto& [id, connection] : connections_) {
        const int events = connection.events_to_watch();
        if (events < 0) continue;
        polled_.push_back({connection.fd(), static_cast<short>(events), 0});
        watched_.push_back(id);
    }
    if (poll(polled_.data(), polled_.size(), time_to_wait()) < 0) {
        for (pollfd& each : polled_) each.revents = 0;
    }
}

int Server::time_to_wait() const
{
    const Clock::time_point now = Clock::now();
    Clock::time_point next = stop_deadline_;
    if (accept_again_ > now) next = std::min(next, accept_again_);
    for (const auto& [id, connection] : connections_)
        next = std::min({next, connection.deadline(), connection.pause_end()});
    for (const Entrance& entrance : entrances_) {
        if (const auto wait = entrance.time_to_wait()) next = std::min(next, now + *wait);
    }
    if (next == Clock::time_point::max()) return -1;
    // Rounded up, so that what is due is due when poll returns.
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(next - now).count();
    return static_cast<int>(std::clamp<std::int64_t>(wait, 0, std::numeric_limits<int>::max()));
}

// Nobody is left to answer.
void Server::drop_vanished()
{
    auto polled = polled_.end() - static_cast<std::ptrdiff_t>(watched_.size());
    for (const Id id : watched_) {
        if ((polled++)->revents != 0) connections_.at(id).drop();
    }
}

void Server::deliver_replies()
{
    for (WorkerPool::Reply& reply : workers_.take_replies()) {
        const auto found = connections_.find(reply.id);
        if (found != connections_.end() && found->second.stage() == Connection::Stage::kServing) {
            found->second.answer(std::move(reply.answer));
            if (stopping_ && found->second.goes_on()) found->second.drop();
        } else if (reply.answer.stream) {
            reply.answer.stream->close();
        }
    }
}

// Of answers that are delivered a piece at a time.
void Server::end_pauses()
{
    const Clock::time_point now = Clock::now();
    for (auto& [id, connection] : connections_) {
        if (connection.pause_end() <= now) connection.go_on();
    }
}

void Server::sweep()
{
    const Clock::time_point now = Clock::now();
    for (auto& [id, connection] : connections_) {
        if (connection.deadline() > now) continue;
        if (is_reading(connection)) note(connection, "dropped, the request took too long");
        connection.drop();
    }
}

void Server::accept_from(Entrance& entrance)
{
    if (!can_accept()) return;
    if (connections_.size() >= limits_.connections) {
        make_room();
        return;
    }
    accepting_ = &entrance;
    if (!entrance.accept() && lacks_resources(errno) && !make_room()) {
        accept_again_ = Clock::now() + std::chrono::seconds(1);
    }
}

bool Server::can_accept() const
{
    if (accept_again_ > Clock::now()) return false;
    if (connections_.size() < limits_.connections) return true;
    const auto is_dropped = [](const auto& each) {
        return each.second.stage() == Connection::Stage::kDropped;
    };
    const auto can_be_dropped = [](const auto& each) { return is_reading(each.second); };
    return std::none_of(connections_.begin(), connections_.end(), is_dropped) &&
           std::any_of(connections_.begin(), connections_.end(), can_be_dropped);
}

// The place is free once the library has run.
bool Server::make_room()
{
    const auto oldest = std::find_if(connections_.begin(), connections_.end(),
                                     [](const auto& each) { return is_reading(each.second); });
    if (oldest == connections_.end()) return false;
    note(oldest->second, "dropped to make room, the request was not complete");
    oldest->second.drop();
    return true;
}

void Server::begin_stop()
{
    stopping_ = true;
    stop_deadline_ = Clock::now() + limits_.for_stop;
    for (Entrance& entrance : entrances_) entrance.close();
    for (auto& [id, connection] : connections_) {
        if (is_reading(connection) || connection.goes_on()) connection.drop();
    }
    on_stop_();
}

void Server::drop_all()
{
    for (auto& [id, connection] : connections_) connection.drop();
    for (Entrance& entrance : entrances_) entrance.run();
}

void Server::note(const Connection& connection, const std::string& outcome)
{
    log_.line(connection.is_tls(), connection.client(), kNoOperation, outcome);
}

} // namespace soapwrapper::simulator
