// The session record that every call of the host comes from, and what the library logs into it.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_SESSION_H
#define SOAPWRAPPER_PROBE_LIBRARY_SESSION_H

#include "plugin/host/host_records.h"

#include <deque>
#include <iosfwd>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::probe
{

class Credential;

// What the library logs of a request to the service.
struct LoggedRequest {
    std::string url;                // empty: the library said none
    std::string failure;            // empty: none was logged
    std::optional<int> return_code; // the SOAP runtime's
};

// One at a time in the process: the callback is told nothing that would tell two of them apart.
class Session
{
  public:
    static constexpr int kPrintNothing = STS_LOG_FAILURE + 1;

    // Lines of this level and above are printed to `stream` as they come.
    Session(int printed_level, std::ostream& stream);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const sts_session_def_v7_t* record() const { return &record_; }

    // Lines may appear on the stream at any call of the library.
    bool prints() const { return printed_level_ < kPrintNothing; }

    // From here on a failure is that of the next call.
    void forget_lines();

    // The last line of the failure level since then; empty: there was none.
    std::string last_failure() const;

    // The last line of the running record since then that begins so; empty: there was none.
    std::string last_record(std::string_view beginning) const;

    // The last requests since then, in order, of those that failed or whose URL the library told.
    std::vector<LoggedRequest> requests() const;

    // The last URL that the library told of, since then or before: all calls through a handle go there.
    std::string endpoint() const;

    // The last anomaly survived since then; empty: there was none.
    std::string last_anomaly() const;

    // While a credential is watched, it is taken out of every line that comes.
    void watch(const Credential* credential);

  private:
    static int receive(const char* session_id, const char* message, int level);
    void take(std::string_view message, int level);
    void take_record(std::string line);
    void take_failure(std::string line);
    LoggedRequest& request_under_way();
    void print(std::string_view message, int level) const;

    static Session* current_;

    sts_session_def_v7_t record_ = {};
    const int printed_level_;
    std::ostream& stream_;
    mutable std::mutex mutex_; // guards all that follows: lines may come on any thread
    const Credential* watched_ = nullptr;
    std::string last_failure_;
    std::string last_anomaly_;
    std::string endpoint_;
    std::deque<std::string> records_; // the last few
    std::deque<LoggedRequest> requests_;
};

} // namespace soapwrapper::probe

#endif
