#include "tests/system/probe_process.h"
#include "tests/system/simulator_catalogue.h"

namespace
{

using namespace simulator_catalogue;

ProcessResult run_simulator(const std::vector<std::string>& arguments)
{
    return run_process(SIMULATOR_PROGRAM, arguments);
}

TEST(SimulatorScenarioFile, TheBuiltInScenarioIsPrintedAndAcceptedAgain)
{
    const ProcessResult printed = run_simulator({"--print-scenario"});
    EXPECT_EQ(printed.exit_code, 0);
    EXPECT_EQ(printed.err, "");
    EXPECT_THAT(printed.out, StartsWith("{\n  \"servers\": [\n"));
    const TemporaryFolder folder;
    const SimulatorProcess simulator({"--scenario", folder.write("built-in.json", printed.out)});
    const std::string by_name = nil("sd") + element("server", "Network_VAULT:filer");
    EXPECT_EQ(text_of(ask(simulator.http_port(), "getServerPropByName", by_name).body, "sth"),
              element("item", "Network_VAULT"));
}

const std::string kSmall = R"({"servers": [{"prefix": "Mine", "maxSessions": 3, "lsus": [
    {"name": "one", "label": "first", "replicationTargets": [{"server": "Else:where", "lsu": "two"}],
     "images": [{"basename": "i", "date": "a"}, {"basename": "i", "date": "b"}]}]}]})";

class SimulatorWithAScenario : public Client
{
  protected:
    SimulatorWithAScenario() : SimulatorWithAScenario(TemporaryFolder()) {}

  private:
    explicit SimulatorWithAScenario(const TemporaryFolder& folder)
        : Client({"--scenario", folder.write("small.json", kSmall)})
    {
    }
};

TEST_F(SimulatorWithAScenario, AFileDescribesTheStorageThatIsServed)
{
    const std::string server = open_server("Mine:host");
    EXPECT_EQ(text_of(ask("getServerProp", server_handle(server)).body, "maxconnect"), "3");
    EXPECT_THAT(rest(kLsus, open("openLSUList", server_handle(server) + nil("lsudef"))),
                ElementsAre("one", kEnd));
    EXPECT_EQ(text_of(ask("getLSUPropByName", lsu(server, "one")).body, "label"), "first");
    EXPECT_EQ(open_server("Network_NTAP:host"), "");
}

TEST_F(SimulatorWithAScenario, APartnerWithAColonInItsServerIsToldAsItStands)
{
    const HttpReply reply =
        ask("getLSUReplicationProp",
            lsu(open_server("Mine:host"), "one") + element("nsource", "0") + element("ntarget", "1"));
    EXPECT_EQ(text_of(reply.body, "target"),
              element("item", element("server", "Else:where") + element("lsu", "two")));
}

TEST_F(SimulatorWithAScenario, ANameThatTwoImagesShareNeedsTheDateToo)
{
    const std::string reference = lsu(open_server("Mine:host"), "one");
    const auto wanted = [](const std::string& date) {
        return element("image", element("basename", "i") + element("date", date));
    };
    EXPECT_EQ(fault("getImagePropByName", reference + wanted("")), kBadValue);
    EXPECT_EQ(ask("getImagePropByName", reference + wanted("b")).status, 200);
}

TEST(SimulatorScenarioFile, AFileThatIsWrongEndsTheSimulatorWithItsNameAndTheReason)
{
    const TemporaryFolder folder;
    const std::string syntax = folder.write("syntax.json", "{\n  \"servers\": [,]\n}\n");
    const ProcessResult wrong_syntax = run_simulator({"--scenario", syntax});
    EXPECT_EQ(wrong_syntax.exit_code, 2);
    EXPECT_EQ(wrong_syntax.out, "");
    EXPECT_THAT(wrong_syntax.err, StartsWith("soapwrapper-sim: " + syntax + ": line 2, column 15: "));

    const std::string member = folder.write("member.json", R"({"servers": [{"prefix": 7}]})");
    const ProcessResult wrong_member = run_simulator({"--scenario", member});
    EXPECT_EQ(wrong_member.exit_code, 2);
    EXPECT_EQ(wrong_member.err,
              "soapwrapper-sim: " + member + ": servers[0].prefix: a string is expected, not number\n");
}

TEST(SimulatorScenarioFile, AFileThatCannotBeReadIsSaidToBeSo)
{
    const TemporaryFolder folder;
    const std::string missing = (folder / "missing.json").string();
    const ProcessResult none = run_simulator({"--scenario", missing});
    EXPECT_EQ(none.exit_code, 2);
    EXPECT_EQ(none.err, "soapwrapper-sim: " + missing + ": can't be read: No such file or directory\n");
    EXPECT_THAT(run_simulator({"--scenario", folder.write("empty.json", "")}).err, HasSubstr("it is empty"));
    EXPECT_THAT(run_simulator({"--scenario", (folder / ".").string()}).err, HasSubstr("Is a directory"));
    EXPECT_THAT(run_simulator({"--scenario", ""}).err, HasSubstr("--scenario"));
}

TEST(SimulatorScenarioFile, AllThatIsWrongWithAFileIsToldALineEach)
{
    const TemporaryFolder folder;
    const std::string wrong = folder.write("wrong.json", R"({"servers": [{"prefix": 7}, {"prefix": 8}]})");
    EXPECT_EQ(run_simulator({"--scenario", wrong}).err,
              "soapwrapper-sim: " + wrong + ": servers[0].prefix: a string is expected, not number\n" +
                  wrong + ": servers[1].prefix: a string is expected, not number\n");
}

TEST(SimulatorScenarioCheck, EndsWellForTheBuiltInScenario)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("built-in.json", run_simulator({"--print-scenario"}).out);
    const ProcessResult checked = run_simulator({"--check-scenario", file});
    EXPECT_EQ(checked.exit_code, 0);
    EXPECT_EQ(checked.out, file + ": no errors, no warnings\n");
    EXPECT_EQ(checked.err, "");
}

TEST(SimulatorScenarioCheck, TellsErrorsAndWarningsWithTheirPlacesAndTheirNumber)
{
    const TemporaryFolder folder;
    const std::string file = folder.write(
        "mine.json",
        R"({"servers": [{"prefix": "Mine", "maxSessions": 0, "lsus": [{"name": "l", "tree": "t"}]}]})");
    const ProcessResult checked = run_simulator({"--check-scenario", file});
    EXPECT_EQ(checked.exit_code, 2);
    EXPECT_EQ(checked.out,
              file + ": error: servers[0].maxSessions: 1 or more is expected\n" + file +
                  ": warning: servers[0].prefix: the library claims no server whose name doesn't begin with "
                  "\"Network_\"\n" +
                  file + ": warning: servers[0].lsus[0].tree: the directory " + (folder / "t").string() +
                  " can't be read: No such file or directory\n" + file + ": 1 error, 2 warnings\n");
    EXPECT_EQ(checked.err, "");
    const std::string warned = folder.write("warned.json", R"({"servers": [{"prefix": "Mine"}]})");
    EXPECT_EQ(run_simulator({"--check-scenario", warned}).exit_code, 2);
}

// Run by a shell, as $0.
ProcessResult check_by_shell(const std::string& commands)
{
    return run_process("/bin/sh", {"-c", commands, SIMULATOR_PROGRAM});
}

TEST(SimulatorScenarioCheck, ReadsStandardInputAndAPipeThatHasAName)
{
    EXPECT_EQ(check_by_shell("echo '{' | \"$0\" --check-scenario - | cut -c 1-45").out,
              "standard input: error: line 2, column 1: synt\nstandard input: 1 error, no warnings\n");
    const TemporaryFolder folder;
    const std::string pipe = (folder / "pipe").string();
    EXPECT_EQ(check_by_shell("mkfifo " + pipe +
                             " && { echo '{\"servers\": [{\"prefix\": \"Network_A\"}]}' > " + pipe +
                             " & \"$0\" --check-scenario " + pipe + "; }")
                  .out,
              pipe + ": no errors, no warnings\n");
}

TEST(SimulatorScenarioCheck, TellsThatAFileCannotBeReadOrHasNoEnd)
{
    const TemporaryFolder folder;
    const auto check = [](const std::string& file) {
        const ProcessResult checked = run_simulator({"--check-scenario", file});
        EXPECT_EQ(checked.exit_code, 2);
        return checked.out;
    };
    const std::string missing = (folder / "missing.json").string();
    EXPECT_EQ(check(missing), missing + ": error: can't be read: No such file or directory\n" + missing +
                                  ": 1 error, no warnings\n");
    EXPECT_THAT(check((folder / ".").string()), HasSubstr("error: can't be read: Is a directory"));
    EXPECT_THAT(check(folder.write("empty.json", "")), HasSubstr("error: can't be read: it is empty"));
    EXPECT_THAT(check("/dev/zero"), HasSubstr("error: can't be read: it is longer than 16 MiB"));
}

} // namespace
