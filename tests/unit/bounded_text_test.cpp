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

namespace
{

// What is left in room for `size` bytes where characters stay whole.
std::string cut(const std::string& text, std::size_t size)
{
    keep_characters_whole(true);
    std::string copied(16, '#');
    std::string formatted(16, '#');
    V_strlcpy(copied.data(), text.c_str(), size);
    V_snprintf(formatted.data(), size, "%s", text.c_str());
    keep_characters_whole(false);
    EXPECT_STREQ(copied.c_str(), formatted.c_str());
    EXPECT_EQ(copied[size], '#');
    return copied.c_str();
}

} // namespace

TEST(BoundedUtf8, IsCutAheadOfACharacterThatDoesntFit)
{
    EXPECT_EQ(cut("ab\xC3\xBC", 4), "ab");
    EXPECT_EQ(cut("ab\xE6\xA9\x8B", 4), "ab");
    EXPECT_EQ(cut("ab\xE6\xA9\x8B", 5), "ab");
    EXPECT_EQ(cut("ab\xF0\x9F\x98\x80", 4), "ab");
    EXPECT_EQ(cut("ab\xF0\x9F\x98\x80", 5), "ab");
    EXPECT_EQ(cut("ab\xF0\x9F\x98\x80", 6), "ab");
    EXPECT_EQ(cut("\xF0\x9F\x98\x80", 4), "");
    EXPECT_EQ(cut("\xC3\xBC", 1), "");
}

TEST(BoundedUtf8, KeepsACharacterThatFits)
{
    EXPECT_EQ(cut("ab\xC3\xBC", 5), "ab\xC3\xBC");
    EXPECT_EQ(cut("ab\xC3\xBC more", 5), "ab\xC3\xBC");
    EXPECT_EQ(cut("ab\xE6\xA9\x8B more", 6), "ab\xE6\xA9\x8B");
    EXPECT_EQ(cut("ab\xF0\x9F\x98\x80 more", 7), "ab\xF0\x9F\x98\x80");
    EXPECT_EQ(cut("abc", 3), "ab");
}

TEST(BoundedUtf8, IsCutAtTheBoundWhereItIsNoUtf8)
{
    EXPECT_EQ(cut("\x80\x80\x80\x80\x80\x80", 4), "\x80\x80\x80");
    EXPECT_EQ(cut("a\x80\x80\x80", 4), "a\x80\x80");
}

TEST(BoundedText, IsCutBetweenAnyBytesUnlessItIsUtf8)
{
    char buffer[4];
    V_strlcpy(buffer, "ab\xC3\xBC", sizeof buffer);
    EXPECT_STREQ(buffer, "ab\xC3");
}
