// The slot numbers are the contract with the host. They stand here a second time, by hand, and the tables of
// the built library and the header that hosts get are compared with them.
#include "plugin/host/slots.h"
#include "tests/kit/host.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <link.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

using kit::Host;

namespace
{

struct Slot {
    std::size_t number;
    const char* entry;
};

const std::vector<Slot> kVersion10 = {
    {4, "stspi_claim"},
    {7, "stspi_close_image_list"},
    {8, "stspi_close_lsu_list"},
    {9, "stspi_close_server"},
    {18, "stspi_get_image_prop"},
    {19, "stspi_get_image_prop_byname"},
    {20, "stspi_get_lsu_prop_byname_v10"},
    {21, "stspi_get_server_prop"},
    {22, "stspi_get_server_prop_byname"},
    {25, "stspi_list_image"},
    {26, "stspi_list_lsu"},
    {28, "stspi_open_lsu_list_v10"},
    {29, "stspi_open_server"},
    {30, "stspi_open_target_server"},
    {33, "stspi_open_image_list"},
    {35, "stspi_terminate"},
};

const std::vector<Slot> kVersion11 = {
    {2, "stspi_async_wait"},
    {4, "stspi_claim"},
    {5, "stspi_close_evchannel"},
    {7, "stspi_close_image_list"},
    {8, "stspi_close_lsu_list"},
    {9, "stspi_close_server"},
    {12, "stspi_delete_event"},
    {14, "stspi_delete_image"},
    {15, "stspi_get_event"},
    {18, "stspi_get_image_prop"},
    {19, "stspi_get_image_prop_byname"},
    {20, "stspi_get_lsu_prop_byname_v11"},
    {21, "stspi_get_server_prop"},
    {22, "stspi_get_server_prop_byname"},
    {25, "stspi_list_image"},
    {26, "stspi_list_lsu"},
    {27, "stspi_open_evchannel_v11"},
    {28, "stspi_open_lsu_list_v11"},
    {29, "stspi_open_server"},
    {30, "stspi_open_target_server"},
    {33, "stspi_open_image_list"},
    {35, "stspi_terminate"},
    {41, "stspi_async_cancel"},
    {44, "stspi_get_event_payload"},
    {47, "stspi_named_async_status"},
    {55, "stspi_get_lsu_replication_prop"},
    {56, "stspi_iocontrol"},
};

const std::vector<Slot> kSnapshots = {
    {0, "stspi_add_export"},
    {1, "stspi_async_copy_snap_byname"},
    {2, "stspi_async_create_snap_byname"},
    {3, "stspi_async_get_snap_diff"},
    {4, "stspi_async_postprocess_snap_byname"},
    {5, "stspi_async_prepare_snap_byname"},
    {6, "stspi_async_rollback_snap"},
    {7, "stspi_async_validate_snap_byname"},
    {8, "stspi_async_wait_snap"},
    {9, "stspi_claim_volume"},
    {10, "stspi_close_snap_list"},
    {12, "stspi_create_export"},
    {14, "stspi_delete_export"},
    {15, "stspi_delete_snap"},
    {19, "stspi_get_snap_prop_byname"},
    {20, "stspi_list_snap"},
    {21, "stspi_named_async_copy_snap_byname"},
    {22, "stspi_named_async_create_snap_byname"},
    {23, "stspi_named_async_get_snap_diff"},
    {24, "stspi_named_async_postprocess_snap_byname"},
    {25, "stspi_named_async_prepare_snap_byname"},
    {26, "stspi_named_async_rollback_snap"},
    {27, "stspi_named_async_validate_snap_byname"},
    {28, "stspi_named_async_wait_snap"},
    {29, "stspi_open_snap_list_by_volume"},
    {30, "stspi_open_snap_list"},
    {34, "stspi_validate_rollback"},
    {37, "stspi_async_provision_topology"},
    {38, "stspi_named_async_provision_topology"},
    {39, "stspi_open_snap_change_list"},
    {40, "stspi_close_snap_change_list"},
    {41, "stspi_list_file"},
    {43, "stspi_async_import_snap_byname"},
    {44, "stspi_named_async_import_snap_byname"},
};

// What the linker calls the symbol at this address, or "an empty slot".
std::string name_of(stspi_slot_t slot)
{
    if (!slot) return "an empty slot";
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(slot), &info) == 0 || !info.dli_sname) return "an unknown function";
    return info.dli_sname;
}

std::vector<std::string> names_of(const stspi_slot_t* table, std::size_t size)
{
    std::vector<std::string> names;
    std::transform(table, table + size, std::back_inserter(names), name_of);
    return names;
}

std::vector<std::string> names_of(const std::vector<Slot>& slots, std::size_t size)
{
    std::vector<std::string> names(size, "an empty slot");
    for (const Slot& slot : slots) names.at(slot.number) = slot.entry;
    return names;
}

// As many bytes as the linker gave the table, in slots.
std::size_t slots_of(const void* table)
{
    Dl_info info;
    void* symbol = nullptr;
    if (dladdr1(table, &info, &symbol, RTLD_DL_SYMENT) == 0 || !symbol) return 0;
    return static_cast<const ElfW(Sym)*>(symbol)->st_size / sizeof(stspi_slot_t);
}

void expect_table(const char* name, const std::vector<Slot>& slots, std::size_t size)
{
    const auto* table = Host::instance().symbol<const stspi_slot_t>(name);
    EXPECT_EQ(slots_of(table), size);
    EXPECT_EQ(names_of(table, size), names_of(slots, size));
    for (const Slot& slot : slots) {
        EXPECT_EQ(table[slot.number], Host::instance().symbol<void()>(slot.entry)) << slot.entry;
    }
}

// One line for each slot.
std::vector<std::string> lines_of(const std::vector<Slot>& slots)
{
    std::vector<std::string> lines;
    std::transform(slots.begin(), slots.end(), std::back_inserter(lines),
                   [](const Slot& slot) { return std::to_string(slot.number) + " " + slot.entry; });
    return lines;
}

#define NAMED(slot, entry) Slot{slot, #entry},

} // namespace

TEST(EntryTables, OfVersion10Has41SlotsThatAreFilledAsAgreed)
{
    expect_table("PluginEntryPoints_v10", kVersion10, 41);
}

TEST(EntryTables, OfVersion11Has57SlotsThatAreFilledAsAgreed)
{
    expect_table("PluginEntryPoints_v11", kVersion11, 57);
}

TEST(EntryTables, OfTheSnapshotsHas45SlotsThatAreFilledAsAgreed)
{
    expect_table("PluginEntryPoints3_v11", kSnapshots, 45);
}

TEST(EntryTables, AreNamedSlotBySlotInTheHeaderForHosts)
{
    EXPECT_EQ(lines_of({STSPI_V10_ENTRIES(NAMED)}), lines_of(kVersion10));
    EXPECT_EQ(lines_of({STSPI_V11_ENTRIES(NAMED)}), lines_of(kVersion11));
    EXPECT_EQ(lines_of({STSPI3_V11_ENTRIES(NAMED)}), lines_of(kSnapshots));
}

TEST(EntryTables, GiveTheHeaderForHostsEachEntryWithItsType)
{
    Host& host = Host::instance();
    const auto* version10 = host.symbol<const stspi_slot_t>("PluginEntryPoints_v10");
    const auto* version11 = host.symbol<const stspi_slot_t>("PluginEntryPoints_v11");
    const auto* snapshots = host.symbol<const stspi_slot_t>("PluginEntryPoints3_v11");
#define READ_V10(slot, entry)                                                                                \
    EXPECT_EQ(STSPI_V10_ENTRY(version10, entry), host.symbol<decltype(entry)>(#entry));
#define READ_V11(slot, entry)                                                                                \
    EXPECT_EQ(STSPI_V11_ENTRY(version11, entry), host.symbol<decltype(entry)>(#entry));
#define READ3_V11(slot, entry)                                                                               \
    EXPECT_EQ(STSPI3_V11_ENTRY(snapshots, entry), host.symbol<decltype(entry)>(#entry));
    STSPI_V10_ENTRIES(READ_V10)
    STSPI_V11_ENTRIES(READ_V11)
    STSPI3_V11_ENTRIES(READ3_V11)
}

TEST(EntryTables, HoldNoEntryThatIsReachedByItsNameAlone)
{
    for (const char* entry : {"stspi_copy_image", "stspi_init", "stspi_init3"}) {
        const stspi_slot_t function = Host::instance().symbol<void()>(entry);
        for (const auto& [name, size] : {std::pair<const char*, std::size_t>("PluginEntryPoints_v10", 41),
                                         {"PluginEntryPoints_v11", 57},
                                         {"PluginEntryPoints3_v11", 45}}) {
            const auto* table = Host::instance().symbol<const stspi_slot_t>(name);
            EXPECT_EQ(std::find(table, table + size, function), table + size) << entry << " in " << name;
        }
    }
}
