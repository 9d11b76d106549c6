#include "simulator/service/exchange_of.h"

#include "simulator/front/http.h"
#include "simulator/service/damaged_answer.h"
#include "simulator/traffic/exchange.h"
#include "simulator/traffic/recorder.h"

#include <chrono>

namespace soapwrapper::simulator
{

Exchange exchange_of(const Request& request)
{
    using std::chrono::milliseconds;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    Exchange exchange;
    exchange.time = std::chrono::duration_cast<milliseconds>(now).count();
    exchange.client = request.client;
    exchange.is_tls = request.is_tls;
    exchange.request_bytes = request.body.size();
    exchange.request = request.body.substr(0, Recorder::kLongestText);
    exchange.method = request.method;
    exchange.path = request.path;
    exchange.fields = request.fields;
    return exchange;
}

void add_answer(Exchange& exchange, const Answer& answer, std::chrono::steady_clock::duration time)
{
    exchange.status = visible_status(answer);
    exchange.reply_bytes = answer.body.size();
    exchange.reply = answer.body.substr(0, Recorder::kLongestText);
    exchange.microseconds = std::chrono::duration_cast<std::chrono::microseconds>(time).count();
}

} // namespace soapwrapper::simulator
