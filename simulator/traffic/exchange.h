#ifndef SOAPWRAPPER_SIMULATOR_TRAFFIC_EXCHANGE_H
#define SOAPWRAPPER_SIMULATOR_TRAFFIC_EXCHANGE_H

#include "simulator/front/http.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace soapwrapper::simulator
{

// A request and what it was answered.
struct Exchange {
    std::uint64_t number = 0;
    std::int64_t time = 0; // milliseconds since 1970
    std::string client;
    bool is_tls = false;
    std::string operation = "-"; // that, if the request was for none
    int status = 0;              // of HTTP; 0: none was sent
    std::optional<int> fault_code;
    std::string outcome;
    std::int64_t microseconds = 0;
    std::size_t request_bytes = 0; // of the bodies, as they were
    std::size_t reply_bytes = 0;
    std::string request; // the bodies
    std::string reply;
    bool request_is_cut = false;
    bool reply_is_cut = false;
    std::string trouble; // the kind that was applied; empty: none
    std::string method;
    std::string path; // without the query
    Fields fields;    // of the request's head
};

} // namespace soapwrapper::simulator

#endif
