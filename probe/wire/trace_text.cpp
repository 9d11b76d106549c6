#include "probe/wire/trace_text.h"

#include "messages/blotter.h"
#include "messages/indented.h"
#include "messages/markup.h"
#include "messages/secret_fields.h"
#include "messages/utc_time.h"
#include "probe/output/text.h"
#include "probe/output/url_login.h"
#include "probe/wire/exchange.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace soapwrapper::probe::wire
{
namespace
{

constexpr std::size_t kNowhere = std::string_view::npos;

std::string milliseconds(std::chrono::microseconds time)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.1f ms", static_cast<double>(time.count()) / 1000);
    return text;
}

// Of a connection without a request it isn't known whether it was to be encrypted.
std::string encryption(const Exchange& exchange)
{
    if (!exchange.connection.is_tls) return exchange.request_head.empty() ? "-" : "plain";
    return exchange.connection.tls.empty() ? "TLS" : exchange.connection.tls;
}

// Fields with two blanks between them, so that a URL and a cipher are one each.
std::string heading(std::uint64_t number, const Exchange& exchange, messages::Blotter& blotter)
{
    const std::string method = exchange.request_head.substr(0, exchange.request_head.find(' '));
    const std::string what = method.empty() ? "-" : method + " " + without_url_logins(exchange.url);
    const std::string status = exchange.status == 0 ? "-" : std::to_string(exchange.status);
    std::string text = "#" + std::to_string(number) + "  " + messages::utc_time(exchange.begun);
    for (const std::string& field : {what, exchange.connection.address, encryption(exchange),
                                     exchange.operation, status, milliseconds(exchange.took)}) {
        text += "  " + clean_line(blotter.text(field));
    }
    return text + "\n";
}

void add_lines(std::string& trace, const char* mark, std::string_view text)
{
    for (const std::string& line : clean_all_lines(text)) {
        trace += mark;
        if (!line.empty()) trace += " " + line;
        trace += "\n";
    }
}

std::string_view without_line_end(std::string_view line)
{
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.remove_suffix(1);
    return line;
}

// Without what is in fields that may hold something secret, and in the lines that go on with them.
std::string blotted_head(std::string_view head, messages::Blotter& blotter)
{
    std::string result;
    bool is_secret = false;
    while (!head.empty()) {
        const std::size_t size = std::min(head.find('\n'), head.size() - 1) + 1;
        const std::string_view line = without_line_end(head.substr(0, size));
        head.remove_prefix(size);
        const bool goes_on = !line.empty() && messages::is_blank(line.front());
        const std::size_t colon = line.find(':');
        if (!goes_on) is_secret = colon != kNowhere && messages::is_secret_field(line.substr(0, colon));
        if (is_secret && goes_on) continue;
        result += is_secret ? std::string(line.substr(0, colon)) + ": ***" : std::string(line);
        result += "\n";
    }
    return blotter.text(result);
}

// One direction of an exchange.
struct Direction {
    const char* mark;
    const char* name;
    const std::string& head;
    const std::string& body;
    const std::string& note;
    bool is_whole;
};

void add(std::string& trace, const Direction& direction, messages::Blotter& blotter)
{
    add_lines(trace, direction.mark, blotted_head(direction.head, blotter));
    const bool is_cut = !direction.is_whole || !direction.note.empty();
    add_lines(trace, direction.mark, messages::indented(blotter.message(direction.body, is_cut)));
    if (!direction.note.empty()) trace += std::string("! ") + direction.name + ": " + direction.note + "\n";
}

} // namespace

std::string trace_text(std::uint64_t number, const Exchange& exchange, messages::Blotter& blotter)
{
    std::string trace = heading(number, exchange, blotter);
    add(trace,
        {">", "request", exchange.request_head, exchange.request_body, exchange.request_note,
         exchange.request_is_whole},
        blotter);
    add(trace,
        {"<", "reply", exchange.reply_head, exchange.reply_body, exchange.reply_note,
         exchange.reply_is_whole},
        blotter);
    if (!exchange.failure.empty()) add_lines(trace, "!", blotter.text(exchange.failure));
    return trace;
}

} // namespace soapwrapper::probe::wire
