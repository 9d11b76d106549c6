#include "service/wire_text.h"

#include <gmock/gmock.h>

#include <random>
#include <string>

using soapwrapper::to_valid_utf8;

TEST(ValidUtf8, KeepsWhatIsValidAsItIs)
{
    for (const std::string text :
         {"", "plain", "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
          "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_EQ(to_valid_utf8(text), text);
    }
    const std::string with_nul("a\0b", 3);
    EXPECT_EQ(to_valid_utf8(with_nul), with_nul);
}

TEST(ValidUtf8, MakesALatin1CharacterOfEachByteOfALongForm)
{
    EXPECT_EQ(to_valid_utf8("\xC0\x80"), "\xC3\x80\xC2\x80");
    EXPECT_EQ(to_valid_utf8("\xC1\xBF"), "\xC3\x81\xC2\xBF");
    EXPECT_EQ(to_valid_utf8("\xE0\x9F\xBF"), "\xC3\xA0\xC2\x9F\xC2\xBF");
    EXPECT_EQ(to_valid_utf8("\xF0\x8F\xBF\xBF"), "\xC3\xB0\xC2\x8F\xC2\xBF\xC2\xBF");
}

TEST(ValidUtf8, MakesALatin1CharacterOfEachByteBeyondTheHighestCharacter)
{
    EXPECT_EQ(to_valid_utf8("\xF4\x90\x80\x80"), "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80");
    EXPECT_EQ(to_valid_utf8("\xF8\x88\x80\x80\x80"), "\xC3\xB8\xC2\x88\xC2\x80\xC2\x80\xC2\x80");
    EXPECT_EQ(to_valid_utf8("\xFF"), "\xC3\xBF");
}

TEST(ValidUtf8, KeepsTheCharacterBehindOneThatIsCut)
{
    EXPECT_EQ(to_valid_utf8("\xC3z"), "\xC3\x83z");
    EXPECT_EQ(to_valid_utf8("\xE6\xA9z"), "\xC3\xA6\xC2\xA9z");
    EXPECT_EQ(to_valid_utf8("\xE6\xC3\xBC"), "\xC3\xA6\xC3\xBC");
    EXPECT_EQ(to_valid_utf8("\xF0\x9F\x98"), "\xC3\xB0\xC2\x9F\xC2\x98");
    EXPECT_EQ(to_valid_utf8("\x80"), "\xC2\x80");
}

TEST(ValidUtf8, JoinsAPairOfSurrogates)
{
    EXPECT_EQ(to_valid_utf8("\xED\xA0\x80\xED\xB0\x80"), "\xF0\x90\x80\x80");
    EXPECT_EQ(to_valid_utf8("\xED\xAF\xBF\xED\xBF\xBF"), "\xF4\x8F\xBF\xBF");
}

TEST(ValidUtf8, MakesLatin1CharactersOfASurrogateWithoutItsOther)
{
    EXPECT_EQ(to_valid_utf8("\xED\xA0\x80"), "\xC3\xAD\xC2\xA0\xC2\x80");
    EXPECT_EQ(to_valid_utf8("\xED\xB0\x80\xED\xA0\x80"), "\xC3\xAD\xC2\xB0\xC2\x80\xC3\xAD\xC2\xA0\xC2\x80");
    EXPECT_EQ(to_valid_utf8("\xED\xA0\x80\xED\xA0\x80\xED\xB0\x80"),
              "\xC3\xAD\xC2\xA0\xC2\x80\xF0\x90\x80\x80");
    EXPECT_EQ(to_valid_utf8("\xED\xA0\x80\xEE\x80\x80"), "\xC3\xAD\xC2\xA0\xC2\x80\xEE\x80\x80");
}

TEST(ValidUtf8, IsNotChangedBeingMadeTwice)
{
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (auto length = random() % 12; length > 0; --length) {
            // Mostly bytes that begin or continue characters.
            constexpr unsigned char kLikely[] = {0xED, 0xA0, 0xB0, 0x80, 0xBF, 0xF0, 0xE0, 0xC3, 0x9F, 'a'};
            text += static_cast<char>(random() % 3 == 0 ? random() % 256 : kLikely[random() % 10]);
        }
        const std::string valid = to_valid_utf8(text);
        EXPECT_EQ(to_valid_utf8(valid), valid) << testing::PrintToString(text);
        EXPECT_LE(valid.size(), 2 * text.size());
    }
}
