// The plug-in manager's two functions, and the table of operations that they hand out.
#include "plugin/host/host_records.h"
#include "plugin/host/second_plugin.h"
#include "plugin/host/status.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/zapi/stand_in.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <new>
#include <string>
#include <vector>

extern "C" {
__attribute__((visibility("default"))) stsm_init_fn stsm_init;
__attribute__((visibility("default"))) stsm_terminate_fn stsm_terminate;
}

namespace soapwrapper::simulator
{
namespace
{

constexpr std::size_t kTableSize = 128;
constexpr std::size_t kFilterSize = 1024;

StandIn& stand_in()
{
    static StandIn only;
    return only;
}

// Nothing that is thrown crosses the table.
template <class Work>
int status_of(Work work)
{
    try {
        return work();
    } catch (const Fault& fault) {
        return fault.code();
    } catch (const std::bad_alloc&) {
        return STS_ENOMEM;
    } catch (const std::exception&) {
        return STS_EPLUGIN;
    }
}

template <std::size_t Size>
std::string text_of(const char (&field)[Size])
{
    return {field, strnlen(field, Size)};
}

// A text without its end is no text.
FilerLogin login_of(const sts_cred_block& block)
{
    const std::string user = text_of(block.names);
    if (user.size() == sizeof block.names) return {};
    const std::size_t behind = user.size() + 1;
    return {user, {block.names + behind, strnlen(block.names + behind, sizeof block.names - behind)}};
}

std::vector<std::string> filters_of(std::uint32_t count, const char* rows)
{
    std::vector<std::string> filters;
    filters.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const char* row = rows + i * kFilterSize;
        filters.emplace_back(row, strnlen(row, kFilterSize));
    }
    return filters;
}

int open_session(sts_session_def_v7_t* session, sts_handle_s** out)
{
    if (!session || !out) return STS_ENULLARG;
    *out = nullptr;
    return status_of([&] {
        *out = stand_in().open_session(*session);
        return STS_EOK;
    });
}

int open_server(sts_handle_s* session, const char* name, const sts_cred_block* credentials,
                const char* /*interface*/, sts_handle_s** out)
{
    if (!name || !credentials || !out) return STS_ENULLARG;
    *out = nullptr;
    return status_of([&] {
        *out = stand_in().open_server(session, name, login_of(*credentials));
        return STS_EOK;
    });
}

// Of the LSU only the server counts, and of the snapshots only their names, which are their export paths.
int open_list(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* base, const sts_snap_def_v11_t* diff,
              sts_volume_spec_v11_t* /*volume*/, std::uint32_t /*flags*/, sts_handle_s** out)
{
    if (!lsu || !diff || !out) return STS_ENULLARG;
    *out = nullptr;
    return status_of([&] {
        const std::string base_path = base ? text_of(base->snapName) : "";
        *out = stand_in().open_list(reinterpret_cast<const sts_handle_s*>(lsu->server),
                                    base ? &base_path : nullptr, text_of(diff->snapName));
        return STS_EOK;
    });
}

int list_file(sts_handle_s* list, std::uint32_t count, const char* filters, sts_file_attr_v11_t* entry)
{
    if (!entry || (count != 0 && !filters)) return STS_ENULLARG;
    return status_of([&] {
        return stand_in().next_entry(list, filters_of(count, filters), *entry) ? STS_EOK : STS_ENOENT;
    });
}

int close_list(sts_handle_s* list)
{
    return status_of([&] {
        stand_in().close_list(list);
        return STS_EOK;
    });
}

int close_handle(sts_handle_s* handle, int /*flags*/)
{
    return status_of([&] {
        stand_in().close(handle);
        return STS_EOK;
    });
}

int not_supported()
{
    return kNotSupported;
}

// The types of the operations are the table's: a function of another type doesn't compile.
template <class Operation>
sts_api_slot slot(Operation* function)
{
    return reinterpret_cast<sts_api_slot>(function);
}

const sts_api_slot* table()
{
    static const std::array<sts_api_slot, kTableSize> slots = [] {
        std::array<sts_api_slot, kTableSize> all{};
        all.fill(slot(not_supported));
        all[STS_API_SLOT_sts_api_close] = slot<sts_api_close_fn>(close_handle);
        all[STS_API_SLOT_sts_api_close_snap_change_list] =
            slot<sts_api_close_snap_change_list_fn>(close_list);
        all[STS_API_SLOT_sts_api_list_file] = slot<sts_api_list_file_fn>(list_file);
        all[STS_API_SLOT_sts_api_open_server] = slot<sts_api_open_server_fn>(open_server);
        all[STS_API_SLOT_sts_api_open_session] = slot<sts_api_open_session_fn>(open_session);
        all[STS_API_SLOT_sts_api_open_snap_change_list] = slot<sts_api_open_snap_change_list_fn>(open_list);
        return all;
    }();
    return slots.data();
}

} // namespace
} // namespace soapwrapper::simulator

// The path is that of the plug-in that asks; nothing is looked for there.
extern "C" int stsm_init(std::uint64_t version, const char* plugin_path, const sts_api_slot** api)
{
    using namespace soapwrapper::simulator;
    if (version != STS_API_VERSION) return STS_EINTERFACE;
    if (!plugin_path || !api) return STS_ENULLARG;
    *api = table();
    return STS_EOK;
}

// The table stays good, so that a caller who is late loses nothing but the answer.
extern "C" int stsm_terminate(void)
{
    return soapwrapper::simulator::stand_in().in_use() ? STS_EINUSE : STS_EOK;
}
