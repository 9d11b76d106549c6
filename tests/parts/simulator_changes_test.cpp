// How those who watch the simulator are told of changes.
#include "simulator/api/changes.h"
#include "simulator/front/answer_stream.h"

#include <gmock/gmock.h>

#include <thread>

namespace
{

using namespace soapwrapper::simulator;
using testing::HasSubstr;

// What a client takes; there has to be something.
std::string taken(AnswerStream& stream, std::size_t most = 1000)
{
    std::string text(most, ' ');
    text.resize(static_cast<std::size_t>(stream.read(nullptr, -1, text.data(), most)));
    return text;
}

TEST(SimulatorStreamOffers, TakeThePlaceOfWhatWaits)
{
    AnswerStream stream;
    EXPECT_TRUE(stream.offer("first "));
    EXPECT_TRUE(stream.offer("second "));
    EXPECT_EQ(taken(stream), "second ");
    EXPECT_TRUE(stream.offer("third "));
    EXPECT_EQ(taken(stream), "third ");
}

TEST(SimulatorStreamOffers, NeverTakeThePlaceOfWhatHasGoneOutInPart)
{
    AnswerStream stream;
    stream.offer("first ");
    EXPECT_EQ(taken(stream, 3), "fir");
    stream.offer("second ");
    stream.offer("third ");
    EXPECT_EQ(taken(stream, 4), "st t");
    stream.offer("fourth ");
    EXPECT_EQ(taken(stream), "hird fourth ");
}

TEST(SimulatorStreamOffers, NeverTakeThePlaceOfWhatWasAppended)
{
    AnswerStream stream;
    stream.append("first ");
    stream.offer("second ");
    stream.append("third ");
    stream.offer("fourth ");
    stream.offer("fifth ");
    EXPECT_EQ(taken(stream), "first second third fifth ");
}

TEST(SimulatorStreamOffers, AreNotTakenByAStreamThatIsClosedOrEnded)
{
    AnswerStream closed;
    closed.close();
    EXPECT_FALSE(closed.offer("text"));
    EXPECT_FALSE(closed.is_open());
    AnswerStream ended;
    ended.end();
    EXPECT_FALSE(ended.offer("text"));
    EXPECT_FALSE(ended.is_open());
}

TEST(SimulatorChanges, AStreamBeginsWithWhereThingsStand)
{
    Changes changes("instance", [] { return 7; });
    changes.notify();
    EXPECT_EQ(taken(*changes.open()),
              "event: change\ndata: {\"instance\":\"instance\",\"requests\":7,\"revision\":1}\n\n");
}

TEST(SimulatorChanges, AStreamThatIsClosedGivesItsPlaceFree)
{
    Changes changes("instance", [] { return 0; });
    std::vector<std::shared_ptr<AnswerStream>> streams;
    for (std::size_t i = 0; i < Changes::kMostStreams; ++i) streams.push_back(changes.open());
    EXPECT_EQ(changes.open(), nullptr);
    streams[5]->close();
    EXPECT_NE(changes.open(), nullptr);
    EXPECT_EQ(changes.open(), nullptr);
}

TEST(SimulatorChanges, ManyThreadsTellOfChangesWhileStreamsComeAndGo)
{
    constexpr int kThreads = 3;
    constexpr int kChanges = 2000;
    std::shared_ptr<AnswerStream> last;
    {
        Changes changes("instance", [] { return 0; });
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([&changes] {
                for (int each = 0; each < kChanges; ++each) changes.notify();
            });
        }
        for (int i = 0; i < 100; ++i) {
            if (last) last->close();
            last = changes.open();
            ASSERT_NE(last, nullptr);
        }
        for (std::thread& thread : threads) thread.join();
        EXPECT_EQ(changes.revision(), static_cast<std::uint64_t>(kThreads * kChanges));
        EXPECT_TRUE(last->is_open());
        EXPECT_THAT(taken(*last), HasSubstr("event: change\n"));
    }
    EXPECT_FALSE(last->is_open());
}

} // namespace
