// A host's session whose log is kept line by line.
#ifndef SOAPWRAPPER_TESTS_KIT_LOG_RECORDER_H
#define SOAPWRAPPER_TESTS_KIT_LOG_RECORDER_H

#include "plugin/host/host_records.h"

#include <mutex>
#include <string>
#include <vector>

namespace kit
{

struct LogLine {
    int level;
    std::string text;

    bool operator==(const LogLine& other) const { return level == other.level && text == other.text; }
};

std::ostream& operator<<(std::ostream& out, const LogLine& line);

// The levels, as expected lines are written in tests.
inline LogLine record(std::string text)
{
    return {STS_LOG_RECORD, std::move(text)};
}
inline LogLine failure(std::string text)
{
    return {STS_LOG_FAILURE, std::move(text)};
}
inline LogLine anomaly(std::string text)
{
    return {STS_LOG_ANOMALY, std::move(text)};
}

// Owns a session record whose callback adds to this object's lines. The session's id finds the recorder, so
// each has an id of its own.
class RecordedSession
{
  public:
    RecordedSession();
    ~RecordedSession();
    RecordedSession(const RecordedSession&) = delete;
    RecordedSession& operator=(const RecordedSession&) = delete;

    sts_session_def_v7_t* get() { return &session_; }
    sts_session_def_v7_t* operator->() { return &session_; }
    const std::string& id() const { return id_; }

    // A null id, as a host may leave it: lines logged with it come to the recorder that said this last.
    void drop_id();

    std::vector<LogLine> lines() const;
    std::vector<std::string> texts() const;
    // Whether each line came with exactly the session's id pointer.
    bool ids_were_right() const;
    void clear();

  private:
    static int callback(const char* session_id, const char* message, int level);

    std::string id_;
    sts_session_def_v7_t session_{};
    mutable std::mutex mutex_;
    std::vector<LogLine> lines_;
    bool ids_were_right_ = true;
};

} // namespace kit

#endif
