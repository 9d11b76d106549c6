// LSUs and long operations that are watched, on a terminal and elsewhere.
#include "probe_operations_fixture.h"
#include "tests/system/terminal.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <sstream>

namespace
{

using nlohmann::json;
using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

using Words = std::vector<std::string>;

constexpr char kProperties[] = "getLSUPropByName";
constexpr int kUnreachable = 2060017;

Words lines_of(const std::string& text)
{
    Words lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

std::vector<json> documents_of(const std::string& text)
{
    std::vector<json> documents;
    for (const std::string& line : lines_of(text)) documents.push_back(json::parse(line));
    return documents;
}

class ProbeWatch : public ProbeOperationsTest
{
  protected:
    ProbeWatch() { service.answer(kProperties, properties(256)); }

    static std::string properties(long used, long capacity = 1024)
    {
        return element("info", element("def", element("name", "vol1")) +
                                   element("capacity", std::to_string(capacity)) +
                                   element("used", std::to_string(used)) + element("images", "3"));
    }

    // Nobody waits for seconds.
    static Words watch(Words words, const std::string& count = {})
    {
        words.insert(words.begin(), "watch");
        words.insert(words.end(), {"--interval", "0.001"});
        if (!count.empty()) words.insert(words.end(), {"--count", count});
        return words;
    }
    ProcessResult run_watch(const Words& words, const std::string& count = {}) const
    {
        return run(watch(words, count));
    }

    // The table on the screen, without what was written ahead of it.
    static Words table_after(const std::string& text)
    {
        Words lines = screen_after(text);
        const auto begin = std::find_if(lines.begin(), lines.end(),
                                        [](const std::string& line) { return line.rfind(kName, 0) == 0; });
        lines.erase(lines.begin(), begin);
        return lines;
    }

    TerminalRun watched_on_terminal(const Words& words, const std::string& count,
                                    TerminalSize size = {}) const
    {
        Words program = complete(watch(words, count));
        program.insert(program.begin(), PROBE_PROGRAM);
        return on_terminal(program, {{"SOAPWRAPPER_CREDENTIAL", "open sesame"}, {"TERM", "xterm"}}, "", size);
    }
};

TEST_F(ProbeWatch, TellsALineForEachLsuAtEachRenewal)
{
    service.answer_first(kProperties, properties(256));
    service.answer_first(kProperties, properties(512));
    service.answer_first(kProperties, properties(192));
    service.answer_first(kProperties, properties(612));
    const ProcessResult result = run_watch({"lsu", kName, "vol1", "vol2", "--separator", "|"}, "2");
    EXPECT_EQ(result.exit_code, 0) << result.err;
    const std::string time = "20[0-9-]+T[0-9:]+Z\\|";
    EXPECT_THAT(lines_of(result.out),
                ElementsAre(MatchesRegex(time + "vol1\\|25%\\|256\\|1024\\|3\\|0\\|\\|good"),
                            MatchesRegex(time + "vol2\\|50%\\|512\\|1024\\|3\\|0\\|\\|good"),
                            MatchesRegex(time + "vol1\\|18%\\|192\\|1024\\|3\\|-64\\|-[0-9]+\\|good"),
                            MatchesRegex(time + "vol2\\|59%\\|612\\|1024\\|3\\|100\\|[0-9]+\\|good")));
    EXPECT_EQ(count("openServer"), 1);
    EXPECT_EQ(count("closeServer"), 1);
}

TEST_F(ProbeWatch, TellsADocumentForEachRenewal)
{
    service.answer_first(kProperties, properties(256));
    service.answer_first(kProperties, properties(512));
    const auto documents = documents_of(run_watch({"lsu", kName, "vol1", "--json"}, "2").out);
    ASSERT_THAT(documents, SizeIs(2));
    EXPECT_EQ(documents[0].at("server"), kName);
    EXPECT_TRUE(documents[0].at("lsus").at(0).at("rate").is_null());
    const json& lsu = documents[1].at("lsus").at(0);
    EXPECT_EQ(lsu.at("name"), "vol1");
    EXPECT_EQ(lsu.at("used"), 512);
    EXPECT_EQ(lsu.at("change"), 256);
    EXPECT_GT(lsu.at("rate"), 0);
    EXPECT_FALSE(lsu.contains("error"));
}

TEST_F(ProbeWatch, WritesATableOverAndOverOnATerminal)
{
    service.answer_first(kProperties, properties(1000));
    const TerminalRun run = watched_on_terminal({"lsu", kName, "vol1"}, "3");
    EXPECT_EQ(run.exit_code, 0);
    EXPECT_THAT(
        table_after(run.text),
        ElementsAre(StartsWith(std::string(kName) + "  0:00"), StartsWith("LSU   FULL  "),
                    AllOf(StartsWith("vol1  [##........]  25%"), HasSubstr(" -744 B"), HasSubstr("good"))));
    EXPECT_EQ(count(kProperties), 3);
    EXPECT_EQ(count("closeServer"), 1);
}

TEST_F(ProbeWatch, KeepsToTheWidthAndHeightOfTheTerminal)
{
    const Words words = {"lsu", kName, "vol1", "vol2", "vol3", "vol4"};
    const TerminalRun run = watched_on_terminal(words, "2", {5, 30});
    const Words screen = table_after(run.text);
    ASSERT_THAT(screen, SizeIs(4)); // the cursor stands in the last row
    EXPECT_THAT(screen[2], StartsWith("vol1"));
    EXPECT_EQ(screen[3], "and 3 lines more");
    for (const std::string& line : screen) EXPECT_LT(line.size(), 30U);
}

TEST_F(ProbeWatch, IsEndedByASignalAndThatIsAGoodEnd)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        const long before = count("closeServer");
        const ProcessResult result =
            run_and_signal(watch({"lsu", kName, "vol1"}), kProperties, count(kProperties) + 3, signal);
        EXPECT_EQ(result.exit_code, 0) << result.err;
        EXPECT_THAT(result.err, IsEmpty());
        EXPECT_EQ(count("closeServer"), before + 1);
    }
}

TEST_F(ProbeWatch, TellsOfALostConnectionAndAsksAgain)
{
    service.answer_first(kProperties, properties(256));
    service.refuse_first(kProperties, "gone", kUnreachable);
    service.answer_first(kProperties, properties(512));
    const auto documents = documents_of(run_watch({"lsu", kName, "vol1", "--json"}, "3").out);
    ASSERT_THAT(documents, SizeIs(3));
    EXPECT_EQ(documents[1].at("lsus").at(0).at("error").at("name"), "STS_ESOAPERROR");
    EXPECT_EQ(documents[1].at("lsus").at(0).at("used"), 256);
    EXPECT_FALSE(documents[2].at("lsus").at(0).contains("error"));
    EXPECT_EQ(documents[2].at("lsus").at(0).at("used"), 512);
    EXPECT_EQ(count("openServer"), 1);
}

TEST_F(ProbeWatch, ShowsALostConnectionInTheTable)
{
    service.refuse(kProperties, "gone", kUnreachable);
    const TerminalRun run = watched_on_terminal({"lsu", kName, "vol1"}, "2", {24, 200});
    EXPECT_EQ(run.exit_code, 0);
    EXPECT_THAT(table_after(run.text).back(),
                AllOf(HasSubstr("STS_ESOAPERROR"), HasSubstr("it is asked again")));
}

TEST_F(ProbeWatch, RefusesAnLsuThatIsNotThere)
{
    service.refuse(kProperties, "no such LSU", 2069005);
    const ProcessResult result = run_watch({"lsu", kName, "vol1"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, HasSubstr("no such LSU"));
    EXPECT_EQ(count("closeServer"), 1);
}

TEST_F(ProbeWatch, SurvivesNumbersOfAnySize)
{
    service.answer_first(kProperties, properties(-9223372036854775807L - 1, -1));
    service.answer_first(kProperties, properties(9223372036854775807L, 0));
    service.answer_first(kProperties, properties(9223372036854775807L, 1));
    const ProcessResult result = run_watch({"lsu", kName, "vol1"}, "3");
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_THAT(lines_of(result.out), SizeIs(3));
}

TEST_F(ProbeWatch, FollowsOperationsUntilAllHaveEnded)
{
    service.answer_first(kWithId, busy(10));
    service.answer_first(kWithId, standing({0, 0, 20}));
    for (const long bytes : {1, 2, 3}) service.answer_first(kWithName, busy(bytes));
    service.answer(kWithName, standing({0, 0, 4}));
    const ProcessResult result = run_watch({"operation", kName, "OP-1", "--name", "mine", "--json"});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    const auto documents = documents_of(result.out);
    ASSERT_THAT(documents, SizeIs(4));
    EXPECT_EQ(documents[0].at("operations").at(0).at("operation_id"), "OP-1");
    EXPECT_EQ(documents[0].at("operations").at(0).at("state"), "running");
    EXPECT_EQ(documents[1].at("operations").at(0).at("state"), "ended");
    EXPECT_THAT(documents[2].at("operations"), SizeIs(1)); // one that has ended isn't asked for again
    EXPECT_EQ(documents[3].at("operations").at(0).at("operation_name"), "mine");
    EXPECT_EQ(documents[3].at("operations").at(0).at("bytes_transferred"), 4);
    EXPECT_EQ(count("asyncCancel"), 0);
}

TEST_F(ProbeWatch, FailsWithAnOperationThatHasFailedOnceAllHaveEnded)
{
    answer_waits("", {17, 0, 5});
    service.answer_first(kWithName, busy(1));
    const ProcessResult result = run_watch({"operation", kName, "OP-1", "--name", "mine"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, AllOf(HasSubstr("(17)"), HasSubstr("operation OP-1 has failed")));
    EXPECT_THAT(result.out, AllOf(ContainsRegex("OP-1 .*failed, .*17"), ContainsRegex("mine .*running")));
    EXPECT_EQ(count(kWithName), 2);
}

TEST_F(ProbeWatch, ShowsWhetherAnOperationGoesOn)
{
    service.answer_first(kWithId, busy(1024));
    answer_waits("");
    const TerminalRun run = watched_on_terminal({"operation", kName, "OP-1"}, "");
    EXPECT_EQ(run.exit_code, 0);
    EXPECT_THAT(run.text, AllOf(HasSubstr("OP-1       [<=>......."), HasSubstr("running")));
    EXPECT_THAT(table_after(run.text).back(),
                AllOf(StartsWith("OP-1       [##########]"), HasSubstr("ended")));
}

TEST_F(ProbeWatch, CancelsNothingWhenItIsInterrupted)
{
    answer_waits("", {kBusy, 0, 0});
    const ProcessResult result = run_and_signal(watch({"operation", kName, "OP-1"}), kWithId, 2);
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(count("asyncCancel"), 0);
    EXPECT_EQ(count("closeServer"), 1);
}

TEST_F(ProbeWatch, AsksAgainForAnOperationWhoseServiceWasOutOfReach)
{
    service.answer_first(kWithId, busy(1));
    service.refuse_first(kWithId, "gone", kUnreachable);
    answer_waits("");
    const ProcessResult result = run_watch({"operation", kName, "OP-1"});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_THAT(lines_of(result.out),
                ElementsAre(HasSubstr("running"), HasSubstr("STS_ESOAPERROR"), HasSubstr("ended")));
}

TEST_F(ProbeWatch, RefusesWhatLeavesNothingToWatch)
{
    EXPECT_EQ(run({"watch", "operation", kName}).exit_code, 2);
    for (const char* interval : {"0", "-1", "x", "1e400", "nan", "2 "}) {
        EXPECT_EQ(run({"watch", "lsu", kName, "vol1", "--interval", interval}).exit_code, 2) << interval;
    }
    EXPECT_EQ(run({"watch", "lsu", kName, "vol1", "--count", "0"}).exit_code, 2);
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeWatch, LeavesATerminalThatCannotMoveItsCursorAlone)
{
    Words program = complete(watch({"lsu", kName, "vol1"}, "2"));
    program.insert(program.begin(), PROBE_PROGRAM);
    const TerminalRun run =
        on_terminal(program, {{"SOAPWRAPPER_CREDENTIAL", "open sesame"}, {"TERM", "dumb"}});
    EXPECT_THAT(run.text, Not(HasSubstr("\x1b")));
    const Words lines = lines_of(run.text);
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::string& line) { return line.find("  vol1  ") != line.npos; }),
              2);
}

} // namespace
