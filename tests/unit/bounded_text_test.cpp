#include "plugin/base/bounded_text.h"

#include <gmock/gmock.h>

#include <string>

using namespace soapwrapper;

namespace
{

// Bytes that no test text holds, so that a write too far shows.
std::string filled_buffer()
{
    return std::string(16, '#');
}

} // namespace

TEST(BoundedCopy, KeepsATextThatFitsWithItsTerminator)
{
    std::string buffer = filled_buffer();
    V_strlcpy(buffer.data(), "seven77", 8);
    EXPECT_EQ(buffer, std::string("seven77\0########", 16));
}

TEST(BoundedCopy, CutsALongerTextAndTerminatesIt)
{
    std::string buffer = filled_buffer();
    V_strlcpy(buffer.data(), "eight888", 8);
    EXPECT_EQ(buffer, std::string("eight88\0########", 16));
}

TEST(BoundedCopy, CopiesTheEmptyText)
{
    std::string buffer = filled_buffer();
    V_strlcpy(buffer.data(), "", 8);
    EXPECT_EQ(buffer, std::string("\0###############", 16));
}

TEST(BoundedCopy, WritesOnlyATerminatorIntoRoomForOne)
{
    std::string buffer = filled_buffer();
    V_strlcpy(buffer.data(), "text", 1);
    EXPECT_EQ(buffer, std::string("\0###############", 16));
}

TEST(BoundedCopy, WritesNothingIntoNoRoom)
{
    std::string buffer = filled_buffer();
    V_strlcpy(buffer.data(), "text", 0);
    V_strlncpy(buffer.data(), "text", 0);
    EXPECT_EQ(buffer, filled_buffer());
}

TEST(BoundedCopy, ReadsNoFurtherThanTheRoomOfATextWithoutEnd)
{
    const char endless[4] = {'a', 'b', 'c', 'd'};
    std::string buffer = filled_buffer();
    V_strlncpy(buffer.data(), endless, 5);
    EXPECT_EQ(buffer.substr(0, 5), std::string("abcd\0", 5));
}

TEST(BoundedFormat, FormatsWhatFits)
{
    std::string buffer = filled_buffer();
    V_snprintf(buffer.data(), 8, "%s:%d", "ab", 8086);
    EXPECT_EQ(buffer, std::string("ab:8086\0########", 16));
}

TEST(BoundedFormat, CutsALongerTextAndTerminatesIt)
{
    std::string buffer = filled_buffer();
    V_snprintf(buffer.data(), 8, "%s:%d", "abc", 8086);
    EXPECT_EQ(buffer, std::string("abc:808\0########", 16));
}

TEST(BoundedFormat, CutsAReleaseTextAt31Characters)
{
    char release[32];
    V_snprintf(release, sizeof release, "%lu %s", 910000UL, "A_release_name_that_is_much_too_long");
    EXPECT_STREQ(release, "910000 A_release_name_that_is_m");
}

TEST(BoundedFormat, WritesNothingIntoNoRoom)
{
    std::string buffer = filled_buffer();
    V_snprintf(buffer.data(), 0, "%d", 5);
    EXPECT_EQ(buffer, filled_buffer());
}
