#include "changelist/isid.h"
#include "tests/kit/log_recorder.h"

#include <gmock/gmock.h>

using namespace soapwrapper;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

isid_contents parse(const std::string& text)
{
    isid_contents contents{};
    contents.use_zapi = 99;
    EXPECT_TRUE(parse_isid(text, &contents, nullptr)) << text;
    return contents;
}

// The mounts as "path > share" each.
std::vector<std::string> mounts(const std::string& text)
{
    std::vector<std::string> all;
    for (const mount_path_filer_share& mount : parse(text).mpfs_vec) {
        all.push_back(mount.mount_path + " > " + mount.filer_share);
    }
    return all;
}

} // namespace

TEST(Isid, AnEmptyTextHasNoMountsAndNoRoute)
{
    EXPECT_THAT(mounts(""), IsEmpty());
    EXPECT_EQ(parse("").use_zapi, -1);
}

TEST(Isid, ReadsMountsInTheirOrderAndTheRoute)
{
    const std::string text =
        "mount=/mnt/snap1|filer1:/vol/vol1,mount=NDMP:/vol/vol2|filer1:/vol/vol2,use_zapi=1";
    EXPECT_THAT(mounts(text),
                ElementsAre("/mnt/snap1 > filer1:/vol/vol1", "NDMP:/vol/vol2 > filer1:/vol/vol2"));
    EXPECT_EQ(parse(text).use_zapi, 1);
}

TEST(Isid, TheRouteAloneIsEnough)
{
    EXPECT_THAT(mounts("use_zapi=1"), IsEmpty());
    EXPECT_EQ(parse("use_zapi=1").use_zapi, 1);
}

TEST(Isid, ReadsTheRouteUpToTheFirstNonDigit)
{
    EXPECT_EQ(parse("use_zapi=").use_zapi, 0);
    EXPECT_EQ(parse("use_zapi=abc").use_zapi, 0);
    EXPECT_EQ(parse("use_zapi=1x").use_zapi, 1);
    EXPECT_EQ(parse("use_zapi=-7,x").use_zapi, -7);
    EXPECT_EQ(parse("use_zapi=0x1").use_zapi, 0);
    EXPECT_EQ(parse("use_zapi= 12").use_zapi, 12);
}

TEST(Isid, CutsTheRouteTo32Bits)
{
    EXPECT_EQ(parse("use_zapi=4294967297").use_zapi, 1);
    EXPECT_EQ(parse("use_zapi=2147483648").use_zapi, -2147483647 - 1);
    EXPECT_EQ(parse("use_zapi=99999999999999999999").use_zapi, -1); // the largest long there is
}

TEST(Isid, TheFirstRouteCounts)
{
    EXPECT_EQ(parse("use_zapi=2,use_zapi=1").use_zapi, 2);
    EXPECT_EQ(parse("mount=/use_zapi=3|x,use_zapi=1").use_zapi, 3);
}

TEST(Isid, KeysAreCaseSensitiveAndFoundAnywhere)
{
    EXPECT_THAT(mounts("Mount=a,MOUNT=b"), IsEmpty());
    EXPECT_EQ(parse("Use_Zapi=1").use_zapi, -1);
    EXPECT_THAT(mounts("remount=a|b"), ElementsAre("a > b"));
    EXPECT_EQ(parse("don't use_zapi=1").use_zapi, 1);
}

TEST(Isid, AValueWithoutABarStandsForBothSides)
{
    EXPECT_THAT(mounts("mount=a"), ElementsAre("a > a"));
    EXPECT_THAT(mounts("mount=a,mount=b"), ElementsAre("a > a", "b > b"));
}

TEST(Isid, SplitsAValueAtItsFirstBar)
{
    EXPECT_THAT(mounts("mount=a|b|c"), ElementsAre("a > b|c"));
    EXPECT_THAT(mounts("mount=|b"), ElementsAre(" > b"));
    EXPECT_THAT(mounts("mount=a|"), ElementsAre("a > "));
    EXPECT_THAT(mounts("mount=|"), ElementsAre(" > "));
}

TEST(Isid, AKeyAtTheVeryEndHasTwoEmptySides)
{
    EXPECT_THAT(mounts("mount="), ElementsAre(" > "));
    EXPECT_THAT(mounts("mount=a|b,mount="), ElementsAre("a > b", " > "));
}

TEST(Isid, ACommaRightBehindTheKeyIsPartOfTheValue)
{
    EXPECT_THAT(mounts("mount=,x,y"), ElementsAre(",x > ,x"));
    EXPECT_THAT(mounts("mount=,"), ElementsAre(", > ,"));
    EXPECT_THAT(mounts("mount=,mount=b,"), ElementsAre(",mount=b > ,mount=b"));
}

TEST(Isid, SearchesALastValueOnceMoreFromItsStart)
{
    EXPECT_THAT(mounts("mount=a|mount=b"), ElementsAre("a > mount=b", "b > b"));
    EXPECT_THAT(mounts("mount=mount="), ElementsAre("mount= > mount=", " > "));
    EXPECT_THAT(mounts("mount=a|mount=b,x"), ElementsAre("a > mount=b"));
}

TEST(Isid, AppendsToTheMountsThatAreThere)
{
    isid_contents contents{};
    contents.mpfs_vec = {{"old", "one"}};
    EXPECT_TRUE(parse_isid("mount=a|b", &contents, nullptr));
    ASSERT_EQ(contents.mpfs_vec.size(), 2u);
    EXPECT_EQ(contents.mpfs_vec[1].mount_path, "a");
}

TEST(Isid, EndsForATextFullOfKeys)
{
    std::string text;
    while (text.size() < 4090) text += "mount=";
    EXPECT_EQ(mounts(text).size(), 682u);
}

TEST(Isid, LogsTheRouteAlone)
{
    kit::RecordedSession session;
    isid_contents contents{};
    EXPECT_TRUE(parse_isid("mount=a|b", &contents, session.get()));
    EXPECT_TRUE(parse_isid("use_zapi=1", &contents, session.get()));
    EXPECT_THAT(session.lines(), ElementsAre(kit::record("use_zapi: -1"), kit::record("use_zapi: 1")));
}
