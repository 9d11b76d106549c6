// The client class itself: how it is made, copied and cleaned, where it calls, and its forwarders.
#include "canned_service.h"
#include "registry.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <sstream>

namespace schema
{

namespace
{

using Proxy = PSVWSSoapBindingProxy;

const char* const kDefaultUrl = "http://localhost:8080/test/services/PSVWS";
const char* const kSomeUrl = "http://storage.example:8085/service";

std::string text_or_null(const char* text)
{
    return text ? text : "(null)";
}

void expect_namespace_table(const Namespace* row)
{
    const Namespace expected[] = {
        {"SOAP-ENV", "http://schemas.xmlsoap.org/soap/envelope/", "http://www.w3.org/*/soap-envelope",
         nullptr},
        {"SOAP-ENC", "http://schemas.xmlsoap.org/soap/encoding/", "http://www.w3.org/*/soap-encoding",
         nullptr},
        {"xsi", "http://www.w3.org/2001/XMLSchema-instance", "http://www.w3.org/*/XMLSchema-instance",
         nullptr},
        {"xsd", "http://www.w3.org/2001/XMLSchema", "http://www.w3.org/*/XMLSchema", nullptr},
        {"ns1", SERVICE_NAMESPACE, nullptr, nullptr},
        {nullptr, nullptr, nullptr, nullptr}};
    ASSERT_NE(row, nullptr);
    for (const Namespace& wanted : expected) {
        EXPECT_EQ(text_or_null(row->id), text_or_null(wanted.id));
        EXPECT_EQ(text_or_null(row->ns), text_or_null(wanted.ns));
        EXPECT_EQ(text_or_null(row->in), text_or_null(wanted.in));
        EXPECT_EQ(row->out, nullptr);
        ++row;
    }
}

TEST(Proxy, StartsWithoutEndpointInModeZeroWithTheNamespaceTable)
{
    Proxy proxy;
    EXPECT_EQ(proxy.soap_endpoint, nullptr);
    EXPECT_EQ(proxy.imode, 0U);
    EXPECT_EQ(proxy.omode, 0U);
    EXPECT_EQ(proxy.soap_header(), nullptr);
    EXPECT_EQ(proxy.soap_fault(), nullptr);
    expect_namespace_table(proxy.namespaces);
}

TEST(Proxy, SharesOneConstantNamespaceTableAmongAllProxies)
{
    Proxy one;
    Proxy other;
    EXPECT_EQ(one.namespaces, other.namespaces);
}

TEST(Proxy, TakesEndpointAndModesFromItsConstructors)
{
    Proxy with_endpoint(kSomeUrl);
    EXPECT_EQ(with_endpoint.soap_endpoint, kSomeUrl);
    EXPECT_EQ(with_endpoint.imode, 0U);

    Proxy with_mode(SOAP_XML_STRICT);
    EXPECT_EQ(with_mode.soap_endpoint, nullptr);
    EXPECT_EQ(with_mode.imode, static_cast<soap_mode>(SOAP_XML_STRICT));
    EXPECT_EQ(with_mode.omode, static_cast<soap_mode>(SOAP_XML_STRICT));

    Proxy with_both(kSomeUrl, SOAP_XML_STRICT);
    EXPECT_EQ(with_both.soap_endpoint, kSomeUrl);
    EXPECT_EQ(with_both.imode, static_cast<soap_mode>(SOAP_XML_STRICT));

    Proxy with_two_modes(SOAP_XML_STRICT, SOAP_XML_INDENT);
    EXPECT_EQ(with_two_modes.soap_endpoint, nullptr);
    EXPECT_EQ(with_two_modes.imode, static_cast<soap_mode>(SOAP_XML_STRICT));
    EXPECT_EQ(with_two_modes.omode, static_cast<soap_mode>(SOAP_XML_INDENT));
    expect_namespace_table(with_two_modes.namespaces);
}

TEST(Proxy, TakesTheStateOfAContextAndTheEndpointOfAProxyItIsCopiedFrom)
{
    Proxy original(kSomeUrl, SOAP_XML_STRICT);
    original.connect_timeout = 7;

    Proxy of_proxy(original);
    EXPECT_EQ(of_proxy.soap_endpoint, kSomeUrl);
    EXPECT_EQ(of_proxy.imode, original.imode);
    EXPECT_EQ(of_proxy.connect_timeout, 7);

    const soap& context = original;
    Proxy of_context(context);
    EXPECT_EQ(of_context.imode, original.imode);
    EXPECT_EQ(of_context.connect_timeout, 7);

    Proxy elsewhere(context, kDefaultUrl);
    EXPECT_EQ(elsewhere.soap_endpoint, kDefaultUrl);
    EXPECT_EQ(elsewhere.connect_timeout, 7);
}

TEST(Proxy, CopiesItselfAsANewProxyThatCanCall)
{
    Proxy original(kSomeUrl);
    original.connect_timeout = 7;
    const std::unique_ptr<Proxy> copy(original.copy());
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy.get(), &original);
    EXPECT_EQ(copy->connect_timeout, 7);
    expect_namespace_table(copy->namespaces);

    CannedService service(*copy);
    service.reply_body("<ns1:closeServerResponse/>");
    _ns1__closeServer request;
    _ns1__closeServerResponse response;
    EXPECT_EQ(copy->closeServer(kSomeUrl, nullptr, &request, response), SOAP_OK);
}

TEST(Proxy, DestroyGivesBackAllObjectsAndMemory)
{
    Proxy proxy;
    ASSERT_NE(soap_new_ns1__LSUInformation(&proxy), nullptr);
    ASSERT_NE(soap_malloc(&proxy, 100), nullptr);
    EXPECT_NE(proxy.clist, nullptr);
    EXPECT_NE(proxy.alist, nullptr);
    proxy.destroy();
    EXPECT_EQ(proxy.clist, nullptr);
    EXPECT_EQ(proxy.alist, nullptr);
}

TEST(Proxy, ResetReturnsToTheStateOfANewProxy)
{
    Proxy proxy(kSomeUrl, SOAP_XML_STRICT);
    proxy.connect_timeout = 7;
    soap_new_ns1__LSUInformation(&proxy);
    proxy.reset();
    EXPECT_EQ(proxy.soap_endpoint, nullptr);
    EXPECT_EQ(proxy.imode, 0U);
    EXPECT_EQ(proxy.omode, 0U);
    EXPECT_EQ(proxy.connect_timeout, 0);
    EXPECT_EQ(proxy.clist, nullptr);
    expect_namespace_table(proxy.namespaces);
}

TEST(Proxy, FallsBackToTheDefaultUrlAndFailsByConnection)
{
    for (const OperationEntry& operation : operation_entries()) {
        SCOPED_TRACE(operation.name);
        Proxy proxy;
        CannedService nobody(proxy);
        nobody.refuse_connections();
        EXPECT_EQ(operation.call(proxy, *operation.make_request(), *operation.make_response()),
                  SOAP_TCP_ERROR);
        EXPECT_EQ(text_or_null(proxy.soap_endpoint), kDefaultUrl);
        EXPECT_EQ(nobody.endpoint(), kDefaultUrl);
        EXPECT_EQ(nobody.host(), "localhost");
        EXPECT_EQ(nobody.port(), 8080);
        EXPECT_EQ(nobody.opened(), 1);
    }
}

TEST(Proxy, RemembersTheEndpointThatACallWasGiven)
{
    Proxy proxy;
    CannedService service(proxy);
    service.reply_body("<ns1:closeServerResponse/>");
    _ns1__closeServer request;
    _ns1__closeServerResponse response;
    EXPECT_EQ(proxy.closeServer(kSomeUrl, nullptr, &request, response), SOAP_OK);
    EXPECT_EQ(proxy.soap_endpoint, kSomeUrl);
    EXPECT_EQ(proxy.closeServer(&request, response), SOAP_OK);
    EXPECT_EQ(service.host(), "storage.example");
    EXPECT_EQ(service.port(), 8085);
    EXPECT_EQ(service.opened(), 2);
    EXPECT_EQ(service.closed(), 2) << "each receive half closes its connection";
}

TEST(Proxy, ClosesTheConnectionOfASendHalfOnRequest)
{
    Proxy proxy(kSomeUrl);
    CannedService service(proxy);
    _ns1__closeServer request;
    ASSERT_EQ(proxy.send_closeServer(nullptr, nullptr, &request), SOAP_OK);
    EXPECT_EQ(service.closed(), 0);
    EXPECT_EQ(proxy.soap_close_socket(), SOAP_OK);
    EXPECT_EQ(service.closed(), 1);
    EXPECT_EQ(proxy.socket, SOAP_INVALID_SOCKET);
}

TEST(Proxy, ForceClosesTheSocketThroughTheRuntime)
{
    Proxy proxy(kSomeUrl);
    CannedService service(proxy);
    static int closed_sockets = 0;
    closed_sockets = 0;
    proxy.fclosesocket = [](soap*, SOAP_SOCKET) { return ++closed_sockets, SOAP_OK; };
    EXPECT_EQ(proxy.soap_force_close_socket(), SOAP_OK) << "with nothing open there is nothing to do";
    EXPECT_EQ(closed_sockets, 0);

    _ns1__closeServer request;
    ASSERT_EQ(proxy.send_closeServer(nullptr, nullptr, &request), SOAP_OK);
    EXPECT_EQ(proxy.soap_force_close_socket(), SOAP_OK);
    EXPECT_EQ(closed_sockets, 1);
    proxy.soap_close_socket();
}

TEST(Proxy, GivesAndClearsTheHeaderOfTheContext)
{
    Proxy proxy;
    SOAP_ENV__Header header;
    proxy.header = &header;
    EXPECT_EQ(proxy.soap_header(), &header);
    proxy.soap_noheader();
    EXPECT_EQ(proxy.soap_header(), nullptr);
}

TEST(Proxy, MakesAFaultRecordWhenAskedForItsTexts)
{
    Proxy proxy;
    soap_begin(&proxy);
    EXPECT_EQ(proxy.soap_fault(), nullptr);
    EXPECT_EQ(proxy.soap_fault_string(), nullptr);
    EXPECT_NE(proxy.soap_fault(), nullptr);
    EXPECT_EQ(proxy.soap_fault(), proxy.fault);
    EXPECT_EQ(proxy.soap_fault_detail(), nullptr);
}

TEST(Proxy, RendersAFaultToStreamFileAndBuffer)
{
    Proxy proxy(kSomeUrl);
    CannedService service(proxy);
    service.fault_body("<E:Fault><faultcode>E:Client</faultcode><faultstring>no such snapshot</faultstring>"
                       "</E:Fault>");
    _ns1__deleteSnap request;
    _ns1__deleteSnapResponse response;
    ASSERT_EQ(proxy.deleteSnap(&request, response), SOAP_FAULT);

    std::ostringstream stream;
    proxy.soap_stream_fault(stream);
    EXPECT_NE(stream.str().find("no such snapshot"), std::string::npos) << stream.str();

    char buffer[500] = "";
    EXPECT_EQ(proxy.soap_sprint_fault(buffer, sizeof buffer), buffer);
    EXPECT_NE(std::string(buffer).find("no such snapshot"), std::string::npos) << buffer;

    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::tmpfile(), std::fclose);
    ASSERT_NE(file, nullptr);
    proxy.soap_print_fault(file.get());
    std::rewind(file.get());
    std::string printed(500, '\0');
    printed.resize(std::fread(printed.data(), 1, printed.size(), file.get()));
    EXPECT_NE(printed.find("no such snapshot"), std::string::npos) << printed;
}

} // namespace

} // namespace schema
