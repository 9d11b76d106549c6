// The probe's documents tell of all that it has.
#include "probe_process.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace
{

using ::testing::HasSubstr;

// The words of `text` that begin so and go on with characters of `alphabet`, at least one.
std::set<std::string> words(const std::string& text, const std::string& beginning, const char* alphabet)
{
    std::set<std::string> found;
    for (std::size_t at = text.find(beginning); at != std::string::npos; at = text.find(beginning, at + 1)) {
        const std::size_t rest = at + beginning.size();
        const std::size_t end = std::min(text.find_first_not_of(alphabet, rest), text.size());
        if (end > rest) found.insert(text.substr(at, end - at));
    }
    return found;
}

constexpr char kSmallLetters[] = "abcdefghijklmnopqrstuvwxyz-";
constexpr char kCapitals[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";

std::string without_backslashes(std::string text)
{
    text.erase(std::remove(text.begin(), text.end(), '\\'), text.end());
    return text;
}

const std::filesystem::path kDocuments = std::filesystem::path(SOURCE_FOLDER) / "docs";

TEST(ProbeDocuments, TellOfEveryOption)
{
    std::string help = run_process(PROBE_PROGRAM, {"--help"}).out;
    using Words = std::vector<std::string>;
    for (Words command : {Words{"discover"},
                          Words{"server"},
                          Words{"lsus"},
                          Words{"lsu"},
                          Words{"replication"},
                          Words{"images"},
                          Words{"image", "show"},
                          Words{"image", "delete"},
                          Words{"snapshots"},
                          Words{"snapshot", "show"},
                          Words{"snapshot", "delete"},
                          Words{"rollback", "check"},
                          Words{"snapshot", "create"},
                          Words{"snapshot", "copy"},
                          Words{"snapshot", "prepare"},
                          Words{"snapshot", "postprocess"},
                          Words{"snapshot", "validate"},
                          Words{"snapshot", "import"},
                          Words{"snapshot", "rollback"},
                          Words{"snapshot", "diff"},
                          Words{"topology", "provision"},
                          Words{"operation", "wait"},
                          Words{"operation", "status"},
                          Words{"operation", "cancel"},
                          Words{"export", "create"},
                          Words{"export", "add"},
                          Words{"export", "delete"},
                          Words{"changes"},
                          Words{"claim"},
                          Words{"ioctl"},
                          Words{"events"}}) {
        command.emplace_back("--help");
        const ProcessResult result = run_process(PROBE_PROGRAM, command);
        EXPECT_EQ(result.exit_code, 0) << command.front();
        help += result.out;
    }
    const std::set<std::string> options = words(help, "--", kSmallLetters);
    EXPECT_GE(options.size(), 34U);
    const std::string guide = read_file(kDocuments / "probe.md");
    const std::string manual = without_backslashes(read_file(kDocuments / "man/soapwrapper-probe.1"));
    for (const std::string& option : options) {
        EXPECT_THAT(guide, HasSubstr("`" + option)) << option;
        EXPECT_THAT(manual, HasSubstr(option)) << option;
    }
}

TEST(ProbeDocuments, TellOfEveryStatus)
{
    const std::string header = read_file(std::filesystem::path(SOURCE_FOLDER) / "plugin/host/status.h");
    const std::set<std::string> names = words(header, "STS_E", kCapitals);
    EXPECT_GE(names.size(), 16U);
    const std::string guide = read_file(kDocuments / "probe.md");
    for (const std::string& name : names) EXPECT_THAT(guide, HasSubstr("| `" + name + "` |"));
}

} // namespace
