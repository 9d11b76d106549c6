// Memory that a wait can't have.
#include "tests/entries/async_wait_snap_fixture.h"
#include "tests/entries/heap_hooks.h"

using namespace kit;
using testing::ElementsAre;

namespace
{

class WaitWithoutMemory : public AsyncWaitSnap
{
  protected:
    // A difference of this many objects.
    Answer difference(int count)
    {
        std::string items;
        for (int i = 0; i < count; ++i) items += element("item", element("objectName", "an object"));
        return result({9, 2060013, 17, 0,
                       element("getSnapDiff", number("numDiffs", count) + element("diffObjectList", items))});
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Families, WaitWithoutMemory, testing::Values(Family::kById, Family::kByName),
                         family_of);

TEST_P(WaitWithoutMemory, ForTheRowsOfADifferenceDeliversNothingAndMayBeRepeated)
{
    std::int32_t count = -1;
    record_.body.difference.numDiffs = &count;
    const std::string before = bytes_of(record_);
    service_.script({difference(3), difference(3)});
    {
        const hooks::NoMemory shortage(hooks::Allocator::kOperatorNewNothrow, 3 * sizeof(sts_snap_diff_t));
        EXPECT_EQ(wait(1), 2060002);
        EXPECT_EQ(shortage.refusals(), 1U);
    }
    EXPECT_EQ(bytes_of(record_), before);
    EXPECT_EQ(count, -1);
    EXPECT_THAT(log().lines(), ElementsAre(record(line("enter")), record(return_code(0)),
                                           failure(line("no memory for 3 differences"))));
    EXPECT_EQ(wait(1), 0);
    const std::unique_ptr<sts_snap_diff_t[]> owner(record_.body.difference.diffs);
    EXPECT_EQ(count, 3);
    EXPECT_STREQ(owner[2].objectName, "an object");
}
