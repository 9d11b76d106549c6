// The completion of the probe's command line in the shells themselves, with names that the simulator serves.
#include "probe_process.h"
#include "simulator_process.h"
#include "tests/system/simulator_api.h"
#include "tests/system/terminal.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <memory>
#include <sstream>

namespace
{

using nlohmann::json;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

using Words = std::vector<std::string>;

const std::string kName = "Network_NTAP:filer1";

Words lines_of(const std::string& text)
{
    Words lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

// Words up to the first tab of each line.
Words first_fields(const std::string& text)
{
    Words words;
    for (const std::string& line : lines_of(text)) words.push_back(line.substr(0, line.find('\t')));
    return words;
}

class ProbeCompletion : public ::testing::Test
{
  protected:
    // LSUs with names that a shell must be kept from understanding.
    ProbeCompletion()
    {
        json scenario = json::parse(run_process(SIMULATOR_PROGRAM, {"--print-scenario"}).out);
        for (const char* name : {"two words", "it's \"so\"", "$(touch hacked)", "`touch hacked`;touch hacked",
                                 "wow!bang", "-dash", "caf\xC3\xA9", "sl/ash"}) {
            json lsu = scenario["servers"][0]["lsus"][0];
            for (const char* key : {"volumes", "images", "snapshots", "files"}) lsu.erase(key);
            lsu["name"] = name;
            scenario["servers"][0]["lsus"].push_back(lsu);
        }
        const std::string file = folder_.write("scenario.json", scenario.dump());
        simulator_ = std::make_unique<SimulatorProcess>(SimulatorProcess::Arguments{"--scenario", file});
        folder_.write("soapwrapper.conf", "# connect_timeout = 5\n\nfiler1 = http://127.0.0.1:" +
                                              std::to_string(simulator_->http_port()) +
                                              "\nfi ler2=https://x:1\nconnect_timeout = 5\n");
        environment_ = {
            {"SOAPWRAPPER_CREDENTIAL", "simulator"},
            {"HOME", (folder_ / "").string()},
            {"PATH", std::filesystem::path(PROBE_PROGRAM).parent_path().string() + ":" + getenv("PATH")},
            {"TERM", "xterm"},
            {"LC_ALL", "C.UTF-8"}};
    }

    std::string options() const
    {
        return std::string(" --library ") + PROBE_LIBRARY + " --plugin-path " +
               (folder_ / "libsoapwrapper.so").string() + " ";
    }

    Words with_options(Words words) const
    {
        words.insert(words.begin(), {"complete", "words", "--library", PROBE_LIBRARY,
                                     "--plugin-path=" + (folder_ / "libsoapwrapper.so").string()});
        return words;
    }

    // What is offered for the last of these words.
    Words offered(const Words& words) const
    {
        return first_fields(run_process(PROBE_PROGRAM, with_options(words), environment_).out);
    }

    // The words of command lines once the keys were typed behind the options, as the shell would pass them.
    std::vector<Words> typed(const Words& shell, const std::string& preparation, const Words& lines) const
    {
        const std::string result = (folder_ / "words").string();
        Words program = {"env", "-C", (folder_ / "").string()};
        program.insert(program.end(), shell.begin(), shell.end());
        std::string keys = preparation + "\n";
        for (const std::string& line : lines) {
            // Back to the beginning of the line, and to its end.
            keys += "soapwrapper-probe" + options() + line + "\x01printf '%s\\n' \x05 >>" + result + "\n";
        }
        on_terminal(program, environment_, keys + "exit\n");
        std::vector<Words> all;
        std::size_t ahead = 0; // the options, of which the test knows
        for (const std::string& word : lines_of(read_file(result))) {
            if (word == "soapwrapper-probe") {
                all.emplace_back();
                ahead = 4;
            } else if (ahead > 0) {
                --ahead;
            } else if (!all.empty()) {
                all.back().push_back(word);
            }
        }
        return all;
    }
    std::vector<Words> typed_in_bash(const Words& lines) const
    {
        return typed({"bash", "--norc", "--noprofile", "-i"}, "source <(soapwrapper-probe completion bash)",
                     lines);
    }
    std::vector<Words> typed_in_zsh(const Words& lines) const
    {
        return typed(
            {"zsh", "-f", "-i"},
            "bindkey -e; autoload -Uz compinit; compinit -u -D; source <(soapwrapper-probe completion "
            "zsh)",
            lines);
    }

    // What fish offers, without descriptions.
    Words offered_by_fish(const std::string& line) const
    {
        const ProcessResult result = run_process(
            "/usr/bin/fish",
            {"--no-config", "-c", "soapwrapper-probe completion fish | source; complete -C \"$argv[1]\"",
             "soapwrapper-probe" + options() + line},
            environment_);
        EXPECT_THAT(result.err, IsEmpty());
        return first_fields(result.out);
    }

    bool was_hacked() const { return std::filesystem::exists(folder_ / "hacked"); }

    json state() const
    {
        return simulator_api::json_of(simulator_api::get(simulator_->http_port(), "/api/state"));
    }

    TemporaryFolder folder_;
    std::unique_ptr<SimulatorProcess> simulator_;
    std::map<std::string, std::string> environment_;
};

TEST_F(ProbeCompletion, OffersCommandsAndWhatIsInTheirGroups)
{
    EXPECT_THAT(offered({""}), AllOf(Contains("discover"), Contains("snapshot"), Contains("completion"),
                                     Not(Contains("complete"))));
    EXPECT_THAT(offered({"operation", ""}), ElementsAre("words", "wait", "status", "cancel"));
    const std::string told = run_process(PROBE_PROGRAM, {"complete", "words", "operation", ""}).out;
    EXPECT_THAT(told, HasSubstr("\ncancel\tCancel an operation"));
}

TEST_F(ProbeCompletion, OffersOptionsThatCanStandThere)
{
    EXPECT_THAT(offered({"snapshots", kName, "--"}),
                AllOf(Contains("--volume"), Contains("--json"), Contains("--credential-file")));
    // Not again, and not beside what excludes it.
    EXPECT_THAT(offered({"snapshots", kName, "--json", "--"}),
                AllOf(Not(Contains("--json")), Not(Contains("--separator"))));
    EXPECT_THAT(offered({"changes", kName, "home", "a", "b", "--filter", "/x", "--"}), Contains("--filter"));
    EXPECT_THAT(offered({"--", "lsus", "--"}), Not(Contains("--json")));
}

TEST_F(ProbeCompletion, OffersTheValuesOfAnOption)
{
    EXPECT_THAT(offered({"changes", "--route", ""}), ElementsAre("words", "service", "zapi"));
    EXPECT_THAT(offered({"changes", "--route=z"}), Contains("--route=zapi"));
    EXPECT_THAT(offered({"--log", ""}), ElementsAre("words", "anomaly", "record", "failure"));
    EXPECT_THAT(offered({"snapshots", kName, "--volume", ""}), AllOf(Contains("open"), Contains("ndmp:")));
    EXPECT_THAT(offered({"--manager", ""}), ElementsAre("files"));
    EXPECT_THAT(offered({"changes", "--filter", ""}), ElementsAre("words"));
    EXPECT_THAT(offered({"completion", ""}), ElementsAre("words", "bash", "zsh", "fish"));
}

TEST_F(ProbeCompletion, OffersServersThatTheConfigurationNames)
{
    EXPECT_THAT(offered({"server", "Net"}), ElementsAre("open", "Network_"));
    EXPECT_THAT(offered({"server", "Network_NTAP:"}),
                ElementsAre("words", "Network_NTAP:filer1", "Network_NTAP:filer2"));
}

// Wherever a shell happens to be.
TEST_F(ProbeCompletion, OffersServersOfTheConfigurationBesideAnInstalledLibrary)
{
    std::filesystem::create_directories(folder_ / "bin");
    std::filesystem::create_directories(folder_ / "lib");
    const std::string program = (folder_ / "bin/soapwrapper-probe").string();
    std::filesystem::copy_file(PROBE_PROGRAM, program);
    const auto offered_servers = [&](const Words& options) {
        Words words = {"-C", (folder_ / "").string(), program, "complete", "words"};
        words.insert(words.end(), options.begin(), options.end());
        words.insert(words.end(), {"server", "Network_NTAP:"});
        return first_fields(run_process("/usr/bin/env", words, environment_).out);
    };
    EXPECT_THAT(offered_servers({}), ElementsAre("words"));
    folder_.write("lib/libsoapwrapper.so", "");
    folder_.write("lib/soapwrapper.conf", "installed = https://x\n");
    EXPECT_THAT(offered_servers({}), ElementsAre("words", "Network_NTAP:installed"));
    EXPECT_THAT(offered_servers({"--library", "lib/libsoapwrapper.so"}),
                ElementsAre("words", "Network_NTAP:installed"));
    // The loader knows where that is.
    EXPECT_THAT(offered_servers({"--library", "libsoapwrapper.so"}), ElementsAre("words"));
}

TEST_F(ProbeCompletion, OffersNamesOfTheService)
{
    EXPECT_THAT(offered({"lsu", kName, ""}),
                ElementsAre("words", "home", "database", "archive", "projects", "two words", "it's \"so\"",
                            "$(touch hacked)", "`touch hacked`;touch hacked", "wow!bang", "caf\xC3\xA9",
                            "sl/ash"));
    EXPECT_THAT(offered({"snapshot", "show", kName, "home", ""}),
                ElementsAre("words", "nightly.0105", "nightly.0106", "nightly.0107", "before-cleanup"));
    EXPECT_THAT(offered({"rollback", "check", kName, "home", "nightly.0105", "--over", ""}),
                Contains("nightly.0106"));
    EXPECT_THAT(offered({"image", "show", kName, "home", ""}), Contains("home_1767744000_C1_F1"));
    EXPECT_THAT(offered({"image", "show", kName, "home", "home_1767744000_C1_F1", ""}),
                ElementsAre("words", "01/07/2026"));
    EXPECT_THAT(offered({"snapshot", "copy", kName, "home", "nightly.0105", "--target", ""}),
                Contains("sl\\/ash"));
}

TEST_F(ProbeCompletion, LeavesNoSessionAndNoListOpen)
{
    EXPECT_THAT(offered({"lsu", kName, ""}), Contains("home"));
    EXPECT_THAT(offered({"snapshot", "show", kName, "home", ""}), Contains("nightly.0105"));
    EXPECT_THAT(state().at("servers").at(0).at("sessions"), IsEmpty());
    EXPECT_THAT(state().at("servers").at(0).at("open"), IsEmpty());
}

TEST_F(ProbeCompletion, IsSilentWithoutACredentialAndWhereTheServiceCannotBeAsked)
{
    const auto quiet = [this](const Words& words) {
        const ProcessResult result = run_process(PROBE_PROGRAM, with_options(words), environment_);
        return result.out == "words\n" && result.err.empty() && result.exit_code == 0;
    };
    EXPECT_TRUE(quiet({"lsu", "Network_NTAP:nobody", "--no-discover", ""}));
    EXPECT_TRUE(quiet({"lsu", "--library", "nothing.so", kName, ""}));
    EXPECT_TRUE(quiet({"lsu", "--credential-file", "/dev/null", kName, ""})); // no regular file
    environment_.erase("SOAPWRAPPER_CREDENTIAL");
    EXPECT_TRUE(quiet({"lsu", kName, ""}));
    const std::string file = folder_.write("credential", "simulator\n");
    EXPECT_FALSE(quiet({"lsu", "--credential-file", file, kName, ""}));
}

TEST_F(ProbeCompletion, FollowsNoOptionThatHasAnEffectOfItsOwn)
{
    const std::string file = (folder_ / "made").string();
    EXPECT_THAT(offered({"lsu", "--record", file, "--trace", file, "--log", "record", kName, ""}),
                Contains("home"));
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(ProbeCompletion, CompletesInBash)
{
    EXPECT_THAT(
        typed_in_bash({"snapshot sh\tNetwork_NTAP:\t", "snapshot sh\t--no-disc\t" + kName + " ho\tbef\t",
                       "lsus --credential-file " + (folder_ / "scen").string() + "\t"}),
        ElementsAre(ElementsAre("snapshot", "show", "Network_NTAP:filer"),
                    ElementsAre("snapshot", "show", "--no-discover", kName, "home", "before-cleanup"),
                    ElementsAre("lsus", "--credential-file", (folder_ / "scenario.json").string())));
}

TEST_F(ProbeCompletion, QuotesNamesInBash)
{
    EXPECT_THAT(
        typed_in_bash({"lsu " + kName + " tw\t", "lsu '" + kName + "' \"two w\t", "lsu " + kName + " 'it\t",
                       "lsu " + kName + " \\$\t", "lsu " + kName + " \\`\t", "lsu " + kName + " \"wow\t"}),
        ElementsAre(ElementsAre("lsu", kName, "two words"), ElementsAre("lsu", kName, "two words"),
                    ElementsAre("lsu", kName, "it's \"so\""), ElementsAre("lsu", kName, "$(touch hacked)"),
                    ElementsAre("lsu", kName, "`touch hacked`;touch hacked"),
                    ElementsAre("lsu", kName, "wow!bang")));
    EXPECT_FALSE(was_hacked());
}

TEST_F(ProbeCompletion, ExecutesNothingThatWasTypedInBash)
{
    const std::string line =
        "soapwrapper-probe lsu --credential-file <(touch hacked; cat) \"$(touch hacked)\" ho";
    const std::string script = "source <(soapwrapper-probe completion bash); compopt() { :; }; cd; "
                               "COMP_LINE=$1 COMP_POINT=${#1}; _soapwrapper_probe soapwrapper-probe ho; "
                               "echo \"${#COMPREPLY[@]}\"";
    const ProcessResult result = run_process("/bin/bash", {"-c", script, "bash", line}, environment_);
    EXPECT_EQ(result.out, "0\n") << result.err;
    EXPECT_FALSE(was_hacked());
}

TEST_F(ProbeCompletion, CompletesInZsh)
{
    EXPECT_THAT(
        typed_in_zsh({"snapshot sh\t--no-disc\tNetwork_NTAP:filer1 ho\tbef\t", "lsu " + kName + " tw\t",
                      "lsu " + kName + " 'it\t", "lsu " + kName + " \\$\t",
                      "lsus --credential-file=" + (folder_ / "scen").string() + "\t"}),
        ElementsAre(ElementsAre("snapshot", "show", "--no-discover", kName, "home", "before-cleanup"),
                    ElementsAre("lsu", kName, "two words"), ElementsAre("lsu", kName, "it's \"so\""),
                    ElementsAre("lsu", kName, "$(touch hacked)"),
                    ElementsAre("lsus", "--credential-file=" + (folder_ / "scenario.json").string())));
    EXPECT_FALSE(was_hacked());
}

TEST_F(ProbeCompletion, CompletesInFish)
{
    EXPECT_THAT(offered_by_fish("snapshot sh"), ElementsAre("show"));
    EXPECT_THAT(offered_by_fish("server Network_NTAP:"),
                ElementsAre("Network_NTAP:filer1", "Network_NTAP:filer2"));
    EXPECT_THAT(offered_by_fish("lsu " + kName + " \\$"), ElementsAre("$(touch hacked)"));
    EXPECT_THAT(offered_by_fish("lsu " + kName + " tw"), ElementsAre("two words"));
    EXPECT_THAT(offered_by_fish("--manager=" + (folder_ / "scen").string()),
                ElementsAre("--manager=" + (folder_ / "scenario.json").string()));
    EXPECT_FALSE(was_hacked());
}

TEST_F(ProbeCompletion, PrintsTheScriptsThatAreInstalled)
{
    const std::filesystem::path scripts = std::filesystem::path(SOURCE_FOLDER) / "probe/completion";
    const std::pair<const char*, const char*> files[] = {{"bash", "soapwrapper-probe.bash"},
                                                         {"zsh", "_soapwrapper-probe"},
                                                         {"fish", "soapwrapper-probe.fish"}};
    for (const auto& [shell, file] : files) {
        const ProcessResult result = run_process(PROBE_PROGRAM, {"completion", shell});
        EXPECT_EQ(result.out, read_file(scripts / file));
        EXPECT_EQ(result.exit_code, 0);
    }
    EXPECT_EQ(run_process(PROBE_PROGRAM, {"completion", "bash"}, {}, "/dev/full").exit_code, 4);
    EXPECT_EQ(run_process(PROBE_PROGRAM, {"completion", "csh"}).exit_code, 2);
}

} // namespace
