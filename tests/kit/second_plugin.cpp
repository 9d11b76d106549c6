#include "tests/kit/second_plugin.h"

#include "plugin/host/status.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <iostream>

// Written down here anew, and not taken from the library's headers.
struct sts_cred_block {
    std::uint64_t zero;
    char texts[1024];
};

namespace kit
{
namespace
{

constexpr std::size_t kTableSize = 128;
constexpr std::uintptr_t kNoHandle = 0xbad;

using Slot = void (*)();

std::atomic<SecondPlugin*> g_plugin = nullptr;

SecondPlugin& plugin()
{
    SecondPlugin* current = g_plugin;
    if (!current) {
        std::cerr << "a call of the second plug-in, and there is none\n";
        std::abort();
    }
    return *current;
}

int unexpected()
{
    std::cerr << "a call at a position of the table that nobody should use\n";
    std::abort();
}

int open_session(sts_session_def_v7_t* session, sts_handle_s** out)
{
    return plugin().open_session(session, out);
}
int open_server(sts_handle_s* session, const char* name, sts_cred_block* credentials, const char* empty,
                sts_handle_s** out)
{
    return plugin().open_server(session, name, credentials, empty, out);
}
int open_list(stsp_lsu_v7_t* lsu, sts_snap_def_v11_t* base, sts_snap_def_v11_t* diff,
              sts_volume_spec_v11_t* volume, std::uint32_t flags, sts_handle_s** out)
{
    return plugin().open_list(lsu, base, diff, volume, flags, out);
}
int list_file(sts_handle_s* list, std::uint32_t count, const char* filters, sts_file_attr_v11_t* entry)
{
    return plugin().list_file(list, count, filters, entry);
}
int close_list(sts_handle_s* list)
{
    return plugin().close_list(list);
}
int close_handle(sts_handle_s* handle, int zero)
{
    return plugin().close(handle, zero);
}

template <class Function>
Slot slot(Function* function)
{
    return reinterpret_cast<Slot>(function);
}

const Slot* table()
{
    static const std::array<Slot, kTableSize> slots = [] {
        std::array<Slot, kTableSize> all;
        all.fill(slot(unexpected));
        all[24] = slot(close_handle);
        all[25] = slot(close_list);
        all[79] = slot(list_file);
        all[109] = slot(open_server);
        all[110] = slot(open_session);
        all[111] = slot(open_list);
        return all;
    }();
    return slots.data();
}

// All that a record holds beside its texts must be zero.
template <class Record>
bool is_zero(const Record& record)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(&record);
    return std::all_of(bytes, bytes + sizeof record, [](unsigned char byte) { return byte == 0; });
}

std::string snapshot(const sts_snap_def_v11_t* snap)
{
    if (!snap) return "null";
    auto rest = *snap;
    std::memset(rest.snapName, 0, strnlen(rest.snapName, sizeof rest.snapName));
    return std::string(snap->snapName) + (is_zero(rest) ? "" : " and more");
}

} // namespace

PluginManager& plugin_manager()
{
    static PluginManager manager;
    return manager;
}

SecondPlugin::SecondPlugin()
{
    if (g_plugin.exchange(this)) std::abort();
}

SecondPlugin::~SecondPlugin()
{
    g_plugin = nullptr;
}

void SecondPlugin::answer(Operation operation, std::deque<int> statuses)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    statuses_[operation] = std::move(statuses);
}

void SecondPlugin::hold(std::vector<sts_file_attr_v11_t> entries)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    entries_ = std::move(entries);
}

void SecondPlugin::on_list_file(std::function<void()> action)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    on_list_file_ = std::move(action);
}

std::vector<std::string> SecondPlugin::calls() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return calls_;
}

void SecondPlugin::forget_calls()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    calls_.clear();
}

std::size_t SecondPlugin::open_handles() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return static_cast<std::size_t>(
        std::count_if(handles_.begin(), handles_.end(), [](const Handle& handle) { return handle.open; }));
}

std::string SecondPlugin::name_of(const sts_handle_s* handle) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return name(handle);
}

void SecondPlugin::log(const char* text) const
{
    last_session_->log_callback(last_session_->session_id, text, STS_LOG_RECORD);
}

int SecondPlugin::next_status(Operation operation)
{
    std::deque<int>& statuses = statuses_[operation];
    if (statuses.empty()) return STS_EOK;
    const int status = statuses.front();
    statuses.pop_front();
    return status;
}

sts_handle_s* SecondPlugin::make_handle(const std::string& kind)
{
    handles_.push_back({kind + std::to_string(++counters_[kind])});
    return reinterpret_cast<sts_handle_s*>(&handles_.back());
}

SecondPlugin::Handle* SecondPlugin::find(const sts_handle_s* handle)
{
    for (Handle& known : handles_) {
        if (static_cast<const void*>(&known) == handle) return &known;
    }
    return nullptr;
}

std::string SecondPlugin::name(const sts_handle_s* handle) const
{
    if (!handle) return "null";
    const Handle* known = const_cast<SecondPlugin*>(this)->find(handle);
    return known ? known->name : "unknown";
}

int SecondPlugin::open_session(const sts_session_def_v7_t* session, sts_handle_s** out)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    sts_session_def_v7_t rest = *session;
    rest.session_id = nullptr;
    rest.log_callback = nullptr;
    rest.session_flags = 0;
    calls_.push_back(std::string("open_session ") + session->session_id + " " +
                     std::to_string(session->session_flags) + (is_zero(rest.proxy) ? "" : " with a proxy"));
    last_session_ = session;
    const int status = next_status(Operation::kOpenSession);
    if (status == STS_EOK && !keeps_session_handles_) *out = make_handle("session");
    return status;
}

int SecondPlugin::open_server(const sts_handle_s* session, const char* server_name,
                              const sts_cred_block* credentials, const char* empty, sts_handle_s** out)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const std::string user = credentials->texts;
    const std::string password = credentials->texts + user.size() + 1;
    sts_cred_block rest = *credentials;
    std::memset(rest.texts, 0, user.size() + password.size() + 2);
    calls_.push_back("open_server " + name(session) + " \"" + server_name + "\" \"" + user + "\" \"" +
                     password + "\" \"" + empty + "\"" + (is_zero(rest) ? "" : " and more"));
    const int status = next_status(Operation::kOpenServer);
    // What a failing open leaves behind is of no use to anybody.
    *out = status == STS_EOK ? make_handle("server") : reinterpret_cast<sts_handle_s*>(kNoHandle);
    return status;
}

int SecondPlugin::open_list(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* base,
                            const sts_snap_def_v11_t* diff, const sts_volume_spec_v11_t* volume,
                            std::uint32_t flags, sts_handle_s** out)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    calls_.push_back("open_list " + name(reinterpret_cast<const sts_handle_s*>(lsu->server)) +
                     (is_zero(lsu->name) ? "" : " with a name") + " base=" + snapshot(base) +
                     " diff=" + snapshot(diff) + " volume=" + volume->first + ";" + volume->second + ";" +
                     std::to_string(volume->volumeType) + " flags=" + std::to_string(flags));
    const int status = next_status(Operation::kOpenList);
    if (status == STS_EOK) *out = make_handle("list");
    return status;
}

int SecondPlugin::list_file(const sts_handle_s* list, std::uint32_t count, const char* filters,
                            sts_file_attr_v11_t* entry)
{
    std::function<void()> action;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        action = on_list_file_;
    }
    if (action) action();
    const std::lock_guard<std::mutex> lock(mutex_);
    std::string call = "list_file " + name(list) + " " + std::to_string(count);
    if (!filters) call += " null";
    for (std::uint32_t i = 0; filters && i < count; ++i) call += " " + std::string(filters + i * 1024);
    calls_.push_back(call);
    if (const int status = next_status(Operation::kListFile)) return status;
    Handle* handle = find(list);
    if (!handle || handle->delivered == entries_.size()) return STS_ENOENT;
    *entry = entries_[handle->delivered++];
    return STS_EOK;
}

int SecondPlugin::close_list(const sts_handle_s* list)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    calls_.push_back("close_list " + name(list));
    const int status = next_status(Operation::kCloseList);
    if (Handle* handle = find(list); handle && status == STS_EOK) handle->open = false;
    return status;
}

int SecondPlugin::close(const sts_handle_s* handle, int zero)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    calls_.push_back("close " + name(handle) + " " + std::to_string(zero));
    const int status = next_status(Operation::kClose);
    if (Handle* known = find(handle); known && status == STS_EOK) known->open = false;
    return status;
}

} // namespace kit

extern "C" __attribute__((visibility("default"))) int stsm_init(std::uint64_t version, const char* path,
                                                                const kit::Slot** api)
{
    kit::PluginManager& manager = kit::plugin_manager();
    ++manager.starts;
    manager.version = version;
    manager.path = path;
    if (manager.init_status == STS_EOK) *api = kit::table();
    return manager.init_status;
}

extern "C" __attribute__((visibility("default"))) int stsm_terminate()
{
    kit::PluginManager& manager = kit::plugin_manager();
    ++manager.ends;
    return manager.terminate_status;
}
