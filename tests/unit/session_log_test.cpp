#include "plugin/base/session_log.h"
#include "tests/kit/log_recorder.h"
#include "tests/unit/allocation_counter.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>

using namespace soapwrapper;
using kit::LogLine;
using kit::RecordedSession;
using testing::ElementsAre;

namespace
{

// Long enough for no string to keep it within itself.
constexpr char kLongText[] = "a text that is a good deal longer than what a string object holds in place";

sts_session_def_v7_t silent_session()
{
    sts_session_def_v7_t session{};
    session.session_id = "id";
    return session;
}

void log_something(const sts_session_def_v7_t* session)
{
    log_message(session, STS_LOG_ANOMALY, kLongText, " ", 1234567890, " ", kLongText);
    const EntryLog log(session, "stspi_open_server");
    log.enter();
    log.record(kLongText, 5);
    log.failure(kLongText);
    log.return_code(12);
    log.ok();
}

} // namespace

TEST(SessionLog, AllocatesNothingWithoutASession)
{
    const std::size_t before = allocations();
    log_something(nullptr);
    EXPECT_EQ(allocations(), before);
}

TEST(SessionLog, AllocatesNothingWithoutACallback)
{
    const sts_session_def_v7_t session = silent_session();
    const std::size_t before = allocations();
    log_something(&session);
    EXPECT_EQ(allocations(), before);
}

TEST(SessionLog, AllocatesForAListener)
{
    RecordedSession session;
    const std::size_t before = allocations();
    log_something(session.get());
    EXPECT_GT(allocations(), before);
}

TEST(SessionLog, HandsOverTheIdTheTextAndTheLevel)
{
    RecordedSession session;
    log_message(session.get(), STS_LOG_ANOMALY, "something odd");
    log_message(session.get(), STS_LOG_RECORD, "something done");
    log_message(session.get(), STS_LOG_FAILURE, "something failed");
    EXPECT_THAT(session.lines(), ElementsAre(LogLine{2, "something odd"}, LogLine{3, "something done"},
                                             LogLine{4, "something failed"}));
    EXPECT_TRUE(session.ids_were_right());
}

TEST(SessionLog, CallsBackWithANullId)
{
    RecordedSession session;
    session.drop_id();
    log_message(session.get(), STS_LOG_RECORD, "still here");
    EXPECT_THAT(session.texts(), ElementsAre("still here"));
    EXPECT_TRUE(session.ids_were_right());
}

TEST(SessionLog, IgnoresWhatTheCallbackReturns)
{
    sts_session_def_v7_t session = silent_session();
    session.log_callback = [](const char*, const char*, int) { return std::numeric_limits<int>::min(); };
    EXPECT_EQ(EntryLog(&session, "entry").ok(), 0);
}

TEST(SessionLog, WritesNumbersInDecimalWithTheirSign)
{
    RecordedSession session;
    log_message(session.get(), STS_LOG_RECORD, -1, " ", std::numeric_limits<std::int64_t>::min(), " ",
                std::numeric_limits<std::uint32_t>::max(), " ", 0);
    EXPECT_THAT(session.texts(), ElementsAre("-1 -9223372036854775808 4294967295 0"));
}

TEST(SessionLog, PutsTheEntrysNameBeforeItsLines)
{
    RecordedSession session;
    const EntryLog log(session.get(), "stspi_some_entry");
    log.enter();
    log.return_code(-1);
    log.record("value = ", 5);
    log.failure("no good");
    EXPECT_EQ(log.ok(), 0);
    EXPECT_THAT(session.lines(), ElementsAre(kit::record("stspi_some_entry: enter"),
                                             kit::record("stspi_some_entry: SOAP return code = -1"),
                                             kit::record("stspi_some_entry: value = 5"),
                                             kit::failure("stspi_some_entry: no good"),
                                             kit::record("stspi_some_entry: STS_EOK")));
}
