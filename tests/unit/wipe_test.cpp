// What is wiped is gone from its memory, whatever became of it before.
#include "plugin/base/wipe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

using namespace soapwrapper;

namespace
{

// The bytes where a text lies, or lay, with all that it has room for.
std::string room_of(const std::string& text)
{
    return {text.data(), text.data() + text.capacity()};
}

bool holds_nothing(std::string_view bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte == '\0'; });
}

struct Record {
    char text[20];
    int number;
};

} // namespace

TEST(Wipe, LeavesNothingOfATextLongOrShort)
{
    for (const std::size_t size : {0U, 5U, 15U, 16U, 1000U}) {
        std::string text(size, 's');
        wipe(text);
        EXPECT_TRUE(text.empty());
        EXPECT_TRUE(holds_nothing(room_of(text))) << size;
    }
}

TEST(Wipe, LeavesNothingOfATextThatWasLonger)
{
    std::string text(1000, 's');
    text.resize(3);
    const char* const where = text.data();
    wipe(text);
    EXPECT_EQ(text.data(), where);
    EXPECT_TRUE(holds_nothing(room_of(text)));
}

TEST(Wipe, LeavesNothingOfAShortTextThatWasMovedFrom)
{
    std::string text = "s3cret";
    const std::string elsewhere = std::move(text);
    wipe(text);
    EXPECT_TRUE(holds_nothing(room_of(text)));
    EXPECT_EQ(elsewhere, "s3cret");
}

TEST(Wipe, LeavesNothingOfRecordsAndArrays)
{
    Record record = {"s3cret", 7};
    wipe(record);
    EXPECT_TRUE(holds_nothing({reinterpret_cast<const char*>(&record), sizeof record}));
    char array[] = "s3cret";
    wipe(array);
    EXPECT_TRUE(holds_nothing({array, sizeof array}));
}

TEST(WipeAtEnd, WipesHoweverTheScopeIsLeft)
{
    char array[] = "s3cret";
    std::string text(100, 's');
    try {
        const WipeAtEnd wiped_array(array);
        const WipeAtEnd wiped_text(text);
        throw std::runtime_error("out");
    } catch (const std::runtime_error&) {
    }
    EXPECT_TRUE(holds_nothing({array, sizeof array}));
    EXPECT_TRUE(holds_nothing(room_of(text)));
}

TEST(WipeAndFree, TakesBlocksThatArentThere)
{
    wipe_and_free(static_cast<char*>(nullptr));
    wipe_and_free(static_cast<Record*>(nullptr));
}
