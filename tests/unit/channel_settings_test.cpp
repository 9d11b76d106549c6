// What the library keeps of the file's settings of the channel.
#include "service/channel_settings.h"

#include "tests/unit/configuration_fixture.h"

using soapwrapper::channel_settings;
using soapwrapper::read_channel_settings;

namespace
{

class ChannelSettingsOfTheFile : public Configuration
{
  protected:
    ~ChannelSettingsOfTheFile() override
    {
        std::filesystem::remove_all(file());
        read_channel_settings();
    }

    void read(std::string_view text)
    {
        write(text);
        read_channel_settings();
    }
};

} // namespace

TEST_F(ChannelSettingsOfTheFile, AreOffWithoutAFile)
{
    read_channel_settings();
    EXPECT_EQ(channel_settings().unusable, nullptr);
    EXPECT_FALSE(channel_settings().require_tls);
    EXPECT_EQ(channel_settings().connect_timeout, 0);
    EXPECT_EQ(channel_settings().reply_timeout, 0);
    EXPECT_FALSE(channel_settings().texts_are_utf8);
}

TEST_F(ChannelSettingsOfTheFile, AreReadAllAtOnce)
{
    read("REQUIRE_TLS = True\nconnect_timeout = 010\nreply_timeout=0x20\n"
         "text_encoding = uTf-8\n");
    EXPECT_EQ(channel_settings().unusable, nullptr);
    EXPECT_TRUE(channel_settings().require_tls);
    EXPECT_EQ(channel_settings().connect_timeout, 8);
    EXPECT_EQ(channel_settings().reply_timeout, 32);
    EXPECT_TRUE(channel_settings().texts_are_utf8);
}

TEST_F(ChannelSettingsOfTheFile, AreOffAgainOnceTheyAreReadWithoutTheirKeys)
{
    read("require_tls = x\nreply_timeout = 5\ntext_encoding = UTF-8\n");
    EXPECT_STREQ(channel_settings().unusable, "require_tls");
    read("");
    EXPECT_EQ(channel_settings().unusable, nullptr);
    EXPECT_EQ(channel_settings().reply_timeout, 0);
    EXPECT_FALSE(channel_settings().texts_are_utf8);
}

TEST_F(ChannelSettingsOfTheFile, AboutSecurityCantBeFollowedWhereTheirLineIsTooLong)
{
    read("tls_ca_file = " + std::string(2000, 'x') + "\n");
    EXPECT_STREQ(channel_settings().unusable, "tls_ca_file");
}
