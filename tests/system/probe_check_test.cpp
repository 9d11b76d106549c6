// An installation that is looked at ahead of the first backup: soapwrapper-probe check.
#include "probe_process.h"
#include "simulator_process.h"
#include "tests/kit/authority.h"
#include "tests/kit/scripted_service.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <utility>

namespace
{

using nlohmann::json;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;

using Words = std::vector<std::string>;

const std::string kName = "Network_NTAP:filer1";

class ProbeCheck : public ::testing::Test
{
  protected:
    void start(const SimulatorProcess::Arguments& arguments = {})
    {
        simulator_ = std::make_unique<SimulatorProcess>(arguments);
    }

    // A simulator that shows this certificate.
    void start(const kit::Identity& identity)
    {
        start({"--certificate", folder_.write("chain.pem", identity.chain_pem()), "--key",
               folder_.write("key.pem", identity.key_pem())});
    }

    void configure(const std::string& lines) const { folder_.write("soapwrapper.conf", lines); }
    std::string https() const { return "https://127.0.0.1:" + std::to_string(simulator_->https_port()); }
    std::string http() const { return "http://127.0.0.1:" + std::to_string(simulator_->http_port()); }

    ProcessResult check(Words arguments, const std::map<std::string, std::string>& environment = {}) const
    {
        arguments.insert(arguments.begin(), {"check", "--library", PROBE_LIBRARY, "--plugin-path",
                                             (folder_ / "libsoapwrapper.so").string()});
        return run_process(PROBE_PROGRAM, arguments, environment);
    }

    // The lines of the report as "RESULT SUBJECT: TEXT"; the exit code is expected.
    Words findings(int exit_code, Words arguments,
                   const std::map<std::string, std::string>& environment = {}) const
    {
        arguments.emplace_back("--json");
        const ProcessResult result = check(arguments, environment);
        EXPECT_EQ(result.exit_code, exit_code) << result.out << result.err;
        EXPECT_EQ(result.login_warning, "") << "the report is where warnings stand";
        const json document = json::parse(result.out);
        EXPECT_EQ(document.at("ok"), exit_code == 0);
        Words found;
        for (const json& line : document.at("checks")) {
            found.push_back(std::string(line.at("result")) + ' ' + std::string(line.at("subject")) + ": " +
                            std::string(line.at("text")));
        }
        return found;
    }

    TemporaryFolder folder_;
    std::unique_ptr<SimulatorProcess> simulator_;
};

TEST_F(ProbeCheck, WithoutANameLooksAtTheLibraryAndItsConfiguration)
{
    const ProcessResult result = check({});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_THAT(result.out, StartsWith("Library\n  ok    found at"));
    EXPECT_THAT(
        result.out,
        AllOf(HasSubstr("\n  ok    release           910000 Tarnholme_9.1.0.1\n"), HasSubstr("gSOAP 2.8."),
              HasSubstr("\n  ok    needs             libssl.so.3, found at /"),
              HasSubstr("\n  ok    handshakes        stspi_init and stspi_init3"),
              HasSubstr("\n\nConfiguration\n  -     file"), HasSubstr("there is none, and none is needed"),
              HasSubstr("\n\nNothing is wrong\n"), Not(HasSubstr("Service")), Not(HasSubstr("\033"))));
}

TEST_F(ProbeCheck, TellsOfAWrongLineAndWhatToDoAndEndsWithACodeOfItsOwn)
{
    configure("requre_tls = yes\nreply_timeout = soon\n");
    const ProcessResult result = check({});
    EXPECT_EQ(result.exit_code, 6);
    EXPECT_THAT(result.out, AllOf(HasSubstr("\n  WRONG line 1            requre_tls = yes: "),
                                  HasSubstr("\n        -> did you mean require_tls?\n"),
                                  HasSubstr("\n  warn  line 2            reply_timeout = soon: ")));
    EXPECT_EQ(result.err, "check: 1 thing is wrong, 1 warning\n");
}

TEST_F(ProbeCheck, GivesScriptsFieldsAndADocument)
{
    configure("requre_tls = yes\n");
    EXPECT_THAT(
        check({"--separator", "|"}).out,
        HasSubstr("\nConfiguration|line 1|wrong|requre_tls = yes: the library has no such setting, and takes "
                  "it for the URL of a server|did you mean require_tls?\n"));
    const json document = json::parse(check({"--json"}).out);
    EXPECT_EQ(document.at("ok"), false);
    EXPECT_EQ(
        document.at("checks").back(),
        json({{"group", "Configuration"},
              {"subject", "line 1"},
              {"result", "wrong"},
              {"text",
               "requre_tls = yes: the library has no such setting, and takes it for the URL of a server"},
              {"advice", "did you mean require_tls?"}}));
    EXPECT_EQ(document.at("error").at("name"), "check");
}

TEST_F(ProbeCheck, GoesOnAsFarAsItCanWithoutALibrary)
{
    configure("requre_tls = yes\n");
    const std::string library = folder_.write("libsoapwrapper.so", "no library");
    const ProcessResult result = run_process(PROBE_PROGRAM, {"check", kName, "--library", library});
    EXPECT_EQ(result.exit_code, 6);
    EXPECT_THAT(result.out,
                AllOf(StartsWith("Library\n  WRONG library           the library could not be loaded: "),
                      HasSubstr("\n  WRONG line 1 "), HasSubstr("\nService\n  -     name "),
                      HasSubstr("not looked at")));
    EXPECT_EQ(result.err, "check: 2 things are wrong\n");
}

TEST_F(ProbeCheck, TellsOfALibraryThatCrashes)
{
    const ProcessResult result = run_process(PROBE_PROGRAM, {"check", "--library", FAKE_PLUGIN_THAT_CRASHES,
                                                             "--plugin-path", (folder_ / "x.so").string()});
    EXPECT_EQ(result.exit_code, 6);
    EXPECT_THAT(result.out, HasSubstr("the library crashed with SIGSEGV in stspi_init"));
}

TEST_F(ProbeCheck, SaysThatALibrarySaysNothingOfItsMaking)
{
    const ProcessResult result =
        run_process(PROBE_PROGRAM, {"check", "--library", FAKE_PLUGIN_THAT_IS_EMPTY});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("the library does not say"));
}

TEST_F(ProbeCheck, GoesTheWayToAServiceWhoseCertificateIsChecked)
{
    const std::string authority = folder_ / "ca.pem";
    start({"--ca-out", authority});
    configure("filer1 = " + https() + "\ntls_ca_file = ca.pem\nrequire_tls = yes\n");
    const Words found = findings(0, {kName}, {{"SOAPWRAPPER_CREDENTIAL", "simulator"}});
    const std::string port = std::to_string(simulator_->https_port());
    EXPECT_THAT(found, Contains(MatchesRegex("ok connection: " + https() +
                                             ": connected to 127.0.0.1:" + port + " in [0-9.]+ ms")));
    EXPECT_THAT(found, Contains(StartsWith("ok TLS: TLSv1.3, TLS_")));
    EXPECT_THAT(found, Contains(AllOf(HasSubstr("certificate: "), HasSubstr("IP Address:127.0.0.1"),
                                      HasSubstr("soapwrapper-sim authority"))));
    EXPECT_THAT(found, Contains("ok trust: tls_ca_file vouches for the certificate"));
    EXPECT_THAT(found, Contains("ok discovery: the library has found the service"));
    EXPECT_THAT(found, Contains("ok interface: 11.1.2 https " + https() + ": chosen"));
    EXPECT_THAT(found, Contains("info interface: 11.1.2 http " + http() +
                                ": not chosen, https is offered for the same version"));
    EXPECT_THAT(found, Contains("ok login: the service has taken the credential, over TLS"));
    EXPECT_EQ(found.back(), "ok logout: the session is closed");
}

TEST_F(ProbeCheck, TriesNoLoginWithoutACredentialAndShowsNone)
{
    start();
    configure("filer1 = " + https() + "\n");
    const Words found = findings(0, {kName});
    EXPECT_EQ(found.back(),
              "info login: not tried: there is no --credential-file and no SOAPWRAPPER_CREDENTIAL");
    EXPECT_THAT(found, Contains(AllOf(StartsWith("info trust: the library does not check the certificate"),
                                      HasSubstr("would fail: "))));
    const ProcessResult wrong = check({kName}, {{"SOAPWRAPPER_CREDENTIAL", "not the simulator's"}});
    EXPECT_THAT(wrong.out + wrong.err, Not(HasSubstr("not the simulator's")));
}

TEST_F(ProbeCheck, LooksAtTheConfigurationThatReplacesTheLibrarysOwn)
{
    configure("reply_timeout = 5\n");
    const std::string other = folder_.write("other.conf", "requre_tls = yes\n");
    const ProcessResult result =
        run_process(PROBE_PROGRAM, {"check", "--library", PROBE_LIBRARY, "--config", other});
    EXPECT_EQ(result.exit_code, 6);
    EXPECT_THAT(result.out, AllOf(HasSubstr("  ok    file              " + other + "\n"),
                                  HasSubstr("did you mean require_tls?"), Not(HasSubstr("reply_timeout")),
                                  Not(HasSubstr("everybody"))));
}

TEST_F(ProbeCheck, WarnsOfALoginInTheClear)
{
    start({"--no-https"});
    configure("filer1 = " + http() + "\n");
    const Words found = findings(0, {kName}, {{"SOAPWRAPPER_CREDENTIAL", "simulator"}});
    EXPECT_THAT(found, Contains("warning interface: 11.1.2 http " + http() +
                                ": chosen; the login goes in the clear"));
    EXPECT_THAT(found,
                Contains("warning login: the service has taken the credential, which went in the clear"));
}

TEST_F(ProbeCheck, WarnsOfALoginInTheClearToAServiceThatOffersTls)
{
    start();
    configure("filer1 = " + http() + "\n");
    EXPECT_THAT(
        findings(0, {kName}, {{"SOAPWRAPPER_CREDENTIAL", "simulator"}}),
        AllOf(Contains("warning interface: 11.1.2 https " + https() +
                       ": chosen, but soapwrapper.conf's URL is used instead, without TLS"),
              Contains("warning login: the service has taken the credential, which went in the clear")));
}

TEST_F(ProbeCheck, WarnsOfARefusedLoginInTheClear)
{
    start();
    const std::map<std::string, std::string> wrong = {{"SOAPWRAPPER_CREDENTIAL", "not the simulator's"}};
    configure("filer1 = " + http() + "\n");
    const Words clear = findings(6, {kName}, wrong);
    EXPECT_THAT(clear, Contains(StartsWith("wrong login: ")));
    EXPECT_EQ(clear.back(), "warning login: the credential went over " + http() + " in the clear");
    configure("filer1 = " + https() + "\n");
    EXPECT_THAT(findings(6, {kName}, wrong).back(), StartsWith("wrong login: "));
}

TEST_F(ProbeCheck, LeavesItsOwnConnectionsOutOfATrace)
{
    start();
    configure("filer1 = " + https() + "\n");
    const std::string trace = (folder_ / "trace").string();
    check({kName, "--trace", trace}, {{"SOAPWRAPPER_CREDENTIAL", "simulator"}});
    const std::string text = read_file(trace);
    EXPECT_THAT(text, StartsWith("#1  "));
    EXPECT_THAT(text.substr(0, text.find('\n')), HasSubstr("  getServerPropByName  200  "));
}

TEST_F(ProbeCheck, IsEndedAtOnceWhileItWaitsOnAConnectionOfItsOwn)
{
    kit::ScriptedService service;
    service.script({kit::Answer::Manner::kLateHandshake, {}});
    configure("filer1 = " + service.tls_url() + "\n");
    Process process(PROBE_PROGRAM,
                    {"check", kName, "--json", "--library", PROBE_LIBRARY, "--plugin-path",
                     (folder_ / "libsoapwrapper.so").string()},
                    {}, {});
    service.wait_for_connections(1);
    kill(process.id(), SIGINT);
    const ProcessResult result = process.finish();
    EXPECT_EQ(result.exit_code, 5);
    const json document = json::parse(result.out);
    EXPECT_EQ(document.at("error").at("name"), "interrupted");
    EXPECT_EQ(document.size(), 2U) << "schema and error: " << document;
}

TEST_F(ProbeCheck, SaysThatAServiceSpeaksOlderTlsOnly)
{
    start({"--tls-max", "1.2"});
    configure("filer1 = " + https() + "\ntls_min_version = 1.3\n");
    EXPECT_THAT(findings(6, {kName}), AllOf(Contains(StartsWith("wrong TLS: " + https() + ": TLS fails: ")),
                                            Contains(StartsWith("wrong discovery: "))));
    configure("filer1 = " + https() + "\ntls_min_version = 1.2\n");
    EXPECT_THAT(findings(0, {kName}), Contains(StartsWith("ok TLS: TLSv1.2, ")));
}

TEST_F(ProbeCheck, WarnsOfAConfigurationThatEverybodyMayChange)
{
    configure("reply_timeout = 5\n");
    std::filesystem::permissions(folder_ / "soapwrapper.conf", static_cast<std::filesystem::perms>(0666));
    EXPECT_THAT(findings(0, {}),
                Contains("warning file: everybody on this machine may change it, and so where logins go"));
}

TEST_F(ProbeCheck, SaysWhatIsWrongWithACertificate)
{
    const kit::Authority authority;
    struct Case {
        kit::Identity identity;
        const char* reason;
    };
    const Case cases[] = {
        {authority.issue(kit::Leaf().address("127.0.0.1").expired()), "certificate has expired"},
        {authority.issue(kit::Leaf().dns_name("other.example")), "IP address mismatch"},
        {kit::self_signed(kit::Leaf().address("127.0.0.1")), "self-signed certificate"},
    };
    folder_.write("ca.pem", authority.certificate_pem());
    for (const Case& wrong : cases) {
        SCOPED_TRACE(wrong.reason);
        start(wrong.identity);
        configure("filer1 = " + https() + "\ntls_ca_file = ca.pem\nrequire_tls = yes\n");
        EXPECT_THAT(findings(6, {kName}),
                    AllOf(Contains(AllOf(StartsWith("wrong TLS: "),
                                         HasSubstr("the library refuses the certificate: "),
                                         HasSubstr(wrong.reason))),
                          Contains(StartsWith("wrong discovery: ")), Contains("info login: not tried")));
        simulator_.reset();
    }
}

TEST_F(ProbeCheck, SaysThatNobodyAnswers)
{
    const kit::DeadPort port;
    configure("filer1 = " + port.url() + "\n");
    const std::string address = port.url().substr(std::string("http://").size());
    EXPECT_THAT(findings(6, {kName}),
                Contains("wrong connection: " + port.url() + ": " + address + ": Connection refused"));
}

TEST_F(ProbeCheck, SaysThatANameIsNotTheLibrarys)
{
    EXPECT_THAT(findings(6, {"Disk_x:filer1"}), Contains(HasSubstr("wrong name: STS_ENOTMINE(2060009)")));
    EXPECT_THAT(findings(6, {"Network_x"}), Contains(HasSubstr("wrong name: Network_x has no colon")));
}

TEST_F(ProbeCheck, SaysThatAServerHasTheNameOfASetting)
{
    configure("reply_timeout = 5\n");
    EXPECT_THAT(findings(6, {"Network_x:reply_timeout"}),
                Contains(HasSubstr("wrong name: the server has the name of the setting reply_timeout")));
}

// What the program writes to a terminal.
std::string on_terminal(const Words& arguments, const std::map<std::string, std::string>& environment)
{
    const int reader = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_TRUE(reader >= 0 && grantpt(reader) == 0 && unlockpt(reader) == 0);
    // Held open, so that what was written there isn't gone with the program.
    const int writer = open(ptsname(reader), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    run_process(PROBE_PROGRAM, arguments, environment, ptsname(reader));
    std::string text(65536, '\0');
    const ssize_t size = read(reader, text.data(), text.size());
    text.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    close(writer);
    close(reader);
    return text;
}

TEST_F(ProbeCheck, ShowsColoursOnATerminalOnly)
{
    configure("requre_tls = yes\n");
    const Words arguments = {"check", "--library", FAKE_PLUGIN_THAT_IS_EMPTY, "--plugin-path",
                             (folder_ / "x.so").string()};
    EXPECT_THAT(on_terminal(arguments, {{"TERM", "xterm"}, {"NO_COLOR", ""}}),
                HasSubstr("\033[1;31mWRONG\033[0m"));
    for (const auto& [term, no_color] : {std::pair("xterm", "1"), std::pair("dumb", "")}) {
        EXPECT_THAT(on_terminal(arguments, {{"TERM", term}, {"NO_COLOR", no_color}}),
                    AllOf(HasSubstr("WRONG"), Not(HasSubstr("\033["))));
    }
}

} // namespace
