#include "conversion/export_host.h"
#include "tests/unit/canary.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "soapwrapperStub.h"

using namespace soapwrapper;

namespace
{

// The record is 32 KiB and a bit: its bytes by row, as if the rows went on through the whole of it.
char* row(sts_host_spec_v11_t& host, std::size_t number)
{
    return reinterpret_cast<char*>(&host) + number * STS_HOST_TEXT_SIZE;
}

struct Fixture {
    Fixture()
    {
        fill_with_canary(*record);
        fill_with_canary(*expected);
        wire.hostname = &hostname;
        wire.port = &port;
    }

    void expect_row(std::size_t number, const std::string& text)
    {
        std::memcpy(row(*expected, number), text.c_str(), text.size() + 1);
    }

    std::unique_ptr<sts_host_spec_v11_t> record = std::make_unique<sts_host_spec_v11_t>();
    std::unique_ptr<sts_host_spec_v11_t> expected = std::make_unique<sts_host_spec_v11_t>();
    ns1__ArrayOfString hostname;
    ns1__ArrayOfString port;
    ns1__HostSpecification wire;
};

std::vector<std::string> numbered(std::size_t count, char letter)
{
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < count; ++i) texts.push_back(letter + std::to_string(i));
    return texts;
}

} // namespace

TEST(HostFromTheService, FillsARowForEachTextAndLeavesTheOthers)
{
    Fixture f;
    f.hostname.item = {"h0", long_text(1023), long_text(1024)};
    f.port.item = {"p0"};
    f.wire.flags = -5;
    set_host_spec_from_soap(*f.record, &f.wire);
    f.expect_row(0, "h0");
    f.expect_row(1, long_text(1023));
    f.expect_row(2, long_text(1023));
    f.expect_row(16, "p0");
    f.expected->flags = -5;
    EXPECT_TRUE(same_bytes(*f.record, *f.expected));
}

TEST(HostFromTheService, LetsASeventeenthNameRunIntoThePortsAndCoversItThere)
{
    Fixture f;
    f.hostname.item = numbered(18, 'h');
    f.port.item = {"p0"};
    set_host_spec_from_soap(*f.record, &f.wire);
    for (std::size_t i = 0; i < 18; ++i) f.expect_row(i, "h" + std::to_string(i));
    f.expect_row(16, "p0");
    f.expected->flags = 0;
    EXPECT_TRUE(same_bytes(*f.record, *f.expected));
}

TEST(HostFromTheService, EndsWithTheRecordHoweverManyTextsCome)
{
    Fixture f;
    f.hostname.item = numbered(100, 'h');
    f.port.item = numbered(100, 'p');
    f.wire.flags = 9;
    set_host_spec_from_soap(*f.record, &f.wire);
    for (std::size_t i = 0; i < 32; ++i) f.expect_row(i, "h" + std::to_string(i));
    for (std::size_t i = 0; i < 16; ++i) f.expect_row(16 + i, "p" + std::to_string(i));
    f.expected->flags = 9;
    // A port of two characters covers one of three up to its terminator only.
    for (std::size_t i = 0; i < 10; ++i) row(*f.expected, 16 + i)[3] = '\0';
    EXPECT_TRUE(same_bytes(*f.record, *f.expected));
}

TEST(HostFromTheService, KeepsTheRowsOfANilList)
{
    Fixture f;
    f.wire.hostname = nullptr;
    f.wire.port = nullptr;
    f.wire.flags = 1;
    set_host_spec_from_soap(*f.record, &f.wire);
    f.expected->flags = 1;
    EXPECT_TRUE(same_bytes(*f.record, *f.expected));
    set_host_spec_from_soap(*f.record, nullptr);
    EXPECT_TRUE(same_bytes(*f.record, *f.expected));
}

TEST(HostFromTheHost, SendsAllSixteenRowsOfEachListEmptyOnesToo)
{
    auto host = std::make_unique<sts_host_spec_v11_t>();
    put(host->hostname[0], "h0");
    put(host->hostname[15], "h15");
    std::memset(host->port[3], 'p', sizeof host->port[3]); // no terminator
    host->flags = -2;
    ns1__HostSpecification wire;
    set_host_spec_from_sts(wire, host.get());
    std::vector<std::string> names(16);
    names[0] = "h0";
    names[15] = "h15";
    std::vector<std::string> ports(16);
    ports[3] = std::string(1024, 'p');
    EXPECT_EQ(wire.hostname->item, names);
    EXPECT_EQ(wire.port->item, ports);
    EXPECT_EQ(wire.flags, -2);
    delete wire.hostname;
    delete wire.port;
}
