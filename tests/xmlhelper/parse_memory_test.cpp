#include "xmlhelper/document_bounds.h"
#include "xmlhelper/parse_memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

using namespace Oskelund::Tarnholme::VMware::XMLHelper;

namespace
{

constexpr std::size_t kMebibyte = 1024 * 1024;

// Charges the budget `count` times.
void take_and_return(std::size_t count, std::size_t size)
{
    for (std::size_t i = 0; i < count; ++i) parse_memory()->deallocate(parse_memory()->allocate(size));
}

} // namespace

TEST(ParseMemory, GivesAlignedBlocksAndTakesNull)
{
    for (const std::size_t size : {0U, 1U, 17U, 4096U}) {
        void* memory = parse_memory()->allocate(size);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % alignof(std::max_align_t), 0U);
        parse_memory()->deallocate(memory);
    }
    parse_memory()->deallocate(nullptr);
}

TEST(ParseMemory, RefusesASizeThatCannotBe)
{
    EXPECT_THROW(parse_memory()->allocate(SIZE_MAX - 8), std::bad_alloc);
}

TEST(ParseBudget, ReturnsWhatWasNotKept)
{
    ParseBudget budget(0);
    for (int i = 0; i < 10; ++i) EXPECT_NE(parse_memory()->allocate(100), nullptr);
}

TEST(ParseBudget, LeavesWhatWasKeptToItsOwner)
{
    std::vector<std::unique_ptr<MemoryRing>> kept;
    void* given_back_late = nullptr;
    {
        ParseBudget budget(0);
        given_back_late = parse_memory()->allocate(100);
        parse_memory()->deallocate(parse_memory()->allocate(100));
        EXPECT_NE(parse_memory()->allocate(100), nullptr); // never given back: the ring does that
        kept.push_back(budget.keep());
        EXPECT_NE(parse_memory()->allocate(100), nullptr);
        kept.push_back(budget.keep());
    }
    parse_memory()->deallocate(given_back_late);
}

TEST(ParseBudget, RefusesALargeBlockPastTheLimit)
{
    ParseBudget budget(0);
    EXPECT_NO_THROW(take_and_return(10, 60 * kMebibyte));
    EXPECT_THROW(parse_memory()->allocate(65 * kMebibyte), ParseRefused);
    EXPECT_THROW(budget.check(), ParseRefused);
}

TEST(ParseBudget, GrowsWithTheDocument)
{
    ParseBudget budget(kMebibyte);
    EXPECT_NO_THROW(take_and_return(1, 100 * kMebibyte));
    EXPECT_THROW(parse_memory()->allocate(200 * kMebibyte), ParseRefused);
}

// Where a small block is wanted may be a destructor.
TEST(ParseBudget, NotesSmallBlocksPastTheLimitWithoutThrowing)
{
    ParseBudget budget(0);
    EXPECT_NO_THROW({
        for (int i = 0; i < 2000; ++i) parse_memory()->allocate(kMebibyte / 20);
    });
    EXPECT_THROW(budget.check(), ParseRefused);
}

TEST(ParseBudget, InterruptsOnce)
{
    ParseBudget budget(0);
    EXPECT_THROW(parse_memory()->allocate(65 * kMebibyte), ParseRefused);
    EXPECT_NO_THROW(take_and_return(1, 65 * kMebibyte));
}

TEST(ParseBudget, DoesNotInterruptTheWayOut)
{
    struct AllocatesOnTheWayOut {
        AllocatesOnTheWayOut() = default;
        ~AllocatesOnTheWayOut() { take_and_return(1, 65 * kMebibyte); }
        AllocatesOnTheWayOut(const AllocatesOnTheWayOut&) = delete;
        AllocatesOnTheWayOut& operator=(const AllocatesOnTheWayOut&) = delete;
    };
    ParseBudget budget(0);
    EXPECT_THROW(
        {
            const AllocatesOnTheWayOut last;
            throw std::runtime_error("another reason");
        },
        std::runtime_error);
}

TEST(ParseBudget, BoundsTheNumberOfLargeBlocks)
{
    ParseBudget budget(0);
    EXPECT_NO_THROW(take_and_return(100'000, 64 * 1024));
    EXPECT_THROW(take_and_return(1, 64 * 1024), ParseRefused);
}

TEST(ParseBudget, BoundsTheStepsByTheLengthOfTheDocument)
{
    ParseBudget budget(0);
    EXPECT_NO_THROW(budget.spend(kMinSteps));
    EXPECT_THROW(budget.spend(1), ParseRefused);
    ParseBudget larger(1000);
    EXPECT_NO_THROW(larger.spend(kMinSteps + 1000 * kStepsPerByte));
    EXPECT_THROW(larger.spend(1), ParseRefused);
}

TEST(ParseBudget, OfTheLongestDocumentIsNoSmallerThanThatOfAShortOne)
{
    ParseBudget budget(SIZE_MAX);
    EXPECT_NO_THROW(take_and_return(1, 65 * kMebibyte));
    EXPECT_NO_THROW(budget.spend(kMinSteps + 1));
    EXPECT_GT(budget.max_entity_expansions(), kMinEntityExpansions);
}

TEST(ParseBudget, CountsItsOwnThreadOnly)
{
    ParseBudget budget(0);
    std::thread other([] { EXPECT_NO_THROW(take_and_return(1, 65 * kMebibyte)); });
    other.join();
    EXPECT_NO_THROW(budget.check());
}
