// What is made to go wrong on demand.
#include "simulator/service/interference.h"
#include "simulator/service/trouble.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace
{

using namespace soapwrapper::simulator;
using std::chrono::milliseconds;
using testing::ElementsAre;

Trouble trouble_of(const std::string& operation, TroubleKind kind,
                   std::optional<unsigned> count = std::nullopt)
{
    Trouble trouble;
    trouble.operation = operation;
    trouble.kind = kind;
    trouble.count = count;
    return trouble;
}

Trouble delay_of(const std::string& operation, milliseconds time,
                 std::optional<unsigned> count = std::nullopt)
{
    Trouble trouble = trouble_of(operation, TroubleKind::kDelay, count);
    trouble.time = time;
    return trouble;
}

Trouble fault_of(const std::string& operation, int code, std::optional<unsigned> count = std::nullopt)
{
    Trouble trouble = trouble_of(operation, TroubleKind::kFault, count);
    trouble.code = code;
    return trouble;
}

constexpr milliseconds kHour = std::chrono::hours(1);

TEST(SimulatorInterference, WithoutRulesLetsEverythingPass)
{
    Interference interference;
    const Met met = interference.meet("openServer");
    EXPECT_FALSE(met.was_delayed);
    EXPECT_FALSE(met.trouble);
}

// The name of the kind that the next such request meets; empty: none.
std::string next(Interference& interference, const std::string& operation)
{
    const Met met = interference.meet(operation);
    return met.trouble ? std::string(name_of(met.trouble->kind)) : std::string();
}

TEST(SimulatorInterference, AStopEndsDelaysThatRunAndThoseToCome)
{
    Interference interference({fault_of("openServer", 5, 1U), delay_of("openServer", kHour)});
    Met met;
    std::thread waiting([&] { met = interference.meet("openServer"); });
    interference.meet("closeServer");
    interference.stop();
    waiting.join();
    ASSERT_TRUE(met.trouble);
    EXPECT_EQ(met.trouble->code, 5);
    EXPECT_TRUE(met.was_delayed);
    EXPECT_FALSE(interference.meet("openServer").trouble);
}

TEST(SimulatorInterference, TroublesOfAnOperationComeInTheirOrderAsOftenAsTheirCounts)
{
    Interference interference({trouble_of("openServer", TroubleKind::kCut, 2U),
                               trouble_of("listLSU", TroubleKind::kEmpty),
                               trouble_of("openServer", TroubleKind::kReset, 1U)});
    EXPECT_EQ(next(interference, "openServer"), "cut");
    EXPECT_EQ(next(interference, "openServer"), "cut");
    EXPECT_EQ(next(interference, "openServer"), "reset");
    EXPECT_EQ(next(interference, "openServer"), "");
    EXPECT_EQ(next(interference, "listLSU"), "empty");
    EXPECT_EQ(next(interference, "listLSU"), "empty");
}

TEST(SimulatorInterference, ADelayCountsAndComesBesidesAnotherTrouble)
{
    Interference interference(
        {delay_of("openServer", milliseconds(0), 1U), trouble_of("openServer", TroubleKind::kGarbage, 2U)});
    const Met first = interference.meet("openServer");
    EXPECT_TRUE(first.was_delayed);
    EXPECT_EQ(first.trouble->kind, TroubleKind::kGarbage);
    const Met second = interference.meet("openServer");
    EXPECT_FALSE(second.was_delayed);
    EXPECT_EQ(second.trouble->kind, TroubleKind::kGarbage);
    EXPECT_FALSE(interference.meet("openServer").trouble);
}

TEST(SimulatorInterference, ListsWhatIsSetAndHowOftenItWasMet)
{
    Interference interference({trouble_of("openServer", TroubleKind::kCut, 3U)});
    EXPECT_EQ(interference.add(trouble_of("listLSU", TroubleKind::kReset)), 2U);
    next(interference, "openServer");
    next(interference, "listLSU");
    next(interference, "listLSU");
    const std::vector<SetTrouble> set = interference.list();
    ASSERT_EQ(set.size(), 2U);
    EXPECT_EQ(set[0].number, 1U);
    EXPECT_EQ(set[0].left, 2U);
    EXPECT_EQ(set[0].hits, 1U);
    EXPECT_EQ(set[1].trouble.operation, "listLSU");
    EXPECT_EQ(set[1].left, std::nullopt);
    EXPECT_EQ(set[1].hits, 2U);
    next(interference, "openServer");
    next(interference, "openServer");
    EXPECT_EQ(interference.list().size(), 1U);
}

TEST(SimulatorInterference, WhatIsRemovedIsMetNoMore)
{
    Interference interference({trouble_of("openServer", TroubleKind::kCut)});
    EXPECT_FALSE(interference.remove(2));
    EXPECT_TRUE(interference.remove(1));
    EXPECT_FALSE(interference.remove(1));
    EXPECT_EQ(next(interference, "openServer"), "");
    interference.add(trouble_of("openServer", TroubleKind::kCut));
    interference.clear();
    EXPECT_EQ(next(interference, "openServer"), "");
    EXPECT_TRUE(interference.list().empty());
}

TEST(SimulatorInterference, AResetSetsWhatWasSetAtTheStartAndNothingElse)
{
    Interference interference({trouble_of("openServer", TroubleKind::kCut, 1U)});
    next(interference, "openServer");
    interference.add(trouble_of("listLSU", TroubleKind::kReset));
    interference.reset();
    const std::vector<SetTrouble> set = interference.list();
    ASSERT_EQ(set.size(), 1U);
    EXPECT_EQ(set[0].number, 3U);
    EXPECT_EQ(set[0].left, 1U);
    EXPECT_EQ(next(interference, "openServer"), "cut");
}

TEST(SimulatorInterference, ManyTroublesAreTooMany)
{
    Interference interference;
    for (std::size_t i = 0; i < Interference::kMostTroubles; ++i) {
        interference.add(trouble_of("openServer", TroubleKind::kCut));
    }
    EXPECT_THROW(interference.add(trouble_of("openServer", TroubleKind::kCut)), std::length_error);
    interference.remove(5);
    EXPECT_NO_THROW(interference.add(trouble_of("openServer", TroubleKind::kCut)));
}

// Waits until somebody has met the trouble: it was hit, or has been used up.
void await_hit(const Interference& interference)
{
    for (;;) {
        const std::vector<SetTrouble> set = interference.list();
        if (set.empty() || set[0].hits > 0) return;
        std::this_thread::yield();
    }
}

template <class End>
void expect_to_end_a_wait(std::optional<unsigned> count, const End& end)
{
    Interference interference({delay_of("openServer", kHour, count)});
    std::thread waiting([&] { interference.meet("openServer"); });
    await_hit(interference);
    end(interference);
    waiting.join();
    if (!count) {
        EXPECT_TRUE(interference.list().empty() || interference.list()[0].number > 1);
    }
}

TEST(SimulatorInterference, WhoeverWaitsForADelayThatIsRemovedGoesOnAtOnce)
{
    expect_to_end_a_wait(std::nullopt, [](Interference& set) { EXPECT_TRUE(set.remove(1)); });
    expect_to_end_a_wait(std::nullopt, [](Interference& set) { set.clear(); });
    expect_to_end_a_wait(std::nullopt, [](Interference& set) { set.reset(); });
}

TEST(SimulatorInterference, AWaitEndsThoughItsDelayIsUsedUpAlready)
{
    expect_to_end_a_wait(1U, [](Interference& set) { EXPECT_TRUE(set.remove(1)); });
    expect_to_end_a_wait(1U, [](Interference& set) { set.clear(); });
}

TEST(SimulatorInterference, ADelayWithoutSigmaIsWhatItSays)
{
    std::mt19937_64 random(1);
    EXPECT_EQ(drawn_delay(delay_of("openServer", milliseconds(250)), random), milliseconds(250));
    Trouble none = delay_of("openServer", milliseconds(0));
    none.sigma = 1;
    EXPECT_EQ(drawn_delay(none, random), milliseconds(0));
}

TEST(SimulatorInterference, DelaysWithSigmaHaveTheirMedianAndALongTail)
{
    std::mt19937_64 random(1);
    Trouble delay = delay_of("openServer", milliseconds(1000));
    delay.sigma = 0.5;
    std::vector<double> drawn;
    for (int i = 0; i < 10001; ++i) {
        drawn.push_back(static_cast<double>(drawn_delay(delay, random).count()));
    }
    std::sort(drawn.begin(), drawn.end());
    EXPECT_NEAR(drawn[5000], 1000, 50);
    EXPECT_NEAR(drawn[8413], 1000 * std::exp(0.5), 100); // one deviation above
    EXPECT_NEAR(drawn[1587], 1000 * std::exp(-0.5), 50);
}

TEST(SimulatorInterference, NoDrawnDelayIsLongerThanAnHour)
{
    std::mt19937_64 random(1);
    Trouble delay = delay_of("openServer", kHour);
    delay.sigma = kLargestSigma;
    for (int i = 0; i < 1000; ++i) {
        const milliseconds drawn = drawn_delay(delay, random);
        EXPECT_GE(drawn.count(), 0);
        EXPECT_LE(drawn, kHour);
    }
}

TEST(SimulatorTroubleKinds, HaveNamesThatLeadBack)
{
    EXPECT_THAT(trouble_kind_names(), ElementsAre("fault", "delay", "dribble", "cut", "empty", "garbage",
                                                  "malformed-chunk", "http-error", "reset"));
    for (const std::string_view name : trouble_kind_names()) {
        EXPECT_EQ(name_of(trouble_kind_of(name).value()), name);
    }
    EXPECT_FALSE(trouble_kind_of("Cut"));
}

} // namespace
