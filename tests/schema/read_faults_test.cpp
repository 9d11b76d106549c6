// Faults of the service, and where their detail is found.
#include "canned_service.h"
#include "registry.h"

#include <gtest/gtest.h>

namespace schema
{

namespace
{

using Proxy = PSVWSSoapBindingProxy;

const char* const kUrl = "http://storage.example:8085/service";

std::string fault(const std::string& detail, const std::string& code = "E:Server")
{
    return "<E:Fault><faultcode>" + code + "</faultcode><faultstring>out of order</faultstring><detail>" +
           detail + "</detail></E:Fault>";
}

std::string sts_exception(const std::string& code)
{
    return "<ns1:STSException><ns1:errorCode>" + code + "</ns1:errorCode></ns1:STSException>";
}

// One call of deleteSnap, answered with a fault.
struct FailingCall {
    Proxy proxy{kUrl};
    CannedService service{proxy};

    int with_fault(const std::string& content)
    {
        _ns1__deleteSnap request;
        _ns1__deleteSnapResponse response;
        service.fault_body(content);
        return proxy.deleteSnap(&request, response);
    }
    const ns1__STSException* exception() const
    {
        return proxy.fault && proxy.fault->detail ? proxy.fault->detail->ns1__STSException_ : nullptr;
    }
};

TEST(ReadFaults, EachOperationFindsTheErrorCodeInTheFaultsDetail)
{
    int code = 2060000;
    for (const OperationEntry& operation : operation_entries()) {
        SCOPED_TRACE(operation.name);
        Proxy proxy(kUrl);
        CannedService service(proxy);
        service.fault_body(fault(sts_exception(std::to_string(++code))));
        const auto response = operation.make_response();
        EXPECT_EQ(operation.call(proxy, *operation.make_request(), *response), SOAP_FAULT);
        response->expect_default();
        ASSERT_NE(proxy.soap_fault(), nullptr);
        ASSERT_NE(proxy.fault->detail, nullptr);
        ASSERT_NE(proxy.fault->detail->ns1__STSException_, nullptr);
        EXPECT_EQ(proxy.fault->detail->ns1__STSException_->errorCode, code);
        EXPECT_STREQ(proxy.fault->faultstring, "out of order");
        EXPECT_STREQ(proxy.soap_fault_string(), "out of order");
        EXPECT_EQ(service.closed(), 1);
    }
}

TEST(ReadFaults, AFaultIsSeenUnderAnyHttpStatus)
{
    for (const char* status : {"200 OK", "400 Bad Request", "500 Internal Server Error"}) {
        SCOPED_TRACE(status);
        Proxy proxy(kUrl);
        CannedService service(proxy);
        service.reply(status, CannedService::envelope(fault(sts_exception("5"))));
        _ns1__deleteSnap request;
        _ns1__deleteSnapResponse response;
        EXPECT_EQ(proxy.deleteSnap(&request, response), SOAP_FAULT);
        ASSERT_NE(proxy.fault->detail->ns1__STSException_, nullptr);
        EXPECT_EQ(proxy.fault->detail->ns1__STSException_->errorCode, 5);
    }
}

TEST(ReadFaults, TheFaultsOwnCodeMakesNoDifference)
{
    for (const char* code : {"E:Server", "E:Client", "ns1:STSException", "Whatever"}) {
        SCOPED_TRACE(code);
        FailingCall call;
        EXPECT_EQ(call.with_fault(fault(sts_exception("-1"), code)), SOAP_FAULT);
        ASSERT_NE(call.exception(), nullptr);
        EXPECT_EQ(call.exception()->errorCode, -1);
    }
}

TEST(ReadFaults, AnExceptionAmongUnknownElementsIsFound)
{
    FailingCall call;
    EXPECT_EQ(call.with_fault(fault("<other xmlns=\"urn:other\">text</other>" + sts_exception("8"))),
              SOAP_FAULT);
    ASSERT_NE(call.exception(), nullptr);
    EXPECT_EQ(call.exception()->errorCode, 8);
}

TEST(ReadFaults, TheFirstOfTwoExceptionsCounts)
{
    FailingCall call;
    EXPECT_EQ(call.with_fault(fault(sts_exception("8") + sts_exception("9"))), SOAP_FAULT);
    ASSERT_NE(call.exception(), nullptr);
    EXPECT_EQ(call.exception()->errorCode, 8);
}

TEST(ReadFaults, AnExceptionWithoutCodeHasTheCodeZero)
{
    FailingCall call;
    EXPECT_EQ(call.with_fault(fault("<ns1:STSException/>")), SOAP_FAULT);
    ASSERT_NE(call.exception(), nullptr);
    EXPECT_EQ(call.exception()->errorCode, 0);
}

TEST(ReadFaults, AnUnknownDetailIsKeptAsRawText)
{
    FailingCall call;
    EXPECT_EQ(call.with_fault(fault("<other xmlns=\"urn:other\">text</other>")), SOAP_FAULT);
    EXPECT_EQ(call.exception(), nullptr);
    EXPECT_STREQ(call.proxy.soap_fault_detail(), "<other xmlns=\"urn:other\">text</other>");
}

TEST(ReadFaults, AFaultWithoutDetailHasNoException)
{
    FailingCall call;
    EXPECT_EQ(
        call.with_fault("<E:Fault><faultcode>E:Server</faultcode><faultstring>why</faultstring></E:Fault>"),
        SOAP_FAULT);
    ASSERT_NE(call.proxy.fault, nullptr);
    EXPECT_EQ(call.exception(), nullptr);
}

TEST(ReadFaults, AnExceptionOfAnotherNamespaceIsNone)
{
    FailingCall call;
    EXPECT_EQ(call.with_fault(fault("<x:STSException xmlns:x=\"urn:other\"><x:errorCode>8</x:errorCode>"
                                    "</x:STSException>")),
              SOAP_FAULT);
    EXPECT_EQ(call.exception(), nullptr);
}

TEST(ReadFaults, AFaultDoesNotStayForTheNextCall)
{
    FailingCall call;
    ASSERT_EQ(call.with_fault(fault(sts_exception("8"))), SOAP_FAULT);
    call.service.reply_body("<ns1:deleteSnapResponse/>");
    _ns1__deleteSnap request;
    _ns1__deleteSnapResponse response;
    EXPECT_EQ(call.proxy.deleteSnap(&request, response), SOAP_OK);
    EXPECT_EQ(call.proxy.soap_fault(), nullptr);
}

// The 1.1 member stays empty: only a fault of SOAP 1.1 gives its code to the callers.
TEST(ReadFaults, ASoap12FaultHasItsTextsAndItsDetailInTheSoap12Members)
{
    Proxy proxy(kUrl);
    CannedService service(proxy);
    service.reply("500 Internal Server Error",
                  CannedService::envelope("<E:Fault><E:Code><E:Value>E:Receiver</E:Value><E:Subcode>"
                                          "<E:Value>ns1:sub</E:Value></E:Subcode></E:Code><E:Reason>"
                                          "<E:Text xml:lang=\"en\">why</E:Text></E:Reason><E:Detail>" +
                                              sts_exception("5") + "</E:Detail></E:Fault>",
                                          kSoap12Envelope));
    _ns1__deleteSnap request;
    _ns1__deleteSnapResponse response;
    EXPECT_EQ(proxy.deleteSnap(&request, response), SOAP_FAULT);
    ASSERT_NE(proxy.fault, nullptr);
    EXPECT_STREQ(proxy.soap_fault_string(), "why");
    EXPECT_STREQ(proxy.soap_fault_subcode(), "ns1:sub");
    EXPECT_EQ(proxy.fault->detail, nullptr);
    ASSERT_NE(proxy.fault->SOAP_ENV__Detail, nullptr);
    ASSERT_NE(proxy.fault->SOAP_ENV__Detail->ns1__STSException_, nullptr);
    EXPECT_EQ(proxy.fault->SOAP_ENV__Detail->ns1__STSException_->errorCode, 5);
}

} // namespace

} // namespace schema
