// The parts of the probe that long operations need, called as functions.
#include "probe/operations/operation_answer.h"
#include "probe/operations/operation_arguments.h"
#include "probe/output/descriptor_stream.h"
#include "probe/output/progress_line.h"
#include "probe/output/readable.h"
#include "tests/parts/terminal_text.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <limits>
#include <string>

using namespace soapwrapper::probe;
using std::chrono::seconds;

namespace
{

TEST(ReadableBytes, TakeTheLargestUnitAndOneDigitBelowAHundred)
{
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    const std::pair<std::int64_t, const char*> cases[] = {
        {0, "0 B"},         {-5, "-5 B"},        {1023, "1023 B"},     {1024, "1.0 KiB"},
        {1536, "1.5 KiB"},  {102399, "100 KiB"}, {1048575, "1.0 MiB"}, {200 * 1048576, "200 MiB"},
        {kMost, "8.0 EiB"},
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(readable_bytes(bytes), text);
}

TEST(ReadableTime, HasHoursOnlyIfThereAreSome)
{
    EXPECT_EQ(readable_time(seconds(0)), "0:00");
    EXPECT_EQ(readable_time(seconds(65)), "1:05");
    EXPECT_EQ(readable_time(seconds(3599)), "59:59");
    EXPECT_EQ(readable_time(seconds(3600)), "1:00:00");
    EXPECT_EQ(readable_time(seconds(360000 + 61)), "100:01:01");
}

sts_lsu_spec_v11_t parsed(const std::string& text)
{
    sts_lsu_spec_v11_t target = {"default", ""};
    EXPECT_EQ(parse_target(text, target), "") << text;
    return target;
}

TEST(ParseTarget, TakesAServerAheadOfTheFirstSlash)
{
    EXPECT_STREQ(parsed("vol1").lsu, "vol1");
    EXPECT_STREQ(parsed("vol1").server, "default");
    EXPECT_STREQ(parsed("N:f/vol1").server, "N:f");
    EXPECT_STREQ(parsed("N:f/vol1").lsu, "vol1");
    EXPECT_STREQ(parsed("N:f//vol/vol1").lsu, "/vol/vol1");
}

TEST(ParseTarget, TakesACharacterBehindABackslashAsItIs)
{
    EXPECT_STREQ(parsed("\\/vol\\/vol1").lsu, "/vol/vol1");
    EXPECT_STREQ(parsed("\\/vol\\/vol1").server, "default");
    EXPECT_STREQ(parsed("a\\/b/c\\\\d").server, "a/b");
    EXPECT_STREQ(parsed("a\\/b/c\\\\d").lsu, "c\\d");
}

TEST(ParseTarget, RefusesEmptyAndOverlongTexts)
{
    for (const std::string& text : {std::string(), std::string("/vol1"), std::string("server/"),
                                    std::string(512, 's') + "/l", std::string(1024, 'l')}) {
        sts_lsu_spec_v11_t target = {};
        EXPECT_NE(parse_target(text, target), "") << text;
    }
    EXPECT_EQ(std::string(parsed(std::string(511, 's') + '/' + std::string(1023, 'l')).lsu).size(), 1023U);
}

TEST(OperationAnswer, LeavesTheServiceAloneFor30SecondsIfTheNumberIsNegative)
{
    EXPECT_EQ(OperationAnswer::interval_of(0), seconds(0));
    EXPECT_EQ(OperationAnswer::interval_of(7), seconds(7));
    EXPECT_EQ(OperationAnswer::interval_of(-1), seconds(30));
    EXPECT_EQ(OperationAnswer::interval_of(std::numeric_limits<std::int32_t>::min()), seconds(30));
}

// A terminal and what was written to it.
class Terminal
{
  public:
    explicit Terminal(unsigned short columns) : master_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        char name[128];
        EXPECT_EQ(grantpt(master_), 0);
        EXPECT_EQ(unlockpt(master_), 0);
        EXPECT_EQ(ptsname_r(master_, name, sizeof name), 0);
        slave_ = open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
        const winsize size = {24, columns, 0, 0};
        EXPECT_EQ(ioctl(slave_, TIOCSWINSZ, &size), 0);
    }
    ~Terminal()
    {
        close(master_);
        close(slave_);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    int descriptor() const { return slave_; }

    std::string take() const { return taken_from_terminal(master_, slave_); }

  private:
    int master_;
    int slave_ = -1;
};

TEST(ProgressLine, PutsEachTextInThePlaceOfTheLastOne)
{
    const Terminal terminal(80);
    ProgressLine line(terminal.descriptor());
    EXPECT_TRUE(line.visible());
    line.show("a long text");
    EXPECT_EQ(terminal.take(), "\ra long text");
    line.show("short");
    EXPECT_EQ(terminal.take(), "\rshort      \b\b\b\b\b\b");
    line.clear();
    EXPECT_EQ(terminal.take(), "\r     \r");
    line.clear();
    line.show("x");
    EXPECT_EQ(terminal.take(), "\rx");
}

TEST(ProgressLine, IsClearedAtItsEnd)
{
    const Terminal terminal(80);
    {
        ProgressLine line(terminal.descriptor());
        line.show("text");
        EXPECT_EQ(terminal.take(), "\rtext");
    }
    EXPECT_EQ(terminal.take(), "\r    \r");
}

TEST(ProgressLine, KeepsToTheWidthOfTheTerminalAndToWholeCharacters)
{
    const Terminal terminal(5);
    ProgressLine line(terminal.descriptor());
    line.show("ab\xC3\xBC\xE2\x82\xAC\xC3\xBC");
    EXPECT_EQ(terminal.take(), "\rab\xC3\xBC\xE2\x82\xAC");
}

TEST(ProgressLine, TakesATerminalOfUnknownWidthForTheUsualOne)
{
    const Terminal terminal(0);
    ProgressLine line(terminal.descriptor());
    line.show(std::string(100, 'x'));
    EXPECT_EQ(terminal.take(), '\r' + std::string(79, 'x'));
}

TEST(ProgressLine, ShowsWhatIsWaitedForOnlyWhereNothingElseStands)
{
    const Terminal terminal(80);
    ProgressLine line(terminal.descriptor());
    line.show_waiting("waiting");
    EXPECT_EQ(terminal.take(), "\rwaiting");
    line.clear_waiting();
    EXPECT_EQ(terminal.take(), "\r       \r");
    line.show("text");
    line.show_waiting("waiting");
    line.clear_waiting();
    line.show("more");
    EXPECT_EQ(terminal.take(), "\rtext\rmore");
}

TEST(ProgressLine, IsGoneAheadOfWhatElseIsPrinted)
{
    const Terminal terminal(80);
    ProgressLine line(terminal.descriptor());
    DescriptorStream stream(terminal.descriptor(), {}, &line);
    line.show_waiting("waiting");
    stream << "a line\n" << std::flush;
    line.show_waiting("again");
    stream << "half a line" << std::flush;
    line.show_waiting("not now");
    stream << '\n' << std::flush;
    EXPECT_EQ(terminal.take(), "\rwaiting\r       \ra line\r\n\ragain\r     \rhalf a line\r\n");
}

TEST(ProgressLine, WritesNothingToAPipe)
{
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC | O_NONBLOCK), 0);
    {
        ProgressLine line(ends[1]);
        EXPECT_FALSE(line.visible());
        line.show("text");
        line.clear();
    }
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), -1);
    close(ends[0]);
    close(ends[1]);
}

} // namespace
