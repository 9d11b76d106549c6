// What a connection carried: a request and its reply.
#ifndef SOAPWRAPPER_PROBE_WIRE_EXCHANGE_H
#define SOAPWRAPPER_PROBE_WIRE_EXCHANGE_H

#include "probe/wire/tap.h"

#include <chrono>
#include <functional>
#include <string>

namespace soapwrapper::probe::wire
{

// As it went over the wire: what is secret is in it still, and is wiped at its end.
struct Exchange {
    Exchange() = default;
    ~Exchange();
    Exchange(const Exchange&) = default;
    Exchange& operator=(const Exchange&) = default;
    Exchange(Exchange&&) = default;
    Exchange& operator=(Exchange&&) = default;

    Connection connection;
    std::string url;             // "https://filer1:8086/path"; of no request, empty
    std::string operation = "-"; // the first element in the body, without its prefix

    std::string request_head; // with the empty line at its end
    std::string request_body; // out of its chunks, and unpacked
    std::string request_note; // what is to be known of a body that isn't whole or isn't what it should be
    std::string reply_head;
    std::string reply_body;
    std::string reply_note;
    bool request_is_whole = false;
    bool reply_is_whole = false;
    int status = 0; // HTTP's; 0: none

    std::string failure; // why it ended, if it isn't with a whole reply: "Connection refused"
    std::chrono::system_clock::time_point begun;
    std::chrono::microseconds took{0};
};

using TakeExchange = std::function<void(const Exchange&)>;

} // namespace soapwrapper::probe::wire

#endif
