// What the probe's events need of its other parts, called as functions.
#include "probe/library/session.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"

#include <gmock/gmock.h>

#include <sstream>

using namespace soapwrapper::probe;

namespace
{

TEST(OutputInLines, PrintsEachDocumentAsItComesAndNoneAtTheEnd)
{
    std::ostringstream stream;
    Output output(stream, Format::kJson, "");
    output.use_lines();
    output.print_line({{"a", 1}});
    EXPECT_EQ(stream.str(), "{\"schema\":1,\"a\":1}\n");
    EXPECT_TRUE(output.finish());
    EXPECT_EQ(stream.str(), "{\"schema\":1,\"a\":1}\n");
}

TEST(OutputInLines, EndsWithALineForAnError)
{
    std::ostringstream stream;
    Output output(stream, Format::kJson, "");
    output.use_lines();
    output.add_problem(Problem(ExitCode::kOperation, "NAME", 5, "why", "one\ntwo"));
    EXPECT_TRUE(output.finish());
    EXPECT_EQ(stream.str(), "{\"schema\":1,\"error\":{\"name\":\"NAME\",\"status\":5,\"meaning\":\"why\","
                            "\"detail\":\"one\\ntwo\"}}\n");
}

TEST(OutputInLines, PrintsNoDocumentInTheTextForms)
{
    std::ostringstream stream;
    Output output(stream, Format::kSeparated, ";");
    output.use_lines();
    output.print_line({{"a", 1}});
    output.add_problem(Problem(ExitCode::kOperation, "NAME", 5, "why"));
    EXPECT_TRUE(output.finish());
    EXPECT_EQ(stream.str(), "");
}

TEST(OutputInLines, TellsThatItCouldNotBeWritten)
{
    std::ostringstream stream;
    Output output(stream, Format::kJson, "");
    EXPECT_TRUE(output.flush());
    stream.setstate(std::ios::badbit);
    EXPECT_FALSE(output.flush());
}

TEST(Session, KeepsTheLastAnomalyUntilTheNextCall)
{
    std::ostringstream stream;
    Session session(Session::kPrintNothing, stream);
    const sts_session_def_v7_t* record = session.record();
    EXPECT_EQ(session.last_anomaly(), "");
    record->log_callback(record->session_id, "first", STS_LOG_ANOMALY);
    record->log_callback(record->session_id, "second", STS_LOG_ANOMALY);
    record->log_callback(record->session_id, "third", STS_LOG_FAILURE);
    EXPECT_EQ(session.last_anomaly(), "second");
    session.forget_lines();
    EXPECT_EQ(session.last_anomaly(), "");
}

} // namespace
