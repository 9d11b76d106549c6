#include "tests/system/simulator_change_lists.h"

namespace
{

using namespace simulator_change_lists;

constexpr int kStart = 10102;
constexpr int kStop = 10103;

class Starter : public ScenarioLister
{
  protected:
    explicit Starter(const std::string& settings) : ScenarioLister(settings) {}

    HttpReply control(const std::string& session, int command, const std::string& args, int ioflag = 3) const
    {
        return ask("ioControl", server_handle(session) + element("command", std::to_string(command)) +
                                    element("args", args) + element("ioflag", std::to_string(ioflag)) +
                                    element("len", "2049"));
    }
    // The listings of the volume behind the command.
    std::string count(int command, const std::string& args) const
    {
        return text_of(control(server_, command, args).body, "args");
    }
};

class SimulatorListings : public Starter
{
  protected:
    SimulatorListings() : Starter("{}") {}
};

TEST_F(SimulatorListings, StartsAndStopsAreCountedForEachVolume)
{
    EXPECT_EQ(count(kStart, "filer1;/vol/data"), "1");
    EXPECT_EQ(count(kStart, "filer1;/vol/data/.snapshot/b"), "1");
    EXPECT_EQ(count(kStart, "filer1;/vol/data"), "2");
    EXPECT_EQ(count(kStop, "filer1;/vol/data"), "1");
    EXPECT_EQ(count(kStop, "filer1;/vol/data"), "0");
    EXPECT_EQ(count(kStop, "filer1;/vol/data/.snapshot/b"), "0");
}

TEST_F(SimulatorListings, AStopWithoutAStartDoesNoHarm)
{
    EXPECT_EQ(count(kStop, "filer1;/vol/data"), "0");
    EXPECT_EQ(count(kStop, "nope;/vol/nope"), "0");
    EXPECT_EQ(count(kStart, "filer1;/vol/data"), "1");
}

TEST_F(SimulatorListings, AStartOfAnUnknownVolumeIsRefused)
{
    for (const char* args : {"filer2;/vol/data", "filer1;/vol/nope", "filer1", ";", "filer1 u p;/vol",
                             "filer1x;/vol/data", "filer;/vol/data", "filer1/vol/data"}) {
        EXPECT_EQ(fault_code(control(server_, kStart, args)), kUnknownVolume) << args;
    }
    EXPECT_EQ(fault_code(control(server_, kStart, "")), kBadValue);
}

TEST_F(SimulatorListings, WhatFollowsTheHostMakesNoDifferenceAndIsToldToNobody)
{
    EXPECT_EQ(count(kStart, "filer1 admin s3cret;/vol/data"), "1");
    EXPECT_EQ(count(kStart, "filer1 admin two;words ;/vol/data"), "2");
    EXPECT_EQ(count(kStart, "filer1;/vol/data"), "3");
    const HttpReply refused = control(server_, kStart, "filer2 admin s3cret;/vol/data");
    EXPECT_EQ(fault_code(refused), kUnknownVolume);
    EXPECT_THAT(refused.body, Not(HasSubstr("s3cret")));
}

TEST_F(SimulatorListings, ASessionThatEndsEndsItsListings)
{
    const std::string other = open_server();
    EXPECT_EQ(control(other, kStart, "filer1;/vol/data").status, 200);
    EXPECT_EQ(count(kStart, "filer1;/vol/data"), "2");
    EXPECT_EQ(count(kStop, "filer1;/vol/data"), "1") << "each session stops its own";
    EXPECT_EQ(count(kStop, "filer1;/vol/data"), "1");
    EXPECT_EQ(ask("closeServer", server_handle(other)).status, 200);
    EXPECT_EQ(count(kStop, "filer1;/vol/data"), "0");
}

TEST_F(SimulatorListings, WithoutTheOutputBitTheCountIsNotAnswered)
{
    EXPECT_EQ(text_of(control(server_, kStart, "filer1;/vol/data", 1).body, "args"), "");
    EXPECT_EQ(count(kStart, "filer1;/vol/data"), "2");
}

TEST_F(SimulatorListings, ABufferThatCannotHoldTheCountStartsNothing)
{
    EXPECT_EQ(fault("ioControl", server_handle(server_) + element("command", "10102") +
                                     element("args", "filer1;/vol/data") + element("ioflag", "3") +
                                     element("len", "5")),
              kBadValue);
    EXPECT_EQ(count(kStart, "filer1;/vol/data"), "1");
}

class SimulatorThatStartsLate : public Starter
{
  protected:
    SimulatorThatStartsLate() : Starter(R"({"startBusy": 2})") {}
};

TEST_F(SimulatorThatStartsLate, EachStartIsRefusedBeforeItSucceeds)
{
    const std::string volumes[] = {"filer1;/vol/data", "filer1;/vol/data/.snapshot/a"};
    for (int round = 1; round <= 2; ++round) {
        for (int i = 0; i < 2; ++i) {
            for (const std::string& volume : volumes) {
                EXPECT_EQ(fault_code(control(server_, kStart, volume)), kBusy);
            }
        }
        for (const std::string& volume : volumes) EXPECT_EQ(count(kStart, volume), std::to_string(round));
    }
}

} // namespace
