// The completion's parts: a line as bash has it, names that are read from a program, the configuration.
#include "probe/completion/known_servers.h"
#include "probe/completion/service_names.h"
#include "probe/completion/shell_words.h"
#include "tests/system/probe_process.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <fstream>

using namespace soapwrapper::probe;

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Words = std::vector<std::string>;

Words texts(const std::string& line)
{
    Words all;
    for (const ShellWord& word : split_shell_line(line)) all.push_back(word.is_literal ? word.text : "?");
    return all;
}

TEST(ShellLine, IsSplitAsBashSplitsIt)
{
    EXPECT_THAT(texts(""), ElementsAre(""));
    EXPECT_THAT(texts("a  b\tc"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(texts("a "), ElementsAre("a", ""));
    EXPECT_THAT(texts("'a b' \"c\\\"d\\e\" f\\ g"), ElementsAre("a b", "c\"d\\e", "f g"));
    EXPECT_THAT(texts("a:b=c 'open en"), ElementsAre("a:b=c", "open en"));
    EXPECT_THAT(texts("a\\"), ElementsAre("a"));
}

TEST(ShellLine, KeepsToItselfWhatBashWouldPutInItsPlace)
{
    EXPECT_THAT(texts("$(a (b) c) x"), ElementsAre("?", "x"));
    EXPECT_THAT(texts("--file <(a b) x"), ElementsAre("--file", "?", "x"));
    EXPECT_THAT(texts("\"$(a b)\" `c` $d 'e$f'"), ElementsAre("?", "?", "?", "e$f"));
    EXPECT_THAT(texts("$(never closed"), ElementsAre("?"));
    EXPECT_THAT(texts("<("), ElementsAre("?"));
}

TEST(ShellLine, TellsRedirectionsFromArguments)
{
    const auto words = split_shell_line("a 2>> b c>d &> e <f");
    Words redirected;
    Words others;
    for (const ShellWord& word : words) (word.is_redirected ? redirected : others).push_back(word.text);
    EXPECT_THAT(others, ElementsAre("a", "c"));
    EXPECT_THAT(redirected, ElementsAre("b", "d", "e", "f"));
    EXPECT_TRUE(split_shell_line("a >").back().is_redirected);
}

TEST(RestOfAWord, IsQuotedAsTheWordWasBegun)
{
    EXPECT_EQ(rest_of_word("a b$(c)", ""), "a\\ b\\$\\(c\\)");
    EXPECT_EQ(rest_of_word("a'b", "'"), "a'\\''b");
    EXPECT_EQ(rest_of_word("a\"b!`$\\", "\""), "a\\\"b\"\\!\"\\`\\$\\\\");
    EXPECT_EQ(rest_of_word("pre:fix", "pre:"), "fix");
    EXPECT_EQ(rest_of_word("pre fix", "pre\\ "), "fix");
    EXPECT_EQ(rest_of_word("~a#*?[{;&|<>", ""), "\\~a\\#\\*\\?\\[\\{\\;\\&\\|\\<\\>");
    EXPECT_EQ(rest_of_word("word", "other"), std::nullopt);
    EXPECT_EQ(rest_of_word("word", "$(w"), std::nullopt);
}

TEST(RestOfAWord, IsReadAsItWasMeantWhateverBytesItHas)
{
    std::string all;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '\n') all += static_cast<char>(byte);
    }
    for (const std::string begun : {"", "'", "\""}) {
        const ShellWord read = split_shell_line(begun + *rest_of_word(all, begun)).front();
        EXPECT_EQ(read.text, all) << begun;
        EXPECT_TRUE(read.is_literal) << begun;
    }
}

TEST(KnownServers, AreThoseWithAUrl)
{
    const ConfigurationFile file(
        "# a = http://x\nfil er1 = https://x:1\nconnect_timeout = 5\n=http://y\nfiler2=http://z\r\nbroken\n"
        "FILER2 = http://x\nhttps://u:p=http://x\nu:p@x=http://x\nfi\vler3 = http://x");
    EXPECT_THAT(hosts_with_url(file), ElementsAre("filer1", "filer2", "filer3"));
}

class ListOfService : public ::testing::Test
{
  protected:
    // What is read from a program that does this.
    std::vector<Words> read(const std::string& script, const LookupLimits& limits = {}) const
    {
        const std::string program =
            folder.write("program", "#!/bin/sh\n" + script, std::filesystem::perms::owner_all);
        return list_of_service(program, {}, {"lsus"}, "lsus", {"name"}, limits);
    }

    TemporaryFolder folder;
};

TEST_F(ListOfService, IsReadFromADocumentOfWhateverForm)
{
    EXPECT_THAT(read(R"(echo '{"lsus": [{"name": "a"}, 1, {"name": 5}, {}, {"name": "b"}]}')"),
                ElementsAre(Words{"a"}, Words{"b"}));
    for (const char* script : {"echo '{\"lsus\": 1}'", "echo '[1]'", "echo '{\"lsus\": [{\"na'", "echo no",
                               "true", "kill -9 $$", "echo '{\"lsus\": {\"a\": {}}}'"}) {
        EXPECT_THAT(read(script), IsEmpty()) << script;
    }
    EXPECT_THAT(list_of_service("/nowhere/program", {}, {"lsus"}, "lsus", {"name"}), IsEmpty());
}

TEST_F(ListOfService, IsNotWaitedForBeyondItsTimeAndWhoMakesItMayGoOn)
{
    const std::string pipe = (folder / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    LookupLimits limits;
    limits.waiting = std::chrono::milliseconds(20);
    EXPECT_THAT(read("read line < " + pipe + "\n", limits), IsEmpty());
    std::ofstream(pipe) << "go on\n"; // waits until it is read
}

TEST_F(ListOfService, IsAskedForWithinALimitOfTime)
{
    const std::string file = (folder / "words").string();
    read("echo \"$@\" > " + file);
    EXPECT_EQ(read_file(file), "--json --deadline=1.500000 lsus --limit 1000 --\n");
}

TEST(LookupOptions, AreThoseOfTheLibraryAndTheLogin)
{
    EXPECT_THAT(lookup_options({{"--library", "/l"},
                                {"--json", ""},
                                {"--record", "f"},
                                {"--no-discover", ""},
                                {"--separator", "x"}}),
                ElementsAre("--library=/l", "--no-discover"));
}

} // namespace
