#include "tests/unit/configuration_fixture.h"

#include <climits>

using namespace soapwrapper;
using kit::RecordedSession;
using testing::ElementsAre;
using testing::Optional;
using testing::StrEq;

namespace
{

struct Bool {
    bool found;
    bool flag;

    bool operator==(const Bool& other) const { return found == other.found && flag == other.flag; }
};

struct Int {
    bool found;
    int number;

    bool operator==(const Int& other) const { return found == other.found && number == other.number; }
};

std::ostream& operator<<(std::ostream& out, const Bool& value)
{
    return out << (value.found ? "found " : "not found ") << value.flag;
}

std::ostream& operator<<(std::ostream& out, const Int& value)
{
    return out << (value.found ? "found " : "not found ") << value.number;
}

class ConfigurationTypes : public Configuration
{
  protected:
    Bool as_bool(const std::string& value)
    {
        write("key=" + value + "\n");
        Bool result{false, true};
        result.found = get_conf_setting_as_bool(nullptr, "key", result.flag);
        return result;
    }

    Int as_int(const std::string& value)
    {
        write("key=" + value + "\n");
        Int result{false, -77};
        result.found = get_conf_setting_as_int(nullptr, "key", result.number);
        return result;
    }
};

} // namespace

TEST_F(Configuration, LogsAMissingFileOfASetting)
{
    RecordedSession session;
    EXPECT_EQ(setting("key", session.get()), std::nullopt);
    EXPECT_THAT(session.lines(), ElementsAre(kit::record("get_conf_setting: Attempting to open config file " +
                                                         file().string()),
                                             kit::record("get_conf_setting: Config file not found")));
}

TEST_F(Configuration, LogsAFoundSettingWithTheKeyAsAskedFor)
{
    write("KEY=a value\n");
    RecordedSession session;
    EXPECT_THAT(setting("key", session.get()), Optional(StrEq("avalue")));
    EXPECT_THAT(
        session.lines(),
        ElementsAre(kit::record("get_conf_setting: Attempting to open config file " + file().string()),
                    kit::record("get_conf_setting: found value avalue for parameter key")));
}

TEST_F(Configuration, LogsAMissingSetting)
{
    write("other=1\n");
    RecordedSession session;
    EXPECT_EQ(setting("key", session.get()), std::nullopt);
    EXPECT_THAT(
        session.lines(),
        ElementsAre(kit::record("get_conf_setting: Attempting to open config file " + file().string()),
                    kit::record("get_conf_setting: value for parameter key not found")));
}

TEST_F(Configuration, LogsAMissingFileOfAServer)
{
    RecordedSession session;
    EXPECT_EQ(url("host", session.get()), std::nullopt);
    EXPECT_THAT(
        session.lines(),
        ElementsAre(kit::record("find_ss_name_in_conf: Attempting to open config file " + file().string()),
                    kit::record("find_ss_name_in_conf: Config file not found")));
}

TEST_F(Configuration, LogsAFoundServer)
{
    write("host=http://h:1\n");
    RecordedSession session;
    EXPECT_THAT(url("host", session.get()), Optional(StrEq("http://h:1")));
    EXPECT_THAT(
        session.lines(),
        ElementsAre(kit::record("find_ss_name_in_conf: Attempting to open config file " + file().string()),
                    kit::record("find_ss_name_in_conf: Config file found"),
                    kit::record("find_ss_name_in_conf: Storage server match found")));
}

TEST_F(Configuration, LogsAMissingServer)
{
    write("other=http://h:1\n");
    RecordedSession session;
    EXPECT_EQ(url("host", session.get()), std::nullopt);
    EXPECT_THAT(
        session.lines(),
        ElementsAre(kit::record("find_ss_name_in_conf: Attempting to open config file " + file().string()),
                    kit::record("find_ss_name_in_conf: Config file found"),
                    kit::record("find_ss_name_in_conf: Storage server match not found")));
}

TEST_F(Configuration, PutsTheNameBehindAPathWithoutASlash)
{
    pluginPath = "libsoapwrapper.so";
    RecordedSession session;
    setting("key", session.get());
    EXPECT_EQ(session.texts().front(),
              "get_conf_setting: Attempting to open config file libsoapwrapper.so/soapwrapper.conf");
}

TEST_F(Configuration, CutsThePathAtItsLastSlashOnly)
{
    pluginPath = "/a/b.d/c/";
    RecordedSession session;
    setting("key", session.get());
    pluginPath = "/libsoapwrapper.so";
    setting("key", session.get());
    pluginPath.clear();
    setting("key", session.get());
    const std::vector<std::string> texts = session.texts();
    EXPECT_EQ(texts.at(0), "get_conf_setting: Attempting to open config file /a/b.d/c/soapwrapper.conf");
    EXPECT_EQ(texts.at(2), "get_conf_setting: Attempting to open config file /soapwrapper.conf");
    EXPECT_EQ(texts.at(4), "get_conf_setting: Attempting to open config file /soapwrapper.conf");
}

TEST_F(Configuration, IsReadAfreshAtEachQuestion)
{
    write("key=1\n");
    EXPECT_THAT(setting("key"), Optional(StrEq("1")));
    write("key=2\n");
    EXPECT_THAT(setting("key"), Optional(StrEq("2")));
    std::filesystem::remove(file());
    EXPECT_EQ(setting("key"), std::nullopt);
}

TEST_F(Configuration, SharesOneGrammarBetweenServersAndSettings)
{
    write("both = x = y\n");
    EXPECT_THAT(setting("both"), Optional(StrEq("x=y")));
    EXPECT_THAT(url("both"), Optional(StrEq("x=y")));
}

TEST_F(Configuration, BoundsASettingAt1023CharactersAndAUrlAt511)
{
    // "k=" and 1021 characters are what one read of a line takes.
    const std::string longest(1021, 'v');
    write("k=" + longest + "\n");
    EXPECT_THAT(setting("k"), Optional(StrEq(longest)));
    EXPECT_THAT(url("k"), Optional(StrEq(std::string(511, 'v'))));
}

TEST_F(Configuration, LeavesTheBufferAloneWhereNothingIsFound)
{
    write("key=1\n");
    std::string value(kSettingSize, '#');
    EXPECT_FALSE(get_conf_setting(nullptr, "other", value.data()));
    EXPECT_FALSE(find_ss_name_in_conf(nullptr, "other", value.data()));
    EXPECT_EQ(value, std::string(kSettingSize, '#'));
}

TEST_F(ConfigurationTypes, KnowSixWordsForABool)
{
    for (const char* word : {"TRUE", "true", "TrUe", "1", "YES", "yes", "Yes", " y e s "}) {
        EXPECT_EQ(as_bool(word), (Bool{true, true})) << word;
    }
    for (const char* word : {"FALSE", "false", "FaLsE", "0", "NO", "no", "No", "\tn o"}) {
        EXPECT_EQ(as_bool(word), (Bool{true, false})) << word;
    }
}

TEST_F(ConfigurationTypes, FindNoUsableBoolInOtherWords)
{
    for (const char* word : {"", "2", "01", "ON", "off", "y", "truee", "tru", "-1", "yes;no"}) {
        EXPECT_EQ(as_bool(word), (Bool{false, false})) << word;
    }
}

TEST_F(ConfigurationTypes, FindNoBoolUnderAMissingKey)
{
    write("other=1\n");
    bool flag = true;
    EXPECT_FALSE(get_conf_setting_as_bool(nullptr, "key", flag));
    EXPECT_FALSE(flag);
    std::filesystem::remove(file());
    flag = true;
    EXPECT_FALSE(get_conf_setting_as_bool(nullptr, "key", flag));
    EXPECT_FALSE(flag);
}

TEST_F(ConfigurationTypes, ReadAnIntInThreeBases)
{
    EXPECT_EQ(as_int("120"), (Int{true, 120}));
    EXPECT_EQ(as_int("-120"), (Int{true, -120}));
    EXPECT_EQ(as_int("+5"), (Int{true, 5}));
    EXPECT_EQ(as_int("0x1F"), (Int{true, 31}));
    EXPECT_EQ(as_int("-0x10"), (Int{true, -16}));
    EXPECT_EQ(as_int("010"), (Int{true, 8}));
    EXPECT_EQ(as_int("0"), (Int{true, 0}));
    EXPECT_EQ(as_int(" 1 2 3 "), (Int{true, 123}));
}

TEST_F(ConfigurationTypes, KeepTheNumberReadSoFarOfAValueWithMoreBehindIt)
{
    EXPECT_EQ(as_int("15s"), (Int{false, 15}));
    EXPECT_EQ(as_int("0x1Fz"), (Int{false, 31}));
    EXPECT_EQ(as_int("09"), (Int{false, 0}));
    EXPECT_EQ(as_int("30#comment"), (Int{false, 30}));
    EXPECT_EQ(as_int("word"), (Int{false, 0}));
    EXPECT_EQ(as_int("1.5"), (Int{false, 1}));
    EXPECT_EQ(as_int("0x"), (Int{false, 0}));
}

TEST_F(ConfigurationTypes, TakeAnEmptyIntForZero)
{
    EXPECT_EQ(as_int(""), (Int{true, 0}));
    EXPECT_EQ(as_int("   "), (Int{true, 0}));
}

TEST_F(ConfigurationTypes, KeepTheLow32BitsOfAnInt)
{
    EXPECT_EQ(as_int("4294967301"), (Int{true, 5}));
    EXPECT_EQ(as_int("0x80000000"), (Int{true, INT_MIN}));
    EXPECT_EQ(as_int("99999999999999999999"), (Int{true, -1})); // the largest long
}

TEST_F(ConfigurationTypes, FindNoIntUnderAMissingKey)
{
    write("other=1\n");
    int number = 77;
    EXPECT_FALSE(get_conf_setting_as_int(nullptr, "key", number));
    EXPECT_EQ(number, 0);
    std::filesystem::remove(file());
    number = 77;
    EXPECT_FALSE(get_conf_setting_as_int(nullptr, "key", number));
    EXPECT_EQ(number, 0);
}

TEST_F(ConfigurationTypes, LogThroughTheSessionAsASettingDoes)
{
    write("key=15s\n");
    RecordedSession session;
    int number = 0;
    bool flag = false;
    get_conf_setting_as_int(session.get(), "key", number);
    get_conf_setting_as_bool(session.get(), "key", flag);
    const kit::LogLine open =
        kit::record("get_conf_setting: Attempting to open config file " + file().string());
    const kit::LogLine found = kit::record("get_conf_setting: found value 15s for parameter key");
    EXPECT_THAT(session.lines(), ElementsAre(open, found, open, found));
}

TEST_F(Configuration, FindsTheTwoWaitsHoweverTheyAreSpaced)
{
    int number = 0;
    for (const char* line : {"start_snapdiff_max_wait=15\n", " start_snapdiff_max_wait\t= 1 5 \r\n",
                             "START_SNAPDIFF_MAX_WAIT=15", "Start_SnapDiff_Max_Wait =\v15\f\n"}) {
        write(line);
        EXPECT_TRUE(get_conf_setting_as_int(nullptr, "start_snapdiff_max_wait", number)) << line;
        EXPECT_EQ(number, 15) << line;
        number = 0;
    }
}
