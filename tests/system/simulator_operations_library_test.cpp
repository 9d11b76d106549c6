// Long operations of the simulator, started and waited for by the built library.
#include "plugin/base/handle_records.h"
#include "tests/kit/clock.h"
#include "tests/kit/host.h"
#include "tests/kit/log_recorder.h"
#include "tests/system/probe_process.h"
#include "tests/system/simulator_operations.h"

#include <cstdlib>
#include <cstring>
#include <memory>

namespace
{

using simulator_operations::scenario;
using testing::ElementsAre;

constexpr std::uint32_t kBusy = 2060005;
constexpr int kInUse = 2060012;
constexpr int kEnd = 2060013;
constexpr std::uint32_t kCancelled = 2069031;
constexpr int kSnapshotsInTheWay = 2069032;

struct FreeAsync {
    void operator()(stsp_async_t* async) const
    {
        std::free(async->op_token);
        delete async;
    }
};
using Async = std::unique_ptr<stsp_async_t, FreeAsync>;

template <class Entry>
Entry* slot(std::size_t number)
{
    return kit::Host::instance().snapshot_slot<Entry>(number);
}

sts_snap_def_v11_t definition(const char* name)
{
    sts_snap_def_v11_t record{};
    std::strcpy(record.snapName, name);
    return record;
}

sts_opname_t opname(const char* name)
{
    sts_opname_t record{};
    std::strcpy(record.name, name);
    return record;
}

sts_volume_spec_v11_t nfs_volume(const char* host, const char* name)
{
    sts_volume_spec_v11_t record{};
    std::strcpy(record.first, host);
    std::strcpy(record.second, name);
    record.volumeType = STS_VOLUME_NFS;
    return record;
}

class OperationsThroughTheLibrary : public testing::Test
{
  protected:
    OperationsThroughTheLibrary() : OperationsThroughTheLibrary(TemporaryFolder()) {}
    ~OperationsThroughTheLibrary() override
    {
        EXPECT_EQ(kit::close_server()(far_), 0);
        EXPECT_EQ(kit::close_server()(near_), 0);
    }

    static stsp_lsu_v7_t lsu(stsp_server_t* server, const char* name)
    {
        stsp_lsu_v7_t record{};
        record.server = server;
        std::strcpy(record.name, name);
        return record;
    }

    Async create(const char* name)
    {
        stsp_async_t* async = nullptr;
        const sts_snap_def_v11_t target = definition(name);
        EXPECT_EQ(slot<decltype(stspi_async_create_snap_byname)>(2)(near_, &home_volume_, &target, &targets_,
                                                                    0, &async, {}, 0),
                  0);
        return Async(async);
    }
    int wait(const Async& async, bool blocking)
    {
        const auto entry = slot<decltype(stspi_async_wait_snap)>(8);
        return entry(session_.get(), async.get(), blocking ? 1 : 0, &result_);
    }
    int wait(const char* name, bool blocking)
    {
        const auto entry = slot<decltype(stspi_named_async_wait_snap)>(28);
        return entry(near_, blocking ? 1 : 0, &result_, opname(name));
    }
    int status(const char* name) const
    {
        return kit::Host::instance().main_slot<decltype(stspi_named_async_status)>(47)(near_, opname(name));
    }

    std::vector<std::string> snapshots(stsp_server_t* server, const char* name) const
    {
        const stsp_lsu_v7_t reference = lsu(server, name);
        stsp_list_t* list = nullptr;
        EXPECT_EQ(slot<decltype(stspi_open_snap_list)>(30)(&reference, &list), 0);
        std::vector<std::string> names;
        sts_snap_def_v11_t entry{};
        int code = 0;
        while ((code = slot<decltype(stspi_list_snap)>(20)(list, &entry)) == 0)
            names.push_back(entry.snapName);
        EXPECT_EQ(code, kEnd);
        EXPECT_EQ(slot<decltype(stspi_close_snap_list)>(10)(list), 0);
        return names;
    }

    kit::Clock clock_;
    kit::RecordedSession session_;
    stsp_server_t* near_ = nullptr;
    stsp_server_t* far_ = nullptr;
    const sts_volume_spec_v11_t home_volume_ = nfs_volume("filer1", "/vol/home");
    sts_lsu_spec_v11_t targets_{};
    sts_async_snap_result_t result_{};

  private:
    explicit OperationsThroughTheLibrary(const TemporaryFolder& folder)
        : simulator_({"--scenario", folder.write("operations.json", scenario())})
    {
        kit::Host::instance().write_configuration(
            "filer = http://127.0.0.1:" + std::to_string(simulator_.http_port()) + "\n");
        const kit::Credential credential("simulator");
        EXPECT_EQ(kit::open_server()(session_.get(), "Near:filer", credential.get(), nullptr, &near_), 0);
        EXPECT_EQ(kit::open_server()(session_.get(), "Far:filer", credential.get(), nullptr, &far_), 0);
    }

    SimulatorProcess simulator_;
};

TEST_F(OperationsThroughTheLibrary, ABlockingWaitSleepsAsItIsToldAndFindsTheCreatedSnapshot)
{
    const Async async = create("fresh");
    EXPECT_EQ(wait(async, true), 0);
    EXPECT_THAT(clock_.sleeps(), ElementsAre(7U, 7U));
    EXPECT_EQ(result_.aio_error, 0U);
    EXPECT_EQ(result_.retryInterval, 0);
    EXPECT_EQ(result_.aio_total_bytes_transferred, 300);
    EXPECT_EQ(result_.result_kind, STS_RESULT_CREATE);
    EXPECT_STREQ(result_.body.snapshot.targetSnapName, "fresh");
    EXPECT_STREQ(result_.body.snapshot.targetSnapLsu.server, "Near:filer");
    EXPECT_STREQ(result_.body.snapshot.targetSnapLsu.lsu, "home");
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old", "new", "fresh"));
}

TEST_F(OperationsThroughTheLibrary, AWaitThatDoesNotBlockTellsThatTheOperationIsBusy)
{
    const Async async = create("fresh");
    EXPECT_EQ(wait(async, false), 0);
    EXPECT_EQ(result_.aio_error, kBusy);
    EXPECT_EQ(result_.retryInterval, 7);
    EXPECT_EQ(result_.aio_total_bytes_transferred, 100);
    EXPECT_EQ(result_.result_kind, 0);
    sts_async_result_t plain{};
    const auto plain_wait = kit::Host::instance().main_slot<decltype(stspi_async_wait)>(2);
    EXPECT_EQ(plain_wait(session_.get(), async.get(), 1, &plain), 0);
    EXPECT_EQ(plain.aio_bytes_transferred, 300);
    EXPECT_EQ(plain.aio_error, 0U);
    EXPECT_THAT(clock_.sleeps(), ElementsAre(7U));
}

TEST_F(OperationsThroughTheLibrary, ACancelledOperationHasNoEffect)
{
    const Async async = create("fresh");
    const auto cancel = kit::Host::instance().main_slot<decltype(stspi_async_cancel)>(41);
    EXPECT_EQ(cancel(session_.get(), async.get()), 0);
    EXPECT_EQ(wait(async, true), 0);
    EXPECT_EQ(result_.aio_error, kCancelled);
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old", "new"));
}

TEST_F(OperationsThroughTheLibrary, ANamedCopyIsFollowedByItsNameToAnotherServer)
{
    const stsp_lsu_v7_t home = lsu(near_, "home");
    const sts_snap_def_v11_t source = definition("old");
    sts_lsu_spec_v11_t target{};
    std::strcpy(target.server, "Far:filer");
    std::strcpy(target.lsu, "spare");
    const auto start = [&] {
        return slot<decltype(stspi_named_async_copy_snap_byname)>(21)(&home, &source, &target, 1,
                                                                      opname("to the vault"), {}, 0);
    };
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(start(), kInUse);
    EXPECT_EQ(status("to the vault"), static_cast<int>(kBusy));
    EXPECT_EQ(wait("to the vault", true), 0);
    EXPECT_EQ(result_.result_kind, STS_RESULT_COPY);
    EXPECT_EQ(result_.aio_total_bytes_transferred, 3000);
    EXPECT_STREQ(result_.body.snapshot.targetSnapLsu.server, "Far:filer");
    EXPECT_EQ(status("to the vault"), 0);
    EXPECT_THAT(clock_.sleeps(), ElementsAre());
    EXPECT_THAT(snapshots(far_, "spare"), ElementsAre("old"));
}

TEST_F(OperationsThroughTheLibrary, ADifferenceComesAsRows)
{
    stsp_async_t* async = nullptr;
    const sts_snap_def_v11_t of = definition("old");
    EXPECT_EQ(slot<decltype(stspi_async_get_snap_diff)>(3)(near_, &of, near_, &home_volume_, 1, 0, &async),
              0);
    const Async kept(async);
    std::int32_t count = 0;
    result_.body.difference.numDiffs = &count;
    EXPECT_EQ(wait(kept, true), 0);
    ASSERT_EQ(count, 3);
    const std::unique_ptr<sts_snap_diff_t[]> rows(result_.body.difference.diffs);
    EXPECT_STREQ(rows[1].objectName, "b");
    EXPECT_EQ(rows[1].objectType, 1);
    EXPECT_EQ(rows[1].objectState, 2);
}

TEST_F(OperationsThroughTheLibrary, ARollbackIsRefusedUntilNewerSnapshotsAreGivenUp)
{
    const stsp_lsu_v7_t home = lsu(near_, "home");
    const sts_snap_def_v11_t source = definition("old");
    char given_up[STS_ROLLBACK_ROW_SIZE] = "new";
    const auto start = [&](std::uint32_t count) {
        return slot<decltype(stspi_named_async_rollback_snap)>(26)(&home, &source, nullptr, &home_volume_,
                                                                   given_up, count, 0, opname("back"));
    };
    EXPECT_EQ(start(0), kSnapshotsInTheWay);
    EXPECT_EQ(start(1), 0);
    EXPECT_EQ(wait("back", true), 0);
    EXPECT_EQ(result_.aio_error, 0U);
    EXPECT_EQ(result_.result_kind, 0);
    EXPECT_THAT(snapshots(near_, "home"), ElementsAre("old"));
}

} // namespace
