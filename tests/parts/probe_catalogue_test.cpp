// The parts of soapwrapper-probe that read volumes and ask before they delete.
#include "probe/arguments/confirmation.h"
#include "probe/arguments/volume_argument.h"

#include <gtest/gtest.h>

#include <sstream>

namespace
{

using namespace soapwrapper::probe;

TEST(ProbeVolume, IsReadByItsKindAndWrittenTheSame)
{
    const std::pair<const char*, int> texts[] = {{"nfs:host:name:/path", STS_VOLUME_NFS},
                                                 {"cifs:host:share", STS_VOLUME_CIFS},
                                                 {"scsi:50\\:0a\\\\:serial", STS_VOLUME_SCSI},
                                                 {"device:/dev/sda", STS_VOLUME_DEVICE},
                                                 {"ndmp:filer:/vol/a", STS_VOLUME_NDMP}};
    for (const auto& [text, type] : texts) {
        sts_volume_spec_v11_t volume = {};
        EXPECT_EQ(parse_volume(text, volume), "");
        EXPECT_EQ(volume.volumeType, type);
        EXPECT_EQ(volume_text(volume), text);
    }
}

TEST(ProbeVolume, TakesColonsInTheLastTextOfItsKind)
{
    sts_volume_spec_v11_t volume = {};
    EXPECT_EQ(parse_volume("ndmp:filer:/a:b:c", volume), "");
    EXPECT_STREQ(volume.second, "/a:b:c");
    EXPECT_STREQ(volume.third, "");
    EXPECT_EQ(parse_volume("device:a:b\\", volume), "");
    EXPECT_STREQ(volume.first, "a:b\\");
}

TEST(ProbeVolume, IsRefusedWithoutAKindOrAFirstTextOrIfItWouldBeCut)
{
    sts_volume_spec_v11_t volume = {};
    for (const std::string& text :
         {std::string(), std::string("nfs"), std::string("nfs:"), std::string("nfs::b"),
          std::string("tape:a"), "nfs:a:" + std::string(1024, 'x')}) {
        EXPECT_NE(parse_volume(text, volume), "") << text;
    }
    EXPECT_EQ(parse_volume("nfs:a:" + std::string(1023, 'x'), volume), "");
}

TEST(ProbeVolume, ThatNobodyFilledIsWrittenAsNothing)
{
    EXPECT_EQ(volume_text(unfilled_volume()), "");
}

TEST(ProbeConfirmation, TakesYesOnlyForYes)
{
    for (const char* answer : {"y\n", "Y\n", "yes\n", "y"}) {
        std::istringstream in(answer);
        std::ostringstream out;
        EXPECT_TRUE(answered_yes("Delete it?", in, out)) << answer;
        EXPECT_EQ(out.str(), "Delete it? [y/N] ");
    }
    for (const char* answer : {"", "\n", "n\n", "yess\n", " y\n", "no\ny\n"}) {
        std::istringstream in(answer);
        std::ostringstream out;
        EXPECT_FALSE(answered_yes("Delete it?", in, out)) << answer;
    }
}

} // namespace
