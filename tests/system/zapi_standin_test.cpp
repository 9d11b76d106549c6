#include "tests/system/simulator_change_lists.h"
#include "tests/system/zapi_standin.h"

namespace
{

using namespace zapi_standin;
using simulator_change_lists::ScenarioFile;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr int kNullArgument = 2060001;
constexpr int kInUse = 2060012;
constexpr int kEnd = 2060013;
constexpr int kBadHandle = 2060022;
constexpr int kFailed = 2060046;
constexpr int kUnknownServer = 2069001;
constexpr int kRefused = 2069002;
constexpr int kNotSupported = 2069003;
constexpr int kUnknownSnapshot = 2069007;
constexpr int kUnreadableTree = 2069013;

const char* const kOne = "/vol/projects/.snapshot/weekly.1";
const char* const kTwo = "/vol/projects/.snapshot/weekly.2";

class ZapiStandIn : public testing::Test
{
  protected:
    ~ZapiStandIn() override
    {
        for (sts_handle_s* handle : {server_, session_}) {
            EXPECT_EQ(handle ? close(handle) : 0, 0);
        }
        EXPECT_EQ(Library::instance().symbol<Terminate>("stsm_terminate")(), 0) << "something is open";
        EXPECT_THAT(log_.texts(), Each(Not(HasSubstr("s3cret"))));
    }

    void log_in(const std::string& name = "ZAPI:filer1")
    {
        ASSERT_EQ(open_session(log_.get(), &session_), 0);
        ASSERT_EQ(open_server(session_, name.c_str(), {"admin", "simulator"}, &server_), 0);
    }

    kit::RecordedSession log_;
    sts_handle_s* session_ = nullptr;
    sts_handle_s* server_ = nullptr;
};

TEST(ZapiStandInStart, AnotherVersionAndNullArgumentsAreRefused)
{
    const auto init = Library::instance().symbol<Init>("stsm_init");
    const Slot* table = nullptr;
    EXPECT_EQ(init(11, "", &table), 2060007);
    EXPECT_EQ(init(12, nullptr, &table), kNullArgument);
    EXPECT_EQ(init(12, "", nullptr), kNullArgument);
    EXPECT_EQ(table, nullptr);
    EXPECT_EQ(init(12, "/nowhere", &table), 0);
    EXPECT_NE(table, nullptr);
}

TEST(ZapiStandInStart, EveryOtherPositionAnswersThatItIsNotSupported)
{
    for (const std::size_t position : {0U, 23U, 26U, 78U, 80U, 108U, 112U, 127U}) {
        EXPECT_EQ(Library::instance().slot<int()>(position)(), kNotSupported) << position;
    }
}

TEST_F(ZapiStandIn, APairOfTheBuiltInScenarioIsListedAsTheServiceWould)
{
    log_in();
    sts_handle_s* list = nullptr;
    ASSERT_EQ(open_list(server_, kOne, kTwo, &list), 0);
    const std::string older = std::string("1 ") + kOne;
    EXPECT_THAT(rest(list),
                ElementsAre(std::string("2 ") + kTwo + "/bridge",
                            std::string("0 ") + kTwo + "/bridge/L\\c3\\a4ngsschnitt.pdf",
                            std::string("2 ") + kTwo + "/bridge/plan.dwg",
                            std::string("2 ") + kTwo + "/tunnel", older + "/tunnel/old notes.txt"));
    sts_file_attr_v11_t entry{};
    EXPECT_EQ(list_file(list, entry), kEnd) << "the end stays the end";
    EXPECT_EQ(close_list(list), 0);
}

TEST_F(ZapiStandIn, AnEntryHasAllItsAttributes)
{
    log_in();
    sts_handle_s* list = nullptr;
    ASSERT_EQ(open_list(server_, kTwo, "/vol/projects/.snapshot/weekly.3", &list), 0);
    sts_file_attr_v11_t entry;
    std::memset(&entry, 0xff, sizeof entry);
    ASSERT_EQ(list_file(list, entry, {"latest"}), 0);
    EXPECT_STREQ(entry.name, "/vol/projects/.snapshot/weekly.3/latest");
    EXPECT_EQ(entry.ftype, 5);
    EXPECT_EQ(entry.changetype, 0);
    EXPECT_EQ(entry.modtime, 1768780800);
    EXPECT_EQ(entry.accesstime, 1768780800);
    EXPECT_EQ(entry.createtime, 1768780800);
    EXPECT_EQ(entry.changetime, 1768780800);
    EXPECT_EQ(entry.size, 6);
    EXPECT_EQ(entry.ownerid, 0);
    EXPECT_EQ(entry.groupid, 0);
    EXPECT_EQ(entry.permissions, 0777);
    EXPECT_EQ(entry.inode, 72);
    EXPECT_EQ(entry.gnum, 0);
    EXPECT_EQ(close_list(list), 0);
}

TEST_F(ZapiStandIn, WithoutABaseEverythingIsCreated)
{
    log_in();
    sts_handle_s* list = nullptr;
    ASSERT_EQ(open_list(server_, nullptr, kOne, &list), 0);
    const std::vector<std::string> entries = rest(list);
    EXPECT_EQ(entries.size(), 6U);
    EXPECT_THAT(entries, Each(StartsWith(std::string("0 ") + kOne + "/")));
    EXPECT_EQ(close_list(list), 0);
}

TEST_F(ZapiStandIn, FiltersAreThoseOfTheCall)
{
    log_in();
    sts_handle_s* list = nullptr;
    ASSERT_EQ(open_list(server_, nullptr, kOne, &list), 0);
    sts_file_attr_v11_t entry{};
    EXPECT_EQ(list_file(list, entry, {"nope", "bridge/plan.dwg"}), 0);
    EXPECT_EQ(std::string(entry.name), std::string(kOne) + "/bridge/plan.dwg");
    EXPECT_EQ(rest(list, {std::string(kOne) + "/tunnel"}).size(), 3U);
    EXPECT_EQ(close_list(list), 0);
}

TEST_F(ZapiStandIn, AFilterWithoutAnEndIsReadToTheEndOfItsRow)
{
    log_in();
    sts_handle_s* list = nullptr;
    ASSERT_EQ(open_list(server_, nullptr, kOne, &list), 0);
    EXPECT_THAT(rest(list, {std::string(1024, 'x'), std::string(1024, '/')}).size(), 6U)
        << "the second one is the root";
    EXPECT_EQ(Library::instance().slot<ListFile>(79)(list, 1, nullptr, nullptr), kNullArgument);
    sts_file_attr_v11_t entry{};
    EXPECT_EQ(Library::instance().slot<ListFile>(79)(list, 1, nullptr, &entry), kNullArgument);
    EXPECT_EQ(close_list(list), 0);
}

TEST_F(ZapiStandIn, AWrongLoginIsRefusedAndToldWithoutThePassword)
{
    ASSERT_EQ(open_session(log_.get(), &session_), 0);
    sts_handle_s* server = session_;
    EXPECT_EQ(open_server(session_, "ZAPI:filer1", {"admin", "s3cret"}, &server), kRefused);
    EXPECT_EQ(server, nullptr);
    EXPECT_EQ(open_server(session_, "ZAPI:filer1", {"", "simulator"}, &server), kRefused);
    EXPECT_EQ(open_server(session_, "ZAPI:filer1", {"admin", "simulator "}, &server), kRefused);
    Credentials endless("", "");
    std::memset(endless.texts, 'x', sizeof endless.texts);
    EXPECT_EQ(open_server(session_, "ZAPI:filer1", endless, &server), kRefused);
    for (const char* name : {"ZAPI:filer2", "ZAPI:", "filer1", "zapi:filer1", ""}) {
        EXPECT_EQ(open_server(session_, name, {"admin", "simulator"}, &server), kUnknownServer) << name;
    }
    EXPECT_THAT(log_.lines(), Contains(kit::failure("soapwrapper-zapi-sim: the filer refuses the user or the "
                                                    "password")));
}

TEST_F(ZapiStandIn, TheEnvironmentSetsThePassword)
{
    const Variable password("SOAPWRAPPER_SIM_ZAPI_PASSWORD", "s3cret with blanks");
    ASSERT_EQ(open_session(log_.get(), &session_), 0);
    EXPECT_EQ(open_server(session_, "ZAPI:filer1", {"admin", "simulator"}, &server_), kRefused);
    EXPECT_EQ(open_server(session_, "ZAPI:filer1", {"anybody", "s3cret with blanks"}, &server_), 0);
}

TEST_F(ZapiStandIn, SnapshotsThatTheFilerDoesNotHaveAreRefused)
{
    log_in();
    sts_handle_s* list = nullptr;
    EXPECT_EQ(open_list(server_, "/vol/nope", kTwo, &list), kUnknownSnapshot);
    EXPECT_EQ(open_list(server_, kOne, "/vol/projects", &list), kUnknownSnapshot)
        << "a volume is no snapshot";
    EXPECT_EQ(open_list(server_, kOne, "", &list), kUnknownSnapshot);
    EXPECT_EQ(list, nullptr);
}

TEST_F(ZapiStandIn, HandlesThatAreWrongOrClosedAreFoundOut)
{
    log_in();
    sts_handle_s* list = nullptr;
    sts_file_attr_v11_t entry{};
    ASSERT_EQ(open_list(server_, kOne, kTwo, &list), 0);
    for (sts_handle_s* wrong : {static_cast<sts_handle_s*>(nullptr), session_, server_}) {
        EXPECT_EQ(list_file(wrong, entry), kBadHandle);
        EXPECT_EQ(close_list(wrong), kBadHandle);
    }
    sts_handle_s* none = nullptr;
    EXPECT_EQ(open_list(session_, kOne, kTwo, &none), kBadHandle);
    EXPECT_EQ(open_server(server_, "ZAPI:filer1", {"admin", "simulator"}, &none), kBadHandle);
    EXPECT_EQ(close(list), kBadHandle);
    EXPECT_EQ(close(nullptr), kBadHandle);
    EXPECT_EQ(close_list(list), 0);
    EXPECT_EQ(list_file(list, entry), kBadHandle);
    EXPECT_EQ(close_list(list), kBadHandle);
    EXPECT_EQ(Library::instance().slot<OpenSession>(110)(nullptr, &none), kNullArgument);
    EXPECT_EQ(Library::instance().slot<OpenServer>(109)(session_, nullptr, nullptr, "", &none),
              kNullArgument);
    EXPECT_EQ(Library::instance().slot<OpenList>(111)(nullptr, nullptr, nullptr, nullptr, 0, &none),
              kNullArgument);
}

TEST_F(ZapiStandIn, AServerOrASessionThatIsClosedTakesWhatIsUnderItAlong)
{
    log_in();
    sts_handle_s* first = nullptr;
    sts_handle_s* second = nullptr;
    sts_file_attr_v11_t entry{};
    ASSERT_EQ(open_list(server_, kOne, kTwo, &first), 0);
    EXPECT_EQ(Library::instance().symbol<Terminate>("stsm_terminate")(), kInUse);
    EXPECT_EQ(close(server_), 0);
    EXPECT_EQ(close(server_), kBadHandle);
    EXPECT_EQ(list_file(first, entry), kBadHandle);
    ASSERT_EQ(open_server(session_, "ZAPI:filer1", {"admin", "simulator"}, &server_), 0);
    ASSERT_EQ(open_list(server_, kOne, kTwo, &second), 0);
    EXPECT_EQ(close(session_), 0);
    EXPECT_EQ(list_file(second, entry), kBadHandle);
    EXPECT_EQ(close(server_), kBadHandle);
    session_ = server_ = nullptr;
}

TEST_F(ZapiStandIn, ASessionWithoutALogOrAnIdIsServedToo)
{
    sts_session_def_v7_t silent{};
    ASSERT_EQ(open_session(&silent, &session_), 0);
    ASSERT_EQ(open_server(session_, "ZAPI:filer1", {"admin", "simulator"}, &server_), 0);
    sts_handle_s* list = nullptr;
    ASSERT_EQ(open_list(server_, kOne, kTwo, &list), 0);
    EXPECT_EQ(rest(list).size(), 5U);
    EXPECT_EQ(close_list(list), 0);
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(ZapiStandIn, AScenarioThatCannotBeReadFailsTheSessionAndIsTold)
{
    const Variable scenario("SOAPWRAPPER_SIM_SCENARIO", "/nowhere/at/all.json");
    EXPECT_EQ(open_session(log_.get(), &session_), kFailed);
    EXPECT_EQ(session_, nullptr);
    ASSERT_EQ(log_.lines().size(), 1U);
    EXPECT_EQ(log_.lines()[0].level, STS_LOG_FAILURE);
    EXPECT_THAT(log_.lines()[0].text, HasSubstr("/nowhere/at/all.json: can't be read"));
}

TEST_F(ZapiStandIn, ADirectoryThatIsGoneFailsTheListAndIsTold)
{
    const ScenarioFile file("{}", R"("tree": "a")", R"("tree": "b")");
    std::filesystem::create_directory(file / "a");
    const Variable scenario("SOAPWRAPPER_SIM_SCENARIO", file.path());
    log_in();
    sts_handle_s* list = nullptr;
    EXPECT_EQ(open_list(server_, "/vol/data/.snapshot/a", "/vol/data/.snapshot/b", &list), kUnreadableTree);
    EXPECT_THAT(log_.texts().back(), HasSubstr("can't be read"));
    std::filesystem::create_directories(file / "b/new");
    ASSERT_EQ(open_list(server_, "/vol/data/.snapshot/a", "/vol/data/.snapshot/b", &list), 0);
    EXPECT_THAT(rest(list), ElementsAre("0 /vol/data/.snapshot/b/new"));
    EXPECT_EQ(close_list(list), 0);
}

TEST_F(ZapiStandIn, ANameThatIsTooLongIsCutAndEnds)
{
    const std::string name(5000, 'n');
    const ScenarioFile file("{}", R"("files": [])", R"("files": [{"path": ")" + name + "\"}]");
    const Variable scenario("SOAPWRAPPER_SIM_SCENARIO", file.path());
    log_in();
    sts_handle_s* list = nullptr;
    ASSERT_EQ(open_list(server_, "/vol/data/.snapshot/a", "/vol/data/.snapshot/b", &list), 0);
    sts_file_attr_v11_t entry{};
    ASSERT_EQ(list_file(list, entry), 0);
    EXPECT_EQ(std::strlen(entry.name), sizeof entry.name - 1);
    EXPECT_EQ(close_list(list), 0);
}

} // namespace
