// Asking the service how an operation stands, once or until it is no longer busy.
#ifndef SOAPWRAPPER_OPERATIONS_BUSY_LOOP_H
#define SOAPWRAPPER_OPERATIONS_BUSY_LOOP_H

#include "plugin/base/session_log.h"
#include "plugin/host/status.h"
#include "service/clock.h"
#include "service/service_call.h"

#include <cstdint>

namespace soapwrapper
{

// In what the three waits differ: where the service says how long to leave it alone, and what is logged.
template <class Result>
struct BusyLoop {
    int Result::*delay;
    const char* delay_name;
    const EntryLog& log;
    const EntryLog& first_return_code;
    const EntryLog* later_return_codes; // null: they are not logged
};

// For the length that the service asks for. 0 is no pause at all.
inline void pause_as_asked(int delay)
{
    constexpr unsigned int kWhenNegative = 30;
    if (delay == 0) return;
    pause_for(delay < 0 ? kWhenNegative : static_cast<unsigned int>(delay));
}

// The result of the last call, whose reply is then in `response`. There is no limit on the rounds.
template <class Result, class Request, class Response>
int ask(const BusyLoop<Result>& loop, ServiceCall& call, Operation<Request, Response> operation,
        Request& request, Response& response, std::int32_t blockflag)
{
    int result = call.send_quietly(operation, request, response);
    loop.first_return_code.return_code(result);
    while (blockflag != 0 && result == SOAP_OK && response.result && response.result->error == STS_EBUSY) {
        const int delay = response.result->*loop.delay;
        loop.log.record("STS_EBUSY ", loop.delay_name, " = ", delay);
        // An operation may run for days: each reply goes before the next one comes.
        response.result = nullptr;
        call.release_reply();
        pause_as_asked(delay);
        result = call.send_quietly(operation, request, response);
        if (loop.later_return_codes) loop.later_return_codes->return_code(result);
    }
    return result;
}

} // namespace soapwrapper

#endif
