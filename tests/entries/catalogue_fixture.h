// What the tests of the catalogues, the exports and the I/O control share: a server handle under the test's
// control, the entries by their slots, and the requests' parts as the service should see them.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_CATALOGUE_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_CATALOGUE_FIXTURE_H

#include "plugin/base/handle_records.h"
#include "tests/kit/entry_lines.h"
#include "tests/kit/host.h"
#include "tests/kit/log_recorder.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"
#include "tests/kit/wire_elements.h"
#include "tests/unit/canary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace catalogue
{

// An entry in a slot of the older main table, which no handshake hands out.
template <class Entry>
Entry* old_slot(std::size_t number)
{
    using Table = const stspi_slot_t[STSPI_V10_SLOTS];
    return reinterpret_cast<Entry*>((*kit::Host::instance().symbol<Table>("PluginEntryPoints_v10"))[number]);
}

#define MAIN_ENTRY(name, number)                                                                             \
    inline auto name()                                                                                       \
    {                                                                                                        \
        return kit::Host::instance().main_slot<decltype(stspi_##name)>(number);                              \
    }
#define SNAPSHOT_ENTRY(name, number)                                                                         \
    inline auto name()                                                                                       \
    {                                                                                                        \
        return kit::Host::instance().snapshot_slot<decltype(stspi_##name)>(number);                          \
    }
#define OLD_ENTRY(name, number)                                                                              \
    inline auto name()                                                                                       \
    {                                                                                                        \
        return old_slot<decltype(stspi_##name)>(number);                                                     \
    }

OLD_ENTRY(open_lsu_list_v10, 28)
OLD_ENTRY(get_lsu_prop_byname_v10, 20)
MAIN_ENTRY(open_lsu_list_v11, 28)
MAIN_ENTRY(get_lsu_prop_byname_v11, 20)
MAIN_ENTRY(list_lsu, 26)
MAIN_ENTRY(close_lsu_list, 8)
MAIN_ENTRY(get_lsu_replication_prop, 55)
MAIN_ENTRY(open_image_list, 33)
MAIN_ENTRY(list_image, 25)
MAIN_ENTRY(close_image_list, 7)
MAIN_ENTRY(get_image_prop, 18)
MAIN_ENTRY(get_image_prop_byname, 19)
MAIN_ENTRY(delete_image, 14)
MAIN_ENTRY(iocontrol, 56)
SNAPSHOT_ENTRY(open_snap_list, 30)
SNAPSHOT_ENTRY(open_snap_list_by_volume, 29)
SNAPSHOT_ENTRY(list_snap, 20)
SNAPSHOT_ENTRY(close_snap_list, 10)
SNAPSHOT_ENTRY(get_snap_prop_byname, 19)
SNAPSHOT_ENTRY(delete_snap, 15)
SNAPSHOT_ENTRY(validate_rollback, 34)
SNAPSHOT_ENTRY(create_export, 12)
SNAPSHOT_ENTRY(add_export, 0)
SNAPSHOT_ENTRY(delete_export, 14)
SNAPSHOT_ENTRY(claim_volume, 9)

#undef MAIN_ENTRY
#undef SNAPSHOT_ENTRY
#undef OLD_ENTRY

// An NFS volume with three texts, under an element's name.
inline std::string nfs_element(std::string_view name)
{
    return kit::element(name, kit::element("nfs", kit::element("exportHost", "one") +
                                                      kit::element("exportName", "two") +
                                                      kit::element("exportPath", "three")) +
                                  kit::element("volumeType", "0"));
}

inline sts_volume_spec_v11_t host_volume(int type)
{
    sts_volume_spec_v11_t volume = {};
    put(volume.first, "one");
    put(volume.second, "two");
    put(volume.third, "three");
    volume.volumeType = type;
    return volume;
}

template <class Record>
std::unique_ptr<Record> canary_record()
{
    auto record = std::make_unique<Record>();
    fill_with_canary(*record);
    return record;
}

class CatalogueTest : public testing::Test
{
  protected:
    CatalogueTest()
    {
        server.endpoint = url.data();
        server.service_handle = service_handle;
        server.session = session.get();
        lsu.server = &server;
        put(lsu.name, "lsu1");
    }

    void script(std::string_view name, std::string_view content = "")
    {
        service.script(kit::answer(kit::reply(name, content)));
    }

    // What an entry says after a call that the service answered.
    std::vector<kit::LogLine> good_log(const std::string& entry) const
    {
        return {kit::enter(entry), kit::return_code(entry), kit::ok(entry)};
    }

    // The same where the entry had nowhere to put what came.
    std::vector<kit::LogLine> log_without_place(const std::string& entry, const std::string& what) const
    {
        std::vector<kit::LogLine> lines = good_log(entry);
        lines.insert(lines.end() - 1, kit::anomaly(entry + ": no place for the " + what));
        return lines;
    }

    // Nothing was logged and nobody was called.
    void expect_silence()
    {
        EXPECT_THAT(session.lines(), testing::IsEmpty());
        EXPECT_EQ(service.connections(), 0u);
    }

    kit::ScriptedService service;
    kit::RecordedSession session;
    std::string url = service.url();
    char service_handle[3] = "S1";
    stsp_server server = {};
    stsp_lsu_v7_t lsu = {};
};

} // namespace catalogue

#endif
