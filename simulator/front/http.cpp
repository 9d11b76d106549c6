#include "simulator/front/http.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

constexpr std::string_view kEndOfHead = "\r\n\r\n";
constexpr std::string_view kEndOfLine = "\r\n";

bool same_text(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
    });
}

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string_view next_line(std::string_view& text)
{
    const std::size_t end = text.find(kEndOfLine);
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + kEndOfLine.size());
    return line;
}

int judge_request_line(std::string_view line)
{
    const std::size_t method_end = line.find(' ');
    const std::size_t target_end = line.rfind(' ');
    if (method_end == std::string_view::npos || method_end == 0 || target_end < method_end + 2) return 400;
    const std::string_view version = line.substr(target_end + 1);
    if (version != "HTTP/1.1" && version != "HTTP/1.0") return 400;
    return line.substr(0, method_end) == "POST" ? 0 : 405;
}

std::string_view reason_of(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 400:
        return "Bad Request";
    case 405:
        return "Method Not Allowed";
    case 411:
        return "Length Required";
    case 413:
        return "Content Too Large";
    case 415:
        return "Unsupported Media Type";
    case 431:
        return "Request Header Fields Too Large";
    default:
        return "Internal Server Error";
    }
}

} // namespace

const std::string_view kContinue = "HTTP/1.1 100 Continue\r\n\r\n";

RequestReader::Progress RequestReader::add(std::string_view bytes)
{
    if (refusal_ != 0) return Progress::kRefused;
    // The end of the head may straddle two reads.
    const std::size_t searched = received_.size() - std::min(received_.size(), kEndOfHead.size() - 1);
    received_.append(bytes);
    if (!has_head_) {
        const std::size_t end = received_.find(kEndOfHead, searched);
        if (std::min(end, received_.size()) > kMaxHead) return refuse(431);
        if (end == std::string::npos) return Progress::kIncomplete;
        if (const int status = judge_head(std::string_view(received_).substr(0, end))) return refuse(status);
        has_head_ = true;
        received_.erase(0, end + kEndOfHead.size());
    }
    return received_.size() < length_ ? Progress::kIncomplete : Progress::kComplete;
}

bool RequestReader::take_expectation()
{
    return has_head_ && std::exchange(expects_continue_, false);
}

std::string RequestReader::take_body()
{
    received_.resize(length_); // what a client sends behind its request is not read
    return std::move(received_);
}

RequestReader::Progress RequestReader::refuse(int status)
{
    refusal_ = status;
    received_ = std::string();
    return Progress::kRefused;
}

int RequestReader::judge_head(std::string_view head)
{
    if (const int status = judge_request_line(next_line(head))) return status;
    while (!head.empty()) {
        if (const int status = judge_field(next_line(head))) return status;
    }
    if (!has_length_) return 411;
    return length_ > kMaxBody ? 413 : 0;
}

int RequestReader::judge_field(std::string_view line)
{
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || colon == 0) return 400;
    const std::string_view name = line.substr(0, colon);
    const std::string_view value = trimmed(line.substr(colon + 1));
    if (same_text(name, "Transfer-Encoding")) return 411;
    if (same_text(name, "Content-Encoding")) return same_text(value, "identity") ? 0 : 415;
    if (same_text(name, "Expect")) expects_continue_ = same_text(value, "100-continue");
    if (!same_text(name, "Content-Length")) return 0;

    if (has_length_ || value.empty()) return 400;
    if (!std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; })) return 400;
    has_length_ = true;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), length_);
    return error == std::errc() ? 0 : 413;
}

std::string http_response(int status, std::string_view content_type, std::string_view body)
{
    std::string response = "HTTP/1.1 " + std::to_string(status) + " ";
    response.append(reason_of(status)).append("\r\nServer: soapwrapper-sim\r\n");
    if (status == 405) response.append("Allow: POST\r\n");
    response.append("Content-Type: ").append(content_type).append("\r\n");
    response.append("Content-Length: ").append(std::to_string(body.size()));
    response.append("\r\nConnection: close\r\n\r\n").append(body);
    return response;
}

std::string http_refusal(int status)
{
    std::string body = std::to_string(status) + " ";
    body.append(reason_of(status)).append("\n");
    return http_response(status, "text/plain", body);
}

} // namespace soapwrapper::simulator
