#include "messages/recording.h"

#include "messages/base64.h"
#include "messages/blotter.h"
#include "messages/wiping.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace soapwrapper::messages
{
namespace
{

using Json = nlohmann::ordered_json;

constexpr std::pair<ReplyEnd, const char*> kEnds[] = {
    {ReplyEnd::kWhole, "whole"},     {ReplyEnd::kCut, "cut"},     {ReplyEnd::kNoHttp, "no HTTP"},
    {ReplyEnd::kNothing, "nothing"}, {ReplyEnd::kReset, "reset"}, {ReplyEnd::kUnconnected, "unconnected"}};

bool is_utf8(const std::string& bytes)
{
    try {
        Json(bytes).dump();
        return true;
    } catch (const Json::type_error&) {
        return false;
    }
}

// Texts are mostly in UTF-8, but some services send Latin-1.
void put_body(Json& line, const std::string& name, const std::string& bytes)
{
    if (is_utf8(bytes)) {
        line[name] = bytes;
    } else {
        line[name + kBase64Suffix] = base64_of(bytes);
    }
}

std::string left_out(std::size_t bytes)
{
    return "(left out, " + std::to_string(bytes) + " bytes)";
}

// What is said about an HTTP error, and shown to users. Where no markup is, no element is that holds a
// secret.
bool is_plain_text(std::string_view body)
{
    constexpr std::size_t kLongest = 4096;
    return body.size() <= kLongest && std::all_of(body.begin(), body.end(), [](char c) {
               const bool is_blank = c == '\t' || c == '\r' || c == '\n';
               return is_blank || (c >= ' ' && c <= '~' && c != '<' && c != '&');
           });
}

std::string blotted_reply(const RecordedExchange& exchange, Blotter& blotter)
{
    constexpr int kFirstError = 400;
    const bool is_cut = exchange.end != ReplyEnd::kWhole;
    const bool is_plain = exchange.status >= kFirstError && is_plain_text(exchange.reply);
    return is_plain ? blotter.text(exchange.reply, is_cut) : blotter.message(exchange.reply, is_cut);
}

std::string dumped(const Json& line)
{
    return line.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

// The texts have been blotted.
std::string line_of(const RecordedExchange& exchange)
{
    Json line;
    line["number"] = exchange.number;
    line["time"] = exchange.time;
    line["microseconds"] = exchange.microseconds;
    line["url"] = exchange.url;
    line["tls"] = exchange.is_tls;
    line["operation"] = exchange.operation;
    put_body(line, "request", exchange.request);
    line["status"] = exchange.status;
    line["contentType"] = exchange.content_type;
    put_body(line, "reply", exchange.reply);
    line["end"] = name_of(exchange.end);
    line["failure"] = exchange.failure;
    return dumped(line);
}

} // namespace

RecordedExchange::~RecordedExchange()
{
    wipe(request);
    wipe(reply);
}

const char* name_of(ReplyEnd end)
{
    for (const auto& [each, name] : kEnds) {
        if (each == end) return name;
    }
    return "";
}

std::optional<ReplyEnd> reply_end_of(std::string_view name)
{
    for (const auto& [end, each] : kEnds) {
        if (each == name) return end;
    }
    return std::nullopt;
}

std::string recording_line(const RecordingHead& head, Blotter& blotter)
{
    Json line;
    line["recording"] = kRecordingVersion;
    line["program"] = blotter.text(head.program);
    line["library"] = blotter.text(head.library);
    line["time"] = head.time;
    return dumped(line);
}

std::string recording_line(const RecordedExchange& exchange, Blotter& blotter, const RecordingBounds& bounds)
{
    const bool is_cut = exchange.end != ReplyEnd::kWhole;
    RecordedExchange blotted;
    blotted.number = exchange.number;
    blotted.time = exchange.time;
    blotted.microseconds = exchange.microseconds;
    blotted.url = blotter.text(exchange.url);
    blotted.is_tls = exchange.is_tls;
    blotted.operation = blotter.text(exchange.operation);
    blotted.request = blotter.message(exchange.request, is_cut);
    blotted.reply = blotted_reply(exchange, blotter);
    blotted.status = exchange.status;
    blotted.content_type = blotter.text(exchange.content_type);
    blotted.end = exchange.end;
    blotted.failure = blotter.text(exchange.failure);
    std::string line = line_of(blotted);
    if (line.size() > bounds.line_bytes) {
        blotted.reply = left_out(exchange.reply.size());
        line = line_of(blotted);
    }
    if (line.size() > bounds.line_bytes) {
        blotted.request = left_out(exchange.request.size());
        line = line_of(blotted);
    }
    return line;
}

} // namespace soapwrapper::messages
