#include "tests/kit/log_recorder.h"

#include <cstdio>
#include <map>
#include <ostream>

namespace kit
{
namespace
{

std::mutex g_mutex;
std::map<std::string, RecordedSession*> g_recorders;
RecordedSession* g_without_id = nullptr;
int g_next_id = 0;

} // namespace

std::ostream& operator<<(std::ostream& out, const LogLine& line)
{
    return out << line.level << " \"" << line.text << '"';
}

RecordedSession::RecordedSession()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    id_ = "session-" + std::to_string(++g_next_id);
    g_recorders[id_] = this;
    std::snprintf(session_.proxy, sizeof session_.proxy, "proxy-of-%s", id_.c_str());
    session_.session_id = id_.c_str();
    session_.log_callback = &RecordedSession::callback;
    session_.session_flags = 7;
}

RecordedSession::~RecordedSession()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_recorders.erase(id_);
    if (g_without_id == this) g_without_id = nullptr;
}

void RecordedSession::drop_id()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    session_.session_id = nullptr;
    g_without_id = this;
}

int RecordedSession::callback(const char* session_id, const char* message, int level)
{
    RecordedSession* recorder = nullptr;
    {
        const std::lock_guard<std::mutex> lock(g_mutex);
        if (!session_id) {
            recorder = g_without_id;
        } else if (const auto found = g_recorders.find(session_id); found != g_recorders.end()) {
            recorder = found->second;
        }
    }
    if (!recorder) return 1;
    const std::lock_guard<std::mutex> lock(recorder->mutex_);
    if (session_id != recorder->session_.session_id) recorder->ids_were_right_ = false;
    recorder->lines_.push_back({level, message});
    return 1; // whatever it is, nobody may care
}

std::vector<LogLine> RecordedSession::lines() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return lines_;
}

std::vector<std::string> RecordedSession::texts() const
{
    std::vector<std::string> texts;
    for (const LogLine& line : lines()) texts.push_back(line.text);
    return texts;
}

bool RecordedSession::ids_were_right() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return ids_were_right_;
}

void RecordedSession::clear()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    lines_.clear();
}

} // namespace kit
