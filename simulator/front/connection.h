// One client as the HTTP library carries it: its request, its answer, and how long each may take.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_CONNECTION_H
#define SOAPWRAPPER_SIMULATOR_FRONT_CONNECTION_H

#include "simulator/front/http.h"
#include "simulator/front/limits.h"
#include "simulator/front/parted_body.h"
#include "simulator/front/routes.h"

#include <microhttpd.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

class Connection
{
  public:
    using Id = std::uint64_t;
    enum class Stage {
        kReading,
        kServing,   // the request is whole; the library leaves the client alone until answer()
        kAnswering, // from answer() on, or since the request was refused
        kDropped
    };

    // `limits` must outlive the connection. The event descriptor wakes who runs the library.
    Connection(Id id, MHD_Connection* carried, bool is_tls, Serves serves, const Limits& limits, int wake_fd);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    Id id() const { return id_; }
    int fd() const { return fd_; }
    bool is_tls() const { return is_tls_; }
    const std::string& client() const { return client_; }
    Stage stage() const { return stage_; }
    // The HTTP status of a request that was answered without being served, or 0.
    int refused_with() const { return refused_with_; }

    // What the library brings.
    MHD_Result take_head(const std::vector<Route>& routes, const char* method, const char* path,
                         const char* version);
    MHD_Result take_body(const char* data, std::size_t size);

    // Once the request is whole: who is to serve it, and itself, given away.
    const Handler& handler() const { return route_->handler; }
    Audience audience() const { return route_->audience; }
    Request take_request();
    void wait_for_answer();
    void answer(Answer answer);
    // What the library asks for, once it goes on.
    MHD_Result give_answer();

    // Ends the connection as soon as the library runs again.
    void drop();

    // What to poll for while the library doesn't, to see that the client has gone; -1 if the library does.
    int events_to_watch() const;
    // There is more to come of the answer than what is being sent.
    bool goes_on() const { return answer_.stream || answer_.delivery == Delivery::kDribble; }
    // Never, while the request is being served or the answer waits for something to send.
    Clock::time_point deadline() const;
    // When go_on() is due, if the next piece of the answer has to wait; never, if not.
    Clock::time_point pause_end() const { return pause_end_; }
    // Lets the library ask for the next piece of the answer.
    void go_on();

  private:
    bool is_paused() const { return pause_end_ != Clock::time_point::max(); }
    MHD_Result refuse(const Answer& refusal);
    MHD_Result queue(Answer answer);
    MHD_Response* make_response(Answer& answer);
    static ssize_t read_stream(void* self, std::uint64_t position, char* buffer, std::size_t size);
    static ssize_t read_body(void* self, std::uint64_t position, char* buffer, std::size_t size);

    const Id id_;
    MHD_Connection* const carried_;
    const int fd_;
    const std::string server_;
    const std::string client_;
    const bool is_from_loopback_;
    const bool is_tls_;
    const Visitors visitors_;
    const Limits& limits_;
    const int wake_fd_;
    Stage stage_ = Stage::kReading;
    Clock::time_point deadline_;
    Request request_;
    const Route* route_ = nullptr;
    int refused_with_ = 0;
    Answer answer_;                    // until it is given to the library; its stream for good
    std::unique_ptr<PartedBody> body_; // if the answer is delivered in parts
    Clock::time_point pause_end_ = Clock::time_point::max();
};

} // namespace soapwrapper::simulator

#endif
