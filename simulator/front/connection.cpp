#include "simulator/front/connection.h"

#include "simulator/front/address.h"
#include "simulator/front/http.h"
#include "simulator/front/limits.h"
#include "simulator/front/parted_body.h"
#include "simulator/front/past_library.h"
#include "simulator/front/request_head.h"
#include "simulator/front/routes.h"

#include <microhttpd.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr std::size_t kBlock = 16 * 1024;

struct DestroyResponse {
    void operator()(MHD_Response* response) const { MHD_destroy_response(response); }
};
using Response = std::unique_ptr<MHD_Response, DestroyResponse>;

int fd_of(MHD_Connection* connection)
{
    return MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd;
}

} // namespace

Connection::Connection(Id id, MHD_Connection* carried, bool is_tls, Serves serves, const Limits& limits,
                       int wake_fd)
    : id_(id), carried_(carried), fd_(fd_of(carried)), server_(to_string(address_of(fd_))),
      client_(to_string(address_of(fd_, true))), is_from_loopback_(is_loopback(address_of(fd_, true))),
      is_tls_(is_tls), visitors_(visitors_of(serves, is_loopback(address_of(fd_)))), limits_(limits),
      wake_fd_(wake_fd), deadline_(Clock::now() + limits.for_request)
{
}

Connection::~Connection()
{
    if (answer_.stream) answer_.stream->close();
}

MHD_Result Connection::take_head(const std::vector<Route>& routes, const char* method, const char* path,
                                 const char* version)
{
    request_.method = method;
    request_.path = path;
    const Choice choice = choose_route(routes, visitors_, request_.method, request_.path);
    route_ = choice.route;
    const int status = judge_head(carried_, method, version);
    if (status == MHD_HTTP_BAD_REQUEST || (route_ && status != 0)) return refuse(refusal(status));
    if (!route_) return refuse(choice.refused);
    request_.query = values_of(carried_, MHD_GET_ARGUMENT_KIND);
    request_.fields = values_of(carried_, MHD_HEADER_KIND);
    return MHD_YES;
}

MHD_Result Connection::take_body(const char* data, std::size_t size)
{
    request_.body.append(data, size);
    return MHD_YES;
}

Request Connection::take_request()
{
    Request request = std::move(request_);
    request.client = client_;
    request.is_tls = is_tls_;
    request.server = server_;
    request.is_from_loopback = is_from_loopback_;
    return request;
}

void Connection::wait_for_answer()
{
    stage_ = Stage::kServing;
    MHD_suspend_connection(carried_);
}

void Connection::answer(Answer answer)
{
    answer_ = std::move(answer);
    stage_ = Stage::kAnswering;
    deadline_ = Clock::now() + limits_.for_answer;
    MHD_resume_connection(carried_);
}

MHD_Result Connection::give_answer()
{
    if (stage_ != Stage::kAnswering) return MHD_NO;
    switch (answer_.delivery) {
    case Delivery::kWhole:
    case Delivery::kDribble:
    case Delivery::kCut:
        return queue(std::move(answer_));
    case Delivery::kNothing:
        break;
    case Delivery::kReset:
        reset_peer(fd_);
        break;
    case Delivery::kRaw:
        send_raw(carried_, answer_.body);
        break;
    }
    return MHD_NO; // by which the library ends the connection
}

// The library has no way to drop a client of its own accord, but sees that its socket has ended.
void Connection::drop()
{
    if (answer_.stream) answer_.stream->close();
    shutdown(fd_, SHUT_RDWR);
    if (stage_ == Stage::kServing) MHD_resume_connection(carried_);
    go_on();
    stage_ = Stage::kDropped;
}

void Connection::go_on()
{
    if (!is_paused()) return;
    pause_end_ = Clock::time_point::max();
    MHD_resume_connection(carried_);
    eventfd_write(wake_fd_, 1); // a resumption by itself isn't a reason to run the library
}

int Connection::events_to_watch() const
{
    // A client that only sends no more still waits for its answer.
    if (stage_ == Stage::kServing || is_paused()) return 0;
    return stage_ == Stage::kAnswering && answer_.stream && answer_.stream->is_waiting() ? POLLRDHUP : -1;
}

Clock::time_point Connection::deadline() const
{
    const bool has_time = stage_ == Stage::kServing || stage_ == Stage::kDropped || is_paused() ||
                          (answer_.stream && answer_.stream->is_waiting());
    return has_time ? Clock::time_point::max() : deadline_;
}

MHD_Result Connection::refuse(const Answer& refusal)
{
    refused_with_ = refusal.status;
    stage_ = Stage::kAnswering;
    deadline_ = Clock::now() + limits_.for_answer;
    return queue(refusal);
}

MHD_Result Connection::queue(Answer answer)
{
    const Response response(make_response(answer));
    if (!response) return MHD_NO;
    answer.fields.emplace_back(MHD_HTTP_HEADER_SERVER, "soapwrapper-sim");
    answer.fields.emplace_back(MHD_HTTP_HEADER_CONTENT_TYPE, answer.content_type);
    answer.fields.emplace_back(MHD_HTTP_HEADER_CONNECTION, "close");
    for (const auto& [name, value] : answer.fields) {
        MHD_add_response_header(response.get(), name.c_str(), value.c_str());
    }
    return MHD_queue_response(carried_, static_cast<unsigned>(answer.status), response.get());
}

MHD_Response* Connection::make_response(Answer& answer)
{
    if (answer.stream) {
        answer_.stream = answer.stream;
        return MHD_create_response_from_callback(MHD_SIZE_UNKNOWN, kBlock, read_stream, this, nullptr);
    }
    if (answer.delivery == Delivery::kWhole) {
        auto body = std::make_unique<std::string>(std::move(answer.body));
        MHD_Response* const response = MHD_create_response_from_buffer_with_free_callback_cls(
            body->size(), body->data(), [](void* text) { delete static_cast<std::string*>(text); },
            body.get());
        if (response) body.release();
        return response;
    }
    body_ = std::make_unique<PartedBody>(
        answer.delivery == Delivery::kCut
            ? PartedBody::cut(std::move(answer.body))
            : PartedBody::dribbled(std::move(answer.body), answer.dribble_time, Clock::now()));
    return MHD_create_response_from_callback(body_->size(), kBlock, read_body, this, nullptr);
}

ssize_t Connection::read_stream(void* self, std::uint64_t, char* buffer, std::size_t size)
{
    Connection& connection = *static_cast<Connection*>(self);
    connection.deadline_ = Clock::now() + connection.limits_.for_answer;
    const ssize_t count =
        connection.answer_.stream->read(connection.carried_, connection.wake_fd_, buffer, size);
    if (count != MHD_CONTENT_READER_END_WITH_ERROR) return count;
    // The library may forget to clean up after a stream that ends with an error. It never does after one
    // whose last chunk can't be sent.
    shutdown(connection.fd_, SHUT_RDWR);
    return MHD_CONTENT_READER_END_OF_STREAM;
}

ssize_t Connection::read_body(void* self, std::uint64_t position, char* buffer, std::size_t size)
{
    Connection& connection = *static_cast<Connection*>(self);
    const PartedBody& body = *connection.body_;
    if (connection.stage_ == Stage::kDropped || body.ends_at(position)) {
        // As with a stream: the library cleans up after what can't be sent.
        shutdown(connection.fd_, SHUT_RDWR);
        *buffer = '\0';
        return 1;
    }
    const Clock::time_point now = Clock::now();
    connection.deadline_ = now + connection.limits_.for_answer;
    const std::size_t count = body.due(position, now).copy(buffer, size);
    if (count == 0) {
        connection.pause_end_ = body.due_time(position);
        MHD_suspend_connection(connection.carried_);
    }
    return static_cast<ssize_t>(count);
}

} // namespace soapwrapper::simulator
