// Change lists through the built library, from the simulator and from the stand-in for the second plug-in.
#include "plugin/base/handle_records.h"
#include "tests/kit/clock.h"
#include "tests/kit/scripted_service.h"
#include "tests/system/simulator_change_lists.h"
#include "tests/system/zapi_standin.h"

#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <set>

namespace
{

using simulator_change_lists::ScenarioFile;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAre;
using zapi_standin::Variable;

constexpr int kEnd = 2060013;
constexpr int kBusy = 2060005;
constexpr int kFolders = 50;

// As the host sees it.
using Entry = std::pair<int, std::string>;

class Routes : public testing::Test
{
  protected:
    // `scenario` must outlive the object.
    explicit Routes(const ScenarioFile& scenario)
        : variable_("SOAPWRAPPER_SIM_SCENARIO", scenario.path()), simulator_({"--scenario", scenario.path()})
    {
        // The manager's functions must be in sight when the library is loaded.
        zapi_standin::Library::instance();
        kit::Host::instance().write_configuration(
            "filer = http://127.0.0.1:" + std::to_string(simulator_.http_port()) +
            "\nstart_snapdiff_retry_interval = 10\nstart_snapdiff_max_wait = 60\n");
        EXPECT_EQ(kit::open_server()(session_.get(), "Network_NTAP:filer", kit::Credential("simulator").get(),
                                     nullptr, &server_),
                  0);
        lsu_.server = server_;
        std::strcpy(lsu_.name, "data");
        std::strcpy(base_->snapName, "a");
        std::strcpy(diff_->snapName, "b");
    }
    ~Routes() override
    {
        EXPECT_EQ(kit::close_server()(server_), 0);
        EXPECT_THAT(session_.texts(), Each(Not(HasSubstr("s3cret"))));
    }

    int open(const std::string& isid, int type, const char* first, const char* second, bool with_base = true)
    {
        std::strcpy(diff_->isid.info, isid.c_str());
        *volume_ = {};
        std::strcpy(volume_->first, first);
        std::strcpy(volume_->second, second);
        volume_->volumeType = type;
        const auto entry = kit::Host::instance().snapshot_slot<decltype(stspi_open_snap_change_list)>(39);
        return entry(&lsu_, with_base ? base_.get() : nullptr, diff_.get(), volume_.get(), 0, &list_);
    }
    // With a mount the volume makes the route, without one the text does.
    int open_at_service(const std::string& mount)
    {
        if (mount.empty()) return open("use_zapi=0", STS_VOLUME_NDMP, "filer1", "/vol/data");
        return open("mount=" + mount + "|filer1:/vol/data", STS_VOLUME_NFS, "filer1", "/vol/data");
    }
    int open_at_standin(const std::string& mount, bool with_base = true)
    {
        const std::string isid =
            mount.empty() ? "use_zapi=1" : "mount=" + mount + "|filer1:/vol/data,use_zapi=0";
        return open(isid, STS_VOLUME_NDMP, "filer1 admin simulator", "/vol/data", with_base);
    }
    bool is_the_standins() const { return list_->zapi_list_cell != nullptr; }

    int next(sts_file_attr_v11_t& entry, const std::vector<std::string>& filters = {})
    {
        std::vector<char> rows(filters.size() * 1024 + 1);
        for (std::size_t i = 0; i < filters.size(); ++i) filters[i].copy(&rows[i * 1024], 1023);
        const auto call = kit::Host::instance().snapshot_slot<decltype(stspi_list_file)>(41);
        return call(list_, static_cast<std::uint32_t>(filters.size()), rows.data(), &entry);
    }
    // The rest of the list, sorted; the list is closed.
    std::vector<Entry> take_rest(const std::vector<std::string>& filters = {})
    {
        std::vector<Entry> entries;
        auto entry = std::make_unique<sts_file_attr_v11_t>();
        int status = 0;
        while ((status = next(*entry, filters)) == 0) entries.emplace_back(entry->changetype, entry->name);
        EXPECT_EQ(status, kEnd);
        close();
        std::sort(entries.begin(), entries.end());
        return entries;
    }
    void close()
    {
        const auto call = kit::Host::instance().snapshot_slot<decltype(stspi_close_snap_change_list)>(40);
        EXPECT_EQ(call(list_), 0);
    }

    const Variable variable_;
    SimulatorProcess simulator_;
    kit::RecordedSession session_;
    stsp_server_t* server_ = nullptr;
    stsp_lsu_v7_t lsu_{};
    const std::unique_ptr<sts_snap_def_v11_t> base_ = std::make_unique<sts_snap_def_v11_t>();
    const std::unique_ptr<sts_snap_def_v11_t> diff_ = std::make_unique<sts_snap_def_v11_t>();
    const std::unique_ptr<sts_volume_spec_v11_t> volume_ = std::make_unique<sts_volume_spec_v11_t>();
    stsp_change_list_t* list_ = nullptr;
};

// Two directories: in the second one many files are longer, one is gone, and some are new with names
// that hold what a name can hold.
class Directories : protected ScenarioFile
{
  protected:
    explicit Directories(int files)
        : ScenarioFile(R"({"batch": 70})", R"("tree": "a")", R"("tree": "b")"), files_(files)
    {
        for (int folder = 0; folder < kFolders; ++folder) {
            const std::string name = "d" + std::to_string(folder);
            std::filesystem::create_directories(place("a/" + name));
            std::filesystem::create_directories(place("b/" + name));
            for (int file = 0; file < files / kFolders; ++file) {
                make("a/" + name + "/f" + std::to_string(file));
                make("b/" + name + "/f" + std::to_string(file), "longer");
            }
        }
        make("a/d7/gone \\ \xfe");
        for (const std::string& name : odd_names()) make("b/" + name);
    }

    static std::vector<std::string> odd_names()
    {
        std::string all;
        for (int byte = 1; byte < 256; ++byte) {
            if (byte != '/') all += static_cast<char>(byte);
        }
        return {"two  blanks ",
                "gr\xc3\xbc\xc3\x9f"
                "e",
                "\\5c\\",
                "\n",
                "%s%n",
                ".snapshot",
                all.substr(0, 127),
                all.substr(127)};
    }
    std::filesystem::path place(const std::string& name) const { return ScenarioFile::operator/(name); }
    void make(const std::string& name, const char* text = "") const { std::ofstream(place(name)) << text; }
    std::size_t files() const { return static_cast<std::size_t>(files_); }

  private:
    const int files_;
};

class RoutesOverDirectories : protected Directories, public Routes
{
  protected:
    explicit RoutesOverDirectories(int files = 500)
        : Directories(files), Routes(static_cast<const ScenarioFile&>(*this))
    {
    }

    std::string mount() const { return place("b").string(); }
};

class RoutesOverManyFiles : public RoutesOverDirectories
{
  protected:
    RoutesOverManyFiles() : RoutesOverDirectories(5000) {}
};

TEST_F(RoutesOverManyFiles, FiveThousandChangesHaveTheSameHostPathsByBothRoutes)
{
    ASSERT_EQ(open_at_service(mount()), 0);
    ASSERT_FALSE(is_the_standins());
    const std::vector<Entry> from_service = take_rest();
    ASSERT_EQ(open_at_standin(mount()), 0);
    ASSERT_TRUE(is_the_standins());
    const std::vector<Entry> from_standin = take_rest();

    EXPECT_TRUE(from_service == from_standin);
    EXPECT_GE(from_service.size(), files());
    EXPECT_TRUE(std::adjacent_find(from_service.begin(), from_service.end()) == from_service.end());
}

TEST_F(RoutesOverDirectories, HostPathsAreTheNamesOnDiskByteForByte)
{
    ASSERT_EQ(open_at_standin(mount()), 0);
    std::set<std::string> created;
    std::string gone;
    for (const auto& [change, path] : take_rest()) {
        struct stat found {
        };
        const bool is_there = lstat(path.c_str(), &found) == 0;
        EXPECT_EQ(is_there, change != 1) << path;
        if (change == 0) created.insert(path);
        if (change == 1) gone = path;
    }
    std::set<std::string> expected;
    for (const std::string& name : odd_names()) expected.insert(mount() + "/" + name);
    EXPECT_EQ(created, expected);
    EXPECT_EQ(gone, mount() + "/d7/gone \\ \xfe");
}

TEST_F(RoutesOverDirectories, WithoutMountsBothRoutesTellTheFilersPathsUnescaped)
{
    const std::string in_diff = "/vol/data/.snapshot/b/";
    ASSERT_EQ(open_at_service(""), 0);
    const std::vector<Entry> from_service = take_rest({"d7", "two  blanks "});
    ASSERT_EQ(open_at_standin(""), 0);
    const std::vector<Entry> from_standin = take_rest({"d7", "two  blanks "});
    EXPECT_TRUE(from_service == from_standin);
    EXPECT_EQ(from_service.size(), 13U);
    EXPECT_THAT(from_service, Contains(Entry(0, in_diff + "two  blanks ")));
    // A host looks for what is gone in the newer snapshot.
    EXPECT_THAT(from_service, Contains(Entry(1, in_diff + "d7/gone \\ \xfe")));
    EXPECT_THAT(from_service, Contains(Entry(2, in_diff + "d7/f9")));
}

TEST_F(RoutesOverDirectories, FiltersCountByBothRoutesWithEachCall)
{
    const std::string below = mount() + "/";
    for (const bool at_service : {true, false}) {
        ASSERT_EQ(at_service ? open_at_service(mount()) : open_at_standin(mount()), 0);
        auto entry = std::make_unique<sts_file_attr_v11_t>();
        ASSERT_EQ(next(*entry, {"d3/f1", "nope"}), 0);
        EXPECT_EQ(entry->name, below + "d3/f1");
        EXPECT_EQ(next(*entry, {"d3/f1"}), kEnd) << "what a filter keeps back is passed over for good";
        close();
    }
}

TEST_F(RoutesOverDirectories, WithoutABaseTheStandInListsAllAndTheServiceIsNotAsked)
{
    ASSERT_EQ(open_at_standin(mount(), false), 0);
    ASSERT_TRUE(is_the_standins());
    const std::vector<Entry> entries = take_rest();
    EXPECT_EQ(entries.size(), files() + kFolders + odd_names().size());
    EXPECT_TRUE(
        std::all_of(entries.begin(), entries.end(), [](const Entry& entry) { return entry.first == 0; }));
    EXPECT_EQ(open("use_zapi=0", STS_VOLUME_NDMP, "filer1", "/vol/data", false), 2060017);
}

TEST_F(RoutesOverDirectories, AServiceThatIsGoneBetweenBatchesLosesAndDoublesNothing)
{
    ASSERT_EQ(open_at_service(mount()), 0);
    const std::vector<Entry> expected = take_rest();
    ASSERT_EQ(open_at_service(mount()), 0);

    const kit::DeadPort nobody;
    const std::string nowhere = nobody.url();
    const std::string service = server_->endpoint;

    std::vector<Entry> entries;
    auto entry = std::make_unique<sts_file_attr_v11_t>();
    int failures = 0;
    for (;;) {
        // Only a call that finds the last batch used up needs the service.
        std::strcpy(server_->endpoint, nowhere.c_str());
        int status = next(*entry);
        std::strcpy(server_->endpoint, service.c_str());
        if (status != 0) {
            EXPECT_EQ(status, 2060017);
            ++failures;
            status = next(*entry);
        }
        if (status != 0) {
            EXPECT_EQ(status, kEnd);
            break;
        }
        entries.emplace_back(entry->changetype, entry->name);
    }
    close();
    std::sort(entries.begin(), entries.end());
    EXPECT_TRUE(entries == expected);
    EXPECT_GE(failures, static_cast<int>(files()) / 70 + 1);
}

class RoutesOfABusyService : private ScenarioFile, public Routes
{
  protected:
    RoutesOfABusyService()
        : ScenarioFile(R"({"batch": 2, "busy": 1, "retryInterval": 20, "pace": 3, "startBusy": 2})"),
          Routes(static_cast<const ScenarioFile&>(*this))
    {
    }

    kit::Clock clock_;
};

TEST_F(RoutesOfABusyService, TheLibraryWaitsAsLongAsTheServiceAsks)
{
    clock_.set_time(1000);
    ASSERT_EQ(open_at_service("/mnt"), 0);
    auto entry = std::make_unique<sts_file_attr_v11_t>();
    EXPECT_EQ(next(*entry), kBusy);
    EXPECT_EQ(take_rest().size(), 5U);
    EXPECT_THAT(clock_.sleeps(), ElementsAre(20, 3, 3));
}

TEST_F(RoutesOfABusyService, TheLibraryStartsAgainUntilTheFilerIsReady)
{
    ASSERT_EQ(open_at_standin("/mnt"), 0);
    EXPECT_TRUE(is_the_standins());
    EXPECT_THAT(clock_.sleeps(), ElementsAre(10, 20));
    EXPECT_EQ(take_rest().size(), 5U);
}

class RoutesOfADefault : private ScenarioFile, public Routes
{
  protected:
    RoutesOfADefault() : ScenarioFile("{}"), Routes(static_cast<const ScenarioFile&>(*this)) {}
};

TEST_F(RoutesOfADefault, AFilerThatRefusesThePasswordFailsTheOpen)
{
    EXPECT_EQ(open("use_zapi=1", STS_VOLUME_NDMP, "filer1 admin s3cret", "/vol/data"), 2069002);
    EXPECT_EQ(list_, nullptr);
}

TEST_F(RoutesOfADefault, AListThatTheStandInCannotOpenComesFromTheService)
{
    // The built-in scenario, which it reads at this login, knows the filer and not the snapshots.
    unsetenv("SOAPWRAPPER_SIM_SCENARIO");
    ASSERT_EQ(open_at_standin("/mnt"), 0);
    EXPECT_FALSE(is_the_standins());
    EXPECT_THAT(take_rest(), testing::SizeIs(5));
}

} // namespace
