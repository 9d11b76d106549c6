// What the front of the simulator does with clients, whatever is served behind it.
#include "simulator/front/address.h"
#include "simulator/front/entrance.h"
#include "simulator/front/tls_identity.h"
#include "tests/parts/simulator_front.h"
#include "tests/system/soap_client.h"

#include <gmock/gmock.h>

#include <poll.h>
#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace
{

using namespace simulator_front;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(SimulatorServer, AClientThatIsTooSlowWithItsRequestIsDropped)
{
    Limits limits;
    limits.for_request = std::chrono::milliseconds(0);
    const RunningServer server(limits, says(""));
    const ClientSocket client(server.port());
    EXPECT_THAT(client.receive_all(), IsEmpty());
}

TEST(SimulatorServer, AClientThatDoesNotTakeItsAnswerIsDropped)
{
    constexpr std::size_t kMoreThanSocketsHold = 64 * 1024 * 1024;
    Limits limits;
    limits.for_answer = std::chrono::milliseconds(0);
    limits.for_stop = std::chrono::hours(1); // it isn't the stop that ends the answer
    std::promise<void> asked;
    std::optional<RunningServer> server;
    server.emplace(limits, [&asked](const Request&) {
        asked.set_value();
        return text_answer(std::string(kMoreThanSocketsHold, 'x'));
    });
    const ClientSocket client(server->port());
    client.send(kEmptyPost);
    asked.get_future().wait();
    server.reset(); // which waits for what is under way: a client that took it now would be another test
    EXPECT_LT(client.receive_all().size(), kMoreThanSocketsHold);
}

TEST(SimulatorServer, ALargeAnswerArrivesWholeAndThenTheStreamEnds)
{
    constexpr std::size_t kLarge = 16 * 1024 * 1024;
    const RunningServer server({}, says(std::string(kLarge, 'x')));
    const ClientSocket client(server.port());
    client.send(kEmptyPost);
    const HttpReply reply = parse_reply(client.receive_all());
    EXPECT_EQ(reply.body.size(), kLarge);
    EXPECT_THAT(reply.head,
                AllOf(HasSubstr("\r\nContent-Length: 16777216"), HasSubstr("\r\nConnection: close")));
}

TEST(SimulatorServer, AClientBeyondTheRoomTakesThePlaceOfTheOldestThatKeepsItsRequestWaiting)
{
    Limits limits;
    limits.connections = 2;
    const RunningServer server(limits, [](const Request&) { return refusal(400); });
    const ClientSocket oldest(server.port());
    const ClientSocket second(server.port());
    const ClientSocket third(server.port());
    EXPECT_THAT(oldest.receive_all(), IsEmpty());
    second.send(kEmptyPost);
    EXPECT_EQ(parse_reply(second.receive_all()).status, 400);
}

TEST(SimulatorServer, ClientsThatTookTheirAnswerAndDoNotCloseMakeRoomAtOnce)
{
    Limits limits;
    limits.connections = 2;
    limits.for_request = limits.for_answer = std::chrono::hours(1); // no time that passes makes room
    const RunningServer server(limits, says("hello"));
    std::vector<std::unique_ptr<ClientSocket>> clients;
    for (int i = 0; i < 10; ++i) {
        clients.push_back(std::make_unique<ClientSocket>(server.port()));
        clients.back()->send(kEmptyPost);
        EXPECT_THAT(receive_until(*clients.back(), "hello"), EndsWith("hello"));
    }
}

TEST(SimulatorServer, AClientThatVanishesWhileItIsServedMakesRoom)
{
    Limits limits;
    limits.connections = 1;
    std::promise<void> asked;
    std::promise<void> go_on;
    const RunningServer server(limits, {{"POST", "/slow",
                                         [&](const Request&) {
                                             asked.set_value();
                                             go_on.get_future().wait();
                                             return text_answer("late");
                                         }},
                                        {"GET", "/", says("hello")}});
    ClientSocket vanishing(server.port());
    vanishing.send("POST /slow HTTP/1.1\r\nHost: x\r\nContent-Length: 0\r\n\r\n");
    asked.get_future().wait();
    vanishing.reset();
    EXPECT_EQ(get(server, "/").body, "hello");
    go_on.set_value();
}

TEST(SimulatorServer, ARequestThatWaitsIsNotServedOnceItsClientHasVanished)
{
    std::promise<void> go;
    const std::shared_future<void> gone(go.get_future());
    std::promise<void> both_at_work;
    std::atomic<int> at_work{0};
    std::atomic<bool> served_for_nobody{false};
    const Handler busy = [&, gone](const Request&) {
        if (++at_work == 2) both_at_work.set_value();
        gone.wait();
        return text_answer("");
    };
    const Handler waits = [&](const Request&) {
        served_for_nobody = true;
        return text_answer("");
    };
    RunningServer server({}, {{"GET", "/busy", busy}, {"GET", "/waits", waits}, {"GET", "/", says("hello")}});
    const ClientSocket first(server.port());
    const ClientSocket second(server.port());
    for (const ClientSocket* client : {&first, &second})
        client->send("GET /busy HTTP/1.1\r\nHost: x\r\n\r\n");
    both_at_work.get_future().wait(); // and no thread is left
    ClientSocket vanishing(server.port());
    vanishing.send("GET /waits HTTP/1.1\r\nHost: x\r\n\r\n");
    // Answered by the loop itself, which has taken the request ahead of that.
    EXPECT_EQ(get(server, "/nowhere").status, 404);
    vanishing.reset();
    // By the time of the second of these it has seen the client go.
    EXPECT_EQ(get(server, "/nowhere").status, 404);
    EXPECT_EQ(get(server, "/nowhere").status, 404);
    go.set_value();
    EXPECT_EQ(get(server, "/").body, "hello");
    EXPECT_FALSE(served_for_nobody);
}

TEST(SimulatorServer, AClientThatSendsNoMoreStillGetsItsAnswer)
{
    std::promise<void> ended;
    const RunningServer server({}, [&ended](const Request&) {
        ended.get_future().wait();
        return text_answer("hello");
    });
    const ClientSocket client(server.port());
    client.send(kEmptyPost);
    shutdown(client.fd(), SHUT_WR);
    ended.set_value();
    EXPECT_EQ(parse_reply(client.receive_all()).body, "hello");
}

TEST(SimulatorServer, AHandlerThatGoesOnComputingDoesNotHoldTheStop)
{
    Limits limits;
    limits.for_stop = std::chrono::milliseconds(0);
    std::promise<void> asked;
    std::promise<void> go_on;
    RunningServer server(limits, [&](const Request&) {
        asked.set_value();
        go_on.get_future().wait();
        return text_answer("late");
    });
    const ClientSocket client(server.port());
    client.send(kEmptyPost);
    asked.get_future().wait();
    EXPECT_FALSE(server.stop()); // though the handler waits until the test goes on
    EXPECT_THAT(client.receive_all(), IsEmpty());
    go_on.set_value();
}

TEST(SimulatorServer, AStopWithNothingUnderWayLeavesNoHandlerAtWork)
{
    RunningServer server({}, says("hello"));
    EXPECT_TRUE(server.stop());
}

TEST(SimulatorServer, AStreamThatOpensDuringTheStopDoesNotHoldIt)
{
    const auto stream = std::make_shared<AnswerStream>();
    EXPECT_TRUE(stops_with({200, "text/event-stream", "", {}, stream}));
    EXPECT_FALSE(stream->append("data: one\n\n"));
}

TEST(SimulatorServer, ARouteIsTakenByPathAndMethod)
{
    const RunningServer server({}, {{"GET", "/page", says("a page")}, {"POST", "/page", says("a change")}});
    const HttpReply page = get(server, "/page?with=a%20query");
    EXPECT_EQ(page.body, "a page");
    EXPECT_THAT(page.head, HasSubstr("\r\nContent-Type: text/plain"));
    EXPECT_EQ(get(server, "/nowhere").status, 404);
    const ClientSocket client(server.port());
    client.send("PUT /page HTTP/1.1\r\nHost: x\r\nContent-Length: 0\r\n\r\n");
    const HttpReply refused = parse_reply(client.receive_all());
    EXPECT_EQ(refused.status, 405);
    EXPECT_THAT(refused.head, HasSubstr("\r\nAllow: GET, POST"));
}

TEST(SimulatorEntrance, AClientStuckInItsHandshakeKeepsNoProcessorBusy)
{
    const auto refuse = [](void*, MHD_Connection*, const char*, const char*, const char*, const char*,
                           std::size_t*, void**) { return MHD_NO; };
    const auto ignore = [](void*, MHD_Connection*, void**, MHD_ConnectionNotificationCode) {};
    Descriptor socket = listen_on({"127.0.0.1", 0});
    const ClientSocket client(address_of(socket.get()).port);
    Entrance entrance({std::move(socket), make_tls_identity({"localhost"}).identity},
                      {refuse, ignore, nullptr}, 1);
    ASSERT_TRUE(entrance.accept());
    client.send("\x16\x03\x01");
    pollfd polled{entrance.fd(), POLLIN, 0};
    ASSERT_EQ(poll(&polled, 1, -1), 1);
    entrance.run();
    EXPECT_NE(entrance.time_to_wait(), std::chrono::milliseconds(0));
}

// A server with one route, whose answers go on with what the test appends.
class SimulatorStream : public testing::Test
{
  protected:
    static Limits patient()
    {
        Limits limits;
        limits.connections = 2;
        limits.for_request = limits.for_answer = limits.for_stop = std::chrono::hours(1);
        return limits;
    }
    Answer open()
    {
        Answer answer{
            200, "text/event-stream", "", {{"Cache-Control", "no-store"}}, std::make_shared<AnswerStream>()};
        opened_.set_value(answer.stream);
        return answer;
    }

    std::promise<std::shared_ptr<AnswerStream>> opened_;
    RunningServer server_{
        patient(),
        {{"GET", "/events", [this](const Request&) { return open(); }}, {"GET", "/", says("hello")}}};
    ClientSocket client_{server_.port()};
};

const std::string kGetEvents = "GET /events HTTP/1.1\r\nHost: x\r\n\r\n";

TEST_F(SimulatorStream, WhatIsAppendedArrivesWhileTheAnswerGoesOn)
{
    client_.send(kGetEvents);
    const std::shared_ptr<AnswerStream> stream = opened_.get_future().get();
    EXPECT_THAT(receive_until(client_, "\r\n\r\n"),
                AllOf(StartsWith("HTTP/1.1 200 "), HasSubstr("\r\nContent-Type: text/event-stream\r\n"),
                      HasSubstr("\r\nCache-Control: no-store\r\n")));
    EXPECT_TRUE(stream->append("data: one\n\n"));
    EXPECT_THAT(receive_until(client_, "one\n\n"), HasSubstr("data: one"));
    EXPECT_TRUE(stream->append("data: two\n\n"));
    EXPECT_THAT(receive_until(client_, "two\n\n"), HasSubstr("data: two"));
    EXPECT_EQ(get(server_, "/").body, "hello");
    stream->append("data: three\n\n");
    stream->end();
    EXPECT_FALSE(stream->append("data: four\n\n"));
    EXPECT_THAT(client_.receive_all(), HasSubstr("data: three\n\n"));
}

TEST_F(SimulatorStream, AClientThatVanishesMakesRoomAndTakesNoMore)
{
    client_.send(kGetEvents);
    const std::shared_ptr<AnswerStream> stream = opened_.get_future().get();
    receive_until(client_, "\r\n\r\n");
    shutdown(client_.fd(), SHUT_WR);
    EXPECT_THAT(receive_until(client_, "never"), testing::Not(HasSubstr("never")));
    EXPECT_FALSE(stream->append("data: one\n\n"));
}

TEST_F(SimulatorStream, AClientThatTakesNothingDoesNotMakeItGrow)
{
    client_.send(kGetEvents);
    const std::shared_ptr<AnswerStream> stream = opened_.get_future().get();
    const std::string event(AnswerStream::kMaxWaiting / 4, 'x');
    int taken = 0;
    while (stream->append(event)) ++taken;
    EXPECT_GE(taken, 4);
    EXPECT_FALSE(stream->append("data: one\n\n"));
}

TEST_F(SimulatorStream, MoreAtOnceThanMayWaitEndsItAndMakesRoom)
{
    const ClientSocket slow(server_.port()); // would have to go if there were no room
    client_.send(kGetEvents);
    const std::shared_ptr<AnswerStream> stream = opened_.get_future().get();
    receive_until(client_, "\r\n\r\n");
    EXPECT_FALSE(stream->append(std::string(AnswerStream::kMaxWaiting + 1, 'x')));
    EXPECT_THAT(receive_until(client_, "x"), IsEmpty());
    EXPECT_EQ(get(server_, "/").body, "hello");
    slow.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_EQ(parse_reply(slow.receive_all()).body, "hello");
}

TEST(SimulatorServer, AStreamWhoseClientVanishesWhileMoreIsSentThanItTakesIsTold)
{
    Limits limits;
    limits.connections = 1;
    limits.for_answer = std::chrono::hours(1);
    Listener narrow = listener();
    const int few_bytes = 4096; // less than what is sent, even with what the client's side takes
    setsockopt(narrow.socket.get(), SOL_SOCKET, SO_SNDBUF, &few_bytes, sizeof few_bytes);
    const auto stream = std::make_shared<AnswerStream>();
    const RunningServer server(limits,
                               {{"GET", "/events",
                                 [&stream](const Request&) {
                                     return Answer{200, "text/event-stream", "", {}, stream};
                                 }},
                                {"GET", "/", says("hello")}},
                               std::move(narrow));
    ClientSocket vanishing(server.port());
    setsockopt(vanishing.fd(), SOL_SOCKET, SO_RCVBUF, &few_bytes, sizeof few_bytes);
    vanishing.send(get_text("/events"));
    ASSERT_TRUE(stream->append("begun" + std::string(AnswerStream::kMaxWaiting - 5, 'x')));
    receive_until(vanishing, "begun");
    vanishing.reset();
    EXPECT_EQ(get(server, "/").body, "hello"); // there is room once the other one is gone
    EXPECT_FALSE(stream->append(""));
}

TEST_F(SimulatorStream, AStopEndsIt)
{
    client_.send(kGetEvents);
    const std::shared_ptr<AnswerStream> stream = opened_.get_future().get();
    receive_until(client_, "\r\n\r\n");
    EXPECT_TRUE(server_.stop());
    EXPECT_FALSE(stream->append("data: one\n\n"));
    client_.receive_all();
}

} // namespace
