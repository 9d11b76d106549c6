#include "simulator/traffic/exchange.h"
#include "simulator/traffic/recorder.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace
{

using namespace soapwrapper::simulator;

TEST(SimulatorRecorder, AnyThreadMayAskAndAdd)
{
    Recorder recorder("the-credential");
    const auto work = [&recorder] {
        for (int i = 0; i < 200; ++i) {
            Exchange exchange;
            exchange.request = "<token>" + std::to_string(i) + "</token>";
            exchange.request_bytes = exchange.request.size();
            const auto kept = recorder.add(exchange);
            EXPECT_TRUE(recorder.find(kept->number));
            recorder.after(0, 3);
            if (i % 50 == 0) recorder.all();
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(recorder.last(), 400U);
}

} // namespace
