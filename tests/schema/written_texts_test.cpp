// Requests spelled out in full, and the corners of each form: choices, lists, bytes, numbers, characters.
#include "canned_service.h"
#include "xml_node.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace schema
{

namespace
{

using Proxy = PSVWSSoapBindingProxy;

template <class Request>
std::string content_sent(int (Proxy::*send)(const char*, const char*, Request*), Request& request)
{
    Proxy proxy;
    CannedService service(proxy);
    EXPECT_EQ((proxy.*send)(nullptr, nullptr, &request), SOAP_OK);
    return service.sent_content();
}

std::string volume_sent(ns1__VolumeSpecification& volume)
{
    _ns1__claimVolume request;
    request.volume = &volume;
    const std::string text = content_sent(&Proxy::send_claimVolume, request);
    const std::string begin = "<ns1:claimVolume><ns1:serverHandle xsi:nil=\"true\"/>";
    const std::string end = "</ns1:claimVolume>";
    EXPECT_EQ(text.substr(0, begin.size()), begin);
    return text.substr(begin.size(), text.size() - begin.size() - end.size());
}

std::string lsu_name_sent(const std::string& name)
{
    ns1__LSU lsu;
    lsu.lsuName = name;
    _ns1__openSnapList request;
    request.lsu = &lsu;
    const std::string text = content_sent(&Proxy::send_openSnapList, request);
    const std::string begin = "<ns1:openSnapList><ns1:lsu><ns1:serverHandle xsi:nil=\"true\"/>";
    const std::string end = "</ns1:lsu></ns1:openSnapList>";
    return text.substr(begin.size(), text.size() - begin.size() - end.size());
}

TEST(WrittenTexts, OpenServerInFull)
{
    std::string proxy_text = "host";
    ns1__SessionDefinition session;
    session.proxy = &proxy_text;
    session.flags = -2;
    unsigned char cert[] = {'s', 'e', 'c', 'r', 'e', 't'};
    xsd__base64Binary binary;
    binary.__ptr = cert;
    binary.__size = sizeof cert;
    ns1__Credential credential;
    credential.len = 6;
    credential.type = 1;
    credential.cert = &binary;
    _ns1__openServer request;
    request.sd = &session;
    request.server = "prefix:server";
    request.cred = &credential;
    request.requiredInterface = "some/interface";
    EXPECT_EQ(content_sent(&Proxy::send_openServer, request),
              "<ns1:openServer><ns1:sd><ns1:proxy>host</ns1:proxy><ns1:id xsi:nil=\"true\"/>"
              "<ns1:flags>-2</ns1:flags></ns1:sd><ns1:server>prefix:server</ns1:server>"
              "<ns1:cred><ns1:len>6</ns1:len><ns1:type>1</ns1:type><ns1:cert>c2VjcmV0</ns1:cert></ns1:cred>"
              "<ns1:requiredInterface>some/interface</ns1:requiredInterface></ns1:openServer>");
}

TEST(WrittenTexts, OpenLsuListWithoutFilterHasANilDefinition)
{
    std::string token = "t1";
    ns1__ServerHandle handle;
    handle.token = &token;
    _ns1__openLSUList request;
    request.serverHandle = &handle;
    EXPECT_EQ(content_sent(&Proxy::send_openLSUList, request),
              "<ns1:openLSUList><ns1:serverHandle><ns1:token>t1</ns1:token></ns1:serverHandle>"
              "<ns1:lsudef xsi:nil=\"true\"/></ns1:openLSUList>");
}

TEST(WrittenTexts, DeleteSnapInFull)
{
    std::string token = "t1";
    ns1__ServerHandle handle;
    handle.token = &token;
    ns1__LSU lsu;
    lsu.serverHandle = &handle;
    lsu.lsuName = "lsu1";
    unsigned char info[] = "isid";
    xsd__base64Binary binary;
    binary.__ptr = info;
    binary.__size = 4;
    std::string application;
    ns1__IndependentSupplierId supplier;
    supplier.version = 9;
    supplier.dpaid = &application;
    supplier.info = &binary;
    ns1__SnapDefinition snap;
    snap.snapName = "snap1";
    snap.snapType = 1;
    snap.snapFlags = 2;
    snap.snapSaveas = 3;
    snap.isid = &supplier;
    _ns1__deleteSnap request;
    request.lsu = &lsu;
    request.snapDef = &snap;
    EXPECT_EQ(content_sent(&Proxy::send_deleteSnap, request),
              "<ns1:deleteSnap>"
              "<ns1:lsu><ns1:serverHandle><ns1:token>t1</ns1:token></ns1:serverHandle>"
              "<ns1:lsuName>lsu1</ns1:lsuName></ns1:lsu>"
              "<ns1:snapDef><ns1:snapName>snap1</ns1:snapName><ns1:snapType>1</ns1:snapType>"
              "<ns1:snapFlags>2</ns1:snapFlags><ns1:snapSaveas>3</ns1:snapSaveas>"
              "<ns1:isid><ns1:version>9</ns1:version><ns1:dpaid/><ns1:dpaver xsi:nil=\"true\"/>"
              "<ns1:info>aXNpZA==</ns1:info></ns1:isid></ns1:snapDef>"
              "</ns1:deleteSnap>");
}

TEST(WrittenTexts, NamedAsyncCopyImageHasItsNameAheadOfTheImageSet)
{
    _ns1__namedAsyncCopyImage request;
    request.opname = "op1";
    request.imageset = "set1";
    request.eventflag = 1;
    EXPECT_EQ(content_sent(&Proxy::send_namedAsyncCopyImage, request),
              "<ns1:namedAsyncCopyImage><ns1:targetLSU xsi:nil=\"true\"/><ns1:targetImage xsi:nil=\"true\"/>"
              "<ns1:sourceLSU xsi:nil=\"true\"/><ns1:sourceImage xsi:nil=\"true\"/>"
              "<ns1:opname>op1</ns1:opname><ns1:imageset>set1</ns1:imageset><ns1:eventflag>1</ns1:eventflag>"
              "</ns1:namedAsyncCopyImage>");
}

TEST(WrittenTexts, TheDiffFlagIsAnIntegerForAnIdAndABooleanForAName)
{
    _ns1__asyncGetSnapDiff with_id;
    with_id.diffFlag = 1;
    EXPECT_NE(content_sent(&Proxy::send_asyncGetSnapDiff, with_id).find(element("diffFlag", "1")),
              std::string::npos);
    _ns1__namedAsyncGetSnapDiff with_name;
    with_name.diffFlag = true;
    EXPECT_NE(content_sent(&Proxy::send_namedAsyncGetSnapDiff, with_name).find(element("diffFlag", "true")),
              std::string::npos);
}

TEST(WrittenTexts, AVolumeHasItsChoiceAheadOfItsType)
{
    ns1__SCSIVolumeSpecification scsi;
    scsi.lunWWNN = "50:0a";
    ns1__VolumeSpecification volume;
    volume.__union_VolumeSpecification = 3;
    volume.union_VolumeSpecification.scsi = &scsi;
    volume.volumeType = 2;
    EXPECT_EQ(volume_sent(volume),
              "<ns1:volume><ns1:scsi><ns1:lunWWNN>50:0a</ns1:lunWWNN><ns1:lunSerial/></ns1:scsi>"
              "<ns1:volumeType>2</ns1:volumeType></ns1:volume>");
}

TEST(WrittenTexts, AVolumeWithoutChoiceHasItsTypeAlone)
{
    ns1__NFSVolumeSpecification nfs;
    for (int discriminator :
         {0, 6, 7, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        ns1__VolumeSpecification volume;
        volume.__union_VolumeSpecification = discriminator;
        volume.union_VolumeSpecification.nfs = &nfs;
        volume.volumeType = 4;
        EXPECT_EQ(volume_sent(volume), "<ns1:volume><ns1:volumeType>4</ns1:volumeType></ns1:volume>")
            << discriminator;
    }
}

TEST(WrittenTexts, AMadeChoiceWithoutAnObjectWritesNoChoice)
{
    ns1__VolumeSpecification volume;
    volume.__union_VolumeSpecification = 1;
    volume.union_VolumeSpecification.nfs = nullptr;
    EXPECT_EQ(volume_sent(volume), "<ns1:volume><ns1:volumeType>0</ns1:volumeType></ns1:volume>");
}

TEST(WrittenTexts, AnEventBodyWithoutChoiceIsAnEmptyElement)
{
    ns1__OperationStatus status;
    for (int discriminator : {0, 9, 10, -1}) {
        ns1__EventBody body;
        body.__union_EventBody = discriminator;
        body.union_EventBody.op = &status;
        ns1__Event event;
        event.body = &body;
        _ns1__deleteEvent request;
        request.event = &event;
        EXPECT_EQ(
            content_sent(&Proxy::send_deleteEvent, request),
            "<ns1:deleteEvent><ns1:serverHandle xsi:nil=\"true\"/><ns1:event><ns1:seqno>0</ns1:seqno>"
            "<ns1:server/><ns1:flags>0</ns1:flags><ns1:type>0</ns1:type><ns1:body></ns1:body></ns1:event>"
            "</ns1:deleteEvent>")
            << discriminator;
    }
}

TEST(WrittenTexts, ADetachedEventHasANilBody)
{
    ns1__Event event;
    event.seqno = 5;
    _ns1__getEventPayload request;
    request.event = &event;
    EXPECT_EQ(
        content_sent(&Proxy::send_getEventPayload, request),
        "<ns1:getEventPayload><ns1:serverHandle xsi:nil=\"true\"/><ns1:event><ns1:seqno>5</ns1:seqno>"
        "<ns1:server/><ns1:flags>0</ns1:flags><ns1:type>0</ns1:type><ns1:body xsi:nil=\"true\"/></ns1:event>"
        "</ns1:getEventPayload>");
}

TEST(WrittenTexts, ASnapResultWithADiscriminatorOutOfRangeHasNoResultObject)
{
    ns1__AIOResultCopySnap copy;
    for (int discriminator : {0, 7, -1}) {
        ns1__AIOResultSnap result;
        result.__union_AIOResultSnap = discriminator;
        result.union_AIOResultSnap.copySnap = &copy;
        result.resultSnapType = 5;
        const std::string text =
            written_in_body([&](soap* context) { return result.soap_put(context, "ns1:result", ""); });
        EXPECT_EQ(text, element("result", zero("totalBytesTransferred") + zero("error") +
                                              zero("retryInterval") + element("resultSnapType", "5")))
            << discriminator;
    }
}

TEST(WrittenTexts, AListHasOneItemForEachEntryAndNoneWhenEmpty)
{
    ns1__ArrayOfString paths;
    _ns1__listFile request;
    request.filterPathList = &paths;
    const std::string begin =
        "<ns1:listFile><ns1:fileListHandle xsi:nil=\"true\"/><ns1:filterPathNum>0</ns1:filterPathNum>";
    EXPECT_EQ(content_sent(&Proxy::send_listFile, request),
              begin + "<ns1:filterPathList></ns1:filterPathList></ns1:listFile>");
    paths.item = {"/a", "", "/b c"};
    EXPECT_EQ(content_sent(&Proxy::send_listFile, request),
              begin + "<ns1:filterPathList><ns1:item>/a</ns1:item><ns1:item/><ns1:item>/b c</ns1:item>"
                      "</ns1:filterPathList></ns1:listFile>");
}

TEST(WrittenTexts, AListOfObjectsHasOneItemForEach)
{
    ns1__LSUSpecification one;
    one.server = "s1";
    one.lsu = "l1";
    ns1__LSUSpecification two;
    ns1__ArrayOfLSUSpecification targets;
    targets.item = {&one, &two};
    _ns1__asyncCopySnapByName request;
    request.targetLSUSpecs = &targets;
    request.ntargets = 2;
    const std::string text = content_sent(&Proxy::send_asyncCopySnapByName, request);
    EXPECT_NE(
        text.find("<ns1:targetLSUSpecs><ns1:item><ns1:server>s1</ns1:server><ns1:lsu>l1</ns1:lsu></ns1:item>"
                  "<ns1:item><ns1:server/><ns1:lsu/></ns1:item></ns1:targetLSUSpecs>"
                  "<ns1:ntargets>2</ns1:ntargets>"),
        std::string::npos)
        << text;
}

TEST(WrittenTexts, BytesAreBase64OfAnyLengthAndValue)
{
    const std::vector<std::pair<std::string, std::string>> samples = {
        {std::string("\0", 1), "AA=="},
        {std::string("\0\xff", 2), "AP8="},
        {std::string("\xfb\xff\xbf", 3), "+/+/"},
        {"any carnal pleasure", "YW55IGNhcm5hbCBwbGVhc3VyZQ=="}};
    for (const auto& [content, base64] : samples) {
        std::vector<unsigned char> buffer(content.begin(), content.end());
        _ns1__writeImageMeta request;
        request.buf.__ptr = buffer.data();
        request.buf.__size = static_cast<int>(buffer.size());
        EXPECT_EQ(content_sent(&Proxy::send_writeImageMeta, request),
                  element("writeImageMeta",
                          nil("imageHandle") + element("buf", base64) + zero("len") + zero("offset")));
    }
}

TEST(WrittenTexts, NumbersReachTheLimitsOf32And64Bits)
{
    _ns1__copyExtent request;
    request.toOffset = std::numeric_limits<LONG64>::min();
    request.fromOffset = std::numeric_limits<LONG64>::max();
    request.len = 4294967296;
    request.flags = std::numeric_limits<int>::min();
    EXPECT_EQ(
        content_sent(&Proxy::send_copyExtent, request),
        "<ns1:copyExtent><ns1:toImage xsi:nil=\"true\"/><ns1:toOffset>-9223372036854775808</ns1:toOffset>"
        "<ns1:fromImage xsi:nil=\"true\"/><ns1:fromOffset>9223372036854775807</ns1:fromOffset>"
        "<ns1:len>4294967296</ns1:len><ns1:flags>-2147483648</ns1:flags></ns1:copyExtent>");
}

TEST(WrittenTexts, MarkupCharactersAreEscaped)
{
    EXPECT_EQ(lsu_name_sent("<a href=\"x\">&amp;]]>'"),
              element("lsuName", "&lt;a href=\"x\"&gt;&amp;amp;]]&gt;'"));
}

TEST(WrittenTexts, ACarriageReturnSurvivesAsAReferenceAndOtherWhiteSpaceAsItIs)
{
    EXPECT_EQ(lsu_name_sent(" a\tb\nc\rd "), element("lsuName", " a\tb\nc&#xD;d "));
}

// The context is in mode 0: texts are taken byte by byte, each byte above 127 as the character of that
// number.
TEST(WrittenTexts, EachByteAbove127IsTheCharacterOfThatNumber)
{
    EXPECT_EQ(lsu_name_sent("caf\xe9"), element("lsuName", "caf\xc3\xa9"));
    EXPECT_EQ(lsu_name_sent("\xc3\xa9"), element("lsuName", "\xc3\x83\xc2\xa9"));
    EXPECT_EQ(lsu_name_sent("\x82"), element("lsuName", "&#x82;"));
}

} // namespace

} // namespace schema
