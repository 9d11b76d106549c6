// What an administrator, an editor or an accident may leave where the configuration file should be.
#include "tests/unit/configuration_fixture.h"

#include <cstdio>
#include <memory>
#include <string>

using namespace soapwrapper;
using namespace std::string_literals;
using kit::RecordedSession;
using testing::Optional;
using testing::StrEq;

namespace
{

struct State {
    const char* name;
    std::string text;
    const char* key;
    std::optional<std::string> value;
};

class ConfigurationText : public Configuration, public testing::WithParamInterface<State>
{
};

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

class Readline : public Configuration
{
  protected:
    // The lines as readline gives them, with this size of the buffer.
    std::vector<std::string> lines(std::string_view text, int size)
    {
        write(text);
        const std::unique_ptr<std::FILE, CloseFile> stream(std::fopen(file().c_str(), "r"));
        std::vector<std::string> lines;
        std::string buffer(static_cast<std::size_t>(size), '#');
        while (readline(buffer.data(), size, stream.get())) lines.emplace_back(buffer.c_str());
        return lines;
    }
};

using testing::ElementsAre;
using testing::IsEmpty;

} // namespace

TEST_P(ConfigurationText, GivesTheValueToBothKindsOfQuestion)
{
    write(GetParam().text);
    EXPECT_EQ(setting(GetParam().key), GetParam().value);
    EXPECT_EQ(url(GetParam().key), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    States, ConfigurationText,
    testing::Values(
        State{"Empty", "", "key", std::nullopt}, State{"OnlyALineFeed", "\n", "key", std::nullopt},
        State{"OnlyBlanks", " \t \n\r\n", "key", std::nullopt},
        State{"NoEndOfLine", "key=value", "key", "value"},
        State{"CarriageReturns", "a=1\r\nkey=value\r\nb=2\r\n", "key", "value"},
        State{"CarriageReturnsAlone", "key=value\rother=1\r", "key", "valueother=1"},
        State{"BlanksEverywhere", " k e\ty = v a\vl\fu e \n", "key", "value"},
        State{"BlankWithinAUrl", "key=http:// host:80/a b\n", "key", "http://host:80/ab"},
        State{"EqualsWithinTheValue", "key=http://h/?a=b=c\n", "key", "http://h/?a=b=c"},
        State{"EqualsFirstInTheValue", "key==x\n", "key", "=x"},
        State{"EmptyValue", "key=\nkey=later\n", "key", ""}, State{"EmptyKey", "=value\n", "", "value"},
        State{"KeyWithoutEquals", "key\nkey value\nkey=value\n", "key", "value"},
        State{"CommentLine", "#key=no\n # key=no\nkey=yes\n", "key", "yes"},
        State{"CommentLineAlone", "#key=no\n", "key", std::nullopt},
        State{"CommentsKeyIsNoKey", "#key=no\n", "#key", std::nullopt},
        State{"HashWithinTheValue", "key=a#b #c\n", "key", "a#b#c"},
        State{"HashWithinTheKey", "k#ey=value\n", "k#ey", "value"},
        State{"DuplicateTheFirstWins", "key=first\nKEY=second\nkey=third\n", "key", "first"},
        State{"KeyInUpperCase", "KEY=VaLuE\n", "key", "VaLuE"},
        State{"KeyAskedInUpperCase", "key=VaLuE\n", "KEY", "VaLuE"},
        State{"LongerKeyDoesntMatch", "keys=1\n", "key", std::nullopt},
        State{"ShorterKeyDoesntMatch", "ke=1\n", "key", std::nullopt},
        State{"ValueIsNoKey", "a=key=1\n", "key", std::nullopt},
        State{"NulWithinTheValue", "key=va\0lue\nnext=1\n"s, "key", "va"},
        State{"NulFirstInALine", "\0key=value\nnext=1\n"s, "key", std::nullopt},
        State{"LineBehindANul", "a\0=b\nkey=value\n"s, "key", "value"},
        State{"NulsAlone", std::string(5000, '\0'), "key", std::nullopt},
        State{"Binary", "\x7f\x45LF\x01\x01\xff\xfe\x80=\x90\n\xff\xff\xff\nkey=value\n", "key", "value"},
        State{"BytesAbove127", "kl\xc3\xa9=\xc3\xa9t\xc3\xa9\n", "kl\xc3\xa9", "\xc3\xa9t\xc3\xa9"},
        State{"ByteOrderMarkHidesTheFirstKey", "\xef\xbb\xbfkey=1\nkey=2\n", "key", "2"},
        State{"LongLineOfNothing", std::string(100000, 'x'), "key", std::nullopt},
        State{"LongLineOfBlanks", std::string(5000, ' ') + "key=value\n", "key", "value"},
        // The first piece is 1023 characters long: four of "key=" and 1019 of the value.
        State{"TailOfALongLineIsALine", "a=" + std::string(1021, 'v') + "key=value\n", "key", "value"},
        State{"TailOfALongCommentIsALine", "#" + std::string(1022, 'c') + "key=value\n", "key", "value"},
        State{"TailBeginsOneCharacterLater", "a=" + std::string(1022, 'v') + "key=value\n", "key",
              std::nullopt},
        State{"KeySplitInTwo", std::string(1021, ' ') + "key=value\n", "key", std::nullopt},
        State{"KeyBehindManyLines", std::string(20000, '\n') + "key=value\n", "key", "value"}),
    [](const auto& named) { return std::string(named.param.name); });

TEST_F(Configuration, TakesADirectoryForAFileWithNothingInIt)
{
    std::filesystem::create_directory(file());
    RecordedSession session;
    EXPECT_EQ(setting("key", session.get()), std::nullopt);
    EXPECT_EQ(url("key", session.get()), std::nullopt);
    EXPECT_EQ(session.texts().at(1), "get_conf_setting: value for parameter key not found");
    EXPECT_EQ(session.texts().back(), "find_ss_name_in_conf: Storage server match not found");
}

TEST_F(Configuration, TakesADanglingLinkForNoFile)
{
    std::filesystem::create_symlink(folder_.path() / "nowhere", file());
    RecordedSession session;
    EXPECT_EQ(setting("key", session.get()), std::nullopt);
    EXPECT_EQ(session.texts().back(), "get_conf_setting: Config file not found");
}

TEST_F(Configuration, TakesALinkToItselfForNoFile)
{
    std::filesystem::create_symlink(file(), file());
    RecordedSession session;
    EXPECT_EQ(url("key", session.get()), std::nullopt);
    EXPECT_EQ(session.texts().back(), "find_ss_name_in_conf: Config file not found");
}

TEST_F(Configuration, TakesAPathThroughAFileForNoFile)
{
    std::ofstream(folder_.path() / "plain") << "no directory";
    pluginPath = (folder_.path() / "plain" / "libsoapwrapper.so").string();
    RecordedSession session;
    EXPECT_EQ(url("key", session.get()), std::nullopt);
    EXPECT_EQ(session.texts().back(), "find_ss_name_in_conf: Config file not found");
}

TEST_F(Configuration, FollowsALinkToAFile)
{
    std::ofstream(folder_.path() / "elsewhere") << "key=value\n";
    std::filesystem::create_symlink(folder_.path() / "elsewhere", file());
    EXPECT_THAT(setting("key"), Optional(StrEq("value")));
}

TEST_F(Readline, RemovesEveryKindOfWhiteSpace)
{
    EXPECT_THAT(lines(" a\tb\vc\fd\re \nf", 1024), ElementsAre("abcde", "f"));
}

TEST_F(Readline, GivesAnEmptyLineForBlanksAndNothingForTheEnd)
{
    EXPECT_THAT(lines("\n  \n", 1024), ElementsAre("", ""));
    EXPECT_THAT(lines("", 1024), IsEmpty());
}

TEST_F(Readline, SplitsALineOneShortOfItsSize)
{
    EXPECT_THAT(lines("abcdefghij\n", 4), ElementsAre("abc", "def", "ghi", "j"));
    EXPECT_THAT(lines("abc\nd\n", 4), ElementsAre("abc", "", "d"));
    EXPECT_THAT(lines("a b c d e", 4), ElementsAre("ab", "c", "de"));
}

TEST_F(Readline, Takes1023CharactersAtMost)
{
    const std::vector<std::string> read = lines(std::string(1023, 'a') + "b\n", 1024);
    EXPECT_THAT(read, ElementsAre(std::string(1023, 'a'), "b"));
}
