// The frame around a request: HTTP header and SOAP envelope, to the letter.
#include "canned_service.h"
#include "registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace schema
{

namespace
{

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Proxy = PSVWSSoapBindingProxy;

const char* const kUrl = "http://storage.example:8085/deep/er/service?x=1";

const std::string kEnvelopeBegin =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\""
    " xmlns:SOAP-ENC=\"http://schemas.xmlsoap.org/soap/encoding/\""
    " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
    " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\""
    " xmlns:ns1=\"" SERVICE_NAMESPACE "\"><SOAP-ENV:Body>";
const std::string kEnvelopeEnd = "</SOAP-ENV:Body></SOAP-ENV:Envelope>\r\n";

TEST(Envelope, IsSoap11WithNothingButTheRequestInItsBody)
{
    Proxy proxy(kUrl);
    CannedService service(proxy);
    _ns1__closeServer request;
    ASSERT_EQ(proxy.send_closeServer(nullptr, nullptr, &request), SOAP_OK);
    EXPECT_EQ(service.sent_body(),
              kEnvelopeBegin + "<ns1:closeServer><ns1:serverHandle xsi:nil=\"true\"/></ns1:closeServer>" +
                  kEnvelopeEnd);
}

TEST(Envelope, IsTheSameForEachOfTheOperations)
{
    for (const OperationEntry& operation : operation_entries()) {
        SCOPED_TRACE(operation.name);
        Proxy proxy(kUrl);
        CannedService service(proxy);
        const auto request = operation.make_request();
        ASSERT_EQ(operation.send(proxy, *request), SOAP_OK);
        EXPECT_EQ(service.sent_body(), kEnvelopeBegin + service.sent_content() + kEnvelopeEnd);
        EXPECT_THAT(service.sent_content(), StartsWith("<ns1:" + operation.name + ">"));
    }
}

TEST(Envelope, GoesOutAsAPostWithAnEmptySoapAction)
{
    for (const OperationEntry& operation : operation_entries()) {
        SCOPED_TRACE(operation.name);
        Proxy proxy(kUrl);
        CannedService service(proxy);
        const auto request = operation.make_request();
        ASSERT_EQ(operation.send(proxy, *request), SOAP_OK);
        EXPECT_THAT(service.sent_header(), StartsWith("POST /deep/er/service?x=1 HTTP/1.1\r\n"));
        EXPECT_THAT(service.sent_header(), HasSubstr("\r\nHost: storage.example:8085\r\n"));
        EXPECT_THAT(service.sent_header(), HasSubstr("\r\nContent-Type: text/xml; charset=utf-8\r\n"));
        EXPECT_THAT(service.sent_header(), HasSubstr("\r\nSOAPAction: \"\"\r\n"));
        EXPECT_THAT(service.sent_header(), HasSubstr("\r\nConnection: close\r\n"));
        EXPECT_THAT(service.sent_header(),
                    HasSubstr("\r\nContent-Length: " + std::to_string(service.sent_body().size()) + "\r\n"));
    }
}

TEST(Envelope, CarriesAnActionOnlyWhenTheCallerNamesOne)
{
    Proxy proxy(kUrl);
    CannedService service(proxy);
    _ns1__closeServer request;
    ASSERT_EQ(proxy.send_closeServer(nullptr, "urn:close", &request), SOAP_OK);
    EXPECT_THAT(service.sent_header(), HasSubstr("\r\nSOAPAction: \"urn:close\"\r\n"));
}

TEST(Envelope, GetsAHeaderOnlyWhenTheContextHoldsOne)
{
    Proxy proxy(kUrl);
    CannedService service(proxy);
    _ns1__closeServer request;
    SOAP_ENV__Header header;
    proxy.header = &header;
    ASSERT_EQ(proxy.send_closeServer(nullptr, nullptr, &request), SOAP_OK);
    EXPECT_THAT(service.sent_body(), HasSubstr("<SOAP-ENV:Header></SOAP-ENV:Header><SOAP-ENV:Body>"));

    proxy.soap_noheader();
    ASSERT_EQ(proxy.send_closeServer(nullptr, nullptr, &request), SOAP_OK);
    EXPECT_THAT(service.sent_body(), Not(HasSubstr("Header")));
}

TEST(Envelope, ForgetsTheEncodingStyleOfAnEarlierUse)
{
    Proxy proxy(kUrl);
    CannedService service(proxy);
    proxy.encodingStyle = "http://schemas.xmlsoap.org/soap/encoding/";
    _ns1__closeServer request;
    ASSERT_EQ(proxy.send_closeServer(nullptr, nullptr, &request), SOAP_OK);
    EXPECT_THAT(service.sent_body(), Not(HasSubstr("encodingStyle")));
}

TEST(Envelope, ReturnsToSoap11AfterASoap12Reply)
{
    Proxy proxy(kUrl);
    CannedService service(proxy);
    service.reply("200 OK", CannedService::envelope("<ns1:closeServerResponse/>", kSoap12Envelope));
    _ns1__closeServer request;
    _ns1__closeServerResponse response;
    ASSERT_EQ(proxy.closeServer(&request, response), SOAP_OK);
    ASSERT_EQ(proxy.send_closeServer(nullptr, nullptr, &request), SOAP_OK);
    EXPECT_THAT(service.sent_body(), StartsWith(kEnvelopeBegin));
}

} // namespace

} // namespace schema
