// The contract's documents as the simulator serves them.
#include "simulator/contract/contract.h"
#include "simulator/front/http.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using namespace soapwrapper::simulator;
using testing::HasSubstr;
using testing::Not;

std::string installed(const std::string& name)
{
    std::ifstream file(CONTRACT_FILES "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// As it stands in the document.
std::string address_in(const std::string& wsdl)
{
    const std::string start = "<SOAP:address location=\"";
    const std::size_t place = wsdl.find(start);
    if (place == std::string::npos) return "none";
    const std::size_t value = place + start.size();
    return wsdl.substr(value, wsdl.find("\"/>", value) - value);
}

std::string address_told_to(const std::string& host, bool is_tls = false)
{
    Request request;
    request.is_tls = is_tls;
    request.fields = {{"Accept", "*/*"}, {"hOST", host}};
    request.server = "127.0.0.1:8085";
    return address_in(serve_wsdl(request).body);
}

TEST(SimulatorContract, HoldsTheDocumentsThatAreInstalled)
{
    EXPECT_FALSE(wsdl_template().empty());
    // Not shown where they differ: they are too long.
    EXPECT_TRUE(wsdl_template() == installed("PSVWSSoapBinding.wsdl"));
    EXPECT_TRUE(schema_text() == installed("ns1.xsd"));
}

TEST(SimulatorContract, WsdlAtAnAddressDiffersFromTheTemplateInThatAlone)
{
    std::string wsdl = wsdl_at("https://filer:8086");
    EXPECT_EQ(address_in(wsdl), "https://filer:8086");
    EXPECT_TRUE(wsdl.replace(wsdl.find("https://filer:8086"), 18, "http://localhost:8085") ==
                wsdl_template());
}

TEST(SimulatorContract, WsdlAtAnAddressHasNoMoreMarkupThanTheTemplate)
{
    EXPECT_EQ(address_in(wsdl_at("http://a\"/><b c='d'>&\x01\n\x7f")),
              "http://a&quot;/&gt;&lt;b c='d'&gt;&amp;  \x7f");
    EXPECT_EQ(address_in(wsdl_at("")), "");
    EXPECT_EQ(address_in(wsdl_at("address location=\"x\"")), "address location=&quot;x&quot;");
    EXPECT_EQ(wsdl_at(std::string(1000000, '<')).size(), wsdl_at("").size() + 4000000);
}

TEST(SimulatorContract, WsdlNamesTheHostByWhichTheClientCame)
{
    for (const std::string host : {"filer:8085", "filer", "10.0.0.1:1", "my-filer_1.example.com:65535",
                                   "[::1]:8085", "[fe80::1]", "[::ffff:10.0.0.1]:80"}) {
        EXPECT_EQ(address_told_to(host), "http://" + host);
        EXPECT_EQ(address_told_to(host, true), "https://" + host);
    }
    EXPECT_EQ(address_told_to(std::string(253, 'a')), "http://" + std::string(253, 'a'));
}

TEST(SimulatorContract, WsdlNamesTheServersOwnAddressForAHostThatIsNone)
{
    const std::vector<std::string> hosts = {"",
                                            ":",
                                            ":80",
                                            "a:",
                                            "a:0",
                                            "a:65536",
                                            "a:999999",
                                            "a:+1",
                                            "a: 1",
                                            "a:1 ",
                                            " a",
                                            "a b",
                                            "a:80:80",
                                            "a/b",
                                            "a@b",
                                            "user@a:1",
                                            "a?b",
                                            "a#b",
                                            "a%41",
                                            "a\"b",
                                            "a'b",
                                            "a<b>",
                                            "\"/><x y=\"",
                                            "a&b",
                                            "a\tb",
                                            "a\nb",
                                            "a\x01",
                                            "a\x7f",
                                            "\xC3\xA9",
                                            "::1",
                                            "[::1",
                                            "[]",
                                            "[]:80",
                                            "[::1]80",
                                            "[::1]:",
                                            "[::1]:0",
                                            "[::1%eth0]",
                                            "[g]",
                                            "[[::1]]",
                                            "]",
                                            "[",
                                            "a[::1]",
                                            std::string("a\0b", 3),
                                            std::string(254, 'a'),
                                            std::string(1000000, 'a'),
                                            "a:" + std::string(1000000, '1')};
    for (const std::string& host : hosts) {
        EXPECT_EQ(address_told_to(host), "http://127.0.0.1:8085") << host.substr(0, 100);
    }
    Request nameless;
    nameless.server = "[::1]:8086";
    nameless.is_tls = true;
    EXPECT_EQ(address_in(serve_wsdl(nameless).body), "https://[::1]:8086");
}

TEST(SimulatorContract, IsServedAsXmlInUtf8)
{
    const Answer wsdl = serve_wsdl({});
    const Answer schema = serve_schema({});
    EXPECT_EQ(wsdl.status, 200);
    EXPECT_EQ(wsdl.content_type, "text/xml; charset=utf-8");
    EXPECT_EQ(schema.status, 200);
    EXPECT_EQ(schema.content_type, "text/xml; charset=utf-8");
    EXPECT_TRUE(schema.body == schema_text());
}

TEST(SimulatorContract, SchemaHasARouteForHostsAndPeople)
{
    const std::vector<Route> routes = contract_routes();
    ASSERT_EQ(routes.size(), 1U);
    EXPECT_EQ(routes[0].method, "GET");
    EXPECT_EQ(routes[0].path, "/ns1.xsd");
    EXPECT_EQ(routes[0].audience, Audience::kAll);
    EXPECT_TRUE(routes[0].handler({}).body == schema_text());
}

TEST(SimulatorContract, TellsWhatAnOperationDoes)
{
    EXPECT_EQ(text_of("addExport"), "Exports a volume to hosts."); // the first
    EXPECT_EQ(text_of("closeServer"), "Ends a session.");
    EXPECT_NE(text_of("writeImageMeta"), ""); // the last
    EXPECT_THAT(text_of("openServer"), Not(HasSubstr("\n")));
    for (const std::string_view name :
         {"", "closeServe", "closeServers", "nothing", "closeServer\tEnds a session.", "\n"}) {
        EXPECT_EQ(text_of(name), "") << name;
    }
}

} // namespace
