#include "simulator/front/request_log.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>

namespace
{

using namespace soapwrapper::simulator;
using testing::HasSubstr;

// A log into a pipe with little room, which is read when a test says so.
class SimulatorLog : public testing::Test
{
  protected:
    void SetUp() override
    {
        int ends[2];
        ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
        reader_ = Descriptor(ends[0]);
        writer_ = Descriptor(ends[1]);
        ASSERT_GT(fcntl(writer_.get(), F_SETPIPE_SZ, 8192), 0);
        ASSERT_EQ(fcntl(reader_.get(), F_SETFL, O_NONBLOCK), 0);
        log_.emplace(true, writer_.get());
    }

    // What has come since the last time.
    std::string read_all() const
    {
        std::string text;
        char buffer[4096];
        for (;;) {
            const ssize_t got = ::read(reader_.get(), buffer, sizeof buffer);
            if (got <= 0) return text;
            text.append(buffer, static_cast<std::size_t>(got));
        }
    }
    void write_lines(int count)
    {
        for (int i = 0; i < count; ++i) log_->line(false, "client", "operation", "ok");
    }

    Descriptor reader_;
    Descriptor writer_;
    std::optional<RequestLog> log_;
};

long lines_in(const std::string& text)
{
    return std::count(text.begin(), text.end(), '\n');
}

TEST_F(SimulatorLog, WhileNobodyReadsLinesAreDroppedAndCounted)
{
    write_lines(1000);
    const std::string kept = read_all();
    EXPECT_EQ(kept.back(), '\n');
    write_lines(1);
    const std::string behind = read_all();
    EXPECT_EQ(lines_in(behind), 2);
    EXPECT_THAT(behind, HasSubstr("Z " + std::to_string(1000 - lines_in(kept)) + " lines dropped, "));
    write_lines(1);
    EXPECT_EQ(lines_in(read_all()), 1);
}

TEST_F(SimulatorLog, TheEndTellsHowManyLinesWereDropped)
{
    write_lines(1000);
    const long kept = lines_in(read_all());
    log_.reset();
    EXPECT_THAT(read_all(), HasSubstr("Z " + std::to_string(1000 - kept) + " lines dropped, "));
}

TEST_F(SimulatorLog, TheEndDoesNotWaitForAReader)
{
    write_lines(1000);
    log_.reset();
    EXPECT_EQ(read_all().find("dropped"), std::string::npos);
}

TEST_F(SimulatorLog, OthersWhoHaveTheDescriptorStillWait)
{
    write_lines(1);
    EXPECT_EQ(fcntl(writer_.get(), F_GETFL) & O_NONBLOCK, 0);
}

TEST_F(SimulatorLog, ALineLongerThanThereIsRoomIsGoneOnWith)
{
    const std::string outcome(20000, 'x');
    log_->line(false, "client", "operation", outcome);
    std::string text;
    for (int i = 0; i < 4; ++i) {
        text += read_all();
        write_lines(1);
    }
    text += read_all();
    EXPECT_THAT(text, HasSubstr(": " + outcome + "\n"));
}

} // namespace
