// What is made to go wrong on demand, and how it is told.
#include "simulator/options.h"
#include "simulator/service/interference.h"
#include "simulator/service/operation_names.h"
#include "simulator/service/trouble.h"
#include "simulator/service/trouble_json.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace
{

using namespace soapwrapper::simulator;
using nlohmann::json;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;

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

} // namespace
