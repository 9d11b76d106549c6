#include "simulator/options.h"
#include "simulator/scenario/default_scenario.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/scenario.h"
#include "simulator/service/trouble.h"
#include "simulator/storage/model.h"
#include "tests/parts/fault_of.h"

#include <gmock/gmock.h>

#include <fstream>
#include <optional>
#include <sstream>
#include <vector>

namespace
{

using namespace soapwrapper::simulator;
using testing::HasSubstr;

std::string usage_error(const std::vector<std::string>& arguments)
{
    const CommandLine parsed = parse_command_line(arguments);
    EXPECT_FALSE(parsed.options);
    EXPECT_EQ(parsed.exit_code, 2);
    return parsed.text;
}

TEST(SimulatorCommandLine, WithoutOptionsHasTheDocumentedDefaults)
{
    const std::optional<Options> options = parse_command_line({}).options;
    ASSERT_TRUE(options);
    EXPECT_EQ(to_string(*options->http), "127.0.0.1:8085");
    EXPECT_EQ(to_string(*options->https), "127.0.0.1:8086");
    EXPECT_EQ(options->advertise, "");
    EXPECT_EQ(options->ca_out, "");
    EXPECT_EQ(options->newest_tls, TlsVersion::kTls13);
    EXPECT_EQ(options->credential, "simulator");
    EXPECT_EQ(options->text_encoding, TextEncoding::kLatin1);
    EXPECT_EQ(options->threads, 8U);
    EXPECT_FALSE(options->verbose);
    EXPECT_TRUE(options->troubles.empty());
    EXPECT_EQ(options->dump, "");
}

std::vector<Trouble> of_kind(const std::vector<Trouble>& troubles, TroubleKind kind)
{
    std::vector<Trouble> chosen;
    for (const Trouble& trouble : troubles) {
        if (trouble.kind == kind) chosen.push_back(trouble);
    }
    return chosen;
}

TEST(SimulatorCommandLine, FaultsAndDelaysAreReadInTheirOrder)
{
    const std::optional<Options> options =
        parse_command_line({"--fault", "listLSU=2060013,3", "--delay=ioControl=250", "--fault",
                            "listLSU=-2147483648", "--delay", "openServer=0"})
            .options;
    ASSERT_TRUE(options);
    const std::vector<Trouble> faults = of_kind(options->troubles, TroubleKind::kFault);
    ASSERT_EQ(faults.size(), 2U);
    EXPECT_EQ(faults[0].operation, "listLSU");
    EXPECT_EQ(faults[0].code, 2060013);
    EXPECT_EQ(faults[0].count, 3U);
    EXPECT_EQ(faults[1].code, -2147483647 - 1);
    EXPECT_EQ(faults[1].count, std::nullopt);
    const std::vector<Trouble> delays = of_kind(options->troubles, TroubleKind::kDelay);
    ASSERT_EQ(delays.size(), 2U);
    EXPECT_EQ(delays[0].operation, "ioControl");
    EXPECT_EQ(delays[0].time, std::chrono::milliseconds(250));
    EXPECT_EQ(delays[1].time, std::chrono::milliseconds(0));
}

TEST(SimulatorCommandLine, AWrongFaultIsExplained)
{
    for (const char* wrong : {"openServer=", "openServer=x", "openServer=1x", "openServer=2147483648",
                              "openServer=,1", "openServer= 1"}) {
        EXPECT_THAT(usage_error({"--fault", wrong}), HasSubstr("names no CODE in 32 bits")) << wrong;
    }
    for (const char* wrong : {"openServer=1,", "openServer=1,0", "openServer=1,-1", "openServer=1,2,3"}) {
        EXPECT_THAT(usage_error({"--fault", wrong}), HasSubstr("a COUNT that is not 1 or more")) << wrong;
    }
    EXPECT_THAT(usage_error({"--fault", "openServer"}), HasSubstr("has no \"=\""));
    for (const char* wrong : {"=1", "openserver=1", "_ns1__openServer=1", "openServerResponse=1"}) {
        EXPECT_THAT(usage_error({"--fault", wrong}), HasSubstr("doesn't begin with an operation")) << wrong;
    }
}

TEST(SimulatorCommandLine, AWrongDelayIsExplained)
{
    for (const char* wrong : {"openServer=", "openServer=1s", "openServer=-1", "openServer=3600001"}) {
        EXPECT_THAT(usage_error({"--delay", wrong}), HasSubstr("not a number from 0 to 3600000")) << wrong;
    }
    EXPECT_THAT(usage_error({"--delay", "nope=1"}), HasSubstr("doesn't begin with an operation"));
    EXPECT_THAT(usage_error({"--delay", "openServer=1", "--delay", "openServer=2"}), HasSubstr("second one"));
}

TEST(SimulatorCommandLine, AWrongAddressIsExplained)
{
    for (const char* wrong : {"8085", "127.0.0.1", "127.0.0.1:", "127.0.0.1:x", "127.0.0.1:65536", ":8085",
                              "::1:8085", "[::1]", "[]:1", "[::1]8085", "http://host:1"}) {
        EXPECT_THAT(usage_error({"--http", wrong}), HasSubstr("is not HOST:PORT")) << wrong;
        EXPECT_THAT(usage_error({"--https", wrong}), HasSubstr("--https")) << wrong;
    }
}

TEST(SimulatorCommandLine, WhatMakesNoSenseElsewhereIsExplained)
{
    EXPECT_THAT(usage_error({"--no-http", "--no-https"}), HasSubstr("leave nothing to serve"));
    EXPECT_THAT(usage_error({"--threads", "0"}), HasSubstr("--threads"));
    EXPECT_THAT(usage_error({"--threads", "65"}), HasSubstr("--threads"));
    EXPECT_THAT(usage_error({"--advertise", "a;b"}), HasSubstr("is not a host"));
    EXPECT_THAT(usage_error({"--advertise", ""}), HasSubstr("is not a host"));
    EXPECT_THAT(usage_error({"--scenario", ""}), HasSubstr("--scenario: names no file"));
    EXPECT_THAT(usage_error({"--frobnicate"}), HasSubstr("--frobnicate"));
    EXPECT_THAT(usage_error({"stray"}), HasSubstr("stray"));
}

TEST(SimulatorCommandLine, AFileForTheAuthorityIsRefusedWhereThereIsNone)
{
    EXPECT_THAT(usage_error({"--ca-out", ""}), HasSubstr("--ca-out: names no file"));
    EXPECT_THAT(usage_error({"--ca-out", "ca.pem", "--no-https"}), HasSubstr("excludes"));
    EXPECT_THAT(usage_error({"--ca-out", "ca.pem", "--certificate", "a", "--key", "b"}),
                HasSubstr("excludes"));
    EXPECT_EQ(parse_command_line({"--ca-out", "ca.pem"}).options->ca_out, "ca.pem");
}

TEST(SimulatorCommandLine, ACertificateGoesWithItsKeyAndWithHttps)
{
    EXPECT_THAT(usage_error({"--certificate", "a"}), HasSubstr("--certificate requires --key"));
    EXPECT_THAT(usage_error({"--key", "b"}), HasSubstr("--key requires --certificate"));
    EXPECT_THAT(usage_error({"--certificate", "a", "--key", "b", "--no-https"}), HasSubstr("excludes"));
    EXPECT_THAT(usage_error({"--certificate", "", "--key", "b"}), HasSubstr("--certificate: names no file"));
    EXPECT_THAT(usage_error({"--certificate", "a", "--key", ""}), HasSubstr("--key: names no file"));
    const std::optional<Options> options = parse_command_line({"--certificate", "a", "--key", "b"}).options;
    ASSERT_TRUE(options);
    EXPECT_EQ(options->certificate, "a");
    EXPECT_EQ(options->key, "b");
}

TEST(SimulatorCommandLine, TheNewestVersionOfTlsIsOneThatIsSpoken)
{
    EXPECT_EQ(parse_command_line({"--tls-max", "1.2"}).options->newest_tls, TlsVersion::kTls12);
    EXPECT_EQ(parse_command_line({"--tls-max", "1.3"}).options->newest_tls, TlsVersion::kTls13);
    for (const char* wrong : {"1.1", "1.4", "", "1.20", "TLSv1.2"}) {
        EXPECT_THAT(usage_error({"--tls-max", wrong}), HasSubstr("--tls-max: ")) << wrong;
    }
}

TEST(SimulatorCommandLine, TheTextEncodingIsNamedInAnyCaseOfLetters)
{
    for (const char* name : {"UTF-8", "utf-8", "Utf-8"}) {
        const std::optional<Options> options = parse_command_line({"--text-encoding", name}).options;
        ASSERT_TRUE(options) << name;
        EXPECT_EQ(options->text_encoding, TextEncoding::kUtf8) << name;
    }
    for (const char* name : {"Latin-1", "latin-1", "LATIN-1"}) {
        const std::optional<Options> options = parse_command_line({"--text-encoding", name}).options;
        ASSERT_TRUE(options) << name;
        EXPECT_EQ(options->text_encoding, TextEncoding::kLatin1) << name;
    }
    for (const char* wrong : {"UTF8", "ISO-8859-1", "", "UTF-16"}) {
        EXPECT_THAT(usage_error({"--text-encoding", wrong}), HasSubstr("--text-encoding: ")) << wrong;
    }
}

TEST(SimulatorCommandLine, Ipv6AddressesLoseTheirBracketsAndGetThemBack)
{
    const std::optional<Options> options =
        parse_command_line({"--http", "[fe80::1]:80", "--advertise", "[::1]"}).options;
    ASSERT_TRUE(options);
    EXPECT_EQ(options->http->host, "fe80::1");
    EXPECT_EQ(options->http->port, 80);
    EXPECT_EQ(to_string(*options->http), "[fe80::1]:80");
    EXPECT_EQ(options->advertise, "::1");
}

TEST(SimulatorModel, SessionsAreBoundedByMaxconnectAndFreedByAClose)
{
    Scenario scenario = default_scenario();
    scenario.servers[0].max_sessions = 2;
    Model model(scenario, {}, "secret");
    const Credential credential{1, "secret"};
    const std::string first = model.use().open_server("Network_NTAP:a", credential);
    model.use().open_server("Network_NTAP:b", credential);
    EXPECT_EQ(fault_of([&] { model.use().open_server("Network_NTAP:c", credential); }), kTooManySessions);
    EXPECT_EQ(fault_of([&] { model.use().open_server("Network_VAULT:c", credential); }), 0);
    model.use()->close_session(first);
    EXPECT_EQ(model.use().properties("Network_NTAP:x").open_sessions, 1);
    EXPECT_EQ(fault_of([&] { model.use().open_server("Network_NTAP:c", credential); }), 0);
}

TEST(SimulatorFaultCodes, EachStandsInTheDocumentWithItsName)
{
    std::ifstream file(SIMULATOR_DOCUMENT);
    const std::string document(std::istreambuf_iterator<char>(file), {});
    ASSERT_FALSE(document.empty());
    for (const FaultCodeName& entry : kFaultCodeNames) {
        EXPECT_THAT(document, HasSubstr("| " + std::to_string(entry.code) + " | " + entry.name + " |"));
    }
}

} // namespace
