// The entries of a list of the second plug-in's; and that both routes give the same.
#include "tests/entries/change_list_zapi_fixture.h"

#include <algorithm>

using namespace change_list;
using namespace kit;
using testing::ElementsAre;
using testing::SizeIs;

namespace
{

class ListZapiFiles : public ZapiChangeListTest
{
  protected:
    int next() { return list_file()(list, 0, nullptr, record_.get()); }
    std::string next_path()
    {
        const int status = next();
        return status == 0 ? record_->name : std::to_string(status);
    }
    snapdiff_session_info& info() { return registry().at(kZapiToken); }

    std::vector<std::string> all_paths()
    {
        std::vector<std::string> paths;
        int status = 0;
        while ((status = next()) == 0) paths.emplace_back(record_->name);
        EXPECT_EQ(status, STS_ENOENT);
        std::sort(paths.begin(), paths.end());
        return paths;
    }

    std::unique_ptr<sts_file_attr_v11_t> record_ = std::make_unique<sts_file_attr_v11_t>();
};

} // namespace

TEST_F(ListZapiFiles, HandsOutThePluginsRecordWithItsPathRewrittenAndSaysNothing)
{
    sts_file_attr_v11_t one = entry("/a\\20b");
    one.size = 5;
    one.gnum = 6;
    plugin.hold({one});
    open_at_plugin();
    fill_with_canary(*record_);
    ASSERT_EQ(next(), 0);
    EXPECT_STREQ(record_->name, "/a b");
    EXPECT_EQ(record_->size, 5);
    EXPECT_EQ(record_->gnum, 6);
    EXPECT_THAT(session.lines(), ElementsAre());
    EXPECT_THAT(plugin.calls(), ElementsAre("list_file list1 0 null"));
    EXPECT_EQ(next(), STS_ENOENT);
    EXPECT_EQ(next(), STS_ENOENT); // asked again, each time
    EXPECT_THAT(session.lines(),
                ElementsAre(record("stspi_list_file: STS_ENOENT"), record("stspi_list_file: STS_ENOENT")));
    EXPECT_THAT(plugin.calls(), SizeIs(3));
    EXPECT_EQ(service.connections(), 2u);
    close_at_plugin();
}

TEST_F(ListZapiFiles, PassesTheHostsFiltersOnAsTheyStandAndKeepsItsOwnBack)
{
    plugin.hold({entry("/vol/v1/q1/a")});
    open_at_plugin();
    info().qtree_paths = {"/vol/v1/q1"};
    std::vector<char> filters(2 * 1024);
    std::strcpy(filters.data(), "/one");
    std::strcpy(filters.data() + 1024, "/two");
    EXPECT_EQ(list_file()(list, 2, filters.data(), record_.get()), 0);
    EXPECT_THAT(plugin.calls(), ElementsAre("list_file list1 2 /one /two"));
    close_at_plugin();
}

TEST_F(ListZapiFiles, PassesOverWhatLiesOutsideTheQtreesWithoutAWord)
{
    plugin.hold({entry("/vol/a/q10"), entry("/vol/a/q1"), entry("/vol/a"), entry("/vol/a/q1/x"),
                 entry("/vol/a/Q1"), entry("/vol/a/q2/y")});
    open_at_plugin();
    info().qtree_paths = {"/vol/a/q1", "/vol/a/q2"};
    EXPECT_EQ(next_path(), "/vol/a/q1");
    EXPECT_EQ(next_path(), "/vol/a/q1/x");
    EXPECT_EQ(next_path(), "/vol/a/q2/y");
    EXPECT_THAT(session.lines(), ElementsAre());
    EXPECT_EQ(next(), STS_ENOENT);
    EXPECT_THAT(plugin.calls(), SizeIs(7));
    close_at_plugin();
}

TEST_F(ListZapiFiles, HoldsAPathAgainstTheQtreesBeforeItIsRewritten)
{
    plugin.hold({entry("/q\\31"), entry("/q1")});
    open_at_plugin();
    info().qtree_paths = {"/q1"};
    EXPECT_EQ(next_path(), "/q1");
    EXPECT_EQ(next(), STS_ENOENT);
    close_at_plugin();
}

TEST_F(ListZapiFiles, ReturnsAnyOtherStatusOfThePluginInSilence)
{
    plugin.hold({entry("/a")});
    open_at_plugin();
    plugin.answer(Operation::kListFile, {2060005, 17, -1});
    EXPECT_EQ(next(), STS_EBUSY);
    EXPECT_EQ(next(), 17);
    EXPECT_EQ(next(), -1);
    EXPECT_THAT(session.lines(), ElementsAre());
    EXPECT_EQ(next_path(), "/a");
    EXPECT_THAT(clock.sleeps(), ElementsAre());
    close_at_plugin();
}

TEST_F(ListZapiFiles, RewritesWithTheMountThatTheTextNames)
{
    set_isid("mount=NDMP:/vol/v1|filer1:/share,use_zapi=0");
    plugin.hold({entry(diff_export + "/new", 0), entry(base_export + "/gone", 1), entry("/else/where", 2)});
    open_at_plugin();
    EXPECT_EQ(next_path(), "filer1:/share/new");
    EXPECT_EQ(next_path(), "filer1:/share/gone");
    EXPECT_EQ(next_path(), "/else/where");
    EXPECT_THAT(session.lines(), ElementsAre(record("transform: " + diff_export + "/new " + diff_export),
                                             record("info.parsed_isid.mpfs_vec[0].mount_path NDMP:/vol/v1"),
                                             record("transform: /else/where " + diff_export)));
    close_at_plugin();
}

TEST_F(ListZapiFiles, AreTheSameFiveThousandPathsByBothRoutes)
{
    constexpr int kFiles = 5000;
    constexpr int kBatch = 500;
    const auto path = [this](int i) {
        const std::string& snapshot = i % 3 == 1 ? base_export : diff_export;
        return snapshot + "/q" + std::to_string(i % 7) + "/dir\\20" + std::to_string(i / 100) + "/file" +
               std::to_string(i);
    };
    const auto learn = [](snapdiff_session_info& info) {
        info.repl_patterns = {{"", "q1", "/src/one"}, {"", "q2/dir", "/never"}, {"", "q3", ""}};
    };
    // For the plug-in the mounts count by an NDMP volume, for the service by any other.
    set_isid("mount=/mnt/s1|filer1:/vol/v1");
    std::vector<sts_file_attr_v11_t> entries;
    for (int i = 0; i < kFiles; ++i) entries.push_back(entry(path(i), i % 3));
    plugin.hold(entries);
    open_at_plugin();
    learn(info());
    server.session = nullptr; // nobody needs the log of this
    const std::vector<std::string> by_plugin = all_paths();
    close_at_plugin();

    volume->volumeType = STS_VOLUME_NFS;
    open_at_service();
    learn(registry().at("C1"));
    for (int first = 0; first < kFiles; first += kBatch) {
        std::string items;
        for (int i = first; i < first + kBatch; ++i) items += file_element(path(i), i % 3);
        service.script(answer(files_reply(items, kBatch)));
    }
    service.script(answer(files_reply("", 0)));
    const std::vector<std::string> by_service = all_paths();
    close_at_service();

    EXPECT_THAT(by_plugin, SizeIs(kFiles));
    EXPECT_TRUE(by_plugin == by_service);
    EXPECT_TRUE(std::binary_search(by_plugin.begin(), by_plugin.end(), "/mnt/s1//src/one/dir 0/file1"));
}
