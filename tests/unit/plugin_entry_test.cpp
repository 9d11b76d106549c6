// The handshake's effect inside the library; what a host sees of it is tested through the built library.
#include "plugin/base/plugin_globals.h"
#include "plugin/host/entry_points.h"

#include <gmock/gmock.h>

TEST(StspiInit, RemembersThePathOfARefusedLoad)
{
    pluginPath = "before";
    stspi_plugin_def_t definition = {};
    EXPECT_EQ(stspi_init(10, "/opt/host/libsoapwrapper.so", &definition), 2060008);
    EXPECT_EQ(pluginPath, "/opt/host/libsoapwrapper.so");
}

TEST(StspiInit, RemembersThePathOfAGoodLoad)
{
    pluginPath = "before";
    stspi_plugin_def_t definition = {};
    EXPECT_EQ(stspi_init(11, "relative.so", &definition), 0);
    EXPECT_EQ(pluginPath, "relative.so");
}

TEST(StspiInit, LeavesThePathAloneForANullDefinition)
{
    pluginPath = "before";
    EXPECT_EQ(stspi_init(11, "after", nullptr), 2060001);
    EXPECT_EQ(pluginPath, "before");
}

TEST(StspiInit, TakesANullPathForAnEmptyOne)
{
    pluginPath = "before";
    stspi_plugin_def_t definition = {};
    EXPECT_EQ(stspi_init(11, nullptr, &definition), 0);
    EXPECT_EQ(pluginPath, "");
}
