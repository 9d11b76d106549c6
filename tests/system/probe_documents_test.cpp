// The probe's documents tell of all that it has.
#include "probe_process.h"
#include "tests/system/document_words.h"

#include <gmock/gmock.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using ::testing::AnyOf;
using ::testing::HasSubstr;

constexpr char kCapitals[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";

const std::filesystem::path kDocuments = std::filesystem::path(SOURCE_FOLDER) / "docs";

std::string help_of(std::vector<std::string> command)
{
    command.emplace_back("--help");
    const ProcessResult result = run_process(PROBE_PROGRAM, command);
    EXPECT_EQ(result.exit_code, 0) << command.front();
    return result.out;
}

struct Command {
    std::string words;
    std::string help;
};

// What can be asked of the probe, as its help tells.
void collect_commands(const std::vector<std::string>& command, std::vector<Command>& found)
{
    std::istringstream help(help_of(command));
    std::string line;
    while (std::getline(help, line) && line != "Subcommands:") continue;
    if (!help) {
        std::string words;
        for (const std::string& word : command) words += (words.empty() ? "" : " ") + word;
        found.push_back({words, help.str()});
    }
    while (std::getline(help, line) && !line.empty()) {
        std::vector<std::string> below = command;
        std::istringstream(line) >> below.emplace_back();
        collect_commands(below, found);
    }
}

std::vector<Command> all_commands()
{
    std::vector<Command> found;
    collect_commands({}, found);
    EXPECT_GE(found.size(), 31U);
    return found;
}

std::string guide()
{
    return read_file(kDocuments / "probe.md");
}

std::string manual()
{
    return read_manual(kDocuments / "man/soapwrapper-probe.1");
}

// What stands behind the command's words, as its help tells.
std::string first_argument(const std::string& help)
{
    const std::string options = " [OPTIONS] ";
    const std::string rest = help.substr(help.find(options) + options.size());
    return rest.substr(0, rest.find_first_of(" \n"));
}

TEST(ProbeDocuments, TellOfEveryCommand)
{
    for (const Command& command : all_commands()) {
        const std::string argument = first_argument(command.help);
        const std::string usage = command.words + " " + argument;
        EXPECT_THAT(guide(), AnyOf(HasSubstr("`" + usage), HasSubstr("\n### " + usage))) << usage;
        EXPECT_THAT(manual(), HasSubstr("\n.BI " + command.words + "  " + argument)) << command.words;
    }
}

TEST(ProbeDocuments, TellOfEveryOption)
{
    std::string help = help_of({});
    for (const Command& command : all_commands()) help += command.help;
    const std::set<std::string> options = words(help, "--", kSmallLetters);
    EXPECT_GE(options.size(), 34U);
    for (const std::string& option : options) {
        EXPECT_THAT(guide(), HasSubstr("`" + option)) << option;
        EXPECT_THAT(manual(), HasSubstr(option)) << option;
    }
}

TEST(ProbeDocuments, TellOfEveryNameOfAResult)
{
    const std::string schema = read_file(kDocuments / "probe.schema.json");
    const std::string header =
        read_file(std::filesystem::path(SOURCE_FOLDER) / "plugin/host/async_records.h");
    const std::set<std::string> names = words(header, "STS_RESULT_", kCapitals);
    EXPECT_EQ(names.size(), 6U);
    for (const std::string& name : names) EXPECT_THAT(schema, HasSubstr('"' + name + '"'));
}

TEST(ProbeDocuments, TellOfEveryStatus)
{
    const std::string header = read_file(std::filesystem::path(SOURCE_FOLDER) / "plugin/host/status.h");
    const std::set<std::string> names = words(header, "STS_E", kCapitals);
    EXPECT_GE(names.size(), 16U);
    for (const std::string& name : names) EXPECT_THAT(guide(), HasSubstr("| `" + name + "` |"));
}

} // namespace
