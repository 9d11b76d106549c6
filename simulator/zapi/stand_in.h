// A stand-in for the second plug-in, which asks a filer itself: it lists what differs between snapshots of
// the simulator's scenario. What can't be done is thrown as a Fault, and told to the session's log.
#ifndef SOAPWRAPPER_SIMULATOR_ZAPI_STAND_IN_H
#define SOAPWRAPPER_SIMULATOR_ZAPI_STAND_IN_H

#include "plugin/host/host_records.h"
#include "simulator/scenario/change_list.h"
#include "simulator/scenario/scenario.h"
#include "simulator/zapi/handle_table.h"

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

// The texts of a credential block.
struct FilerLogin {
    std::string user;
    std::string password;
};

// Where a session's lines go. The record that it came from may be gone by then.
class SessionLog
{
  public:
    explicit SessionLog(const sts_session_def_v7_t& session)
        : has_id_(session.session_id != nullptr), id_(has_id_ ? session.session_id : ""),
          callback_(session.log_callback)
    {
    }

    void record(const std::string& text) const { write(text, STS_LOG_RECORD); }
    void failure(const std::string& text) const { write(text, STS_LOG_FAILURE); }

  private:
    void write(const std::string& text, int level) const
    {
        const std::string line = "soapwrapper-zapi-sim: " + text;
        if (callback_) callback_(has_id_ ? id_.c_str() : nullptr, line.c_str(), level);
    }

    const bool has_id_;
    const std::string id_;
    const sts_log_callback_t callback_;
};

// Any thread may call; a list is safe with several, but which of them gets which entry is open.
class StandIn
{
  public:
    // Reads the scenario, afresh each time.
    sts_handle_s* open_session(const sts_session_def_v7_t& session);
    sts_handle_s* open_server(const sts_handle_s* session, const std::string& name, const FilerLogin& login);
    // The paths are the snapshots' export paths; `base` may be null.
    sts_handle_s* open_list(const sts_handle_s* server, const std::string* base, const std::string& diff);
    // False: the end, and again at every call behind it.
    bool next_entry(const sts_handle_s* list, const std::vector<std::string>& filters,
                    sts_file_attr_v11_t& entry);
    void close_list(const sts_handle_s* list);
    // A session or a server, with all that was opened under it.
    void close(const sts_handle_s* handle);

    // Whether anything is open.
    bool in_use() const;

  private:
    struct Session {
        explicit Session(const sts_session_def_v7_t& session) : log(session) {}
        SessionLog log;
        Scenario scenario;
    };
    struct Server {
        std::shared_ptr<Session> session;
        std::string filer;
    };
    struct List {
        List(std::shared_ptr<Server> on, ChangeList changes) : server(std::move(on)), list(std::move(changes))
        {
        }
        std::shared_ptr<Server> server;
        std::mutex mutex; // guards the list
        ChangeList list;
    };

    static SnapshotView find(const Server& server, const std::string& export_path);

    HandleTable<Session> sessions_{"session"};
    HandleTable<Server> servers_{"server"};
    HandleTable<List> lists_{"change list"};
};

} // namespace soapwrapper::simulator

#endif
