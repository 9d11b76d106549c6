// Corners of the frame that no service can bring about.
#include "service/service_call.h"
#include "tests/kit/log_recorder.h"

#include <gmock/gmock.h>

using namespace soapwrapper;
using kit::RecordedSession;
using testing::ElementsAre;

namespace
{

int status_without_a_fault_record(int result, int without_fault, const sts_session_def_v7_t* session)
{
    const EntryLog log(session, "stspi_entry");
    ServiceCall call(log);
    return call.status_of(result, without_fault);
}

} // namespace

TEST(ServiceCall, TakesAFaultNumberWithoutAFaultRecordForAnyOtherError)
{
    EXPECT_EQ(status_without_a_fault_record(1, STS_ESOAPERROR, nullptr), 2060017);
    EXPECT_EQ(status_without_a_fault_record(12, STS_ESOAPERROR, nullptr), 2060017);
    EXPECT_EQ(status_without_a_fault_record(12, STS_ENOSERVICEHANDLE, nullptr), 2060026);
    EXPECT_EQ(status_without_a_fault_record(2, STS_ESOAPERROR, nullptr), 2060017);
}

TEST(ServiceCall, LogsWhatTheRuntimeRendersWithoutAFaultRecord)
{
    RecordedSession session;
    EXPECT_EQ(status_without_a_fault_record(1, STS_ESOAPERROR, session.get()), 2060017);
    EXPECT_THAT(session.lines(), ElementsAre(kit::failure("")));
}
