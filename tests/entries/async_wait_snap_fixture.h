// The two waits for operations on snapshots, with an id and with a name, told by one set of tests.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_ASYNC_WAIT_SNAP_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_ASYNC_WAIT_SNAP_FIXTURE_H

#include "tests/entries/async_wait_fixture.h"

enum class Family { kById, kByName };

inline std::string family_of(const testing::TestParamInfo<Family>& test)
{
    return test.param == Family::kById ? "ById" : "ByName";
}

// What a service says of an operation on a snapshot.
struct SnapResult {
    std::int64_t total = 6000000000;
    int error = 0;
    int retry_interval = 4;
    int type = 0;
    std::string arm;

    std::string content() const
    {
        return number("totalBytesTransferred", total) + number("error", error) +
               number("retryInterval", retry_interval) + number("resultSnapType", type) + arm;
    }
};

class AsyncWaitSnapTest : public AsyncWaitTest
{
  protected:
    explicit AsyncWaitSnapTest(Family family) : family_(family) { fill(record_); }

    bool by_id() const { return family_ == Family::kById; }

    int wait(std::int32_t blockflag)
    {
        if (by_id()) {
            return snapshot_slot<decltype(stspi_async_wait_snap)>(8)(caller_.get(), async_.get(), blockflag,
                                                                     &record_);
        }
        return snapshot_slot<decltype(stspi_named_async_wait_snap)>(28)(&server_, blockflag, &record_,
                                                                        opname("the operation"));
    }

    kit::Answer reply_with(std::string_view content) const
    {
        return kit::answer(
            kit::reply(by_id() ? "asyncWaitSnapResponse" : "namedAsyncWaitSnapResponse", content));
    }
    kit::Answer result(const SnapResult& result) const
    {
        return reply_with(kit::element("result", result.content()));
    }
    kit::Answer busy(int retry_interval) const { return result({1, 2060005, retry_interval, 0, ""}); }

    // An arm that names a snapshot and where it lies.
    static std::string snapshot_arm(std::string_view arm)
    {
        return kit::element(arm,
                            kit::element("targetSnapName", "the copy") +
                                kit::element("targetSnapLsu", lsu_spec_content("the server", "the LSU")));
    }

    // The session that the wait logs to, and the names that it logs under.
    kit::RecordedSession& log() { return by_id() ? caller_ : session_; }
    std::string line(std::string_view text) const
    {
        return (by_id() ? "stspi_async_wait_snap: " : "stspi_named_async_wait_snap: ") + std::string(text);
    }
    std::string return_code(int result) const
    {
        return (by_id() ? "stspi_async_wait_snap" : "stspi_named_aysnc_wait_snap") +
               std::string(": SOAP return code = ") + std::to_string(result);
    }

    Family family_;
    sts_async_snap_result_t record_;
};

class AsyncWaitSnap : public AsyncWaitSnapTest, public testing::WithParamInterface<Family>
{
  protected:
    AsyncWaitSnap() : AsyncWaitSnapTest(GetParam()) {}
};

#endif
