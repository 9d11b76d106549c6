// A request and its answer, as the front hands them to those who serve.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_HTTP_H
#define SOAPWRAPPER_SIMULATOR_FRONT_HTTP_H

#include "simulator/front/answer_stream.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

// Names and values, in their order.
using Fields = std::vector<std::pair<std::string, std::string>>;

struct Request {
    std::string method;
    std::string path;
    std::string body;
    std::string client;
    bool is_tls = false;
    // A request that a test makes up may leave these out.
    Fields query{};       // decoded; a name without a value has an empty one
    Fields fields{};      // of the head
    std::string server{}; // "HOST:PORT", the address that the client has reached
    bool is_from_loopback = false;
};

// The first of that name, without regard to case; null if there is none.
const std::string* field_of(const Request& request, std::string_view name);
const std::string* query_of(const Request& request, std::string_view name);

// What becomes of an answer on its way.
enum class Delivery {
    kWhole,
    kDribble, // in pieces
    kCut,     // the head tells the whole length; the connection ends after half of the body
    kNothing, // the connection ends without a byte
    kReset,   // the same, by a TCP reset
    kRaw      // the first kMaxRaw bytes of the body alone are sent, without a head; then the connection ends
};

struct Answer {
    int status = 200;
    std::string content_type;
    std::string body;
    Fields fields; // more of the head
    // If there is one, what is appended to it is the body; it is delivered whole.
    std::shared_ptr<AnswerStream> stream;
    Delivery delivery = Delivery::kWhole;
    std::chrono::milliseconds dribble_time{0}; // from the first piece to the last
};

// Called by several threads at once. Must not throw.
using Handler = std::function<Answer(const Request&)>;

// For whom a route is.
enum class Audience { kHosts, kPeople, kAll };

struct Route {
    std::string method; // empty: all
    // "/*" at its end: all paths below; empty: whatever no other route has. The path decides first: a method
    // that no route of the path has is refused.
    std::string path;
    Handler handler;
    Audience audience = Audience::kHosts;
};

// Who comes in at a listener. People may be told apart by the address that they have reached.
enum class Serves { kHosts, kHostsAndPeopleOnLoopback, kPeople };

// An answer that says no more than its status.
Answer refusal(int status);

} // namespace soapwrapper::simulator

#endif
