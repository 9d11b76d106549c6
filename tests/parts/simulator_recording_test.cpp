// What a request leaves behind for people to look at.
#include "simulator/front/http.h"
#include "simulator/front/request_log.h"
#include "simulator/scenario/default_scenario.h"
#include "simulator/service/interference.h"
#include "simulator/service/service.h"
#include "simulator/service/trouble.h"
#include "simulator/storage/current_model.h"
#include "simulator/traffic/exchange.h"
#include "simulator/traffic/recorder.h"

#include <gmock/gmock.h>

#include <chrono>
#include <optional>
#include <string>

namespace
{

using namespace soapwrapper::simulator;
using testing::HasSubstr;

class SimulatorRecording : public testing::Test
{
  protected:
    // What is kept of such a request, and its answer.
    Exchange recorded(const std::string& body)
    {
        Request request;
        request.method = "POST";
        request.path = "/x";
        request.body = body;
        request.client = "127.0.0.1:5";
        request.is_tls = true;
        request.fields = {{"Host", "h"}};
        answer_ = serve_request(backend_, request);
        return recorder_.find(recorder_.last()).value();
    }
    Exchange recorded_lookup(const std::string& server)
    {
        return recorded(
            "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\" xmlns:n=\"" SERVICE_NAMESPACE
            "\"><e:Body><n:getServerPropByName><n:server>" +
            server + "</n:server></n:getServerPropByName></e:Body></e:Envelope>");
    }
    void set(TroubleKind kind, int code = 0)
    {
        Trouble trouble;
        trouble.operation = "getServerPropByName";
        trouble.kind = kind;
        trouble.code = code;
        trouble.count = 1;
        interference_.add(trouble);
    }

    CurrentModel model_{default_scenario(), {}, "secret"};
    Interference interference_;
    RequestLog log_{false};
    Recorder recorder_{"secret"};
    const Backend backend_{model_, interference_, log_, recorder_};
    Answer answer_;
};

TEST_F(SimulatorRecording, TellsOfARequestAndItsReply)
{
    const auto before = std::chrono::system_clock::now().time_since_epoch();
    const Exchange exchange = recorded_lookup("Network_NTAP:a");
    EXPECT_GE(exchange.time, std::chrono::duration_cast<std::chrono::milliseconds>(before).count());
    EXPECT_EQ(exchange.number, 1U);
    EXPECT_EQ(exchange.client, "127.0.0.1:5");
    EXPECT_TRUE(exchange.is_tls);
    EXPECT_EQ(exchange.operation, "getServerPropByName");
    EXPECT_EQ(exchange.status, 200);
    EXPECT_EQ(exchange.fault_code, std::nullopt);
    EXPECT_EQ(exchange.outcome, "ok");
    EXPECT_GE(exchange.microseconds, 0);
    EXPECT_THAT(exchange.request, HasSubstr("Network_NTAP:a"));
    EXPECT_EQ(exchange.reply, answer_.body);
    EXPECT_EQ(exchange.reply_bytes, answer_.body.size());
    EXPECT_EQ(exchange.trouble, "");
    EXPECT_EQ(exchange.method, "POST");
    EXPECT_EQ(exchange.path, "/x");
    EXPECT_EQ(exchange.fields.size(), 1U);
}

TEST_F(SimulatorRecording, TellsOfFaultsAndOfWhatIsNoRequest)
{
    const Exchange unknown_server = recorded_lookup("x:y");
    EXPECT_EQ(unknown_server.status, 500);
    EXPECT_EQ(unknown_server.fault_code, 2069001);
    EXPECT_EQ(unknown_server.trouble, "");
    const Exchange garbage = recorded("garbage");
    EXPECT_EQ(garbage.operation, "-");
    EXPECT_EQ(garbage.status, 500);
    EXPECT_EQ(garbage.fault_code, std::nullopt);
    EXPECT_EQ(garbage.request, "(not XML, 7 bytes)");
}

TEST_F(SimulatorRecording, TellsOfTheTroubleThatWasApplied)
{
    set(TroubleKind::kDelay);
    EXPECT_EQ(recorded_lookup("Network_NTAP:a").trouble, "delay");
    set(TroubleKind::kDelay);
    set(TroubleKind::kFault, 7);
    const Exchange fault = recorded_lookup("Network_NTAP:a");
    EXPECT_EQ(fault.trouble, "fault");
    EXPECT_EQ(fault.fault_code, 7);
    EXPECT_EQ(fault.outcome, "fault 7, getServerPropByName fails on demand");
    set(TroubleKind::kReset);
    const Exchange reset = recorded_lookup("Network_NTAP:a");
    EXPECT_EQ(reset.trouble, "reset");
    EXPECT_EQ(reset.outcome, "trouble: reset");
    EXPECT_EQ(reset.status, 0);
    EXPECT_EQ(reset.reply_bytes, 0U);
    EXPECT_EQ(answer_.delivery, Delivery::kReset);
    set(TroubleKind::kCut);
    const Exchange cut = recorded_lookup("x:y");
    EXPECT_EQ(cut.trouble, "cut");
    EXPECT_EQ(cut.fault_code, 2069001);
    EXPECT_EQ(answer_.delivery, Delivery::kCut);
    set(TroubleKind::kHttpError);
    EXPECT_EQ(recorded_lookup("Network_NTAP:a").status, 503);
}

} // namespace
