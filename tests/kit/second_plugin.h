// The second plug-in and the manager that starts it, as this test program defines them in its own place: the
// library that is loaded by path finds the manager's two functions here. What the plug-in says is scripted,
// and what it is asked is kept.
#ifndef SOAPWRAPPER_TESTS_KIT_SECOND_PLUGIN_H
#define SOAPWRAPPER_TESTS_KIT_SECOND_PLUGIN_H

#include "plugin/host/host_records.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

struct sts_handle_s;
struct sts_cred_block;

namespace kit
{

// The manager: it outlives every plug-in object, as the library starts the second plug-in once a process.
struct PluginManager {
    int init_status = 0;
    int terminate_status = 0;
    // What was asked of it.
    int starts = 0;
    int ends = 0;
    std::uint64_t version = 0;
    std::string path;
};
PluginManager& plugin_manager();

// The second plug-in, for as long as the object lives. One at a time. A call while there is none is a mistake
// of the test and ends the program.
class SecondPlugin
{
  public:
    enum class Operation { kOpenSession, kOpenServer, kOpenList, kListFile, kCloseList, kClose };

    SecondPlugin();
    ~SecondPlugin();
    SecondPlugin(const SecondPlugin&) = delete;
    SecondPlugin& operator=(const SecondPlugin&) = delete;

    // The next calls of an operation are answered with these; without any left, with 0.
    void answer(Operation operation, std::deque<int> statuses);
    // Every list opened from now on holds these entries, and then STS_ENOENT.
    void hold(std::vector<sts_file_attr_v11_t> entries);
    // Called ahead of each entry that a list is asked for, on the asking thread.
    void on_list_file(std::function<void()> action);
    // Sessions are opened, and yet no handle is given out.
    void keep_session_handles() { keeps_session_handles_ = true; }

    // What was called, in order, one line each: the operation and its arguments. Handles have names:
    // session1, server1, list1 and so on.
    std::vector<std::string> calls() const;
    void forget_calls();
    // The handles of sessions, servers and lists that are open.
    std::size_t open_handles() const;
    // The name of a handle that was given out.
    std::string name_of(const sts_handle_s* handle) const;
    // The session that the last open was given, and a line that is logged through it.
    const sts_session_def_v7_t* last_session() const { return last_session_; }
    void log(const char* text) const;

    // What the table's functions come to.
    int open_session(const sts_session_def_v7_t* session, sts_handle_s** out);
    int open_server(const sts_handle_s* session, const char* name, const sts_cred_block* credentials,
                    const char* empty, sts_handle_s** out);
    int open_list(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* base, const sts_snap_def_v11_t* diff,
                  const sts_volume_spec_v11_t* volume, std::uint32_t flags, sts_handle_s** out);
    int list_file(const sts_handle_s* list, std::uint32_t count, const char* filters,
                  sts_file_attr_v11_t* entry);
    int close_list(const sts_handle_s* list);
    int close(const sts_handle_s* handle, int zero);

  private:
    struct Handle {
        std::string name;
        bool open = true;
        std::size_t delivered = 0;
    };

    int next_status(Operation operation);
    sts_handle_s* make_handle(const std::string& kind);
    Handle* find(const sts_handle_s* handle);
    std::string name(const sts_handle_s* handle) const;

    mutable std::mutex mutex_;
    std::map<Operation, std::deque<int>> statuses_;
    std::vector<sts_file_attr_v11_t> entries_;
    std::function<void()> on_list_file_;
    std::vector<std::string> calls_;
    std::deque<Handle> handles_; // stays where it is: a handle is the address of one of these
    std::map<std::string, int> counters_;
    const sts_session_def_v7_t* last_session_ = nullptr;
    bool keeps_session_handles_ = false;
};

} // namespace kit

#endif
