// The change lists with a second plug-in about.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_CHANGE_LIST_ZAPI_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_CHANGE_LIST_ZAPI_FIXTURE_H

#include "tests/entries/change_list_fixture.h"
#include "tests/kit/clock.h"
#include "tests/kit/second_plugin.h"

namespace change_list
{

using Operation = kit::SecondPlugin::Operation;

// The token of a list on this fixture's volume.
constexpr char kZapiToken[] = "ZAPI_TOKEN_filer1 admin s3cret word_/vol/v1";

inline sts_file_attr_v11_t entry(std::string_view path, int change = 0)
{
    sts_file_attr_v11_t entry = {};
    put(entry.name, path);
    entry.changetype = change;
    return entry;
}

class ZapiChangeListTest : public ChangeListTest
{
  protected:
    ZapiChangeListTest()
    {
        set_isid("use_zapi=1");
        start_plugin_once();
    }

    ~ZapiChangeListTest() override { EXPECT_EQ(plugin.open_handles(), left_open); }

    // The tests see nothing of whether theirs is the first connection of the process: the first one is made
    // here, with a service of its own.
    void start_plugin_once()
    {
        static bool started = false;
        if (started) return;
        started = true;
        kit::ScriptedService other;
        std::string other_url = other.url();
        server.endpoint = other_url.data();
        script_mapping(other);
        plugin.answer(Operation::kOpenSession, {1});
        EXPECT_EQ(open(), STS_ENULLARG);
        plugin.forget_calls();
        session.clear();
        server.endpoint = url.data();
    }

    // A list of the second plug-in; the log and the calls so far are no longer of interest.
    void open_at_plugin()
    {
        script_mapping();
        ASSERT_EQ(open(), 0);
        ASSERT_NE(list->zapi_list_cell, nullptr);
        plugin.forget_calls();
        session.clear();
    }

    void close_at_plugin()
    {
        script("ioControlResponse", kit::element("args") + kit::element("len", "0"));
        EXPECT_EQ(close_list()(list), 0);
    }

    static Lines connected()
    {
        return {kit::record("open_zapi_connection: succeed to open zapi session"),
                kit::record("open_zapi_connection: succeed to open zapi server"),
                kit::record("stspi_open_snap_change_list: succeed to open zapi connection")};
    }
    // The two settings are looked for, and there is no file.
    static Lines no_settings()
    {
        const Lines one = {kit::record("get_conf_setting: Attempting to open config file " +
                                       kit::Host::instance().configuration_file().string()),
                           kit::record("get_conf_setting: Config file not found")};
        return one + one;
    }
    static kit::LogLine opened(int status = 0)
    {
        return kit::record("stspi_open_snap_change_list: " + std::to_string(status));
    }

    kit::SecondPlugin plugin;
    kit::Clock clock;
    std::size_t left_open = 0; // handles of the second plug-in that the test knows nobody will close
};

} // namespace change_list

#endif
