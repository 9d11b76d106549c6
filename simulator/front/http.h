// A request and its answer, as the front hands them to those who serve.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_HTTP_H
#define SOAPWRAPPER_SIMULATOR_FRONT_HTTP_H

#include "simulator/front/answer_stream.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

struct Request {
    std::string method;
    std::string path;
    std::string body;
    std::string client;
    bool is_tls = false;
};

struct Answer {
    int status = 200;
    std::string content_type;
    std::string body;
    std::vector<std::pair<std::string, std::string>> fields; // more of the head
    std::shared_ptr<AnswerStream> stream; // if there is one, what is appended to it is the body
};

// Called by several threads at once. Must not throw.
using Handler = std::function<Answer(const Request&)>;

struct Route {
    std::string method;
    std::string path; // empty: whatever no other route has
    Handler handler;
};

// An answer that says no more than its status.
Answer refusal(int status);

// The route that a request takes, or the answer if there is none.
struct Choice {
    const Route* route = nullptr;
    Answer refused;
};
Choice choose_route(const std::vector<Route>& routes, const std::string& method, const std::string& path);

} // namespace soapwrapper::simulator

#endif
