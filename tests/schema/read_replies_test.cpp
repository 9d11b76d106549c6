// Replies, from the HTTP message to the members of the response.
#include "canned_service.h"
#include "registry.h"

#include <gtest/gtest.h>

#include <limits>

namespace schema
{

namespace
{

using Proxy = PSVWSSoapBindingProxy;

const char* const kUrl = "http://storage.example:8085/service";

// One call of getServerProp, answered with a text.
struct ServerPropCall {
    Proxy proxy{kUrl};
    CannedService service{proxy};
    _ns1__getServerPropResponse response;

    int with_reply(const std::string& status, const std::string& body)
    {
        _ns1__getServerProp request;
        service.reply(status, body);
        return proxy.getServerProp(&request, response);
    }
    int with_body(const std::string& content)
    {
        return with_reply("200 OK", CannedService::envelope(content));
    }
    int with_info(const std::string& content)
    {
        return with_body("<ns1:getServerPropResponse><ns1:info>" + content +
                         "</ns1:info></ns1:getServerPropResponse>");
    }
};

TEST(ReadReplies, EachFilledResponseIsReadInFull)
{
    for (const OperationEntry& operation : operation_entries()) {
        SCOPED_TRACE(operation.name);
        for (int round = 1; round <= 8; ++round) {
            Filler filler(operation.response_name, round);
            operation.make_response()->fill(filler);
            Proxy proxy;
            CannedService service(proxy);
            service.reply_body(rendered(filler.node()));
            const auto response = operation.make_response();
            ASSERT_EQ(operation.call_endpoint(proxy, kUrl, *operation.make_request(), *response), SOAP_OK);
            response->expect_filled(round);
            EXPECT_EQ(service.closed(), 1);
        }
    }
}

TEST(ReadReplies, EachEmptyResponseLeavesNothingOfAnEarlierOne)
{
    for (const OperationEntry& operation : operation_entries()) {
        SCOPED_TRACE(operation.name);
        Proxy proxy(kUrl);
        CannedService service(proxy);
        service.reply_body("<ns1:" + operation.response_name + "/>");
        Filler stale("any", 1);
        const auto response = operation.make_response();
        response->fill(stale);
        ASSERT_EQ(operation.send(proxy, *operation.make_request()), SOAP_OK);
        ASSERT_EQ(operation.receive(proxy, *response), SOAP_OK);
        response->expect_default();
        EXPECT_EQ(response->maker(), &proxy);
    }
}

TEST(ReadReplies, OpenSnapListByVolumeIsAnsweredByTheResponseOfOpenSnapList)
{
    Proxy proxy(kUrl);
    CannedService service(proxy);
    service.reply_body("<ns1:openSnapListResponse><ns1:snapListHandle><ns1:token>list 7</ns1:token>"
                       "</ns1:snapListHandle></ns1:openSnapListResponse>");
    _ns1__openSnapListByVolume request;
    _ns1__openSnapListResponse response;
    ASSERT_EQ(proxy.openSnapListByVolume(&request, response), SOAP_OK);
    ASSERT_NE(response.snapListHandle, nullptr);
    EXPECT_EQ(*response.snapListHandle->token, "list 7");

    service.reply_body("<ns1:openSnapListByVolumeResponse/>");
    EXPECT_NE(proxy.openSnapListByVolume(&request, response), SOAP_OK);
}

TEST(ReadReplies, AServersPropertiesInFull)
{
    ServerPropCall call;
    ASSERT_EQ(call.with_info("<ns1:server>storage-1</ns1:server>"
                             "<ns1:sth><ns1:item>disk</ns1:item><ns1:item></ns1:item></ns1:sth>"
                             "<ns1:flags>-1</ns1:flags><ns1:maxconnect>64</ns1:maxconnect>"
                             "<ns1:nconnect>3</ns1:nconnect>"
                             "<ns1:cap><ns1:item>5</ns1:item><ns1:item>-7</ns1:item></ns1:cap>"
                             "<ns1:requiredInterface/><ns1:cred><ns1:item>1</ns1:item></ns1:cred>"
                             "<ns1:ndmpHost xsi:nil=\"true\"/>"),
              SOAP_OK);
    const ns1__ServerInformation& info = *call.response.info;
    EXPECT_EQ(*info.server, "storage-1");
    EXPECT_EQ(info.sth->item, (std::vector<std::string>{"disk", ""}));
    EXPECT_EQ(info.flags, -1);
    EXPECT_EQ(info.maxconnect, 64);
    EXPECT_EQ(info.nconnect, 3);
    EXPECT_EQ(info.cap->item, (std::vector<int>{5, -7}));
    ASSERT_NE(info.requiredInterface, nullptr);
    EXPECT_TRUE(info.requiredInterface->item.empty());
    EXPECT_EQ(info.cred->item, std::vector<int>{1});
    EXPECT_EQ(info.ndmpHost, nullptr);
}

TEST(ReadReplies, AFileListInFullWithItsNumbersAheadOfItsFiles)
{
    Proxy proxy(kUrl);
    CannedService service(proxy);
    service.reply_body(
        "<ns1:listFileResponse><ns1:retryInterval>30</ns1:retryInterval><ns1:error>0</ns1:error>"
        "<ns1:numFiles>2</ns1:numFiles><ns1:fileAttrList>"
        "<ns1:item><ns1:name>/vol/a</ns1:name><ns1:ftype>1</ns1:ftype>"
        "<ns1:size>9223372036854775807</ns1:size><ns1:permissions>-9223372036854775808"
        "</ns1:permissions><ns1:gnum>0</ns1:gnum></ns1:item>"
        "<ns1:item><ns1:size xsi:nil=\"true\"/></ns1:item>"
        "</ns1:fileAttrList></ns1:listFileResponse>");
    _ns1__listFile request;
    _ns1__listFileResponse response;
    ASSERT_EQ(proxy.listFile(&request, response), SOAP_OK);
    EXPECT_EQ(response.numFiles, 2);
    EXPECT_EQ(response.retryInterval, 30);
    ASSERT_EQ(response.fileAttrList->item.size(), 2U);
    const ns1__FileAttr& first = *response.fileAttrList->item[0];
    EXPECT_EQ(first.name, "/vol/a");
    EXPECT_EQ(*first.ftype, 1);
    EXPECT_EQ(*first.size, std::numeric_limits<LONG64>::max());
    EXPECT_EQ(*first.permissions, std::numeric_limits<LONG64>::min());
    ASSERT_NE(first.gnum, nullptr) << "a zero that was sent is not a missing value";
    EXPECT_EQ(*first.gnum, 0);
    EXPECT_EQ(first.modtime, nullptr);
    EXPECT_EQ(response.fileAttrList->item[1]->size, nullptr);
}

TEST(ReadReplies, TheFirstOfTwoChoicesOfAVolumeIsKept)
{
    Proxy proxy(kUrl);
    CannedService service(proxy);
    service.reply_body("<ns1:addExportResponse><ns1:exportedVolume><ns1:volumeType>1</ns1:volumeType>"
                       "<ns1:cifs><ns1:shareName>share</ns1:shareName></ns1:cifs>"
                       "<ns1:nfs><ns1:exportName>name</ns1:exportName></ns1:nfs>"
                       "<ns1:cifs><ns1:shareName>other</ns1:shareName></ns1:cifs>"
                       "</ns1:exportedVolume></ns1:addExportResponse>");
    _ns1__addExport request;
    _ns1__addExportResponse response;
    ASSERT_EQ(proxy.addExport(&request, response), SOAP_OK);
    const ns1__VolumeSpecification& volume = *response.exportedVolume;
    ASSERT_EQ(volume.__union_VolumeSpecification, 2);
    EXPECT_EQ(volume.union_VolumeSpecification.cifs->shareName, "share");
    EXPECT_EQ(volume.volumeType, 1);
}

TEST(ReadReplies, AnEventsEmptyOrUnknownPayloadMakesNoChoiceAndHarmsNothing)
{
    for (const char* payload : {"<ns1:body/>", "<ns1:body></ns1:body>", "<ns1:body> </ns1:body>",
                                "<ns1:body><ns1:unheardOf><ns1:op/></ns1:unheardOf></ns1:body>"}) {
        SCOPED_TRACE(payload);
        Proxy proxy(kUrl);
        CannedService service(proxy);
        service.reply_body("<ns1:getEventResponse><ns1:event><ns1:seqno>1</ns1:seqno>" +
                           std::string(payload) +
                           "<ns1:server>s</ns1:server></ns1:event></ns1:getEventResponse>");
        _ns1__getEvent request;
        _ns1__getEventResponse response;
        ASSERT_EQ(proxy.getEvent(&request, response), SOAP_OK);
        ASSERT_NE(response.event->body, nullptr);
        EXPECT_EQ(response.event->body->__union_EventBody, 0);
        EXPECT_EQ(response.event->server, "s");
    }
}

TEST(ReadReplies, ADifferenceWithoutEntriesHasAnEmptyOrANilList)
{
    for (const char* list : {"<ns1:diffObjectList/>", "<ns1:diffObjectList xsi:nil=\"true\"/>", ""}) {
        SCOPED_TRACE(list);
        Proxy proxy(kUrl);
        CannedService service(proxy);
        service.reply_body(
            "<ns1:asyncWaitSnapResponse><ns1:result><ns1:getSnapDiff><ns1:numDiffs>0</ns1:numDiffs>" +
            std::string(list) + "</ns1:getSnapDiff></ns1:result></ns1:asyncWaitSnapResponse>");
        _ns1__asyncWaitSnap request;
        _ns1__asyncWaitSnapResponse response;
        ASSERT_EQ(proxy.asyncWaitSnap(&request, response), SOAP_OK);
        ASSERT_EQ(response.result->__union_AIOResultSnap, 6);
        const auto* entries = response.result->union_AIOResultSnap.getSnapDiff->diffObjectList;
        EXPECT_TRUE(!entries || entries->item.empty());
        EXPECT_EQ(entries != nullptr, std::string(list) == "<ns1:diffObjectList/>");
    }
}

TEST(ReadReplies, AListHasNoBound)
{
    std::string items;
    for (int i = 0; i < 20000; ++i) items += "<ns1:item>" + std::to_string(i) + "</ns1:item>";
    ServerPropCall call;
    ASSERT_EQ(call.with_info("<ns1:cap>" + items + "</ns1:cap>"), SOAP_OK);
    ASSERT_EQ(call.response.info->cap->item.size(), 20000U);
    EXPECT_EQ(call.response.info->cap->item.back(), 19999);
}

TEST(ReadReplies, BytesOfAnyValueAreReadAndWhiteSpaceBetweenThemSkipped)
{
    Proxy proxy(kUrl);
    CannedService service(proxy);
    service.reply_body("<ns1:readImageMetaResponse><ns1:readResult><ns1:bytesread>4</ns1:bytesread>"
                       "<ns1:buf> AP+\n/ AA== </ns1:buf></ns1:readResult></ns1:readImageMetaResponse>");
    _ns1__readImageMeta request;
    _ns1__readImageMetaResponse response;
    ASSERT_EQ(proxy.readImageMeta(&request, response), SOAP_OK);
    EXPECT_EQ(held_bytes(*response.readResult->buf), std::string("\0\xff\xbf\0", 4));
}

TEST(ReadReplies, NumbersThatDoNotFitOrAreNoneAreRefused)
{
    for (const char* number : {"2147483648", "-2147483649", "abc", "1x", "1.5", "0x10"}) {
        ServerPropCall call;
        EXPECT_EQ(call.with_info(element("flags", number)), SOAP_TYPE) << number;
    }
    ServerPropCall empty;
    EXPECT_EQ(empty.with_info(element("flags", "")), SOAP_EMPTY);
    ServerPropCall fits;
    ASSERT_EQ(fits.with_info(element("flags", " -2147483648 ") + element("nconnect", "+2147483647")),
              SOAP_OK);
    EXPECT_EQ(fits.response.info->flags, std::numeric_limits<int>::min());
    EXPECT_EQ(fits.response.info->nconnect, std::numeric_limits<int>::max());
}

// The context is in mode 0: a character up to 255 is the byte of that number.
TEST(ReadReplies, ACharacterUpTo255IsTheByteOfThatNumber)
{
    ServerPropCall call;
    ASSERT_EQ(call.with_info(element("server", "caf\xc3\xa9 &#xFF; &lt;&amp;&quot;&apos;&gt;<![CDATA[<&]]>")),
              SOAP_OK);
    EXPECT_EQ(*call.response.info->server, "caf\xe9 \xff <&\"'><&");
}

TEST(ReadReplies, WhiteSpaceInATextIsKept)
{
    ServerPropCall call;
    ASSERT_EQ(call.with_info(element("server", "  two  words\n")), SOAP_OK);
    EXPECT_EQ(*call.response.info->server, "  two  words\n");
}

TEST(ReadReplies, ASoap12EnvelopeIsAccepted)
{
    for (const OperationEntry& operation : operation_entries()) {
        SCOPED_TRACE(operation.name);
        Filler filler(operation.response_name, 1);
        operation.make_response()->fill(filler);
        Proxy proxy(kUrl);
        CannedService service(proxy);
        service.reply("200 OK", CannedService::envelope(rendered(filler.node()), kSoap12Envelope));
        const auto response = operation.make_response();
        ASSERT_EQ(operation.call(proxy, *operation.make_request(), *response), SOAP_OK);
        response->expect_filled(1);
    }
}

TEST(ReadReplies, AnEnvelopeOfAnotherNamespaceIsRefused)
{
    ServerPropCall call;
    EXPECT_NE(call.with_reply("200 OK", CannedService::envelope("<ns1:getServerPropResponse/>", "urn:other")),
              SOAP_OK);
}

TEST(ReadReplies, AHeaderOfTheServiceIsSkipped)
{
    std::string envelope =
        CannedService::envelope("<ns1:getServerPropResponse><ns1:info/></ns1:getServerPropResponse>");
    envelope.insert(envelope.find("<E:Body>"),
                    "<E:Header><any:thing xmlns:any=\"urn:x\">x</any:thing></E:Header>");
    ServerPropCall call;
    ASSERT_EQ(call.with_reply("200 OK", envelope), SOAP_OK);
    EXPECT_NE(call.response.info, nullptr);
}

TEST(ReadReplies, AnotherPrefixOrNoneForTheServiceNamespaceIsAccepted)
{
    const std::string uri = std::string("\"") + kServiceNamespace + "\"";
    ServerPropCall other;
    ASSERT_EQ(other.with_body("<x:getServerPropResponse xmlns:x=" + uri +
                              "><x:info><x:flags>3</x:flags></x:info>"
                              "</x:getServerPropResponse>"),
              SOAP_OK);
    EXPECT_EQ(other.response.info->flags, 3);

    ServerPropCall none;
    ASSERT_EQ(none.with_body("<getServerPropResponse xmlns=" + uri +
                             "><info><flags>3</flags></info>"
                             "</getServerPropResponse>"),
              SOAP_OK);
    EXPECT_EQ(none.response.info->flags, 3);
}

TEST(ReadReplies, TheResponseOfAnotherOperationOrNamespaceIsRefusedWithoutAServiceFault)
{
    for (const char* wrong :
         {"<ns1:closeServerResponse/>", "<ns1:getServerProp/>", "<getServerPropResponse/>",
          "<ns1:getServerPropResponse xmlns:ns1=\"urn:other\"/>"}) {
        SCOPED_TRACE(wrong);
        ServerPropCall call;
        const int result = call.with_body(wrong);
        EXPECT_NE(result, SOAP_OK);
        EXPECT_NE(result, SOAP_FAULT);
        EXPECT_NE(result, SOAP_CLI_FAULT);
        EXPECT_EQ(call.response.info, nullptr);
        EXPECT_EQ(call.service.closed(), 1);
    }
}

TEST(ReadReplies, AnEmptyBodyIsAnEmptyResponse)
{
    ServerPropCall call;
    EXPECT_EQ(call.with_body(""), SOAP_OK);
    EXPECT_EQ(call.response.info, nullptr);
}

} // namespace

} // namespace schema
