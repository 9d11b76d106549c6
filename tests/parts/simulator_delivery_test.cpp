// Answers of the simulator's front that are damaged or slow on purpose, as a client sees them.
#include "simulator/front/parted_body.h"
#include "tests/parts/simulator_front.h"

#include <gmock/gmock.h>

#include <sys/socket.h>

#include <cerrno>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace
{

using namespace simulator_front;
using std::chrono::milliseconds;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

struct Received {
    std::string bytes;
    bool is_reset = false;
};

Received receive(const ClientSocket& client)
{
    errno = 0;
    const std::string bytes = client.receive_all();
    return {bytes, errno == ECONNRESET};
}

Received receive(const TlsClient& client)
{
    errno = 0;
    const std::string bytes = client.receive_all();
    return {bytes, errno == ECONNRESET};
}

Answer delivered(std::string body, Delivery delivery, milliseconds time = milliseconds(0))
{
    Answer answer = text_answer(std::move(body));
    answer.delivery = delivery;
    answer.dribble_time = time;
    return answer;
}

// Over plain HTTP and over HTTPS.
class SimulatorDelivery : public testing::TestWithParam<bool>
{
  protected:
    void serve(Answer answer, const Limits& limits = {})
    {
        server_.emplace(limits,
                        std::vector<Route>{{"GET", "/", [answer](const Request&) { return answer; }},
                                           {"GET", "/well", says("well")}},
                        listener(GetParam()));
    }
    Received ask(const std::string& path = "/") const
    {
        if (!GetParam()) {
            const ClientSocket client(server_->port());
            client.send(get_text(path));
            return receive(client);
        }
        const TlsClient client(server_->port());
        client.send(get_text(path));
        return receive(client);
    }
    // The server has come through and gives every connection back.
    void expect_all_well()
    {
        EXPECT_EQ(parse_reply(ask("/well").bytes).body, "well");
        EXPECT_TRUE(server_->stop());
    }

    std::optional<RunningServer> server_;
};
INSTANTIATE_TEST_SUITE_P(OverHttpAndHttps, SimulatorDelivery, testing::Bool(),
                         [](const auto& instance) { return instance.param ? "Https" : "Http"; });

// So that one that is left over would keep the next one out.
Limits room_for_one()
{
    Limits limits;
    limits.connections = 1;
    limits.for_answer = std::chrono::hours(1);
    return limits;
}

TEST_P(SimulatorDelivery, ACutAnswerEndsInTheMiddleOfTheBodyWhoseLengthItTells)
{
    for (const std::size_t size : {1U, 2U, 1001U, 1000U * 1000U}) {
        serve(delivered(std::string(size, 'x'), Delivery::kCut), room_for_one());
        const Received received = ask();
        const HttpReply reply = parse_reply(received.bytes);
        EXPECT_THAT(reply.head, HasSubstr("\r\nContent-Length: " + std::to_string(size)));
        EXPECT_THAT(reply.body, SizeIs(size / 2));
        EXPECT_FALSE(received.is_reset);
        expect_all_well();
    }
}

TEST_P(SimulatorDelivery, NothingIsAnEndWithoutAByte)
{
    serve(delivered("body", Delivery::kNothing), room_for_one());
    const Received received = ask();
    EXPECT_THAT(received.bytes, IsEmpty());
    EXPECT_FALSE(received.is_reset);
    expect_all_well();
}

TEST_P(SimulatorDelivery, AResetIsOneWithoutAByte)
{
    serve(delivered("body", Delivery::kReset), room_for_one());
    const Received received = ask();
    EXPECT_THAT(received.bytes, IsEmpty());
    EXPECT_TRUE(received.is_reset);
    expect_all_well();
}

TEST_P(SimulatorDelivery, RawBytesArriveAsTheyAreAndAlone)
{
    const std::string bytes("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n\0\xff", 53);
    serve(delivered(bytes, Delivery::kRaw), room_for_one());
    const Received received = ask();
    EXPECT_EQ(received.bytes, bytes);
    EXPECT_FALSE(received.is_reset);
    expect_all_well();
}

TEST_P(SimulatorDelivery, OfRawBytesNoMoreAreSentThanThereMayBe)
{
    serve(delivered(std::string(kMaxRaw + 1, 'x'), Delivery::kRaw), room_for_one());
    EXPECT_THAT(ask().bytes, SizeIs(kMaxRaw));
    expect_all_well();
}

TEST_P(SimulatorDelivery, ADribbledAnswerArrivesWhole)
{
    std::string body;
    while (body.size() < 100 * 1000) body += std::to_string(body.size()) + " ";
    Limits limits = room_for_one();
    limits.for_answer = milliseconds(0); // to take what was sent: not to wait for more
    serve(delivered(body, Delivery::kDribble, milliseconds(9)), limits);
    const HttpReply reply = parse_reply(ask().bytes);
    EXPECT_THAT(reply.head, HasSubstr("\r\nContent-Length: " + std::to_string(body.size())));
    EXPECT_EQ(reply.body, body);
    EXPECT_TRUE(server_->stop());
}

TEST_P(SimulatorDelivery, AnEmptyBodyIsDribbledAndCutToo)
{
    for (const Delivery delivery : {Delivery::kDribble, Delivery::kCut}) {
        serve(delivered("", delivery, std::chrono::hours(1)), room_for_one());
        EXPECT_THAT(ask().bytes, HasSubstr("\r\nContent-Length: 0\r\n"));
        expect_all_well();
    }
}

// How much more of an answer comes once its begin has come and the server has stopped.
template <typename Client>
std::size_t sent_behind_a_stop(RunningServer& server)
{
    const Client client(server.port());
    client.send(get_text("/"));
    EXPECT_THAT(receive_until(client, "\r\n\r\nx"), EndsWith("x"));
    EXPECT_TRUE(server.stop());
    return client.receive_all().size();
}

TEST_P(SimulatorDelivery, AStopEndsADribbledAnswer)
{
    Limits limits;
    limits.for_stop = limits.for_answer = std::chrono::hours(1);
    serve(delivered(std::string(100, 'x'), Delivery::kDribble, std::chrono::hours(1)), limits);
    EXPECT_LT(GetParam() ? sent_behind_a_stop<TlsClient>(*server_)
                         : sent_behind_a_stop<ClientSocket>(*server_),
              97U);
}

TEST(SimulatorDribble, KeepsNoThread)
{
    const Answer slow = delivered(std::string(100, 'x'), Delivery::kDribble, std::chrono::hours(1));
    const RunningServer server(
        {}, {{"GET", "/slow", [slow](const Request&) { return slow; }}, {"GET", "/", says("hello")}});
    std::vector<std::unique_ptr<ClientSocket>> clients;
    for (int i = 0; i < 3; ++i) { // one more than there are threads
        clients.push_back(std::make_unique<ClientSocket>(server.port()));
        clients.back()->send(get_text("/slow"));
        EXPECT_THAT(receive_until(*clients.back(), "\r\n\r\nx"), EndsWith("x"));
    }
    EXPECT_EQ(get(server, "/").body, "hello");
}

TEST(SimulatorDribble, AClientThatVanishesBetweenPiecesMakesRoom)
{
    const Answer slow = delivered(std::string(100, 'x'), Delivery::kDribble, std::chrono::hours(1));
    const RunningServer server(room_for_one(), {{"GET", "/slow", [slow](const Request&) { return slow; }},
                                                {"GET", "/", says("hello")}});
    ClientSocket client(server.port());
    client.send(get_text("/slow"));
    receive_until(client, "\r\n\r\nx");
    client.reset();
    EXPECT_EQ(get(server, "/").body, "hello");
}

TEST(SimulatorDribble, AClientThatSendsNoMoreStillGetsAllOfIt)
{
    const Answer slow = delivered(std::string(100, 'x'), Delivery::kDribble, milliseconds(9));
    const RunningServer server({}, {{"GET", "/", [slow](const Request&) { return slow; }}});
    const ClientSocket client(server.port());
    client.send(get_text("/"));
    shutdown(client.fd(), SHUT_WR);
    EXPECT_EQ(parse_reply(client.receive_all()).body, slow.body);
}

TEST(SimulatorDribble, AnAnswerThatIsReadyDuringTheStopDoesNotHoldIt)
{
    EXPECT_TRUE(stops_with(delivered(std::string(100, 'x'), Delivery::kDribble, std::chrono::hours(1))));
}

TEST(SimulatorPartedBody, TheFirstPieceIsDueAtOnceAndTheLastAfterTheWholeTime)
{
    const Clock::time_point begin = Clock::now();
    const PartedBody body = PartedBody::dribbled("0123456789", milliseconds(900), begin);
    for (std::size_t position = 0; position < 10; ++position) {
        const Clock::time_point due = begin + milliseconds(100) * position;
        EXPECT_EQ(body.due_time(position), due);
        EXPECT_EQ(body.due(position, due - milliseconds(1)), "");
        EXPECT_EQ(body.due(position, due), std::string(1, static_cast<char>('0' + position)));
        EXPECT_FALSE(body.ends_at(position));
    }
    EXPECT_TRUE(body.ends_at(10));
}

TEST(SimulatorPartedBody, PiecesMakeUpTheBodyWhateverItsSizeAndTime)
{
    const Clock::time_point begin = Clock::now();
    for (const std::size_t size : {1U, 2U, 9U, 10U, 11U, 99U, 1000U, 16384U}) {
        for (const milliseconds time :
             {milliseconds(-1), milliseconds(0), milliseconds(1), milliseconds(5001)}) {
            const PartedBody body = PartedBody::dribbled(std::string(size, 'x'), time, begin);
            std::size_t position = 0;
            std::size_t pieces = 0;
            Clock::time_point last = begin;
            for (; !body.ends_at(position); ++pieces) {
                last = body.due_time(position);
                const std::size_t count = body.due(position, last).size();
                ASSERT_GT(count, 0U);
                ASSERT_EQ(body.due_time(position + count - 1), last) << "within a piece there is no pause";
                position += count;
            }
            EXPECT_EQ(position, size);
            EXPECT_EQ(pieces, std::min<std::size_t>(size, time == milliseconds(5001) ? 51 : 10));
            EXPECT_EQ(last, pieces == 1 ? begin : begin + time);
        }
    }
}

} // namespace
