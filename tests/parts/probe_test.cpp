// The probe's parts, called as functions.
#include "plugin/host/status.h"
#include "probe/library/credential.h"
#include "probe/library/session.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/status_text.h"
#include "probe/output/text.h"
#include "tests/system/probe_process.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <sstream>

using namespace soapwrapper::probe;

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr char kBad[] = "\xEF\xBF\xBD";

TEST(CleanLine, KeepsValidTextAsItIs)
{
    for (const char* text :
         {"", "plain text",
          "Gr\xC3\xBC\xC3\x9F"
          "e",
          "\xE6\x97\xA5\xE6\x9C\xAC", "\xF0\x9F\x92\xBE", "\xF4\x8F\xBF\xBF", "\xC2\xA0"}) {
        EXPECT_EQ(clean_line(text), text);
    }
}

TEST(CleanLine, TurnsWhiteSpaceIntoBlanks)
{
    EXPECT_EQ(clean_line("a\tb\nc\rd\ve\ff\xC2\x85g\xE2\x80\xA8h\xE2\x80\xA9i"), "a b c d e f g h i");
}

TEST(CleanLine, ReplacesWhatCouldSteerATerminal)
{
    for (const std::string& text :
         {std::string(1, '\0'), std::string("\x07"), std::string("\x1B"), std::string("\x7F"),
          std::string("\xC2\x80"), std::string("\xC2\x9B"), std::string("\xD8\x9C"),
          std::string("\xE2\x80\x8F"), std::string("\xE2\x80\xAE"), std::string("\xE2\x81\xA6")}) {
        EXPECT_EQ(clean_line("a" + text + "b"), std::string("a") + kBad + "b")
            << ::testing::PrintToString(text);
    }
}

TEST(CleanLine, ReplacesEachByteThatIsNotUtf8)
{
    const std::pair<const char*, int> cases[] = {{"\x80", 1},
                                                 {"\xBF", 1},
                                                 {"\xC0\xAF", 2},
                                                 {"\xC1\xBF", 2},
                                                 {"\xE0\x80\xAF", 3},
                                                 {"\xED\xA0\x80", 3},
                                                 {"\xF0\x80\x80\x80", 4},
                                                 {"\xF4\x90\x80\x80", 4},
                                                 {"\xF5\x80", 2},
                                                 {"\xFF", 1},
                                                 {"\xC3", 1},
                                                 {"\xE2\x82", 2},
                                                 {"\xF0\x9F\x92", 3}};
    for (const auto& [bytes, count] : cases) {
        std::string expected;
        for (int i = 0; i < count; ++i) expected += kBad;
        EXPECT_EQ(clean_line(bytes), expected) << ::testing::PrintToString(bytes);
    }
    EXPECT_EQ(clean_line("\xC3(\xC3\xBC"), std::string(kBad) + "(\xC3\xBC");
}

TEST(CleanLines, SplitsAndDropsEmptyLinesAtTheEnd)
{
    EXPECT_THAT(clean_lines(""), IsEmpty());
    EXPECT_THAT(clean_lines("\n\n \n"), IsEmpty());
    EXPECT_THAT(clean_lines("a\r\n\nb\x1B\n\n"), ElementsAre("a", "", std::string("b") + kBad));
}

TEST(CleanLines, KeepsHeadAndLastLineOfALongText)
{
    std::string text;
    for (int i = 0; i < 1000; ++i) text += std::to_string(i) + "\n";
    const std::vector<std::string> lines = clean_lines(text);
    EXPECT_THAT(lines, SizeIs(40));
    EXPECT_EQ(lines.front(), "0");
    EXPECT_EQ(lines[37], "37");
    EXPECT_EQ(lines[38], "...");
    EXPECT_EQ(lines.back(), "999");
}

TEST(CleanLines, CutsALongLine)
{
    EXPECT_THAT(clean_lines(std::string(3000, 'x')), ElementsAre(std::string(2048, 'x') + " ..."));
    EXPECT_THAT(clean_lines(std::string(2048, 'x')), ElementsAre(std::string(2048, 'x')));
}

TEST(CleanField, StopsAtTheEndOfAnUnterminatedArray)
{
    const char field[3] = {'a', 'b', 'c'};
    EXPECT_EQ(clean_field(field), "abc");
    const char terminated[4] = {'a', '\0', 'c', 'd'};
    EXPECT_EQ(clean_field(terminated), "a");
}

TEST(StatusText, KnowsEveryStatusOfTheInterface)
{
    const std::string header = read_file(std::filesystem::path(SOURCE_FOLDER) / "plugin/host/status.h");
    int count = 0;
    for (std::size_t at = header.find("STS_E"); at != std::string::npos; at = header.find("STS_E", at + 1)) {
        const std::size_t sign = header.find(" = ", at);
        const StatusText text = status_text(std::atoi(header.c_str() + sign + 3));
        EXPECT_EQ(text.name, header.substr(at, sign - at));
        EXPECT_STRNE(text.meaning, "");
        ++count;
    }
    EXPECT_GE(count, 16);
}

TEST(StatusText, LeavesOtherNumbersToTheService)
{
    for (const int number : {1, -1, 2060003, 2060000, 2147483647}) {
        EXPECT_EQ(status_text(number).status, number);
        EXPECT_STREQ(status_text(number).name, "service status");
        EXPECT_STREQ(status_text(number).meaning, "the storage service's own status");
    }
}

TEST(Output, AlignsByCharactersAndNotByBytes)
{
    std::ostringstream stream;
    Output output(stream, Format::kAligned, "");
    Table table({"NAME", "SIZE"});
    table.add({"Gr\xC3\xBC\xC3\x9F"
               "e",
               "1"});
    table.add({"", ""});
    output.print(table);
    EXPECT_TRUE(output.finish());
    EXPECT_EQ(stream.str(), "NAME   SIZE\nGr\xC3\xBC\xC3\x9F"
                            "e  1\n-      -\n");
}

TEST(Output, SeparatesFieldsWithoutHeadingsOrTitles)
{
    std::ostringstream stream;
    Output output(stream, Format::kSeparated, "::");
    Table table({"NAME", "SIZE"});
    table.add({"a", ""});
    table.add({"b", "2"});
    output.title("Things");
    output.print(table);
    EXPECT_EQ(stream.str(), "a::\nb::2\n");
}

TEST(Output, OfJsonIsOneDocumentAndNothingElse)
{
    std::ostringstream stream;
    Output output(stream, Format::kJson, "");
    output.title("Things");
    output.print(Table({"NAME"}));
    output.document()["a"] = 1;
    output.add_problem(Problem(ExitCode::kOperation, "STS_EBUSY", 2060005, "busy", "one\x1B\ntwo\n"));
    EXPECT_TRUE(output.finish());
    EXPECT_EQ(nlohmann::json::parse(stream.str()),
              nlohmann::json({{"schema", 1},
                              {"a", 1},
                              {"error",
                               {{"name", "STS_EBUSY"},
                                {"status", 2060005},
                                {"meaning", "busy"},
                                {"detail", std::string("one") + kBad + "\ntwo"}}}}));
}

TEST(Session, KeepsTheLastFailureAndPrintsNothingUnasked)
{
    std::ostringstream stream;
    Session session(Session::kPrintNothing, stream);
    const auto log = [&](const char* text, int level) {
        session.record()->log_callback(session.record()->session_id, text, level);
    };
    log("one: failed", STS_LOG_FAILURE);
    log("two: failed", STS_LOG_FAILURE);
    log("chose: a", STS_LOG_RECORD);
    log("chose: b", STS_LOG_RECORD);
    log("chose: odd", STS_LOG_ANOMALY);
    log(nullptr, STS_LOG_FAILURE);
    EXPECT_EQ(session.last_failure(), "two: failed");
    EXPECT_EQ(session.last_record("chose: "), "chose: b");
    EXPECT_EQ(session.last_record("nothing"), "");
    session.forget_lines();
    EXPECT_EQ(session.last_failure(), "");
    EXPECT_EQ(session.last_record("chose: "), "");
    EXPECT_EQ(stream.str(), "");
}

TEST(Session, PrintsFromALevelOnWithTheLevelsName)
{
    std::ostringstream stream;
    Session session(STS_LOG_RECORD, stream);
    session.record()->log_callback(nullptr, "odd", STS_LOG_ANOMALY);
    session.record()->log_callback(nullptr, "went on", STS_LOG_RECORD);
    session.record()->log_callback(nullptr, "broke\nbadly\n", STS_LOG_FAILURE);
    session.record()->log_callback(nullptr, "strange", 9);
    EXPECT_EQ(stream.str(),
              "[3 record] went on\n[4 failure] broke\n            badly\n[9 unknown] strange\n");
}

TEST(Credential, IsTakenOutOfTheEnvironmentAndWipedThere)
{
    char variable[] = "SOAPWRAPPER_CREDENTIAL=hush hush";
    ASSERT_EQ(putenv(variable), 0);
    const Credential credential = Credential::from_environment(2);
    EXPECT_EQ(std::getenv("SOAPWRAPPER_CREDENTIAL"), nullptr);
    EXPECT_EQ(std::string(std::begin(variable), std::end(variable)).find("hush"), std::string::npos);
    ASSERT_EQ(credential.record()->len, 9);
    EXPECT_EQ(credential.record()->type, 2);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(credential.record()->cert), 9), "hush hush");
}

TEST(Credential, HidesItselfPlainAndEncoded)
{
    ASSERT_EQ(setenv("SOAPWRAPPER_CREDENTIAL", "abcde", 1), 0);
    Credential credential = Credential::from_environment(0);
    EXPECT_EQ(credential.hide_in("x abcde abcdeabcde YWJjZGU= y"),
              "x (credential) (credential)(credential) (credential) y");
    EXPECT_EQ(credential.hide_in("abcd"), "abcd");
    credential.wipe();
    EXPECT_EQ(credential.record(), nullptr);
    EXPECT_EQ(credential.hide_in("abcde"), "abcde");
}

TEST(Credential, TooShortToBeToldFromOtherTextIsNotLookedFor)
{
    ASSERT_EQ(setenv("SOAPWRAPPER_CREDENTIAL", "a", 1), 0);
    EXPECT_EQ(Credential::from_environment(0).hide_in("a banana"), "a banana");
}

TEST(Credential, OfExcessiveLengthIsRefused)
{
    ASSERT_EQ(setenv("SOAPWRAPPER_CREDENTIAL", std::string(65537, 'x').c_str(), 1), 0);
    EXPECT_THROW(Credential::from_environment(0), Problem);
    Credential::forget_environment();
    EXPECT_EQ(std::getenv("SOAPWRAPPER_CREDENTIAL"), nullptr);
}

} // namespace
