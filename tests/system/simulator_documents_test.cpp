// The simulator's documents tell of all that it has.
#include "tests/system/document_words.h"
#include "tests/system/probe_process.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <set>
#include <string>

namespace
{

using testing::AnyOf;
using testing::HasSubstr;

const std::filesystem::path kDocuments = std::filesystem::path(SOURCE_FOLDER) / "docs";

TEST(SimulatorDocuments, TellOfEveryOption)
{
    const std::string guide = read_file(kDocuments / "simulator.md");
    const std::string manual = read_manual(kDocuments / "man/soapwrapper-sim.1");
    const std::set<std::string> options =
        words(run_process(SIMULATOR_PROGRAM, {"--help"}).out, "--", kSmallLetters);
    EXPECT_GE(options.size(), 18U);
    for (const std::string& option : options) {
        EXPECT_THAT(guide, AnyOf(HasSubstr("\n| `" + option), HasSubstr(", `" + option))) << option;
        EXPECT_THAT(manual, HasSubstr(option)) << option;
    }
}

} // namespace
