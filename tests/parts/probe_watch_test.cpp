// What is written over and over on a terminal, and its bars.
#include "probe/watch/bar.h"
#include "probe/watch/screen.h"
#include "probe/watch/watched.h"
#include "tests/parts/terminal_text.h"
#include "tests/system/terminal.h"

#include <gmock/gmock.h>

#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

using namespace soapwrapper::probe;

namespace
{

using ::testing::ElementsAre;
using ::testing::StartsWith;

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

TEST(Bar, IsAsLongAsItsPartOfTheWhole)
{
    EXPECT_EQ(bar(0, 10), "[..........]   0%");
    EXPECT_EQ(bar(1, 4), "[##........]  25%");
    EXPECT_EQ(bar(10, 10), "[##########] 100%");
    EXPECT_EQ(percentage(999, 1000), "99%");
}

TEST(Bar, HasItsLengthWhateverTheNumbers)
{
    EXPECT_EQ(bar(11, 10), bar(10, 10));
    EXPECT_EQ(bar(-1, 10), bar(0, 10));
    EXPECT_EQ(bar(kMost, 1), bar(1, 1));
    EXPECT_EQ(bar(kMost, kMost), bar(1, 1));
    EXPECT_EQ(bar(kLeast, kMost), bar(0, 1));
    for (const std::int64_t whole : {std::int64_t{0}, std::int64_t{-1}, kLeast}) EXPECT_EQ(bar(1, whole), "");
}

TEST(MovingMark, GoesToTheEndAndBack)
{
    EXPECT_EQ(moving_mark(0), "[<=>.......]");
    EXPECT_EQ(moving_mark(7), "[.......<=>]");
    EXPECT_EQ(moving_mark(13), moving_mark(1));
    EXPECT_EQ(moving_mark(14), moving_mark(0));
    for (std::size_t step = 0; step < 100; ++step) EXPECT_EQ(moving_mark(step).size(), full_bar().size());
}

TEST(Difference, StaysWithinWhatANumberCanTell)
{
    EXPECT_EQ(difference(3, 5), -2);
    EXPECT_EQ(difference(kMost, -1), kMost);
    EXPECT_EQ(difference(kLeast, 1), kLeast);
}

class ScreenTest : public ::testing::Test
{
  protected:
    ScreenTest()
    {
        setenv("TERM", "xterm", 1);
        EXPECT_EQ(openpty(&reader, &terminal, nullptr, nullptr, nullptr), 0);
        resize(10, 40);
    }
    ~ScreenTest() override
    {
        close(reader);
        close(terminal);
    }

    void resize(unsigned short rows, unsigned short columns) const
    {
        const winsize size = {rows, columns, 0, 0};
        EXPECT_EQ(ioctl(terminal, TIOCSWINSZ, &size), 0);
    }
    std::string written() const { return taken_from_terminal(reader, terminal); }

    int reader = -1;
    int terminal = -1;
};

TEST_F(ScreenTest, WritesOverWhatStoodThere)
{
    Screen screen(terminal);
    ASSERT_TRUE(screen.usable());
    screen.show({"one long line", "two", "three"});
    screen.show({"one", "2"});
    EXPECT_THAT(screen_after(written()), ElementsAre("one", "2"));
}

TEST_F(ScreenTest, CutsLinesByTheColumnsThatTheirCharactersTake)
{
    resize(10, 6);
    Screen screen(terminal);
    screen.show({"\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E", "123456"});
    EXPECT_THAT(screen_after(written()), ElementsAre("\xE6\x97\xA5\xE6\x9C\xAC", "12345"));
}

TEST_F(ScreenTest, FindsItsLinesAgainOnATerminalThatHasBecomeNarrower)
{
    Screen screen(terminal);
    screen.show({std::string(35, 'x'), "", "y"});
    written();
    resize(10, 10);
    screen.show({"z"});
    EXPECT_THAT(written(), StartsWith("\r\x1b[6A")); // four rows that were one, and two more
}

TEST_F(ScreenTest, LeavesATerminalAloneThatTakesNothingAnyMore)
{
    int asked = 0;
    Screen screen(terminal, [&](int descriptor) {
        EXPECT_EQ(descriptor, terminal);
        return ++asked == 1;
    });
    screen.show({"one"});
    screen.show({"two"});
    screen.show({"three"});
    EXPECT_EQ(asked, 2);
    EXPECT_THAT(screen_after(written()), ElementsAre("one"));
}

TEST_F(ScreenTest, IsNotUsedWhereTheCursorCannotBeMoved)
{
    setenv("TERM", "dumb", 1);
    EXPECT_FALSE(Screen(terminal).usable());
    setenv("TERM", "xterm", 1);
    int pipe_ends[2];
    ASSERT_EQ(pipe(pipe_ends), 0);
    EXPECT_FALSE(Screen(pipe_ends[1]).usable());
    close(pipe_ends[0]);
    close(pipe_ends[1]);
}

} // namespace
