#include "probe/library/failure.h"

#include "plugin/host/status.h"
#include "probe/library/session.h"
#include "probe/output/status_text.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace soapwrapper::probe
{
namespace
{

// Of the SOAP runtime, whose headers the probe does without.
constexpr int kClientFault = 1;
constexpr int kFault = 12;
constexpr int kEnded = -1;
constexpr int kLeastHttpStatus = 300; // one of success is no reason to fail
constexpr int kMostHttpStatus = 599;

constexpr char kIsItTheService[] = "check that it is the storage service that this URL leads to";

constexpr std::string_view kFaultMark = "HANDLE_SOAP_FAULT: ";
constexpr std::string_view kLacking = ": the reply has no ";

// A failure as the SOAP runtime tells it: `... fault CODE[SUBCODE]`, `"REASON"`, `Detail: DETAIL`.
struct RenderedFault {
    std::string reason;
    std::string detail;
};

bool contains(std::string_view text, std::string_view what)
{
    return text.find(what) != std::string_view::npos;
}

std::optional<RenderedFault> parse_rendered(const std::string& text)
{
    const std::string opening = "]\n\"";
    const std::string middle = "\"\nDetail: ";
    const std::size_t begin = text.find(opening);
    const std::size_t end = text.rfind(middle);
    if (begin == std::string::npos || end == std::string::npos || end < begin + opening.size()) {
        return std::nullopt;
    }
    RenderedFault fault;
    fault.reason = text.substr(begin + opening.size(), end - begin - opening.size());
    const std::size_t detail = end + middle.size();
    fault.detail = text.substr(detail, text.find('\n', detail) - detail);
    return fault;
}

// The number in the last line of a fault that the service sent.
std::optional<int> fault_status(const std::string& text)
{
    const std::size_t mark = text.rfind(kFaultMark);
    if (mark == std::string::npos || (mark > 0 && text[mark - 1] != '\n')) return std::nullopt;
    const char* const number = text.c_str() + mark + kFaultMark.size();
    char* end = nullptr;
    const long value = std::strtol(number, &end, 10);
    return end != number && *end == '\0' ? std::optional<int>(static_cast<int>(value)) : std::nullopt;
}

Failure transport_failure(FailureKind kind, const std::string& what, const std::string& advice = {})
{
    return {kind, STS_ESOAPERROR, what, advice};
}

bool is_error(const std::string& reason, std::initializer_list<int> errors)
{
    for (const int error : errors) {
        if (reason == std::strerror(error)) return true;
    }
    return false;
}

Failure connect_failure(const std::string& reason)
{
    if (is_error(reason, {ECONNREFUSED})) {
        return transport_failure(FailureKind::kRefused, "the connection was refused",
                                 "check host and port, and that the service runs");
    }
    if (is_error(reason, {EHOSTUNREACH, ENETUNREACH, EHOSTDOWN, ENETDOWN})) {
        return transport_failure(FailureKind::kNoRoute, "the network has no way to the host",
                                 "check its address and the routes");
    }
    if (reason == "Timeout" || is_error(reason, {ETIMEDOUT})) {
        return transport_failure(FailureKind::kTimedOut, "nothing answered in time",
                                 "check host and port, and firewalls on the way");
    }
    return transport_failure(FailureKind::kRefused, "the connection could not be made: " + reason);
}

// The TLS library's own words on a certificate are the last line of its errors.
std::string certificate_trouble(const std::string& reason)
{
    const std::string mark = "certificate verify failed";
    const std::size_t verdict = reason.rfind(mark);
    if (verdict == std::string::npos) return {};
    const std::size_t line = reason.find('\n', verdict);
    const std::string words = line == std::string::npos ? std::string() : reason.substr(line + 1);
    return words.substr(0, words.find('\n'));
}

Failure handshake_failure(const std::string& reason)
{
    if (contains(reason, "certificate verify failed")) {
        const std::string trouble = certificate_trouble(reason);
        return transport_failure(FailureKind::kTls,
                                 "the service's certificate is not accepted" +
                                     (trouble.empty() ? "" : ": " + trouble),
                                 "check it, and tls_ca_file in soapwrapper.conf");
    }
    if (contains(reason, "wrong version number") || contains(reason, "packet length too long")) {
        return transport_failure(FailureKind::kTls, "what answers there does not speak TLS",
                                 "check port and URL");
    }
    return transport_failure(FailureKind::kTls, "TLS could not be agreed upon with the service");
}

Failure http_failure(int status)
{
    return transport_failure(FailureKind::kHttp,
                             "the answer is the HTTP status " + std::to_string(status) + " instead of SOAP",
                             kIsItTheService);
}

bool is_early_end(const std::string& reason)
{
    return contains(reason, "End of file or no input") || is_error(reason, {ECONNRESET, EPIPE, ECONNABORTED});
}

Failure early_end(const std::string& reason)
{
    const bool may_be_late = contains(reason, "or timed out");
    return transport_failure(FailureKind::kInterrupted,
                             may_be_late ? "the connection ended before the answer did, or the answer took "
                                           "longer than reply_timeout in soapwrapper.conf allows"
                                         : "the connection ended before the answer did");
}

// What the library itself says is the reason or the place of a failure.
std::optional<Failure> known_failure(const RenderedFault& fault)
{
    if (fault.detail == "connect failed in tcp_connect()") return connect_failure(fault.reason);
    if (fault.detail == "getaddrinfo failed in tcp_connect()") {
        return transport_failure(FailureKind::kUnresolved, "the host's name could not be resolved",
                                 "check its spelling and the DNS");
    }
    if (fault.detail == "SSL_connect() failed in tcp_connect()") {
        return transport_failure(FailureKind::kTimedOut,
                                 "what answers there did not finish the TLS handshake in time");
    }
    if (fault.detail == "SSL/TLS handshake failed") return handshake_failure(fault.reason);
    if (contains(fault.reason, "require_tls in soapwrapper.conf")) {
        return transport_failure(FailureKind::kForbidden,
                                 "require_tls in soapwrapper.conf forbids a connection without TLS");
    }
    if (contains(fault.reason, "soapwrapper.conf has a value")) {
        return transport_failure(FailureKind::kForbidden,
                                 "the value of " + fault.detail + " in soapwrapper.conf cannot be followed",
                                 "correct it there");
    }
    if (fault.reason == "No http:// or https:// URL with a host") {
        return transport_failure(FailureKind::kForbidden, "the URL is not http:// or https:// and a host",
                                 "check soapwrapper.conf");
    }
    if (fault.reason == "The reply is refused") {
        return transport_failure(FailureKind::kUnreadable, "the answer is refused: " + fault.detail);
    }
    return std::nullopt;
}

bool is_tls_setup(const std::string& text)
{
    const auto fault = parse_rendered(text);
    return fault && fault->reason == "SSL/TLS error" && contains(fault->detail, "setup context");
}

std::optional<Failure> unusable_answer(const std::string& text)
{
    if (text == "Could not find a compatible plugin version") {
        return Failure{FailureKind::kUnusable, STS_EVERSION,
                       "the service offers no interface that can be used",
                       "the highest that the library speaks is 11.1.2"};
    }
    const std::size_t lacking = text.find(kLacking);
    if (lacking == std::string::npos || contains(text, "\n")) return std::nullopt;
    return Failure{FailureKind::kUnusable, STS_EPLUGIN,
                   "the service's answer cannot be used: it has no " + text.substr(lacking + kLacking.size()),
                   "report it to the service's maker"};
}

bool is_http_status(int code)
{
    return code >= kLeastHttpStatus && code <= kMostHttpStatus;
}

Failure refusal(int status)
{
    return {FailureKind::kFault, status, status_text(status).meaning, {}};
}

} // namespace

std::optional<Failure> failure_of(const LoggedRequest& request)
{
    const std::string& text = request.failure;
    const int code = request.return_code.value_or(0);
    const bool answered = code == kClientFault || code == kFault;
    if (const auto status = fault_status(text)) {
        // TLS is set up ahead of the request, and fails as if the service had refused.
        if (answered || !is_tls_setup(text)) return refusal(*status);
        return Failure{FailureKind::kTls, *status, "TLS could not be set up",
                       "check the TLS settings in soapwrapper.conf"};
    }
    if (auto unusable = unusable_answer(text)) return unusable;
    if (is_http_status(code)) return http_failure(code);
    const auto fault = parse_rendered(text);
    if (!fault) return std::nullopt;
    if (auto known = known_failure(*fault)) return known;
    if (code == kEnded || is_early_end(fault->reason)) return early_end(fault->reason);
    if (contains(fault->reason, "SSL/TLS")) return handshake_failure(fault->reason);
    return transport_failure(FailureKind::kUnreadable, "the answer is no SOAP that can be read",
                             kIsItTheService);
}

std::string meaning_of(const Failure& failure)
{
    return failure.advice.empty() ? failure.what : failure.what + "; " + failure.advice;
}

std::string summary_of(const Failure& failure, const std::string& text)
{
    if (failure.kind != FailureKind::kFault) return failure.what;
    const auto fault = parse_rendered(text);
    const StatusText status = status_text(failure.status);
    return std::string(status.name) + "(" + std::to_string(failure.status) + "): " + failure.what +
           (fault ? ", \"" + fault->reason + "\"" : "");
}

bool was_sent(const Failure& failure)
{
    switch (failure.kind) {
    case FailureKind::kFault:
    case FailureKind::kUnusable:
    case FailureKind::kHttp:
    case FailureKind::kUnreadable:
    case FailureKind::kInterrupted:
        return true;
    default:
        return false;
    }
}

} // namespace soapwrapper::probe
