// A signal that comes while a wait sleeps doesn't make it ask the service any earlier.
#include "tests/entries/async_wait_fixture.h"

using namespace kit;

namespace
{

class InterruptedWait : public AsyncWaitTest
{
};

std::string result(int error, int delay)
{
    return reply("asyncWaitResponse",
                 element("result", nil("image") + number("bytesTransferred", 5) + number("error", error) +
                                       number("delayInSeconds", delay)));
}

} // namespace

TEST_F(InterruptedWait, SleepsForWhatIsLeft)
{
    clock_.interrupt(12);
    service_.script({answer(result(2060005, 40)), answer(result(0, 0))});
    sts_async_result_t record{};
    EXPECT_EQ(main_slot<decltype(stspi_async_wait)>(2)(caller_.get(), async_.get(), 1, &record), 0);
    EXPECT_THAT(clock_.sleeps(), testing::ElementsAre(40U, 12U));
    EXPECT_EQ(service_.requests().size(), 2U);
}
