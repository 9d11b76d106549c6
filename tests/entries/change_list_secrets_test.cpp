// No block of memory that the library gives back still holds the filer's password, whichever way a list goes.
// The second plug-in here keeps no copy of anything, so that all that is given back is the library's.
#include "changelist/zapi_api.h"
#include "tests/entries/change_list_fixture.h"
#include "tests/entries/heap_hooks.h"
#include "tests/kit/clock.h"

#include <array>
#include <functional>
#include <stdexcept>

using namespace change_list;
using namespace kit;
using hooks::FreedBlocks;

namespace
{

struct QuietPlugin {
    int session_status = 0;
    int server_status = 0;
    int list_status = 0;
    std::function<void()> on_list_file;

    static const sts_api_slot* table();
};
QuietPlugin* g_plugin = nullptr;

int give(int status, sts_handle_s** out)
{
    if (status == STS_EOK) *out = reinterpret_cast<sts_handle_s*>(out);
    return status;
}

template <class... Arguments>
sts_api_slot slot(int (*function)(Arguments...))
{
    return reinterpret_cast<sts_api_slot>(function);
}

const sts_api_slot* QuietPlugin::table()
{
    static std::array<sts_api_slot, 128> slots;
    slots[24] = slot(+[](sts_handle_s*, int) { return int{STS_EOK}; });
    slots[25] = slot(+[](sts_handle_s*) { return int{STS_EOK}; });
    slots[79] = slot(+[](sts_handle_s*, std::uint32_t, const char*, sts_file_attr_v11_t*) {
        if (g_plugin->on_list_file) g_plugin->on_list_file();
        return int{STS_ENOENT};
    });
    slots[109] = slot(+[](sts_handle_s*, const char*, sts_cred_block*, const char*, sts_handle_s** out) {
        return give(g_plugin->server_status, out);
    });
    slots[110] =
        slot(+[](sts_session_def_v7_t*, sts_handle_s** out) { return give(g_plugin->session_status, out); });
    slots[111] = slot(+[](stsp_lsu_v7_t*, sts_snap_def_v11_t*, sts_snap_def_v11_t*, sts_volume_spec_v11_t*,
                          std::uint32_t, sts_handle_s** out) { return give(g_plugin->list_status, out); });
    return slots.data();
}

constexpr std::size_t kShort = 11; // with the user's name and the filer's, more than a string holds in itself
constexpr std::size_t kLong = 900;

// Holds that nothing of a secret is left behind in its scope, however that is left.
class Watch
{
  public:
    explicit Watch(const std::string& secret) : freed_(secret) {}
    ~Watch()
    {
        EXPECT_GT(freed_.count(), 0u);
        EXPECT_EQ(freed_.with_text(), 0u);
    }

  private:
    FreedBlocks freed_;
};

class Secrets : public ChangeListTest, public testing::WithParamInterface<std::size_t>
{
  protected:
    Secrets()
    {
        g_plugin = &plugin;
        set_isid("use_zapi=1");
        put(server.server_name, "Network_NTAP:filer1");
        set_volume("filer1 admin " + password);
    }
    ~Secrets() override { g_plugin = nullptr; }

    void set_volume(const std::string& text)
    {
        put(volume->first, text);
        put(volume->second, "/vol/v1");
    }
    void script_command() { script("ioControlResponse", element("args") + element("len", "0")); }

    static int call(const std::function<int()>& entry, const std::string& secret = "s3cret")
    {
        const Watch watch(secret);
        return entry();
    }
    int call_open()
    {
        return call([this] { return open(); });
    }
    int call_close(const std::string& secret = "s3cret")
    {
        script_command();
        return call([this] { return close_list()(list); }, secret);
    }
    int call_list(const std::string& secret = "s3cret")
    {
        return call([this] { return list_file()(list, 0, nullptr, entry.get()); }, secret);
    }
    void script_start(int tries = 1)
    {
        script_mapping();
        for (int i = 1; i < tries; ++i) service.script(fault_answer(fault(STS_EBUSY)));
        script_command();
    }

    const std::string password = "s3cret " + std::string(GetParam() - 7, 'x');
    Clock clock;
    QuietPlugin plugin;
    std::unique_ptr<sts_file_attr_v11_t> entry = std::make_unique<sts_file_attr_v11_t>();
};

INSTANTIATE_TEST_SUITE_P(Texts, Secrets, testing::Values(kShort, kLong));

} // namespace

extern "C" __attribute__((visibility("default"))) int
stsm_init(std::uint64_t /*version*/, const char* /*path*/, const sts_api_slot** api)
{
    *api = QuietPlugin::table();
    return STS_EOK;
}

TEST_P(Secrets, AreGoneAfterEachStepOfAListsLife)
{
    script_start(3);
    ASSERT_EQ(call_open(), 0);
    ASSERT_NE(list->zapi_list_cell, nullptr);
    EXPECT_EQ(call_list(), STS_ENOENT);
    EXPECT_EQ(call_close(), 0);
}

TEST_P(Secrets, AreGoneFromTwoListsOfOneToken)
{
    script_start();
    ASSERT_EQ(call_open(), 0);
    stsp_change_list_t* const first = list;
    script_start();
    ASSERT_EQ(call_open(), 0);
    EXPECT_EQ(call_close(), 0);
    list = first;
    EXPECT_EQ(call_list(), STS_ENOENT); // on a record of its own
    EXPECT_EQ(call_close(), 0);
}

TEST_P(Secrets, AreGoneFromARecordThatIsClosedWhileItIsListed)
{
    script_start();
    ASSERT_EQ(call_open(), 0);
    stsp_change_list_t* const first = list;
    script_start();
    ASSERT_EQ(call_open(), 0);
    plugin.on_list_file = [this, first] {
        script_command();
        EXPECT_EQ(close_list()(first), 0);
    };
    EXPECT_EQ(call_list(), STS_ENOENT);
    EXPECT_EQ(call_close(), 0);
}

TEST_P(Secrets, AreGoneWhereThePluginOpensNoSession)
{
    plugin.session_status = 2060099;
    script_mapping();
    EXPECT_EQ(call_open(), STS_ENULLARG);
}

TEST_P(Secrets, AreGoneWhereThePluginOpensNoServer)
{
    plugin.server_status = 2060099;
    script_mapping();
    EXPECT_EQ(call_open(), 2060099);
}

TEST_P(Secrets, AreGoneWhereThePluginRefusesTheList)
{
    plugin.list_status = 2060099;
    script_start();
    script_list("C1");
    ASSERT_EQ(call_open(), 0);
    EXPECT_EQ(list->zapi_list_cell, nullptr);
    close_at_service();
}

TEST_P(Secrets, AreGoneWhereTheStartIsGivenUp)
{
    Host::instance().write_configuration("start_snapdiff_max_wait=0\n");
    base.reset();
    script_export(diff_export);
    service.script(fault_answer(fault(STS_EBUSY)));
    EXPECT_EQ(call_open(), STS_ETIMEDOUT);
}

TEST_P(Secrets, AreGoneWhereTheTextThrows)
{
    set_volume("filer1 s3cret" + std::string(GetParam(), 'x'));
    script_mapping();
    EXPECT_THROW(call_open(), std::out_of_range);
}

TEST_P(Secrets, AreGoneWhereMemoryRunsOut)
{
    base.reset();
    script_export(diff_export);
    script_command();
    {
        const hooks::NoMemory none(hooks::Allocator::kMalloc, sizeof(sts_volume_spec_v11_t));
        EXPECT_EQ(call_open(), STS_ENOMEM);
    }
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->token, nullptr);
    delete list;
}

TEST_P(Secrets, AreGoneWithTheFilersTextThatTheServiceSent)
{
    script_start();
    ASSERT_EQ(open(), 0);
    ASSERT_EQ(registry().size(), 1u);
    registry().begin()->second.diff_export_filer = "filer1 admin topmost " + password;
    EXPECT_EQ(call_close("topmost"), 0);
}

TEST_P(Secrets, AreGoneFromATokenTooShortForAnAllocation)
{
    put(volume->first, "  s");
    put(volume->second, "");
    const std::string token = "ZAPI_TOKEN_  s_";
    script_start();
    ASSERT_EQ(call([this] { return open(); }, token), 0);
    ASSERT_EQ(registry().count(token), 1u);
    EXPECT_EQ(call_list(token), STS_ENOENT);
    EXPECT_EQ(call_close(token), 0);
}
