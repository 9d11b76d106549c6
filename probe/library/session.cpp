#include "probe/library/session.h"

#include "plugin/host/host_records.h"
#include "probe/library/credential.h"
#include "probe/output/text.h"

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <ostream>
#include <string>
#include <utility>

namespace soapwrapper::probe
{
namespace
{

constexpr char kSessionId[] = "soapwrapper-probe";
constexpr std::size_t kRecordsKept = 64;

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
    std::string line = watched_ ? watched_->hide_in(message) : std::string(message);
    if (level >= printed_level_) print(line, level);
    if (level == STS_LOG_FAILURE) {
        last_failure_ = std::move(line);
    } else if (level == STS_LOG_ANOMALY) {
        last_anomaly_ = std::move(line);
    } else if (level == STS_LOG_RECORD) {
        records_.push_back(std::move(line));
        if (records_.size() > kRecordsKept) records_.pop_front();
    }
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
}

std::string Session::last_failure() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return last_failure_;
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
