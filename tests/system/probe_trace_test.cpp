// The probe lets itself be watched, and takes a configuration from anywhere.
#include "probe_fixture.h"
#include "tests/kit/authority.h"

#include <sys/stat.h>

#include <fstream>
#include <future>
#include <iterator>
#include <regex>
#include <vector>

namespace
{

using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

class ProbeTrace : public ProbeTest
{
  protected:
    ProbeTrace() { answer_all(); }

    std::string trace() const { return read_file(folder / "trace"); }

    // Runs a command with a trace, and an environment in which a login is possible.
    ProcessResult traced(std::vector<std::string> command,
                         const std::string& credential = "the credential") const
    {
        command.insert(command.end(), {"--trace", (folder / "trace").string()});
        return probe(command, {{"SOAPWRAPPER_CREDENTIAL", credential}});
    }

    // Has the service be found, and called, over TLS.
    void use_tls()
    {
        folder.write("soapwrapper.conf", "filer = " + service.tls_url() + "\n");
        service.answer("getServerPropByName", information({"11;1;2;https;" + service.tls_url()}));
    }

    // What the first lines of exchanges say, without number, time, address and duration.
    std::vector<std::string> exchanges() const
    {
        static const std::regex kFirstLine(
            "#[0-9]+  [-0-9]+T[:0-9]+\\.[0-9]{3}Z  (.*)  127\\.0\\.0\\.1:[0-9]+(  .*)  "
            "[0-9]+\\.[0-9] ms");
        std::vector<std::string> found;
        std::istringstream lines(trace());
        for (std::string line; std::getline(lines, line);) {
            std::smatch parts;
            if (std::regex_match(line, parts, kFirstLine)) found.push_back(parts.str(1) + parts.str(2));
        }
        return found;
    }
};

TEST_F(ProbeTrace, ShowsEachRequestAndItsReply)
{
    EXPECT_EQ(traced({"server", kName}).exit_code, 0);
    const std::string post = "POST " + service.url() + "/  plain  ";
    EXPECT_THAT(exchanges(), ElementsAre(post + "getServerPropByName  200", post + "openServer  200",
                                         post + "getServerProp  200", post + "closeServer  200"));
    EXPECT_THAT(trace(), StartsWith("#1  "));
    EXPECT_THAT(trace(),
                AllOf(HasSubstr("\n> POST / HTTP/1.1\n> Host: "), HasSubstr("\n>   <SOAP-ENV:Body>\n"),
                      HasSubstr("\n< HTTP/1.1 200 OK\n"), HasSubstr("\n\n#2  ")));
}

TEST_F(ProbeTrace, ShowsWhatIsAheadOfTlsAndBehindIt)
{
    use_tls();
    EXPECT_EQ(traced({"server", kName}).exit_code, 0);
    const std::string post = "POST " + service.tls_url() + "/  TLSv1.3, TLS_AES_256_GCM_SHA384";
    EXPECT_THAT(exchanges(),
                ElementsAre(post + "  getServerPropByName  200", post + ", resumed  openServer  200",
                            post + ", resumed  getServerProp  200", post + ", resumed  closeServer  200"));
    EXPECT_THAT(trace(), HasSubstr("\n>   <SOAP-ENV:Body>\n"));
}

TEST_F(ProbeTrace, ShowsAFault)
{
    service.refuse("getServerPropByName", "not here", 2060005);
    EXPECT_EQ(traced({"discover", kName}).exit_code, 4);
    EXPECT_THAT(exchanges(), Each(HasSubstr("getServerPropByName  500")));
    EXPECT_THAT(trace(), HasSubstr("not here"));
}

TEST_F(ProbeTrace, ShowsConnectionsThatWereNotMade)
{
    const kit::DeadPort dead;
    folder.write("soapwrapper.conf", "filer = " + dead.url() + "\n");
    EXPECT_EQ(traced({"discover", kName}).exit_code, 4);
    EXPECT_THAT(exchanges(), AllOf(Not(IsEmpty()), Each("-  -  -  -")));
    EXPECT_THAT(trace(), HasSubstr(" ms\n! Connection refused\n"));
}

TEST_F(ProbeTrace, ShowsAHostThatIsNotFound)
{
    const std::string host(80, 'a'); // more than a name may have, so that nobody is asked
    folder.write("soapwrapper.conf", "filer = http://" + host + ":1\n");
    EXPECT_EQ(traced({"discover", kName}).exit_code, 4);
    EXPECT_THAT(trace(), ContainsRegex("  -  " + host + ":1  -  -  -  [0-9.]+ ms\n! ."));
}

TEST_F(ProbeTrace, ShowsARefusedCertificate)
{
    use_tls();
    folder.write("ca.pem", kit::Authority().certificate_pem());
    std::ofstream(folder / "soapwrapper.conf", std::ios::app) << "tls_ca_file = ca.pem\n";
    EXPECT_EQ(traced({"discover", kName}).exit_code, 4);
    EXPECT_THAT(exchanges(), Each("-  TLS  -  -"));
    EXPECT_THAT(trace(), ContainsRegex("\n! [^\n]*certificate"));
}

TEST_F(ProbeTrace, ShowsAReplyThatIsNotWhole)
{
    service.answer_raw("getServerPropByName", "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n<!-- half");
    EXPECT_EQ(traced({"discover", kName}).exit_code, 4);
    EXPECT_THAT(trace(), HasSubstr("\n< <!-- half\n! the service ended the connection within the reply\n"));
}

TEST_F(ProbeTrace, ShowsARequestThatGotNoReplyAtAll)
{
    service.answer_raw("getServerPropByName", "");
    EXPECT_EQ(traced({"discover", kName}).exit_code, 4);
    EXPECT_THAT(trace(), HasSubstr("\n! the service ended the connection without a reply\n"));
}

TEST_F(ProbeTrace, DoesNoHarmToATerminal)
{
    service.answer_raw("getServerPropByName", "HTTP/1.1 200 \x1b[2J\r\nContent-Length: 7\r\n\r\n<a>\x1b]0;");
    traced({"discover", kName});
    EXPECT_THAT(trace(), AllOf(HasSubstr("[2J"), HasSubstr("]0;"), Not(HasSubstr("\x1b"))));
}

TEST_F(ProbeTrace, HoldsNoCredentialHoweverTheServiceQuotesIt)
{
    const std::string credential = "s3cret <&> w\xC3\xB6rd";
    const std::string encoded = "czNjcmV0IDwmPiB3w7ZyZA=="; // behind none, one and two bytes
    const std::string encoded_behind_one = "eHMzY3JldCA8Jj4gd8O2cmQ=";
    const std::string encoded_behind_two = "eHhzM2NyZXQgPCY+IHfDtnJk";
    service.refuse("openServer",
                   "s3cret &lt;&amp;&gt; w\xC3\xB6rd " + encoded + ", " + encoded_behind_one + ", " +
                       encoded_behind_two + ", 0123456789abcdef0123456789abcdef",
                   2060005);
    EXPECT_EQ(traced({"server", kName}, credential).exit_code, 4);
    EXPECT_THAT(exchanges(), testing::Contains(HasSubstr("openServer  500")));
    for (const std::string& secret : {std::string("s3cret"), std::string("w\xC3\xB6rd"),
                                      encoded.substr(4, 12), encoded_behind_one.substr(4, 12),
                                      encoded_behind_two.substr(4, 12), std::string("0123456789abcdef")}) {
        EXPECT_THAT(trace(), Not(HasSubstr(secret)));
    }
}

TEST_F(ProbeTrace, HoldsNoToken)
{
    service.answer("openServer", "<ns1:serverHandle><ns1:token>T-123</ns1:token></ns1:serverHandle>");
    EXPECT_EQ(traced({"server", kName}).exit_code, 0);
    EXPECT_THAT(trace(), AllOf(HasSubstr("[token 1]"), Not(HasSubstr("T-123"))));
}

TEST_F(ProbeTrace, HoldsNoCredentialOfACertElement)
{
    EXPECT_EQ(traced({"server", kName}, "abc").exit_code, 0); // too short to be looked for elsewhere
    EXPECT_THAT(trace(), AllOf(HasSubstr("cert>***</"), Not(HasSubstr("YWJj"))));
}

TEST_F(ProbeTrace, GoesToStandardErrorToo)
{
    const ProcessResult result = probe({"discover", kName, "--trace", "-"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(result.err, AllOf(StartsWith("#1  "), HasSubstr("\n< HTTP/1.1 200 OK\n")));
    EXPECT_EQ(result.out, probe({"discover", kName}).out);
}

TEST_F(ProbeTrace, GoesToAPipe)
{
    ASSERT_EQ(mkfifo((folder / "trace").c_str(), 0600), 0);
    auto read = std::async(std::launch::async, [this] { return trace(); });
    EXPECT_EQ(traced({"discover", kName}).exit_code, 0);
    EXPECT_THAT(read.get(), AllOf(StartsWith("#1  "), HasSubstr("\n< HTTP/1.1 200 OK\n")));
}

TEST_F(ProbeTrace, LeavesNothingOpenWhereItsReaderLeaves)
{
    ASSERT_EQ(mkfifo((folder / "trace").c_str(), 0600), 0);
    const std::shared_future<void> gone =
        std::async(std::launch::async, [this] { std::ifstream(folder / "trace").close(); });
    service.watch([&](const std::string& /*operation*/, long /*times*/) { gone.wait(); });
    const ProcessResult result = traced({"server", kName});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_EQ(result.err, "trace: it could not be written\n");
    EXPECT_EQ(service.operations().back(), "closeServer");
}

TEST_F(ProbeTrace, ThatCannotBeWrittenIsAnErrorThatIsToldOnce)
{
    const ProcessResult result = probe({"discover", kName, "--trace", "/dev/full"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_EQ(result.err, "trace: it could not be written\n");
    EXPECT_THAT(result.out, HasSubstr("filer.example.com"));
}

TEST_F(ProbeTrace, ThatCannotBeWrittenDoesNotHideAnotherError)
{
    service.refuse("getServerPropByName", "not here", 2060005);
    const ProcessResult result = probe({"discover", kName, "--trace", "/dev/full"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("STS_EBUSY(2060005)"), HasSubstr("trace: it could not be written\n")));
}

TEST_F(ProbeTrace, IsAFileForItsOwnerAloneInPlaceOfAnOldOne)
{
    const mode_t mask = umask(0);
    folder.write("trace", "the old one", std::filesystem::perms::all);
    std::filesystem::create_hard_link(folder / "trace", folder / "other name");
    EXPECT_EQ(traced({"discover", kName}).exit_code, 0);
    umask(mask);
    EXPECT_THAT(trace(), StartsWith("#1  "));
    EXPECT_EQ(read_file(folder / "other name"), "the old one");
    EXPECT_EQ(std::filesystem::status(folder / "trace").permissions(),
              static_cast<std::filesystem::perms>(0600));
}

TEST_F(ProbeTrace, IsNotWrittenThroughALink)
{
    folder.write("target", "not a trace");
    std::filesystem::create_symlink(folder / "target", folder / "trace");
    const ProcessResult result = traced({"discover", kName});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_THAT(result.err, HasSubstr("link to a regular file"));
    EXPECT_EQ(read_file(folder / "target"), "not a trace");
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeTrace, ThatCannotBeBegunIsAUsageError)
{
    for (const std::string& path :
         {(folder / "no folder/trace").string(), (folder / "").string(), std::string()}) {
        EXPECT_EQ(probe({"discover", kName, "--trace", path}).exit_code, 2) << path;
    }
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeTrace, ReplacesNoFileThatIsNeeded)
{
    const std::string kept = folder.write("kept", "the old one");
    const std::string none = (folder / "none").string();
    const std::string again = (folder / "." / "kept").string();
    const std::vector<std::vector<std::string>> cases = {
        {"discover", kName, "--trace", none, "--record", none},
        {"discover", kName, "--trace", kept, "--record", again},
        {"discover", kName, "--config", kept, "--trace", again},
        {"discover", kName, "--config", kept, "--record", again},
        {"server", kName, "--credential-file", kept, "--trace", again},
        {"snapshot", "show", kName, "vol1", "a", "--record", again, "--credential-file", kept},
    };
    for (const std::vector<std::string>& words : cases) {
        // Not with the fixture's own plug-in path, which doesn't go together with --config.
        std::vector<std::string> arguments = words;
        arguments.insert(arguments.end(), {"--library", PROBE_LIBRARY});
        const ProcessResult result = run_process(PROBE_PROGRAM, arguments);
        EXPECT_EQ(result.exit_code, 2);
        EXPECT_THAT(result.err, HasSubstr(" need two files\n"));
        EXPECT_EQ(read_file(kept), "the old one");
        EXPECT_FALSE(std::filesystem::exists(none));
    }
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeTrace, SharesADeviceWithARecording)
{
    EXPECT_EQ(probe({"discover", kName, "--trace", "/dev/null", "--record", "/dev/null"}).exit_code, 0);
}

class ProbeConfig : public ProbeTest
{
  protected:
    // The library with this configuration, and none beside it.
    static ProcessResult configured(const std::string& path, std::vector<std::string> arguments = {})
    {
        arguments.insert(arguments.begin(),
                         {"discover", kName, "--library", PROBE_LIBRARY, "--config", path});
        return run_process(PROBE_PROGRAM, arguments);
    }
};

TEST_F(ProbeConfig, ComesFromAFileOfAnyName)
{
    answer_all();
    const std::string path = folder.write("other name.conf", "filer = " + service.url() + "\n");
    folder.write("soapwrapper.conf", "filer = " + kit::DeadPort().url() + "\n");
    EXPECT_EQ(configured(path).exit_code, 0);
}

TEST_F(ProbeConfig, LeadsToAuthoritiesInTheFilesFolder)
{
    const kit::Authority authority;
    service.set_tls_context(kit::make_tls_server_context(authority.issue(kit::Leaf().address("127.0.0.1"))));
    service.answer("getServerPropByName", information({"11;1;2;https;" + service.tls_url()}));
    const std::string path = folder.write(
        "strict.conf", "require_tls = yes\ntls_ca_file = ca.pem\nfiler = " + service.tls_url() + "\n");
    folder.write("ca.pem", authority.certificate_pem());
    EXPECT_EQ(configured(path).exit_code, 0);
    folder.write("ca.pem", kit::Authority().certificate_pem());
    const ProcessResult refused = configured(path);
    EXPECT_EQ(refused.exit_code, 4);
    EXPECT_THAT(refused.err, HasSubstr("certificate"));
}

TEST_F(ProbeConfig, MayComeFromAPipe)
{
    answer_all();
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    auto written = std::async(std::launch::async, [this] {
        std::ofstream(folder / "pipe") << "filer = " << service.url() << "\n";
    });
    EXPECT_EQ(configured(folder / "pipe").exit_code, 0);
}

TEST_F(ProbeConfig, LeavesNothingBehind)
{
    answer_all();
    const std::string path = folder.write("other.conf", "filer = " + service.url() + "\n");
    std::filesystem::create_directory(folder / "temporary");
    const std::vector<std::string> arguments = {"discover",    kName,      "--library",
                                                PROBE_LIBRARY, "--config", path};
    EXPECT_EQ(run_process(PROBE_PROGRAM, arguments, {{"TMPDIR", folder / "temporary"}}).exit_code, 0);
    EXPECT_TRUE(std::filesystem::is_empty(folder / "temporary"));
    EXPECT_FALSE(
        std::filesystem::exists(std::filesystem::path(PROBE_LIBRARY).parent_path() / "soapwrapper.conf"));
}

TEST_F(ProbeConfig, ThatCannotBeReadIsAUsageError)
{
    for (const std::string& path : {(folder / "none.conf").string(), (folder / "").string()}) {
        const ProcessResult result = configured(path);
        EXPECT_EQ(result.exit_code, 2) << path;
        EXPECT_THAT(result.err, HasSubstr("the configuration file cannot be read"));
    }
}

TEST_F(ProbeConfig, GoesWithNoOtherPlaceOfTheLibrary)
{
    const std::string path = folder.write("other.conf", "");
    EXPECT_EQ(configured(path, {"--plugin-path", path}).exit_code, 2);
}

} // namespace
