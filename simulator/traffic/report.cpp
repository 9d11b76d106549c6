#include "simulator/traffic/report.h"

#include "messages/indented.h"
#include "messages/utc_time.h"
#include "simulator/front/http.h"
#include "simulator/traffic/exchange.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

using nlohmann::json;

std::string utc(std::int64_t milliseconds)
{
    return messages::utc_time(std::chrono::system_clock::time_point(std::chrono::milliseconds(milliseconds)));
}

std::string first_of(const Fields& fields, std::string_view name, const std::string& otherwise)
{
    Request request;
    request.fields = fields;
    const std::string* value = field_of(request, name);
    return value ? *value : otherwise;
}

json fields_of(const Exchange& exchange)
{
    json fields = json::array();
    for (const auto& field : exchange.fields) {
        fields.push_back({{"name", field.first}, {"value", field.second}});
    }
    return fields;
}

json request_of(const Exchange& exchange)
{
    const std::string host = first_of(exchange.fields, "Host", "localhost");
    return {{"method", exchange.method},
            {"url", (exchange.is_tls ? "https://" : "http://") + host + exchange.path},
            {"httpVersion", "HTTP/1.1"},
            {"cookies", json::array()},
            {"headers", fields_of(exchange)},
            {"queryString", json::array()},
            {"postData",
             {{"mimeType", first_of(exchange.fields, "Content-Type", "")},
              {"text", messages::indented(exchange.request)},
              {"_isCut", exchange.request_is_cut}}},
            {"headersSize", -1},
            {"bodySize", exchange.request_bytes}};
}

json response_of(const Exchange& exchange)
{
    return {{"status", exchange.status},
            {"statusText", ""},
            {"httpVersion", "HTTP/1.1"},
            {"cookies", json::array()},
            {"headers", json::array()},
            {"content",
             {{"size", exchange.reply_bytes},
              {"mimeType", "text/xml"},
              {"text", messages::indented(exchange.reply)},
              {"_isCut", exchange.reply_is_cut}}},
            {"redirectURL", ""},
            {"headersSize", -1},
            {"bodySize", exchange.reply_bytes}};
}

json entry_of(const Exchange& exchange)
{
    const double milliseconds = static_cast<double>(exchange.microseconds) / 1000;
    return {{"startedDateTime", utc(exchange.time)},
            {"time", milliseconds},
            {"request", request_of(exchange)},
            {"response", response_of(exchange)},
            {"cache", json::object()},
            {"timings", {{"send", 0}, {"wait", milliseconds}, {"receive", 0}}},
            {"_number", exchange.number},
            {"_client", exchange.client},
            {"_operation", exchange.operation},
            {"_outcome", exchange.outcome},
            {"_fault", exchange.fault_code ? json(*exchange.fault_code) : json(nullptr)},
            {"_trouble", exchange.trouble}};
}

} // namespace

json report_of(const std::vector<std::shared_ptr<const Exchange>>& exchanges, std::string_view release)
{
    json entries = json::array();
    for (const std::shared_ptr<const Exchange>& exchange : exchanges) entries.push_back(entry_of(*exchange));
    return {{"log",
             {{"version", "1.2"},
              {"creator", {{"name", "soapwrapper-sim"}, {"version", release}}},
              {"entries", std::move(entries)}}}};
}

} // namespace soapwrapper::simulator
