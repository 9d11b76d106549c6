// The stand-in for the second plug-in, loaded by its path and called through its table as a host's plug-in
// manager would have it. The table is written down here anew.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_ZAPI_STANDIN_H
#define SOAPWRAPPER_TESTS_SYSTEM_ZAPI_STANDIN_H

#include "plugin/host/host_records.h"
#include "tests/kit/log_recorder.h"

#include <dlfcn.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

struct sts_handle_s;

namespace zapi_standin
{

struct Credentials {
    std::uint64_t zero = 0;
    char texts[1024] = {};

    Credentials(const std::string& user, const std::string& password)
    {
        user.copy(texts, 500);
        password.copy(texts + user.size() + 1, 500);
    }
};

using Slot = void (*)();
using Init = int(std::uint64_t, const char*, const Slot**);
using Terminate = int();
using OpenSession = int(sts_session_def_v7_t*, sts_handle_s**);
using OpenServer = int(sts_handle_s*, const char*, const Credentials*, const char*, sts_handle_s**);
using OpenList = int(const stsp_lsu_v7_t*, const sts_snap_def_v11_t*, const sts_snap_def_v11_t*,
                     sts_volume_spec_v11_t*, std::uint32_t, sts_handle_s**);
using ListFile = int(sts_handle_s*, std::uint32_t, const char*, sts_file_attr_v11_t*);
using CloseList = int(sts_handle_s*);
using Close = int(sts_handle_s*, int);

class Library
{
  public:
    static Library& instance()
    {
        static Library library;
        return library;
    }

    template <class Function>
    Function* symbol(const char* name) const
    {
        return reinterpret_cast<Function*>(dlsym(library_, name));
    }
    template <class Function>
    Function* slot(std::size_t position) const
    {
        return reinterpret_cast<Function*>(table_[position]);
    }

  private:
    // In everybody's sight: the library under test finds the manager's functions here.
    Library() : library_(dlopen(ZAPI_STANDIN, RTLD_NOW | RTLD_GLOBAL))
    {
        if (!library_ || symbol<Init>("stsm_init")(12, "", &table_) != 0) {
            std::cerr << "can't start the stand-in\n";
            std::abort();
        }
    }

    void* library_;
    const Slot* table_ = nullptr;
};

inline int open_session(sts_session_def_v7_t* session, sts_handle_s** out)
{
    return Library::instance().slot<OpenSession>(110)(session, out);
}
inline int open_server(sts_handle_s* session, const char* name, const Credentials& credentials,
                       sts_handle_s** out)
{
    return Library::instance().slot<OpenServer>(109)(session, name, &credentials, "", out);
}
inline int open_list(sts_handle_s* server, const char* base, const char* diff, sts_handle_s** out)
{
    stsp_lsu_v7_t lsu{};
    lsu.server = reinterpret_cast<stsp_server_t*>(server);
    sts_snap_def_v11_t older{};
    sts_snap_def_v11_t newer{};
    if (base) std::strncpy(older.snapName, base, sizeof older.snapName - 1);
    std::strncpy(newer.snapName, diff, sizeof newer.snapName - 1);
    return Library::instance().slot<OpenList>(111)(&lsu, base ? &older : nullptr, &newer, nullptr, 0, out);
}
inline int list_file(sts_handle_s* list, sts_file_attr_v11_t& entry,
                     const std::vector<std::string>& filters = {})
{
    std::vector<char> rows(filters.size() * 1024 + 1);
    for (std::size_t i = 0; i < filters.size(); ++i) filters[i].copy(&rows[i * 1024], 1024);
    return Library::instance().slot<ListFile>(79)(list, static_cast<std::uint32_t>(filters.size()),
                                                  rows.data(), &entry);
}
inline int close_list(sts_handle_s* list)
{
    return Library::instance().slot<CloseList>(25)(list);
}
inline int close(sts_handle_s* handle)
{
    return Library::instance().slot<Close>(24)(handle, 0);
}

// The names that are left, each behind its kind of change; whatever ends the list but its end stands last.
inline std::vector<std::string> rest(sts_handle_s* list, const std::vector<std::string>& filters = {})
{
    std::vector<std::string> entries;
    for (;;) {
        sts_file_attr_v11_t entry{};
        const int status = list_file(list, entry, filters);
        if (status == 2060013) return entries;
        if (status != 0) {
            entries.push_back("status " + std::to_string(status));
            return entries;
        }
        entries.push_back(std::to_string(entry.changetype) + " " + entry.name);
    }
}

// A variable of the environment, for as long as the object lives.
class Variable
{
  public:
    Variable(const char* name, const std::string& value) : name_(name) { setenv(name, value.c_str(), 1); }
    ~Variable() { unsetenv(name_); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    const char* name_;
};

} // namespace zapi_standin

#endif
