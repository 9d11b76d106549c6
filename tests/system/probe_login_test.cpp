// soapwrapper-probe's way into a server: the credential, the open, the properties, the close.
#include "probe_fixture.h"

#include <nlohmann/json.hpp>

namespace
{

using nlohmann::json;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr char kSecret[] = "open sesame";
constexpr char kSecretOnTheWire[] = "b3BlbiBzZXNhbWU=";
const std::map<std::string, std::string> kSecretInEnvironment = {{"SOAPWRAPPER_CREDENTIAL", kSecret}};

TEST_F(ProbeTest, ServerDiscoversOpensReadsAndCloses)
{
    answer_all();
    const ProcessResult result = probe({"server", kName}, kSecretInEnvironment);
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_THAT(service.operations(),
                ElementsAre("getServerPropByName", "openServer", "getServerProp", "closeServer"));
    EXPECT_THAT(service.request("getServerProp"), HasSubstr("<ns1:token>T-1</ns1:token>"));
    EXPECT_THAT(service.request("closeServer"), HasSubstr("<ns1:token>T-1</ns1:token>"));
    EXPECT_THAT(result.out, AllOf(StartsWith("Name              Network_store:filer\n"),
                                  HasSubstr("*       11.1.2   http  " + service.url() + "\n")));
}

TEST_F(ProbeTest, ServerPrintsJson)
{
    answer_all();
    const json document = json::parse(probe({"server", kName, "--json"}, kSecretInEnvironment).out);
    EXPECT_EQ(document.at("server"), "Network_store:filer.example.com");
    EXPECT_EQ(document.at("interfaces").at(0).at("chosen"), true);
    EXPECT_EQ(document.count("error"), 0U);
}

TEST_F(ProbeTest, ServerOpensWithoutDiscoveryIfToldTo)
{
    answer_all();
    const ProcessResult result = probe({"server", kName, "--no-discover"}, kSecretInEnvironment);
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(service.operations(), ElementsAre("openServer", "getServerProp", "closeServer"));
    EXPECT_THAT(result.out,
                AllOf(HasSubstr("VERSION  TYPE  URL\n11.1.2   http  "), Not(HasSubstr("CHOSEN"))));
}

TEST_F(ProbeTest, ServerWithoutDiscoveryStillLeavesOtherPlugInsNamesAlone)
{
    const ProcessResult result = probe({"server", "Disk_store:filer", "--no-discover"}, kSecretInEnvironment);
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_ENOTMINE(2060009): "));
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeTest, ServerSendsTheRequiredInterface)
{
    answer_all();
    probe({"server", kName, "--interface", "11;1;2"}, kSecretInEnvironment);
    EXPECT_THAT(service.request("openServer"),
                HasSubstr("<ns1:requiredInterface>11;1;2</ns1:requiredInterface>"));
    probe({"server", kName}, kSecretInEnvironment);
    EXPECT_THAT(service.request("openServer"), HasSubstr("<ns1:requiredInterface/>"));
}

TEST_F(ProbeTest, ServerThatCannotBeDiscoveredIsNotOpened)
{
    answer_all();
    service.refuse("getServerPropByName", "who is that", 2060022);
    const ProcessResult result = probe({"server", kName}, kSecretInEnvironment);
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_EBADARG(2060022): "));
    EXPECT_THAT(service.operations(), ElementsAre("getServerPropByName"));
}

TEST_F(ProbeTest, ServerThatRefusesTheOpenIsNotClosed)
{
    answer_all();
    service.refuse("openServer", "wrong credential", 4711);
    const ProcessResult result = probe({"server", kName}, kSecretInEnvironment);
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, AllOf(StartsWith("service status(4711): the storage service's own status\n"),
                                  HasSubstr("wrong credential")));
    EXPECT_THAT(service.operations(), ElementsAre("getServerPropByName", "openServer"));
}

TEST_F(ProbeTest, ServerThatRefusesTheOpenWithTheStatusOfSuccessIsAnError)
{
    answer_all();
    service.refuse("openServer", "sly", 0);
    const ProcessResult result = probe({"server", kName}, kSecretInEnvironment);
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, AllOf(StartsWith("STS_EOK(0): the service refused"), HasSubstr("sly")));
    EXPECT_THAT(service.operations(), ElementsAre("getServerPropByName", "openServer"));
}

TEST_F(ProbeTest, ServerWhoseAnswerHoldsNoHandleIsAnError)
{
    answer_all();
    service.answer("openServer", "");
    const ProcessResult result = probe({"server", kName}, kSecretInEnvironment);
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_EPLUGIN(2060046): "));
}

TEST_F(ProbeTest, ServerWhosePropertiesAreRefusedIsClosedAllTheSame)
{
    answer_all();
    service.refuse("getServerProp", "not for you", 2060005);
    const ProcessResult result = probe({"server", kName}, kSecretInEnvironment);
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(StartsWith("STS_EBUSY(2060005): "), HasSubstr("not for you")));
    EXPECT_EQ(service.operations().back(), "closeServer");
}

TEST_F(ProbeTest, ServerThatRefusesTheCloseHasShownItsProperties)
{
    answer_all();
    service.refuse("closeServer", "stay", 2060012);
    // Only a close that succeeds gives the handle back: here it stays, and a leak checker would tell.
    const ProcessResult result = probe({"server", kName, "--json"}, {{"SOAPWRAPPER_CREDENTIAL", kSecret},
                                                                     {"ASAN_OPTIONS", "detect_leaks=0"}});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err,
                AllOf(StartsWith("STS_EINUSE(2060012): the resource is in use\n"), HasSubstr("stay")));
    const json document = json::parse(result.out);
    EXPECT_EQ(document.at("server"), "Network_store:filer.example.com");
    EXPECT_EQ(document.at("error").at("status"), 2060012);
    EXPECT_THAT(service.operations(),
                ElementsAre("getServerPropByName", "openServer", "getServerProp", "closeServer"));
}

TEST_F(ProbeTest, CredentialComesFromTheEnvironment)
{
    answer_all();
    EXPECT_EQ(probe({"server", kName}, kSecretInEnvironment).exit_code, 0);
    EXPECT_THAT(service.request("openServer"),
                AllOf(HasSubstr(std::string(">") + kSecretOnTheWire + "</ns1:cert>"),
                      HasSubstr("<ns1:len>11</ns1:len>"), HasSubstr("<ns1:type>1</ns1:type>")));
}

TEST_F(ProbeTest, CredentialComesFromAFileWithoutItsLastLineFeed)
{
    answer_all();
    const std::string file = folder.write("login", std::string(kSecret) + "\n");
    const ProcessResult result = probe({"server", kName, "--credential-file", file, "--credential-type", "3"},
                                       {{"SOAPWRAPPER_CREDENTIAL", "another one"}});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_THAT(service.request("openServer"),
                AllOf(HasSubstr(std::string(">") + kSecretOnTheWire + "</ns1:cert>"),
                      HasSubstr("<ns1:len>11</ns1:len>"), HasSubstr("<ns1:type>3</ns1:type>")));
}

TEST_F(ProbeTest, CredentialMayHoldAnyBytes)
{
    answer_all();
    const std::string file = folder.write("login", std::string("\x00\n\xFF\n\n", 5));
    EXPECT_EQ(probe({"server", kName, "--credential-file", file}).exit_code, 0);
    EXPECT_THAT(service.request("openServer"),
                AllOf(HasSubstr(">AAr/Cg==</ns1:cert>"), HasSubstr("<ns1:len>4</ns1:len>")));
}

TEST_F(ProbeTest, CredentialMayBeEmpty)
{
    answer_all();
    EXPECT_EQ(probe({"server", kName}, {{"SOAPWRAPPER_CREDENTIAL", ""}}).exit_code, 0);
    EXPECT_THAT(service.request("openServer"), HasSubstr("<ns1:len>0</ns1:len>"));
}

TEST_F(ProbeTest, CredentialThatEverybodyMayReadIsWarnedAbout)
{
    answer_all();
    const std::string file = folder.write("login", kSecret, static_cast<std::filesystem::perms>(0604));
    const ProcessResult result = probe({"server", kName, "--credential-file", file});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.err,
              "warning: everybody on this machine may read the credential file " + file + "; chmod 600 it\n");
}

TEST_F(ProbeTest, CredentialHasToComeFromSomewhere)
{
    const ProcessResult result = probe({"server", kName, "--json"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(result.err, "soapwrapper-probe: usage: no credential: name a file with --credential-file or "
                          "set SOAPWRAPPER_CREDENTIAL\n");
    EXPECT_EQ(json::parse(result.out).at("error").at("name"), "usage");
    EXPECT_TRUE(json::parse(result.out).at("error").at("status").is_null());
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeTest, CredentialFileThatCannotBeUsedIsRefused)
{
    const std::map<std::string, std::string> refusals = {
        {(folder / "missing").string(), "No such file or directory"},
        {(folder / ".").string(), "Is a directory"},
        {folder.write("huge", std::string(65537, 'x')), "longer than 65536 bytes"}};
    for (const auto& [file, reason] : refusals) {
        const ProcessResult result = probe({"server", kName, "--credential-file", file});
        EXPECT_EQ(result.exit_code, 2);
        EXPECT_THAT(result.err,
                    AllOf(StartsWith("soapwrapper-probe: usage: the credential file "), HasSubstr(reason)));
    }
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeTest, CredentialOfTheGreatestLengthIsTaken)
{
    answer_all();
    const std::string file = folder.write("large", std::string(65536, 'x') + "\n");
    EXPECT_EQ(probe({"server", kName, "--credential-file", file}).exit_code, 0);
    EXPECT_THAT(service.request("openServer"), HasSubstr("<ns1:len>65536</ns1:len>"));
}

TEST_F(ProbeTest, CredentialIsNeverPrintedEvenIfTheServiceQuotesIt)
{
    answer_all();
    service.refuse("openServer", std::string("bad: ") + kSecret + " or " + kSecretOnTheWire + " is wrong",
                   4711);
    const ProcessResult result = probe({"server", kName, "--json", "--log", "anomaly"}, kSecretInEnvironment);
    EXPECT_EQ(result.exit_code, 4);
    for (const std::string& output : {result.out, result.err}) {
        EXPECT_THAT(output, AllOf(HasSubstr("bad: (credential) or (credential) is wrong"),
                                  Not(HasSubstr(kSecret)), Not(HasSubstr(kSecretOnTheWire))));
    }
}

TEST_F(ProbeTest, CredentialIsInNoLogLine)
{
    answer_all();
    const ProcessResult result = probe({"server", kName, "--log", "anomaly"}, kSecretInEnvironment);
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(result.err, AllOf(HasSubstr("[3 record] stspi_open_server: enter\n"), Not(HasSubstr(kSecret)),
                                  Not(HasSubstr(kSecretOnTheWire))));
}

} // namespace
