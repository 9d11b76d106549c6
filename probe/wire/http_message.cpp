#include "probe/wire/http_message.h"

#include "messages/lower_case.h"
#include "messages/markup.h"
#include "messages/wiping.h"
#include "probe/wire/unpacking.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace soapwrapper::probe::wire
{
namespace
{

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr std::size_t kLongestChunkLine = 4096;
constexpr int kSwitchingProtocols = 101;

std::string_view without_line_end(std::string_view line)
{
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.remove_suffix(1);
    return line;
}

// The whole text must be the number.
std::optional<std::uint64_t> number(std::string_view text, int base)
{
    std::uint64_t value = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value, base);
    if (text.empty() || error != std::errc() || end != last) return std::nullopt;
    return value;
}

} // namespace

HttpMessage::~HttpMessage()
{
    for (std::string* text : {&head_, &line_, &body_}) messages::wipe(*text);
}

std::size_t HttpMessage::take(std::string_view bytes)
{
    std::size_t taken = 0;
    while (taken < bytes.size() && part_ != Part::kNone) {
        is_begun_ = true;
        const std::string_view rest = bytes.substr(taken);
        const bool is_body =
            part_ == Part::kCountedBody || part_ == Part::kChunk || part_ == Part::kBodyToEnd;
        taken += is_body ? take_body(rest) : take_line(rest);
    }
    return taken;
}

void HttpMessage::end()
{
    if (part_ == Part::kHead && is_begun_) go_on_raw(head_.empty() ? "not HTTP" : "cut within its head");
    if (part_ == Part::kBodyToEnd && note_.empty()) part_ = Part::kNone;
}

// Up to the end of the line, or of what there is of it.
std::size_t HttpMessage::take_line(std::string_view bytes)
{
    const std::size_t feed = bytes.find('\n');
    const std::size_t count = feed == kNowhere ? bytes.size() : feed + 1;
    const std::size_t longest =
        part_ == Part::kHead ? kLongestHead - std::min(kLongestHead, head_.size()) : kLongestChunkLine;
    if (line_.size() + count > longest) {
        go_on_raw(part_ == Part::kHead ? "its head is too long" : "its chunks are broken");
        return 0;
    }
    messages::append_wiping(line_, bytes.substr(0, count));
    if (feed == kNowhere) return count;
    const std::string_view line = without_line_end(line_);
    switch (part_) {
    case Part::kHead:
        take_head_line();
        return count;
    case Part::kChunkSize:
        begin_chunk();
        return count;
    case Part::kChunkEnd:
        if (!line.empty()) go_on_raw("its chunks are broken");
        if (line.empty()) part_ = Part::kChunkSize;
        break;
    default: // the trailer
        if (line.empty()) part_ = Part::kNone;
        break;
    }
    messages::wipe(line_);
    return count;
}

void HttpMessage::take_head_line()
{
    const std::string_view line = without_line_end(line_);
    const bool is_first = head_.size() == last_head_;
    const bool is_http =
        kind_ == Kind::kReply ? line.substr(0, 5) == "HTTP/" : line.find(" HTTP/") != kNowhere;
    if (is_first && !line.empty() && !is_http) return go_on_raw("not HTTP");
    const bool is_end = !is_first && line.empty();
    messages::append_wiping(head_, line_);
    messages::wipe(line_);
    if (is_first && without_line_end(last_head()).empty()) last_head_ = head_.size(); // an empty line ahead
    if (is_end) begin_body();
}

void HttpMessage::begin_body()
{
    const int code = status();
    if (kind_ == Kind::kReply && code >= 100 && code < 200 && code != kSwitchingProtocols) {
        last_head_ = head_.size();
        return;
    }
    const std::optional<std::uint64_t> length = number(field("content-length"), 10);
    if (messages::lower_case(field("transfer-encoding")).find("chunked") != std::string::npos) {
        part_ = Part::kChunkSize;
    } else if (code == 204 || code == 304) {
        part_ = Part::kNone;
    } else if (length) {
        left_ = *length;
        part_ = left_ == 0 ? Part::kNone : Part::kCountedBody;
    } else {
        part_ = kind_ == Kind::kRequest ? Part::kNone : Part::kBodyToEnd;
    }
}

void HttpMessage::begin_chunk()
{
    const std::string_view line = std::string_view(line_).substr(0, line_.find(';'));
    const auto size = number(messages::without_blanks_around(line), 16);
    if (!size) return go_on_raw("its chunks are broken");
    messages::wipe(line_);
    left_ = *size;
    part_ = left_ == 0 ? Part::kTrailer : Part::kChunk;
}

// From here on there are only bytes, the line begun among them.
void HttpMessage::go_on_raw(const char* note)
{
    note_ = note;
    part_ = Part::kBodyToEnd;
    std::string line = std::exchange(line_, {});
    keep(line);
    messages::wipe(line);
}

std::size_t HttpMessage::take_body(std::string_view bytes)
{
    if (part_ == Part::kBodyToEnd) {
        keep(bytes);
        return bytes.size();
    }
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(left_, bytes.size()));
    keep(bytes.substr(0, count));
    left_ -= count;
    if (left_ == 0) part_ = part_ == Part::kChunk ? Part::kChunkEnd : Part::kNone;
    return count;
}

void HttpMessage::keep(std::string_view bytes)
{
    const std::size_t room = kLongestBody - body_.size();
    messages::append_wiping(body_, bytes.substr(0, room));
    dropped_ += bytes.size() - std::min(room, bytes.size());
}

std::string HttpMessage::note() const
{
    if (dropped_ == 0) return note_;
    return (note_.empty() ? "" : note_ + "; ") + std::to_string(dropped_) + " more bytes aren't kept";
}

// The one that counts, behind interim ones.
std::string_view HttpMessage::last_head() const
{
    return std::string_view(head_).substr(last_head_);
}

int HttpMessage::status() const
{
    if (kind_ == Kind::kRequest) return 0;
    const std::string_view head = last_head();
    const std::size_t blank = head.find(' ');
    return blank == kNowhere ? 0 : static_cast<int>(number(head.substr(blank + 1, 3), 10).value_or(0));
}

std::string HttpMessage::field(std::string_view name) const
{
    std::string_view head = last_head();
    head.remove_prefix(std::min(head.find('\n'), head.size())); // the first line is none
    while (!head.empty()) {
        head.remove_prefix(1);
        const std::string_view line = head.substr(0, head.find('\n'));
        const std::size_t colon = line.find(':');
        if (colon != kNowhere && messages::lower_case(line.substr(0, colon)) == name) {
            return std::string(messages::without_blanks_around(line.substr(colon + 1)));
        }
        head.remove_prefix(line.size());
    }
    return {};
}

void HttpMessage::unpack()
{
    const std::string coding = messages::lower_case(field("content-encoding"));
    if (coding != "gzip" && coding != "x-gzip" && coding != "deflate") return;
    Unpacked unpacked = wire::unpack(body_, kLongestBody);
    if (unpacked.bytes.empty()) {
        note_ = "it can't be unpacked";
        return;
    }
    messages::wipe(body_);
    body_ = std::move(unpacked.bytes);
    if (!unpacked.is_whole) note_ = "it isn't unpacked to its end";
}

} // namespace soapwrapper::probe::wire
