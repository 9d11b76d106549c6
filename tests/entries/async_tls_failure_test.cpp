// What the entries do when TLS can't even be set up. Each test is a process of its own: the library makes one
// TLS context per process, and keeps it.
#include "tests/entries/async_start_cases.h"
#include "tests/entries/async_wait_fixture.h"

#include <dlfcn.h>
#include <openssl/ssl.h>

using namespace kit;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

bool g_no_tls_context = false;

} // namespace

// In the place of the TLS library's own.
extern "C" __attribute__((visibility("default"))) SSL_CTX* SSL_CTX_new(const SSL_METHOD* method)
{
    if (g_no_tls_context) return nullptr;
    using Function = SSL_CTX* (*)(const SSL_METHOD*);
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, "SSL_CTX_new"))(method);
}

namespace
{

class WithoutTls : public AsyncWaitTest
{
  protected:
    WithoutTls()
    {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        use_https();
    }

    // In a process of its own, in which no TLS context can be made.
    template <class Body>
    void in_own_process(Body body)
    {
        EXPECT_EXIT(
            {
                g_no_tls_context = true;
                body();
                std::exit(HasFailure() ? 1 : 0);
            },
            testing::ExitedWithCode(0), "");
    }

    static void expect_fault_line(const RecordedSession& session)
    {
        ASSERT_FALSE(session.lines().empty());
        EXPECT_EQ(session.lines().back().level, STS_LOG_FAILURE);
        EXPECT_THAT(session.lines().back().text, HasSubstr("\nHANDLE_SOAP_FAULT: 2060021"));
    }
};

} // namespace

TEST_F(WithoutTls, TheWaitForAnOperationTellsItToTheServersSession)
{
    in_own_process([this] {
        sts_async_result_t result;
        fill(result);
        EXPECT_EQ(main_slot<decltype(stspi_async_wait)>(2)(caller_.get(), async_.get(), 1, &result), 2060021);
        EXPECT_TRUE(is_untouched(result));
        EXPECT_THAT(caller_.lines(), ElementsAre(record("stspi_async_wait: enter, blockflag = 1")));
        EXPECT_EQ(session_.lines().size(), 1U);
        expect_fault_line(session_);
    });
}

TEST_F(WithoutTls, TheWaitForAnOperationOnASnapshotTellsItToTheServersSession)
{
    in_own_process([this] {
        sts_async_snap_result_t result;
        fill(result);
        EXPECT_EQ(snapshot_slot<decltype(stspi_async_wait_snap)>(8)(caller_.get(), async_.get(), 1, &result),
                  2060021);
        EXPECT_TRUE(is_untouched(result));
        EXPECT_THAT(caller_.lines(), ElementsAre(record("stspi_async_wait_snap: enter")));
        EXPECT_EQ(session_.lines().size(), 1U);
        expect_fault_line(session_);
    });
}

TEST_F(WithoutTls, TheNamedWaitTheStatusAndTheCancelFailAheadOfTheirRequest)
{
    in_own_process([this] {
        sts_async_snap_result_t result;
        fill(result);
        EXPECT_EQ(snapshot_slot<decltype(stspi_named_async_wait_snap)>(28)(&server_, 1, &result, opname("o")),
                  2060021);
        EXPECT_TRUE(is_untouched(result));
        EXPECT_EQ(session_.lines().size(), 2U);
        expect_fault_line(session_);
        session_.clear();
        EXPECT_EQ(main_slot<decltype(stspi_named_async_status)>(47)(&server_, opname("o")), 2060021);
        EXPECT_EQ(session_.lines().size(), 2U);
        expect_fault_line(session_);
        session_.clear();
        EXPECT_EQ(main_slot<decltype(stspi_async_cancel)>(41)(caller_.get(), async_.get()), 2060021);
        EXPECT_EQ(session_.lines().size(), 1U);
        expect_fault_line(session_);
        EXPECT_THAT(caller_.lines(), IsEmpty());
    });
}

TEST_F(WithoutTls, EveryStartFailsBehindItsFirstLine)
{
    in_own_process([this] {
        for (const StartCase& start : start_cases()) {
            SCOPED_TRACE(start.entry);
            StartArguments arguments;
            arguments.server_record.endpoint = url_.data();
            arguments.server_record.use_https = true;
            arguments.server_record.session = session_.get();
            stsp_async_t* async = nullptr;
            arguments.async = &async;
            session_.clear();
            EXPECT_EQ(start.call(arguments), 2060021);
            EXPECT_EQ(async, nullptr);
            ASSERT_EQ(session_.lines().size(), 2U);
            EXPECT_EQ(session_.lines().front(), record(start.enter_name + ": enter"));
            expect_fault_line(session_);
        }
    });
}
