// A recording of exchanges as a file: a line of JSON that tells where it comes from, and one for each
// exchange, so that what has been written can be read whatever becomes of the writer.
#ifndef SOAPWRAPPER_MESSAGES_RECORDING_H
#define SOAPWRAPPER_MESSAGES_RECORDING_H

#include "messages/blotter.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::messages
{

constexpr int kRecordingVersion = 1;
constexpr char kBase64Suffix[] = "Base64"; // of the name of a body that isn't UTF-8

struct RecordingBounds {
    std::size_t bytes = std::size_t{256} << 20;
    std::size_t line_bytes = std::size_t{16} << 20; // without the line feed
    std::size_t exchanges = 500'000;
};

struct RecordingHead {
    std::string program; // that recorded it, and its version
    std::string library; // the release of the one that was at work
    std::string time;
};

enum class ReplyEnd {
    kWhole,
    kCut,        // the connection ended within the reply
    kNoHttp,     // what came has no head that can be read
    kNothing,    // the connection ended without a byte of a reply
    kReset,      // the same, by a TCP reset
    kUnconnected // there was none; a TLS handshake that fails makes none
};

const char* name_of(ReplyEnd end);
std::optional<ReplyEnd> reply_end_of(std::string_view name);

// What is secret in its bodies is wiped at its end.
struct RecordedExchange {
    RecordedExchange() = default;
    ~RecordedExchange();
    RecordedExchange(const RecordedExchange&) = default;
    RecordedExchange& operator=(const RecordedExchange&) = default;
    RecordedExchange(RecordedExchange&&) = default;
    RecordedExchange& operator=(RecordedExchange&&) = default;

    std::uint64_t number = 0;
    std::string time;
    std::int64_t microseconds = 0; // from the request to the end of the reply
    std::string url;
    bool is_tls = false;
    std::string operation = "-"; // that, if the request was for none
    std::string request;         // the bodies
    std::string reply;
    int status = 0; // of HTTP; 0: none came
    std::string content_type;
    ReplyEnd end = ReplyEnd::kWhole;
    std::string failure; // that the reader of the reply met; empty: none
};

struct Recording {
    RecordingHead head;
    std::vector<RecordedExchange> exchanges;
    bool is_cut = false; // the last line isn't whole
};

// As a line, with its line feed. What is secret is blotted out of the texts. A body for which a line has no
// room is left out, and a text in parentheses stands in its place.
std::string recording_line(const RecordingHead& head, Blotter& blotter);
std::string recording_line(const RecordedExchange& exchange, Blotter& blotter,
                           const RecordingBounds& bounds = {});

} // namespace soapwrapper::messages

#endif
