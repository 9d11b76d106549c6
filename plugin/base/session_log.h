// Messages to the host, through the callback of the session at hand. The session is all the logging context
// there is; with no session or no callback no text is even built.
#ifndef SOAPWRAPPER_PLUGIN_BASE_SESSION_LOG_H
#define SOAPWRAPPER_PLUGIN_BASE_SESSION_LOG_H

#include "plugin/host/host_records.h"
#include "plugin/host/status.h"

#include <string>
#include <string_view>
#include <type_traits>

namespace soapwrapper
{

inline bool somebody_listens(const sts_session_def_v7_t* session)
{
    return session && session->log_callback;
}

inline void append_piece(std::string& text, std::string_view piece)
{
    text.append(piece);
}

template <class Number, class = std::enable_if_t<std::is_integral_v<Number>>>
void append_piece(std::string& text, Number number)
{
    text.append(std::to_string(number));
}

// Logs the pieces as one text: strings as they stand, numbers in decimal with their sign.
template <class... Pieces>
void log_message(const sts_session_def_v7_t* session, int level, const Pieces&... pieces)
{
    if (!somebody_listens(session)) return;
    std::string text;
    (append_piece(text, pieces), ...);
    session->log_callback(session->session_id, text.c_str(), level);
}

// The lines that the entries have in common, under one entry's name.
class EntryLog
{
  public:
    EntryLog(const sts_session_def_v7_t* session, const char* entry) : session_(session), entry_(entry) {}

    const sts_session_def_v7_t* session() const { return session_; }

    // A line of the running record, under the entry's name.
    template <class... Pieces>
    void record(const Pieces&... pieces) const
    {
        log_message(session_, STS_LOG_RECORD, entry_, ": ", pieces...);
    }

    // A failure whose status is about to be returned, under the entry's name.
    template <class... Pieces>
    void failure(const Pieces&... pieces) const
    {
        log_message(session_, STS_LOG_FAILURE, entry_, ": ", pieces...);
    }

    // Something out of order that the entry survives, under its name.
    template <class... Pieces>
    void anomaly(const Pieces&... pieces) const
    {
        log_message(session_, STS_LOG_ANOMALY, entry_, ": ", pieces...);
    }

    void enter() const { record("enter"); }
    void return_code(int result) const { record("SOAP return code = ", result); }

    int ok() const
    {
        record("STS_EOK");
        return STS_EOK;
    }

    // A good reply without what the entry is about can't be used: logs which element it lacks, and gives the
    // status of that.
    int reply_lacks(const char* element) const
    {
        failure("the reply has no ", element);
        return STS_EPLUGIN;
    }

  private:
    const sts_session_def_v7_t* session_;
    const char* entry_;
};

} // namespace soapwrapper

#endif
