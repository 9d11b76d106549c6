#include "conversion/snap_definition.h"
#include "conversion/wire_objects.h"
#include "tests/unit/canary.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>

using namespace soapwrapper;

TEST(WireLsu, NamesTheLsuUnderItsServersHandle)
{
    char service_handle[] = "S1";
    stsp_server_t server = {};
    server.service_handle = service_handle;
    stsp_lsu_v7_t lsu = {&server, "lsu1"};
    WireLsu wire(lsu);
    EXPECT_EQ(wire.get()->lsuName, "lsu1");
    EXPECT_EQ(*wire.get()->serverHandle->token, "S1");
}

TEST(WireLsu, OfAServerWithoutAServiceHandleBearsAnEmptyToken)
{
    stsp_server_t server = {};
    stsp_lsu_v7_t lsu = {&server, ""};
    WireLsu wire(lsu);
    EXPECT_EQ(*wire.get()->serverHandle->token, "");
}

TEST(WireImageDef, OwnsAllThatTheConversionMade)
{
    sts_image_def_v10_t def = {};
    put(def.basename, "image");
    WireImageDef wire(def);
    EXPECT_EQ(*wire.get()->basename, "image");
    EXPECT_NE(wire.get()->isid, nullptr);
}

TEST(WireSnapDef, OwnsAllThatTheConversionMade)
{
    sts_snap_def_v11_t def = {};
    put(def.snapName, "snap");
    WireSnapDef wire(def);
    EXPECT_EQ(wire.get()->snapName, "snap");
    EXPECT_NE(wire.get()->isid, nullptr);
}

TEST(WireSnapDef, ThatWasCleanedUpEarlyIsDestroyedQuietly)
{
    const sts_snap_def_v11_t def = {};
    WireSnapDef wire(def);
    cleanup_snap_def(*wire.get());
    EXPECT_EQ(wire.get()->isid, nullptr);
}

TEST(WireVolume, HasAnObjectForEachKindADeviceIncluded)
{
    for (const int type : {0, 1, 2, 3, 4}) {
        sts_volume_spec_v11_t volume = {};
        put(volume.first, "one");
        volume.volumeType = type;
        WireVolume wire(volume);
        EXPECT_EQ(wire.get()->volumeType, type);
        EXPECT_EQ(wire.get()->__union_VolumeSpecification, type + 1);
        const auto& kind = wire.get()->union_VolumeSpecification;
        const std::string& text = type == 0   ? kind.nfs->exportHost
                                  : type == 1 ? kind.cifs->exportHost
                                  : type == 2 ? kind.scsi->lunWWNN
                                  : type == 3 ? kind.device->devicePath
                                              : kind.ndmp->exportfiler;
        EXPECT_EQ(text, "one") << type;
    }
}

TEST(WireVolumeSpecs, HoldAnEntryForEachVolume)
{
    sts_volume_spec_v11_t volumes[2] = {};
    volumes[1].volumeType = STS_VOLUME_CIFS;
    WireVolumeSpecs wire(volumes, 2);
    ASSERT_EQ(wire.get()->item.size(), 2u);
    EXPECT_EQ(wire.get()->item[0]->__union_VolumeSpecification, 1);
    EXPECT_EQ(wire.get()->item[1]->__union_VolumeSpecification, 0);
}

TEST(WireLsuSpecs, HoldAnEntryForEachPair)
{
    sts_lsu_spec_v11_t specs[2] = {};
    put(specs[1].lsu, "lsu1");
    WireLsuSpecs wire(specs, 2);
    ASSERT_EQ(wire.get()->item.size(), 2u);
    EXPECT_EQ(wire.get()->item[1]->lsu, "lsu1");
}

TEST(WireHostSpec, HasSixteenNamesAndSixteenPorts)
{
    auto host = std::make_unique<sts_host_spec_v11_t>();
    put(host->hostname[0], "h");
    put(host->port[15], "p");
    host->flags = 6;
    WireHostSpec wire(*host);
    ASSERT_EQ(wire.get()->hostname->item.size(), 16u);
    ASSERT_EQ(wire.get()->port->item.size(), 16u);
    EXPECT_EQ(wire.get()->hostname->item[0], "h");
    EXPECT_EQ(wire.get()->hostname->item[1], "");
    EXPECT_EQ(wire.get()->port->item[15], "p");
    EXPECT_EQ(wire.get()->flags, 6);
}

TEST(WireRollbackList, WalksRowsOf1024Characters)
{
    std::string rows(2 * STS_ROLLBACK_ROW_SIZE, '\0');
    rows.replace(0, 5, "snap1");
    rows.replace(STS_ROLLBACK_ROW_SIZE, STS_ROLLBACK_ROW_SIZE, std::string(STS_ROLLBACK_ROW_SIZE, 'x'));
    WireRollbackList wire(rows.data(), 2);
    EXPECT_THAT(wire.get()->item, testing::ElementsAre("snap1", std::string(STS_ROLLBACK_ROW_SIZE, 'x')));
}

TEST(WireRollbackList, OfCountZeroReadsNoRow)
{
    WireRollbackList wire(nullptr, 0);
    EXPECT_THAT(wire.get()->item, testing::IsEmpty());
}
