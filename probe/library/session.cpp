#include "probe/library/session.h"

#include "plugin/host/host_records.h"
#include "probe/library/credential.h"
#include "probe/output/text.h"
#include "probe/output/url_login.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr char kSessionId[] = "soapwrapper-probe";
constexpr std::size_t kRecordsKept = 64;
constexpr std::size_t kRequestsKept = 16;

const char* level_name(int level)
{
    switch (level) {
    case STS_LOG_ANOMALY:
        return "anomaly";
    case STS_LOG_RECORD:
        return "record";
    case STS_LOG_FAILURE:
        return "failure";
    default:
        return "unknown";
    }
}

// What stands behind "ENTRY: KEY" in a line; none: the line is another.
std::optional<std::string> value_behind(std::string_view key, const std::string& line)
{
    constexpr std::string_view kEntry = "stspi_";
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos || line.compare(0, kEntry.size(), kEntry) != 0) return std::nullopt;
    if (line.compare(colon, key.size(), key) != 0) return std::nullopt;
    return line.substr(colon + key.size());
}

} // namespace

Session* Session::current_ = nullptr;

Session::Session(int printed_level, std::ostream& stream) : printed_level_(printed_level), stream_(stream)
{
    record_.session_id = kSessionId;
    record_.log_callback = receive;
    current_ = this;
}

Session::~Session()
{
    current_ = nullptr;
}

int Session::receive(const char* /*session_id*/, const char* message, int level)
{
    if (current_ && message) current_->take(message, level);
    return 0;
}

void Session::take(std::string_view message, int level)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    std::string line = without_url_logins(watched_ ? watched_->hide_in(message) : std::string(message));
    if (level >= printed_level_) print(line, level);
    if (level == STS_LOG_FAILURE) {
        take_failure(std::move(line));
    } else if (level == STS_LOG_ANOMALY) {
        last_anomaly_ = std::move(line);
    } else if (level == STS_LOG_RECORD) {
        take_record(std::move(line));
    }
}

void Session::take_record(std::string line)
{
    if (auto url = value_behind(": soap_endpoint = ", line)) {
        endpoint_ = *url;
        requests_.push_back({*std::move(url), {}, {}});
    } else if (const auto code = value_behind(": SOAP return code = ", line)) {
        request_under_way().return_code = static_cast<int>(std::strtol(code->c_str(), nullptr, 10));
    }
    if (requests_.size() > kRequestsKept) requests_.pop_front();
    records_.push_back(std::move(line));
    if (records_.size() > kRecordsKept) records_.pop_front();
}

void Session::take_failure(std::string line)
{
    request_under_way().failure = line;
    if (requests_.size() > kRequestsKept) requests_.pop_front();
    last_failure_ = std::move(line);
}

// One whose failure is known has ended. The next may fail before its URL is told.
LoggedRequest& Session::request_under_way()
{
    if (requests_.empty() || !requests_.back().failure.empty()) requests_.emplace_back();
    return requests_.back();
}

void Session::print(std::string_view message, int level) const
{
    const std::string mark = "[" + std::to_string(level) + " " + level_name(level) + "] ";
    std::string lead = mark;
    for (const std::string& line : clean_lines(message)) {
        stream_ << lead << line << '\n';
        lead.assign(mark.size(), ' ');
    }
    stream_.flush();
}

void Session::forget_lines()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    last_failure_.clear();
    last_anomaly_.clear();
    records_.clear();
    requests_.clear();
}

std::string Session::last_failure() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return last_failure_;
}

std::vector<LoggedRequest> Session::requests() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return {requests_.begin(), requests_.end()};
}

std::string Session::endpoint() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return endpoint_;
}

std::string Session::last_anomaly() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return last_anomaly_;
}

std::string Session::last_record(std::string_view beginning) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = std::find_if(records_.rbegin(), records_.rend(), [&](const std::string& line) {
        return std::string_view(line).substr(0, beginning.size()) == beginning;
    });
    return found == records_.rend() ? std::string() : *found;
}

void Session::watch(const Credential* credential)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    watched_ = credential;
}

} // namespace soapwrapper::probe
