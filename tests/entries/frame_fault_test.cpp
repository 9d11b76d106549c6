// How a failed call becomes a status and a line. Seen through the close of a server, which has no text of its
// own in between.
#include "tests/entries/server_fixture.h"

#include <limits>

using namespace kit;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

// What the runtime makes of a fault, ahead of the library's own line.
std::string rendered(const std::string& code, const std::string& text, const std::string& detail)
{
    return "SOAP 1.1 fault " + code + "[no subcode]\n\"" + text + "\"\nDetail: " + detail + "\n";
}

class Frame : public ServerTest
{
  protected:
    struct Outcome {
        int status;
        std::vector<LogLine> lines; // behind "enter" and the endpoint's line
    };

    Outcome outcome_of(const Answer& answer)
    {
        session_.clear();
        service_.script(answer);
        const ServerHandle server = make_server(session_, service_.url());
        const int status = close_server()(server.get());
        std::vector<LogLine> lines = session_.lines();
        EXPECT_THAT(lines.at(0), record("stspi_close_server: enter"));
        EXPECT_THAT(lines.at(1), record("stspi_close_server: soap_endpoint = " + service_.url()));
        lines.erase(lines.begin(), lines.begin() + 2);
        EXPECT_STREQ(server->service_handle, "T") << "a failed call leaves the handle as it was";
        return {status, lines};
    }

    static LogLine return_code(int code)
    {
        return record("stspi_close_server: SOAP return code = " + std::to_string(code));
    }
};

} // namespace

TEST_F(Frame, ReturnsTheStatusInTheDetailOfAClientFault)
{
    const Outcome outcome = outcome_of(fault_answer(fault(2060013)));
    EXPECT_EQ(outcome.status, 2060013);
    EXPECT_THAT(outcome.lines,
                ElementsAre(return_code(1), failure(rendered("SOAP-ENV:Client", "it went wrong", "") +
                                                    "HANDLE_SOAP_FAULT: 2060013")));
}

TEST_F(Frame, ReturnsTheStatusInTheDetailOfAFaultOfAnyOtherCode)
{
    const Outcome outcome = outcome_of(fault_answer(fault(2060013, "Custom")));
    EXPECT_EQ(outcome.status, 2060013);
    EXPECT_THAT(outcome.lines,
                ElementsAre(return_code(12), failure(rendered("\"\":Custom", "it went wrong", "") +
                                                     "HANDLE_SOAP_FAULT: 2060013")));
}

TEST_F(Frame, DoesntLookAtTheDetailOfAServerFault)
{
    const Outcome outcome = outcome_of(fault_answer(fault(2060013, "SOAP-ENV:Server")));
    EXPECT_EQ(outcome.status, 2060017);
    EXPECT_THAT(outcome.lines,
                ElementsAre(return_code(2), failure(rendered("SOAP-ENV:Server", "it went wrong", ""))));
}

TEST_F(Frame, DoesntLookAtTheDetailOfTheRuntimesOtherFaultCodes)
{
    const Outcome outcome = outcome_of(fault_answer(fault(2060013, "SOAP-ENV:MustUnderstand")));
    EXPECT_EQ(outcome.status, 2060017);
    EXPECT_THAT(outcome.lines, ElementsAre(return_code(8), failure(rendered("SOAP-ENV:MustUnderstand",
                                                                            "it went wrong", ""))));
}

TEST_F(Frame, HandsOverAnyNumberThatTheServiceMakesUp)
{
    for (const int code : {1, -1, 7, 2060017, 2060021, 2060046, std::numeric_limits<int>::max(),
                           std::numeric_limits<int>::min()}) {
        const Outcome outcome = outcome_of(fault_answer(fault(code)));
        EXPECT_EQ(outcome.status, code);
        EXPECT_THAT(outcome.lines, ElementsAre(return_code(1), failure(rendered_fault(code))));
    }
}

TEST_F(Frame, Returns0ForAFaultThatBears0AndLogsItAsAFailure)
{
    const Outcome outcome = outcome_of(fault_answer(fault(0)));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.lines, ElementsAre(return_code(1), failure(rendered_fault(0))));
}

TEST_F(Frame, ReadsAFaultUnderHttp200Too)
{
    EXPECT_EQ(outcome_of(answer(fault(2060005))).status, 2060005);
}

TEST_F(Frame, Returns2060021ForAFaultWithoutADetail)
{
    const Outcome outcome = outcome_of(fault_answer(fault_with_detail("")));
    EXPECT_EQ(outcome.status, 2060021);
    EXPECT_THAT(outcome.lines, ElementsAre(return_code(1), failure(rendered("SOAP-ENV:Client",
                                                                            "it went wrong", "[no detail]") +
                                                                   "HANDLE_SOAP_FAULT: 2060021")));
}

TEST_F(Frame, Returns2060021ForADetailWithoutAStatus)
{
    const Outcome outcome = outcome_of(fault_answer(fault_with_detail("<other>5</other>", "Custom")));
    EXPECT_EQ(outcome.status, 2060021);
    EXPECT_THAT(outcome.lines, ElementsAre(return_code(12), failure(rendered("\"\":Custom", "it went wrong",
                                                                             "<other>5</other>") +
                                                                    "HANDLE_SOAP_FAULT: 2060021")));
    EXPECT_EQ(outcome_of(fault_answer(fault_with_detail(" "))).status, 2060021);
    EXPECT_EQ(outcome_of(fault_answer(fault_with_detail(nil("STSException")))).status, 2060021);
    EXPECT_EQ(
        outcome_of(fault_answer(fault_with_detail("<STSException><errorCode>5</errorCode></STSException>")))
            .status,
        2060021)
        << "an element of another namespace is another element";
}

TEST_F(Frame, FindsTheStatusBesideOtherDetails)
{
    const std::string exception = element("STSException", element("errorCode", "2060012"));
    EXPECT_EQ(outcome_of(fault_answer(fault_with_detail("<other>5</other>" + exception))).status, 2060012);
    EXPECT_EQ(outcome_of(fault_answer(fault_with_detail(exception + "<other>5</other>"))).status, 2060012);
    EXPECT_EQ(outcome_of(fault_answer(fault_with_detail(
                             element("STSException", "<other/>" + element("errorCode", "2060012")))))
                  .status,
              2060012);
}

TEST_F(Frame, TakesAnExceptionWithoutACodeFor0)
{
    EXPECT_EQ(outcome_of(fault_answer(fault_with_detail(element("STSException")))).status, 0);
}

TEST_F(Frame, Returns2060017ForACodeThatIsNoNumber)
{
    for (const char* code : {"abc", "99999999999", "1.5", "5x"}) {
        const Outcome outcome =
            outcome_of(fault_answer(fault_with_detail(element("STSException", element("errorCode", code)))));
        EXPECT_EQ(outcome.status, 2060017) << code;
    }
}

TEST_F(Frame, RendersFaultTextsAsTheyCome)
{
    const std::string text = "umlaut \xc3\xbc, &amp; and \xe2\x82\xac";
    const Outcome outcome = outcome_of(fault_answer(fault(5, "SOAP-ENV:Client", text)));
    EXPECT_THAT(outcome.lines.back().text,
                testing::StartsWith("SOAP 1.1 fault SOAP-ENV:Client[no subcode]\n\"umlaut "));
    EXPECT_THAT(outcome.lines.back().text, testing::EndsWith("\nDetail: \nHANDLE_SOAP_FAULT: 5"));
    EXPECT_EQ(outcome.lines.back().level, 4);
}

TEST_F(Frame, ReadsAReplyInTheNewerEnvelope)
{
    const std::string soap12 = "<e:Envelope xmlns:e=\"http://www.w3.org/2003/05/soap-envelope\" "
                               "xmlns:ns1=\"" SOAPWRAPPER_SERVICE_NAMESPACE "\"><e:Body>" +
                               element("closeServerResponse") + "</e:Body></e:Envelope>";
    service_.script(answer(soap12));
    ServerHandle server = make_server(session_, service_.url());
    EXPECT_EQ(close_server()(server.release()), 0);
}

TEST_F(Frame, Returns2060017ForATransportError)
{
    const DeadPort port;
    const ServerHandle server = make_server(session_, port.url());
    EXPECT_EQ(close_server()(server.get()), 2060017);
    EXPECT_THAT(session_.lines(),
                ElementsAre(record("stspi_close_server: enter"),
                            record("stspi_close_server: soap_endpoint = " + port.url()), return_code(28),
                            failure(rendered("SOAP-ENV:Server", "Connection refused",
                                             "connect failed in tcp_connect()"))));
}

TEST_F(Frame, Returns2060017ForAnHttpError)
{
    const Outcome outcome = outcome_of({Answer::Manner::kReply, http_message("<p>no</p>", 404, "Not Found")});
    EXPECT_EQ(outcome.status, 2060017);
    EXPECT_THAT(outcome.lines,
                ElementsAre(return_code(404), failure("Error 404 fault detected[no subcode]\n\"HTTP Error\"\n"
                                                      "Detail: <p>no</p>\n")));
}

TEST_F(Frame, Returns2060017ForAReplyOfAnotherOperation)
{
    const Outcome outcome = outcome_of(answer(reply("openServerResponse")));
    EXPECT_EQ(outcome.status, 2060017);
    EXPECT_EQ(outcome.lines.back().level, 4);
}

TEST_F(Frame, Returns2060017ForAReplyOfAnotherNamespace)
{
    const Outcome outcome = outcome_of(answer(envelope("<x:closeServerResponse xmlns:x=\"urn:another\"/>")));
    EXPECT_EQ(outcome.status, 2060017);
}

TEST_F(Frame, SendsSoap11WithAnEmptyAction)
{
    outcome_of(fault_answer(fault(1)));
    const std::string head = service_.requests().at(0).head;
    EXPECT_THAT(head, HasSubstr("POST / HTTP/1.1\r\n"));
    EXPECT_THAT(head, HasSubstr("\r\nContent-Type: text/xml; charset=utf-8\r\n"));
    EXPECT_THAT(head, HasSubstr("\r\nSOAPAction: \"\"\r\n"));
    EXPECT_THAT(head, HasSubstr("\r\nConnection: close\r\n"));
}

TEST_F(Frame, MakesAConnectionOfItsOwnForEachCall)
{
    outcome_of(fault_answer(fault(1)));
    outcome_of(fault_answer(fault(1)));
    EXPECT_EQ(service_.connections(), 2U);
}
